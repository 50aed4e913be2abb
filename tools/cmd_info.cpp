// "vsps info": the processor level in use and how it was chosen.
#include <cstdint>
#include <string>

#include "core/cpu_probe.h"
#include "core/cpu_state.h"
#include "tools/commands.h"
#include "vsps.h"

namespace vsps::tool {

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

}  // namespace

const CommandSpec kInfoSpec = {"info", "", "processor level, version record and feature masks", {}};

int cmd_info(const Args& args, FILE* out, FILE* err) {
  Options opt;
  if (const int status = parse_or_exit(kInfoSpec, args, &opt, out, err); status >= 0) return status;
  if (!opt.positional.empty()) {
    std::fprintf(err, "vsps: info takes no arguments\n");
    return 2;
  }
  const VspStatus st = legacy90vspscInit();
  const VspLibraryVersion* v = legacy90vspscGetLibVersion();
  const uint64_t probed = vsps::probed_feature_mask();
  const uint64_t restrict = vsps::restrict_mask();
  std::fprintf(out, "level:          %d (%s)\n", vsps::current_level(), v->targetCpu);
  std::fprintf(out, "name:           %s\n", v->Name);
  std::fprintf(out, "version:        %d.%d.%d.%d %s, built %s\n", v->major, v->minor, v->majorBuild, v->build,
               v->Version, v->BuildDate);
  std::fprintf(out, "init status:    %d", st);
  if (st == vspStsForeignCpu) std::fprintf(out, " (processor vendor differs from %s)", vsps::cpu::tuned_vendor());
  if (st == vspStsNoCpuFeatures) std::fprintf(out, " (processor identification unavailable)");
  std::fprintf(out, "\n");
  std::fprintf(out, "probed mask:    0x%llx  %s\n", static_cast<unsigned long long>(probed), words(probed).c_str());
  if (restrict != ~uint64_t(0))
    std::fprintf(out, "VSPS_CPU_MASK:  0x%llx\n", static_cast<unsigned long long>(restrict));
  std::fprintf(out, "enabled mask:   0x%llx  %s\n", static_cast<unsigned long long>(vsps::enabled_mask()),
               words(vsps::enabled_mask()).c_str());
  return 0;
}

}  // namespace vsps::tool
