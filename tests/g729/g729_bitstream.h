// Reading the ITU G.729 conformance files: 16-bit little-endian PCM and the
// serial bit-stream (per frame: sync 0x6B21, count 80, 80 words 0x007F (0) /
// 0x0081 (1); a zero word marks an erased frame).
#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

namespace g729t {

inline std::vector<int16_t> read_words(const std::string& path) {
  std::ifstream f(path, std::ios::binary);
  std::vector<int16_t> w;
  unsigned char b[2];
  while (f.read(reinterpret_cast<char*>(b), 2)) w.push_back(static_cast<int16_t>(b[0] | b[1] << 8));
  return w;
}

struct BitFrame {
  bool erased = false;
  int prm[11] = {};  // the 11 parameters, MSB first in the stream
};

inline std::vector<BitFrame> read_bitstream(const std::string& path) {
  static constexpr int kWidths[11] = {8, 10, 8, 1, 13, 4, 7, 5, 13, 4, 7};
  const std::vector<int16_t> w = read_words(path);
  std::vector<BitFrame> frames;
  for (std::size_t base = 0; base + 82 <= w.size(); base += 82) {
    BitFrame fr;
    std::size_t pos = base + 2;
    for (int p = 0; p < 11; ++p) {
      int v = 0;
      for (int b = 0; b < kWidths[p]; ++b, ++pos) {
        if (w[pos] == 0) fr.erased = true;
        v = v << 1 | (w[pos] == 0x0081 ? 1 : 0);
      }
      fr.prm[p] = v;
    }
    frames.push_back(fr);
  }
  return frames;
}

}  // namespace g729t
