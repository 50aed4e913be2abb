// Reading the ITU/STL test files of the waveform codecs (16-bit
// little-endian words) and their CRC-32 list, for the conformance tests.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/golden.h"

namespace itu {

// The folder of one codec's files under the test-vector folder; "" when absent.
inline std::string folder(const std::string& codec) {
  const std::string dir = vt::testvectors_dir();
  return dir.empty() || !std::filesystem::is_directory(dir + "/" + codec) ? "" : dir + "/" + codec;
}

inline std::vector<uint8_t> read_bytes(const std::string& path) {
  std::ifstream f(path, std::ios::binary);
  if (!f) throw std::runtime_error(path + ": cannot open");
  return {std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
}

inline std::vector<uint16_t> read_words(const std::string& path) {
  const std::vector<uint8_t> b = read_bytes(path);
  std::vector<uint16_t> w(b.size() / 2);
  for (std::size_t i = 0; i < w.size(); ++i) w[i] = static_cast<uint16_t>(b[2 * i] | b[2 * i + 1] << 8);
  return w;
}

// CRC-32 (IEEE 802.3, reflected, as zip) of 16-bit words written little-endian.
inline uint32_t crc32_le_words(const std::vector<uint16_t>& words) {
  uint32_t crc = 0xFFFFFFFFu;
  auto feed = [&crc](uint8_t byte) {
    crc ^= byte;
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  };
  for (uint16_t w : words) {
    feed(static_cast<uint8_t>(w));
    feed(static_cast<uint8_t>(w >> 8));
  }
  return ~crc;
}

// "name  CRC-LE  CRC-BE  size" lines of a ts-crcs list: name -> CRC-LE.
inline std::map<std::string, uint32_t> read_crc_list(const std::string& path) {
  std::map<std::string, uint32_t> crcs;
  std::ifstream f(path);
  std::string line;
  while (std::getline(f, line)) {
    std::istringstream is(line);
    std::string name, le;
    if (is >> name >> le && le.size() == 8 && le.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos)
      crcs[name] = static_cast<uint32_t>(std::stoul(le, nullptr, 16));
  }
  return crcs;
}

}  // namespace itu
