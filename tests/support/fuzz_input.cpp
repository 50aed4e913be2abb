#include "tests/support/fuzz_input.h"

#include <algorithm>
#include <cstring>

namespace vt {

namespace {
bool wide(int64_t lo, int64_t hi) { return static_cast<uint64_t>(hi) - static_cast<uint64_t>(lo) >= 0xFFFFFFFFull; }
}  // namespace

int64_t ByteReader::scalar(std::string_view, int64_t lo, int64_t hi) {
  if (hi <= lo) return lo;
  const int n = wide(lo, hi) ? 8 : 4;
  uint64_t u = 0;
  for (int k = 0; k < n; ++k) u |= uint64_t(byte()) << (8 * k);
  const uint64_t span = static_cast<uint64_t>(hi) - static_cast<uint64_t>(lo) + 1;  // 0: the whole range
  return static_cast<int64_t>(static_cast<uint64_t>(lo) + (span == 0 ? u : u % span));
}

void ByteReader::fill(std::string_view, std::span<uint8_t> mem) {
  for (uint8_t& b : mem) b = byte();
}

bool ByteReader::choice(std::string_view) { return (byte() & 1) != 0; }

int64_t SeedWriter::scalar(std::string_view param, int64_t lo, int64_t hi) {
  int64_t v = lo;
  if (param == "export")
    v = exportIndex_;
  else if (ref_.fn().index_of(param) >= 0 && ref_.has(param) && ref_.role(param) == Role::Scalar)
    v = ref_.scalar_value(param);
  v = std::clamp(v, lo, std::max(lo, hi));
  if (hi > lo) {
    const uint64_t u = static_cast<uint64_t>(v) - static_cast<uint64_t>(lo);
    const int n = wide(lo, hi) ? 8 : 4;
    for (int k = 0; k < n; ++k) bytes_.push_back(static_cast<uint8_t>(u >> (8 * k)));
  }
  return v;
}

void SeedWriter::fill(std::string_view param, std::span<uint8_t> mem) {
  std::fill(mem.begin(), mem.end(), uint8_t(0));
  if (ref_.fn().index_of(param) >= 0 && ref_.has(param) && ref_.role(param) != Role::Scalar &&
      ref_.role(param) != Role::Null && ref_.role(param) != Role::Frames) {
    const auto src = ref_.buf<uint8_t>(param);
    const std::size_t n = std::min(src.size(), mem.size());
    if (n > 0) std::memcpy(mem.data(), src.data(), n);  // an empty buffer may have no address
  }
  bytes_.insert(bytes_.end(), mem.begin(), mem.end());
}

bool SeedWriter::choice(std::string_view) {
  bytes_.push_back(0);
  return false;
}

int64_t Adversarial::scalar(std::string_view, int64_t lo, int64_t hi) {
  if (hi <= lo) return lo;
  const uint64_t span = static_cast<uint64_t>(hi) - static_cast<uint64_t>(lo) + 1;  // 0: the whole range
  const uint64_t u = rng_();
  return static_cast<int64_t>(static_cast<uint64_t>(lo) + (span == 0 ? u : u % span));
}

void Adversarial::fill(std::string_view, std::span<uint8_t> mem) {
  for (std::size_t o = 0; o < mem.size(); o += 2) {
    const uint64_t r = rng_();
    const auto kind = r % 4;
    const uint16_t w = kind == 0   ? 0x8000
                       : kind == 1 ? 0x7FFF
                       : kind == 2 ? uint16_t(r >> 8)
                                   : uint16_t(int((r >> 8) % 4001) - 2000);
    mem[o] = static_cast<uint8_t>(w);
    if (o + 1 < mem.size()) mem[o + 1] = static_cast<uint8_t>(w >> 8);
  }
}

}  // namespace vt
