#include <cstring>

#include "tools/commands.h"
#include "tools/output_file.h"
#include "tools/wav_io.h"
#include "vsps.h"

#ifndef VSPS_TOOL_VERSION
#define VSPS_TOOL_VERSION "unknown"
#endif

namespace vsps::tool {

namespace {

const Command kCommands[] = {{kDemoSpec, cmd_demo}, {kLpcSpec, cmd_lpc},   {kAecSpec, cmd_aec},
                             {kToneSpec, cmd_tone}, {kG711Spec, cmd_g711}, {kG722Spec, cmd_g722},
                             {kG726Spec, cmd_g726}, {kG729Spec, cmd_g729}, {kGsmfrSpec, cmd_gsmfr},
                             {kAmrSpec, cmd_amr},   {kInfoSpec, cmd_info}};

int usage(FILE* f, int status) {
  std::fprintf(f, "usage: vsps [command] [arguments]   (the default command is demo)\n");
  for (const Command& c : kCommands) {
    const std::string line = std::string(c.syntax.name) + " " + c.syntax.synopsis;
    std::fprintf(f, "  %-34s %s\n", line.c_str(), c.syntax.summary);
  }
  std::fprintf(f,
               "vsps COMMAND --help shows a command's options; vsps --version the version.\n"
               "Input files: 16-bit PCM mono WAV; the codec commands (g711, g722, g726, gsmfr) also take raw\n"
               "16-bit little-endian PCM (names not ending in .wav) and code-word files.\n");
  return status;
}

int version(FILE* out) {
  legacy90vspscInit();
  const VspLibraryVersion* v = legacy90vspscGetLibVersion();
  std::fprintf(out, "vsps %s (library %s, %s)\n", VSPS_TOOL_VERSION, v->Name, v->Version);
  return 0;
}

// A command's standard output is checked like a file: a write error there
// (a full disk, /dev/full, a closed pipe) fails the command.
int finish_output(int status, FILE* out, FILE* err) {
  std::string error;
  if (!flush_checked(out, "standard output", &error)) {
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return status == 0 ? 1 : status;
  }
  return status;
}

}  // namespace

int parse_or_exit(const CommandSpec& syntax, const Args& args, Options* opt, FILE* out, FILE* err) {
  switch (parse_command_line(syntax, args, opt, out, err)) {
    case ParseResult::Ok:
      return -1;
    case ParseResult::Help:
      return 0;
    case ParseResult::Error:
      break;
  }
  return 2;
}

bool load_wav(const std::string& path, std::initializer_list<int> rates, const char* needs, WavAudio* wav, FILE* err) {
  std::string error;
  if (!read_wav(path, wav, &error)) {
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return false;
  }
  for (int r : rates)
    if (wav->rate == r) return true;
  std::fprintf(err, "vsps: %s: sampling rate %d Hz; %s\n", path.c_str(), wav->rate, needs);
  return false;
}

int run_tool(int argc, const char* const* argv, FILE* out, FILE* err) {
  const std::string cmd = argc > 1 ? argv[1] : "demo";
  const Args args(argv + (argc > 1 ? 2 : 1), argv + argc);
  if (cmd == "-h" || cmd == "--help") return finish_output(usage(out, 0), out, err);
  if (cmd == "--version" || cmd == "-V") return finish_output(version(out), out, err);
  if (cmd == "help" && !args.empty()) {  // "vsps help lpc" as "vsps lpc --help"
    for (const Command& c : kCommands)
      if (args[0] == c.syntax.name) {
        print_command_help(c.syntax, out);
        return finish_output(0, out, err);
      }
  }
  if (cmd == "help") return finish_output(usage(out, 0), out, err);
  for (const Command& c : kCommands)
    if (cmd == c.syntax.name) {
      legacy90vspscInit();  // its warnings are reported by "vsps info"
      const int status = c.run(args, out, err);
      if (status == 2) print_command_help(c.syntax, err);
      return finish_output(status, out, err);
    }
  std::fprintf(err, "vsps: unknown command %s\n", cmd.c_str());
  return usage(err, 2);
}

}  // namespace vsps::tool
