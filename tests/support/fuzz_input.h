// Fuzzer-chosen values for a call. A contract's fuzz hook asks for each
// scalar and each buffer's contents by parameter name; ByteReader answers
// from the fuzzer's bytes, SeedWriter from a reference call (a golden case)
// while writing the bytes that ByteReader decodes to the same answers, so
// that golden cases become seed inputs.
#pragma once

#include <climits>
#include <cstdint>
#include <random>
#include <span>
#include <string_view>
#include <vector>

#include "tests/support/call.h"

namespace vt {

// Thrown by a fuzz hook (or its helpers) to skip an input, e.g. one whose
// buffers would be too large to fuzz.
struct FuzzSkip {};

class FuzzInput {
 public:
  virtual ~FuzzInput() = default;
  // A value in [lo, hi].
  virtual int64_t scalar(std::string_view param, int64_t lo, int64_t hi) = 0;
  // Contents of a buffer argument.
  virtual void fill(std::string_view param, std::span<uint8_t> mem) = 0;
  // A yes/no decision (apply an extra check, corrupt a state field, ...).
  virtual bool choice(std::string_view what) = 0;

  // Set by a fuzz hook that knows the status its chosen call must return:
  // an error status, or kAnyValid (one of the contract's valid statuses).
  // mayWrite: the documented failure writes part of its outputs (the
  // "nothing written" property is then not checked).
  static constexpr int kUnknown = INT_MIN, kAnyValid = INT_MIN + 1;
  void expect(int status, bool mayWrite = false) {
    expected_ = status;
    mayWrite_ = mayWrite;
  }
  int expected() const { return expected_; }
  bool may_write() const { return mayWrite_; }

 private:
  int expected_ = kUnknown;
  bool mayWrite_ = false;
};

// Decodes fuzzer bytes: a scalar takes 4 bytes (8 when its range is wider
// than 32 bits), little-endian, reduced modulo the range; a fill takes the
// buffer's size in bytes; a choice one byte (bit 0). Missing bytes are 0.
class ByteReader final : public FuzzInput {
 public:
  ByteReader(const uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  int64_t scalar(std::string_view param, int64_t lo, int64_t hi) override;
  void fill(std::string_view param, std::span<uint8_t> mem) override;
  bool choice(std::string_view what) override;

 private:
  uint8_t byte() { return pos_ < size_ ? data_[pos_++] : 0; }
  const uint8_t* data_;
  std::size_t size_;
  std::size_t pos_ = 0;
};

// Answers from a reference call (its scalars and buffer contents, by name;
// "export" answers `exportIndex`) and records the matching bytes.
class SeedWriter final : public FuzzInput {
 public:
  SeedWriter(Call reference, int64_t exportIndex) : ref_(std::move(reference)), exportIndex_(exportIndex) {}
  int64_t scalar(std::string_view param, int64_t lo, int64_t hi) override;
  void fill(std::string_view param, std::span<uint8_t> mem) override;
  bool choice(std::string_view what) override;
  const std::vector<uint8_t>& bytes() const { return bytes_; }

 private:
  Call ref_;
  int64_t exportIndex_;
  std::vector<uint8_t> bytes_;
};

// Random answers for the cross-level comparison on hostile inputs: scalars
// uniform in their range, buffers filled with 16-bit words of which a
// quarter each are -32768, 32767, uniform and small (-2000..2000): values
// that make saturating arithmetic saturate (and, read as 32-bit or float
// elements, extreme magnitudes, infinities and NaNs).
class Adversarial final : public FuzzInput {
 public:
  explicit Adversarial(uint32_t seed) : rng_(seed) {}
  int64_t scalar(std::string_view param, int64_t lo, int64_t hi) override;
  void fill(std::string_view param, std::span<uint8_t> mem) override;
  bool choice(std::string_view) override { return (rng_() & 1) != 0; }

 private:
  std::mt19937_64 rng_;
};

}  // namespace vt
