// A progress line on stderr for long inputs.
#pragma once

#include <cstddef>
#include <cstdio>

namespace vsps::tool {

// Reports the share of `total` samples done. Silent for inputs shorter than
// kMinSeconds. On a terminal it redraws one line; otherwise it prints a line
// at every quarter.
class Progress {
 public:
  static constexpr double kMinSeconds = 30.0;
  Progress(FILE* err, const char* what, std::size_t total, int rate);
  ~Progress();
  void update(std::size_t done);

 private:
  FILE* err_;
  const char* what_;
  std::size_t total_;
  int rate_;
  bool active_, terminal_;
  int lastShown_ = -1;
};

}  // namespace vsps::tool
