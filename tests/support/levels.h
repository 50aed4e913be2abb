// Running a piece of test code at every processor level this machine
// supports, through the library's internal level hook.
#pragma once

#include <string>
#include <vector>

namespace vt {

// The highest level the processor (restricted by VSPS_CPU_MASK) allows.
int highest_supported_level();
// 0 .. highest_supported_level().
std::vector<int> supported_levels();
// "mx" .. "l9".
std::string level_name(int level);

// Forces a level for the lifetime of the object, with the enabled mask the
// initialisation would give that level on this processor; restores the
// previous level afterwards.
class ScopedLevel {
 public:
  explicit ScopedLevel(int level);
  ~ScopedLevel();
  ScopedLevel(const ScopedLevel&) = delete;
  ScopedLevel& operator=(const ScopedLevel&) = delete;

 private:
  int savedLevel_;
  unsigned long long savedMask_;
};

// Calls f(level) with each supported level forced in turn.
template <class F>
void for_each_level(F&& f) {
  for (int level : supported_levels()) {
    ScopedLevel forced(level);
    f(level);
  }
}

}  // namespace vt
