// The vsps tool's commands. Each takes the words after the command name and
// returns the process exit status: 0 success, 1 failure (a library error or
// an unusable input, explained on `err`), 2 a usage error.
#pragma once

#include <cstdio>
#include <initializer_list>
#include <string>
#include <vector>

#include "tools/options.h"

namespace vsps::tool {

// The whole tool: argv[1] is the command (default "demo").
int run_tool(int argc, const char* const* argv, FILE* out, FILE* err);

// A command: its command line (parsed by parse_command_line, shown by
// --help) and what it does.
struct Command {
  const CommandSpec& syntax;
  int (*run)(const Args& args, FILE* out, FILE* err);
};

int cmd_demo(const Args& args, FILE* out, FILE* err);
int cmd_info(const Args& args, FILE* out, FILE* err);
int cmd_lpc(const Args& args, FILE* out, FILE* err);
int cmd_aec(const Args& args, FILE* out, FILE* err);
int cmd_tone(const Args& args, FILE* out, FILE* err);
int cmd_g711(const Args& args, FILE* out, FILE* err);
int cmd_g722(const Args& args, FILE* out, FILE* err);
int cmd_g726(const Args& args, FILE* out, FILE* err);
int cmd_g729(const Args& args, FILE* out, FILE* err);
int cmd_gsmfr(const Args& args, FILE* out, FILE* err);
int cmd_amr(const Args& args, FILE* out, FILE* err);
extern const CommandSpec kDemoSpec, kInfoSpec, kLpcSpec, kAecSpec, kToneSpec, kG711Spec, kG722Spec, kG726Spec,
    kG729Spec, kGsmfrSpec, kAmrSpec;

// Parses a command's words; the exit status to return at once (0 after
// --help, 2 on a usage error) or -1 to go on.
int parse_or_exit(const CommandSpec& syntax, const Args& args, Options* opt, FILE* out, FILE* err);

struct WavAudio;
// Reads a WAV input of a command and checks its rate against `rates`;
// false with the reason on err ("<path>: sampling rate R Hz; <needs>").
bool load_wav(const std::string& path, std::initializer_list<int> rates, const char* needs, WavAudio* wav, FILE* err);

}  // namespace vsps::tool
