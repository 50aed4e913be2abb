// vsps: the library's command-line tool.
//   vsps [demo]             every family on built-in signals (the default job)
//   vsps info               processor level, version record, feature masks
//   vsps g729 FILE          G.729 LSP codes L0 L1 L2 L3 per 10 ms frame of a
//                           16-bit little-endian 8 kHz PCM file
//   vsps tone FILE [RATE]   2100 Hz tone detection in a 16-bit PCM file
#include "vsps.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "core/cpu_probe.h"
#include "core/cpu_state.h"
#include "tools/demo.h"
#include "tools/speech_signal.h"

namespace {

struct FeatureName {
  uint64_t bit;
  const char* name;
};
constexpr FeatureName kFeatures[] = {
    {0x1, "MMX"},
    {0x2, "SSE"},
    {0x4, "SSE2"},
    {0x8, "SSE3"},
    {0x10, "SSSE3"},
    {0x20, "MOVBE"},
    {0x40, "SSE4.1"},
    {0x80, "SSE4.2"},
    {0x100, "AVX"},
    {0x200, "AVX-OS-state"},
    {0x400, "AES"},
    {0x800, "PCLMULQDQ"},
    {0x1000, "fam-B-leaf"},
    {0x2000, "RDRAND"},
    {0x4000, "F16C"},
    {0x8000, "AVX2+FMA+BMI1+BMI2"},
    {0x10000, "ADX"},
    {0x20000, "RDSEED"},
    {0x40000, "PREFETCHW"},
    {0x80000, "SHA"},
    {0x80000000, "fam-B-model-1"},
};

std::string words(uint64_t mask) {
  std::string s;
  for (const FeatureName& f : kFeatures)
    if (mask & f.bit) {
      if (!s.empty()) s += ' ';
      s += f.name;
    }
  return s.empty() ? "(none)" : s;
}

int info() {
  const VspStatus st = legacy90vspscInit();
  const VspLibraryVersion* v = legacy90vspscGetLibVersion();
  const uint64_t probed = vsps::probed_feature_mask();
  const uint64_t restrict = vsps::restrict_mask();
  std::printf("level:          %d (%s)\n", vsps::current_level(), v->targetCpu);
  std::printf("name:           %s\n", v->Name);
  std::printf("version:        %d.%d.%d.%d %s, built %s\n", v->major, v->minor, v->majorBuild, v->build, v->Version,
              v->BuildDate);
  std::printf("init status:    %d", st);
  if (st == vspStsForeignCpu) std::printf(" (processor vendor differs from %s)", vsps::cpu::tuned_vendor());
  if (st == vspStsNoCpuFeatures) std::printf(" (processor identification unavailable)");
  std::printf("\n");
  std::printf("probed mask:    0x%llx  %s\n", static_cast<unsigned long long>(probed), words(probed).c_str());
  if (restrict != ~uint64_t(0)) std::printf("VSPS_CPU_MASK:  0x%llx\n", static_cast<unsigned long long>(restrict));
  std::printf("enabled mask:   0x%llx  %s\n", static_cast<unsigned long long>(vsps::enabled_mask()),
              words(vsps::enabled_mask()).c_str());
  return 0;
}

int demo() {
  legacy90vspscInit();
  std::printf("vsps demo at level %s, on a built-in 8 kHz speech-like signal of 10 s\n",
              legacy90vspscGetLibVersion()->Name);
  const std::vector<int16_t> speech = vsps::signals::speech_like(10.0, 8000, 1);
  const bool ok = vsps::tool::demo_g729(speech, false, stdout) && vsps::tool::demo_gsmamr(speech, stdout) &&
                  vsps::tool::demo_echo_canceller(stdout) && vsps::tool::demo_tone_detector(speech, stdout);
  if (!ok) std::fprintf(stderr, "vsps: demo failed\n");
  return ok ? 0 : 1;
}

bool read_pcm(const char* path, std::vector<int16_t>* pcm) {
  FILE* f = std::fopen(path, "rb");
  if (f == nullptr) {
    std::fprintf(stderr, "vsps: cannot open %s\n", path);
    return false;
  }
  unsigned char b[2];
  while (std::fread(b, 1, 2, f) == 2) pcm->push_back(static_cast<int16_t>(b[0] | (b[1] << 8)));
  std::fclose(f);
  return true;
}

int usage(FILE* out) {
  std::fprintf(out,
               "usage: vsps [command]\n"
               "  demo               every family on built-in signals (default)\n"
               "  info               processor level, version record and feature masks\n"
               "  g729 FILE          G.729 LSP codes L0 L1 L2 L3 per frame of 16-bit LE 8 kHz PCM\n"
               "  tone FILE [RATE]   2100 Hz tone detection in 16-bit LE PCM (RATE 8000 or 16000)\n");
  return out == stdout ? 0 : 2;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string cmd = argc > 1 ? argv[1] : "demo";
  if (cmd == "demo") return demo();
  if (cmd == "info") return info();
  if (cmd == "-h" || cmd == "--help" || cmd == "help") return usage(stdout);
  if ((cmd == "g729" || cmd == "tone") && argc >= 3) {
    std::vector<int16_t> pcm;
    if (!read_pcm(argv[2], &pcm)) return 1;
    legacy90vspscInit();
    const int rate = argc > 3 ? std::atoi(argv[3]) : 8000;
    const bool ok =
        cmd == "g729" ? vsps::tool::demo_g729(pcm, true, stdout) : vsps::tool::detect_tone(pcm, rate, stdout);
    return ok ? 0 : 1;
  }
  std::fprintf(stderr, "vsps: unknown command or missing file: %s\n", cmd.c_str());
  return usage(stderr);
}
