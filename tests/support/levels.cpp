#include "tests/support/levels.h"

#include "core/cpu_probe.h"
#include "core/cpu_state.h"
#include "vsps.h"

namespace vt {

namespace {
// Enabled-feature mask of each level (the level table).
constexpr uint64_t kLevelMask[7] = {0x7, 0xF, 0x1F, 0x3F, 0x80CDF, 0x86FDF, 0xFEFFF};
}  // namespace

int highest_supported_level() {
  return vsps::cpu::choose_level(vsps::probed_feature_mask() & vsps::restrict_mask()).level;
}

std::vector<int> supported_levels() {
  std::vector<int> levels;
  for (int l = 0; l <= highest_supported_level(); ++l) levels.push_back(l);
  return levels;
}

std::string level_name(int level) { return vsps::cpu::level_code(level); }

ScopedLevel::ScopedLevel(int level) {
  if (vsps::current_level() < 0) legacy90vspscInit();
  savedLevel_ = vsps::current_level();
  savedMask_ = vsps::enabled_mask();
  vsps::force_level(level, vsps::probed_feature_mask() & kLevelMask[level]);
}

ScopedLevel::~ScopedLevel() { vsps::force_level(savedLevel_, savedMask_); }

}  // namespace vt
