#include "tools/progress.h"

#include <unistd.h>

#include <algorithm>

namespace vsps::tool {

Progress::Progress(FILE* err, const char* what, std::size_t total, int rate)
    : err_(err),
      what_(what),
      total_(total),
      rate_(rate),
      active_(rate > 0 && static_cast<double>(total) / rate >= kMinSeconds),
      terminal_(isatty(fileno(err)) != 0) {}

Progress::~Progress() {
  if (active_ && terminal_ && lastShown_ >= 0) std::fputc('\n', err_);
}

void Progress::update(std::size_t done) {
  if (!active_ || total_ == 0) return;
  const int percent = static_cast<int>(100.0 * static_cast<double>(done) / static_cast<double>(total_));
  const int step = terminal_ ? 1 : 25;
  if (percent / step == std::max(lastShown_, 0) / step) return;  // a file: lines at 25, 50, 75, 100%
  lastShown_ = percent;
  std::fprintf(err_, "%s%s: %3d%% (%.1f of %.1f s)%s", terminal_ ? "\r" : "", what_, percent,
               static_cast<double>(done) / rate_, static_cast<double>(total_) / rate_, terminal_ ? "" : "\n");
  std::fflush(err_);
}

}  // namespace vsps::tool
