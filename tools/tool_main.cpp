#include <cstring>

#include "tools/commands.h"
#include "tools/wav_io.h"
#include "vsps.h"

namespace vsps::tool {

namespace {

int usage(FILE* f, int status) {
  std::fprintf(f,
               "usage: vsps [command] [arguments]\n"
               "  demo [-o DIR]            every family on built-in signals, figures and SVG plots in DIR\n"
               "                           (default command; DIR defaults to vsps-demo)\n"
               "  lpc FILE.wav [--codec g729|amr] [--mode 4.75|5.15|5.9|6.7|7.4|7.95|10.2|12.2]\n"
               "      [--format csv|json] [-o OUT]\n"
               "                           LP analysis and LSP quantisation per frame of an 8 kHz file\n"
               "  aec FAR.wav NEAR.wav -o OUT.wav [--tail MS]\n"
               "                           sub-band echo canceller: removes the echo of FAR from NEAR\n"
               "  tone FILE.wav            2100 Hz answer tone with phase reversals (8 or 16 kHz)\n"
               "  g722 encode IN OUT | g722 decode [--mode 1|2|3] IN OUT\n"
               "                           G.722 at 64/56/48 kbit/s: 16 kHz PCM <-> one octet per sample pair\n"
               "  gsmfr encode|decode IN OUT\n"
               "                           GSM 06.10 full rate: 8 kHz PCM <-> .gsm (33-octet frames)\n"
               "                           or .cod (76 16-bit words per frame)\n"
               "  info                     processor level, version record and feature masks\n"
               "Input files: 16-bit PCM mono WAV; codec commands also take raw 16-bit little-endian PCM.\n");
  return status;
}

}  // namespace

const std::string* Options::get(const std::string& name) const {
  for (const auto& [k, v] : named)
    if (k == name) return &v;
  return nullptr;
}

bool parse_options(const Args& args, const std::vector<std::string>& known, Options* opt, FILE* err) {
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& a = args[i];
    if (a.size() < 2 || a[0] != '-') {
      opt->positional.push_back(a);
      continue;
    }
    bool isKnown = false;
    for (const std::string& k : known) isKnown = isKnown || k == a;
    if (!isKnown) {
      std::fprintf(err, "vsps: unknown option %s\n", a.c_str());
      return false;
    }
    if (i + 1 >= args.size()) {
      std::fprintf(err, "vsps: option %s needs a value\n", a.c_str());
      return false;
    }
    opt->named.emplace_back(a, args[++i]);
  }
  return true;
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
  if (cmd == "-h" || cmd == "--help" || cmd == "help") return usage(out, 0);
  struct Command {
    const char* name;
    int (*run)(const Args&, FILE*, FILE*);
  };
  static constexpr Command kCommands[] = {{"demo", cmd_demo}, {"info", cmd_info}, {"lpc", cmd_lpc},    {"aec", cmd_aec},
                                          {"tone", cmd_tone}, {"g722", cmd_g722}, {"gsmfr", cmd_gsmfr}};
  for (const Command& c : kCommands)
    if (cmd == c.name) {
      legacy90vspscInit();  // its warnings are reported by "vsps info"
      const int status = c.run(args, out, err);
      return status == 2 ? usage(err, 2) : status;
    }
  std::fprintf(err, "vsps: unknown command %s\n", cmd.c_str());
  return usage(err, 2);
}

}  // namespace vsps::tool
