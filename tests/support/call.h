// One call of an export, built by parameter name: the argument values and
// the memory behind every pointer argument. A Call is a value: copies are
// independent, so the same call can run at several levels and be compared.
#pragma once

#include <cstdint>
#include <cstring>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/exports.h"

namespace vt {

enum class Role { Scalar, In, Out, InOut, Null, Frames };

// Byte pattern of untouched output memory.
inline constexpr uint8_t kGuardByte = 0xA5;
// Every buffer the harness allocates is followed by kCanaryBytes bytes of
// kCanaryByte; invoke() fails the call when any of them changed (a write
// past the end). 64 bytes cover one whole AVX-512 block.
inline constexpr uint8_t kCanaryByte = 0x3C;
inline constexpr std::size_t kCanaryBytes = 64;

class Call {
 public:
  explicit Call(const ExportInfo& fn);
  explicit Call(std::string_view exportName);

  const ExportInfo& fn() const { return *fn_; }

  // Pointer arguments; element type and size come from the signature.
  Call& in(std::string_view name, std::size_t count);     // zero-filled input
  Call& out(std::string_view name, std::size_t count);    // guard-filled output
  Call& inout(std::string_view name, std::size_t count);  // zero-filled in/out
  template <class T>
  Call& in(std::string_view name, const std::vector<T>& values) {
    return set_values(name, Role::In, values);
  }
  template <class T>
  Call& inout(std::string_view name, const std::vector<T>& values) {
    return set_values(name, Role::InOut, values);
  }
  // Opaque memory (state blocks, work buffers): guard-filled, in/out.
  Call& bytes(std::string_view name, std::size_t count, std::size_t misalign = 0);
  Call& null(std::string_view name);
  Call& scalar(std::string_view name, int64_t value);
  Call& scalar_f(std::string_view name, double value);
  // A pointer-array argument whose count entries point into buffer
  // `backing`, entry m at element m*stride.
  Call& frames(std::string_view name, std::string_view backing, std::size_t count, std::size_t stride);
  // A pointer-array argument with its own zero-filled backing of count
  // frames of `stride` elements (the element type the entries point to);
  // entry m points at element m*stride, or at the backing's start when the
  // backing is shorter (placeholder frames of failing calls). buf() and
  // snapshot() of such an argument give the backing.
  // minBacking: at least this many elements of backing (placeholders).
  Call& frames(std::string_view name, std::size_t count, std::size_t stride, std::size_t minBacking = 0);
  // Passes the pointer `count` elements past the start of the argument's
  // buffer (history in front of a block); buf() still gives the whole
  // buffer from its start.
  Call& offset(std::string_view name, std::size_t count);
  // Declares that an opaque buffer (a state block formatted in place) holds
  // pointers into itself at these byte offsets from its first 16-byte
  // boundary: copies of the call rebase them onto their own memory, and
  // snapshot() shows them as offsets, so that copies compare equal.
  Call& self_pointers(std::string_view name, std::vector<std::size_t> offsets);

  // Access to a pointer argument's memory as elements of type T.
  template <class T>
  std::span<T> buf(std::string_view name) {
    Arg& a = arg(name);
    if (a.role == Role::Frames && a.backing == kOwnBacking)
      return {reinterpret_cast<T*>(a.own.data()), a.own_size() / sizeof(T)};
    const std::size_t skip = a.offsetBytes ? 0 : a.misalign;
    return {reinterpret_cast<T*>(a.mem.data() + skip), (a.mem_size() - skip) / sizeof(T)};
  }
  int64_t scalar_value(std::string_view name) const;
  Role role(std::string_view name) const;
  bool has(std::string_view name) const;  // set by the builder

  // Runs the export; returns the status (or the pointer result as integer).
  // Throws std::runtime_error when the export wrote past the end of a
  // buffer (a changed canary byte).
  int64_t invoke();

  // Every byte of every pointer argument, in parameter order.
  std::vector<std::vector<uint8_t>> snapshot() const;

  // Fills In/InOut buffers with uniform random values of their element type
  // (floats in [-1, 1)).
  void randomize_inputs(std::mt19937& rng);

  // Human-readable argument summary for failure messages.
  std::string describe() const;

  Call(const Call& other);
  Call& operator=(const Call& other);
  Call(Call&&) = default;
  Call& operator=(Call&&) = default;

 private:
  struct Arg {
    Role role = Role::Null;
    bool set = false;
    std::vector<uint8_t> mem;
    std::size_t misalign = 0;
    Slot scalar;
    int backing = -1;  // Frames: index of the buffer argument, or kOwnBacking
    std::size_t frameCount = 0, frameStride = 0;
    std::vector<uint8_t> own;               // Frames with their own backing
    bool offsetBytes = false;               // misalign is an element offset (offset())
    std::vector<std::size_t> selfPointers;  // byte offsets from the aligned start
    bool guarded = false;                   // mem ends in kCanaryBytes canary bytes
    bool ownGuarded = false;                // own ends in kCanaryBytes canary bytes
    std::size_t mem_size() const { return mem.size() - (guarded ? kCanaryBytes : 0); }
    std::size_t own_size() const { return own.size() - (ownGuarded ? kCanaryBytes : 0); }
  };
  void check_canaries() const;
  static constexpr int kOwnBacking = -2;
  void rebase_self_pointers(const Call& from);
  Arg& arg(std::string_view name);
  const Arg& arg(std::string_view name) const;
  int index(std::string_view name) const;
  Call& buffer(std::string_view name, Role role, std::size_t count, uint8_t fill);
  template <class T>
  Call& set_values(std::string_view name, Role role, const std::vector<T>& values) {
    const ParamInfo& p = fn_->params[static_cast<std::size_t>(index(name))];
    if (p.elemSize == 0 || (values.size() * sizeof(T)) % p.elemSize != 0)
      throw std::runtime_error(std::string(name) + ": values do not fill whole elements");
    buffer(name, role, values.size() * sizeof(T) / p.elemSize, 0);
    std::memcpy(arg(name).mem.data(), values.data(), values.size() * sizeof(T));  // canary behind
    return *this;
  }

  const ExportInfo* fn_;
  std::vector<Arg> args_;
};

}  // namespace vt
