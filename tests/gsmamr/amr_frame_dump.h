// Reader of the per-frame reference dumps of the GSM-AMR codec
// (../shared/golden/gsmamr-frames, "<E|D> <frame> <sf> <key> <values...>"
// lines): the values of one side by (frame, subframe, key).
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/golden.h"

namespace amrt {

class FrameDump {
 public:
  // The dump folder, "" when absent.
  static std::string folder() {
    const std::string tv = vt::testvectors_dir();
    const std::string d = tv + "/../golden/gsmamr-frames";
    return tv.empty() || !std::filesystem::is_directory(d) ? "" : d;
  }

  FrameDump(const std::string& path, char side) {
    std::ifstream f(path);
    std::string line;
    while (std::getline(f, line)) {
      if (line.empty() || line[0] != side) continue;
      std::istringstream is(line.substr(1));
      int frame = 0, sf = 0;
      std::string key;
      is >> frame >> sf >> key;
      std::vector<int64_t> v;
      for (int64_t x; is >> x;) v.push_back(x);
      values_[{frame, sf, key}] = std::move(v);
      if (frame + 1 > frames_) frames_ = frame + 1;
    }
  }

  int frames() const { return frames_; }
  bool has(int frame, int sf, const std::string& key) const { return values_.count({frame, sf, key}) != 0; }
  // The values as 16-bit words (empty when the key is absent).
  std::vector<int16_t> get(int frame, int sf, const std::string& key) const {
    const auto it = values_.find({frame, sf, key});
    std::vector<int16_t> out;
    if (it != values_.end())
      for (int64_t x : it->second) out.push_back(static_cast<int16_t>(x));
    return out;
  }

 private:
  std::map<std::tuple<int, int, std::string>, std::vector<int64_t>> values_;
  int frames_ = 0;
};

}  // namespace amrt
