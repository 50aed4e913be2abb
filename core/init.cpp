// legacy90vspscInit: probe, level choice and vendor check.
#include <cstdlib>

#include "core/cpu_probe.h"
#include "core/cpu_state.h"
#include "vsps.h"

namespace vsps {

std::atomic<int32_t> g_cpu_level{-1};
std::atomic<uint64_t> g_enabled_mask{0};

namespace {

// Probe cache. The mask is published before the done mark (release/acquire),
// so a thread that sees "done" also sees the mask: a racing first call can
// never read an empty mask and settle the process on the generic level.
std::atomic<uint64_t> g_probed_mask{0};
std::atomic<bool> g_probe_done{false};

// Parses VSPS_CPU_MASK: hexadecimal, optional 0x prefix. Unset, empty or
// malformed values restrict nothing.
uint64_t parse_restrict_mask(const char* text) {
  if (text == nullptr || *text == '\0') return ~uint64_t(0);
  char* end = nullptr;
  const unsigned long long v = std::strtoull(text, &end, 16);
  if (end == text || *end != '\0') return ~uint64_t(0);
  return static_cast<uint64_t>(v);
}

}  // namespace

uint64_t probed_feature_mask() {
  if (g_probe_done.load(std::memory_order_acquire)) return g_probed_mask.load(std::memory_order_relaxed);
  const cpu::HardwareCpuid hw;
  const uint64_t mask = hw.available() ? cpu::feature_mask(hw) : 0;
  g_probed_mask.store(mask, std::memory_order_relaxed);
  g_probe_done.store(true, std::memory_order_release);
  return mask;
}

uint64_t restrict_mask() { return parse_restrict_mask(std::getenv("VSPS_CPU_MASK")); }

void force_level(int32_t level, uint64_t enabledMask) {
  g_enabled_mask.store(enabledMask, std::memory_order_relaxed);
  g_cpu_level.store(level, std::memory_order_release);
}

void reset_initialisation() {
  g_cpu_level.store(-1, std::memory_order_release);
  g_enabled_mask.store(0, std::memory_order_relaxed);
  g_probe_done.store(false, std::memory_order_release);
  g_probed_mask.store(0, std::memory_order_relaxed);
}

}  // namespace vsps

extern "C" VSPS_API VspStatus VSPS_CALL legacy90vspscInit(void) {
  const vsps::cpu::HardwareCpuid hw;
  if (!hw.available()) {
    vsps::force_level(vsps::cpu::kNoCpuChoice.level, vsps::cpu::kNoCpuChoice.enabledMask);
    return vspStsNoCpuFeatures;
  }
  const uint64_t probed = vsps::probed_feature_mask();
  const vsps::cpu::LevelChoice choice = vsps::cpu::choose_level(probed & vsps::restrict_mask());
  // The enabled mask is published before the level (release), so a variant
  // reached through the new level sees its mask.
  vsps::force_level(choice.level, choice.enabledMask);
  return vsps::cpu::vendor_status(hw);
}
