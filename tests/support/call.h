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

  // Access to a pointer argument's memory as elements of type T.
  template <class T>
  std::span<T> buf(std::string_view name) {
    Arg& a = arg(name);
    return {reinterpret_cast<T*>(a.mem.data() + a.misalign), (a.mem.size() - a.misalign) / sizeof(T)};
  }
  int64_t scalar_value(std::string_view name) const;
  Role role(std::string_view name) const;
  bool has(std::string_view name) const;  // set by the builder

  // Runs the export; returns the status (or the pointer result as integer).
  int64_t invoke();

  // Every byte of every pointer argument, in parameter order.
  std::vector<std::vector<uint8_t>> snapshot() const;

  // Fills In/InOut buffers with uniform random values of their element type
  // (floats in [-1, 1)).
  void randomize_inputs(std::mt19937& rng);

  // Human-readable argument summary for failure messages.
  std::string describe() const;

 private:
  struct Arg {
    Role role = Role::Null;
    bool set = false;
    std::vector<uint8_t> mem;
    std::size_t misalign = 0;
    Slot scalar;
    int backing = -1;  // Frames: index of the buffer argument
    std::size_t frameCount = 0, frameStride = 0;
  };
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
    std::memcpy(arg(name).mem.data(), values.data(), values.size() * sizeof(T));
    return *this;
  }

  const ExportInfo* fn_;
  std::vector<Arg> args_;
};

}  // namespace vt
