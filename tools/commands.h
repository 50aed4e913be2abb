// The vsps tool's commands. Each takes the words after the command name and
// returns the process exit status: 0 success, 1 failure (a library error or
// an unusable input, explained on `err`), 2 a usage error.
#pragma once

#include <cstdio>
#include <initializer_list>
#include <string>
#include <vector>

namespace vsps::tool {

using Args = std::vector<std::string>;

// The whole tool: argv[1] is the command (default "demo").
int run_tool(int argc, const char* const* argv, FILE* out, FILE* err);

int cmd_demo(const Args& args, FILE* out, FILE* err);  // [-o DIR]
int cmd_info(const Args& args, FILE* out, FILE* err);
int cmd_lpc(const Args& args, FILE* out,
            FILE* err);  // FILE.wav [--codec g729|amr] [--mode KBPS] [--format csv|json] [-o OUT]
int cmd_aec(const Args& args, FILE* out, FILE* err);    // FAR.wav NEAR.wav -o OUT.wav [--tail MS]
int cmd_tone(const Args& args, FILE* out, FILE* err);   // FILE.wav
int cmd_g722(const Args& args, FILE* out, FILE* err);   // encode IN OUT | decode [--mode 1|2|3] IN OUT
int cmd_gsmfr(const Args& args, FILE* out, FILE* err);  // encode|decode IN OUT

// Options: "--name value" pairs after the positional words. Returns false
// (with a message on err) on an unknown option or a missing value.
struct Options {
  std::vector<std::string> positional;
  std::vector<std::pair<std::string, std::string>> named;
  const std::string* get(const std::string& name) const;
};
bool parse_options(const Args& args, const std::vector<std::string>& known, Options* opt, FILE* err);

struct WavAudio;
// Reads a WAV input of a command and checks its rate against `rates`;
// false with the reason on err ("<path>: sampling rate R Hz; <needs>").
bool load_wav(const std::string& path, std::initializer_list<int> rates, const char* needs, WavAudio* wav, FILE* err);

}  // namespace vsps::tool
