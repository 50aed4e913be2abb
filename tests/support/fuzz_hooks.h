// Building blocks of the contracts' fuzz hooks: integer arguments chosen
// around their limits and far outside, buffers sized exactly to what a call
// reads and writes, inputs filled from the fuzzer's bytes, null pointers,
// and the expected status as the first failing check in documented order.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>

#include "tests/support/call.h"
#include "tests/support/fuzz_input.h"

namespace vt::fz {

// Buffers above this many bytes are not fuzzed (the input is skipped).
inline constexpr int64_t kMaxBytes = int64_t(1) << 20;

// An integer argument: a value in [lo, hi] (a range straddling the valid
// limits), or, when the input says so, a value far outside.
inline int64_t pick(FuzzInput& in, std::string_view param, int64_t lo, int64_t hi) {
  int64_t v = in.scalar(param, lo, hi);
  if (in.choice(std::string(param) + " far")) {
    static constexpr std::array<int64_t, 10> kFar = {INT32_MIN,     INT32_MIN + 1, -65536,           -32768,
                                                     32767,         65536,         int64_t(1) << 28, int64_t(1) << 30,
                                                     INT32_MAX - 1, INT32_MAX};
    v = kFar[static_cast<std::size_t>(in.scalar("far", 0, kFar.size() - 1))];
  }
  return v;
}

// The element count of a buffer whose documented size is `n` when the call
// is valid (`valid`), else one element (the call must fail before reading
// it). Throws FuzzSkip when the buffer would exceed kMaxBytes.
inline std::size_t count(bool valid, int64_t n, int64_t elemBytes = 8) {
  if (!valid || n < 1) return 1;
  if (n > kMaxBytes / elemBytes) throw FuzzSkip{};
  return static_cast<std::size_t>(n);
}

// Replaces non-finite floats by 0 and limits magnitudes to `limit`.
inline void finite(std::span<float> v, float limit = 1e30f) {
  for (float& x : v) x = std::isfinite(x) ? std::fmax(-limit, std::fmin(limit, x)) : 0.0f;
}
inline void finite(std::span<double> v, double limit = 1e300) {
  for (double& x : v) x = std::isfinite(x) ? std::fmax(-limit, std::fmin(limit, x)) : 0.0;
}

inline bool listed(std::initializer_list<std::string_view> names, std::string_view name) {
  for (std::string_view n : names)
    if (n == name) return true;
  return false;
}

// Fills every In/InOut buffer (state blocks excepted) and pointer-array
// backing from the input. Floats keep whatever the bytes say: NaNs of any
// sign and payload and infinities too (float functions store canonical
// NaNs, so the levels must still agree); a hook that needs finite values
// in a buffer applies finite() to it afterwards.
inline void fill_inputs(Call& call, FuzzInput& in) {
  for (const ParamInfo& p : call.fn().params) {
    if (!p.isPointer || !call.has(p.name)) continue;
    const Role r = call.role(p.name);
    const Elem e = r == Role::Frames ? p.frameElem : p.elem;
    if (r != Role::In && r != Role::InOut && r != Role::Frames) continue;
    if (e == Elem::Opaque || e == Elem::Pointer || e == Elem::U8) continue;
    in.fill(p.name, call.buf<uint8_t>(p.name));
  }
}

// Passes null for each pointer parameter the input chooses (every pointer
// parameter, or those listed); true when any was nulled.
inline bool nulls(Call& call, FuzzInput& in, std::initializer_list<std::string_view> only = {}) {
  bool any = false;
  for (const ParamInfo& p : call.fn().params) {
    if (!p.isPointer || (only.size() > 0 && !listed(only, p.name))) continue;
    if (in.choice(p.name + " null")) {
      call.null(p.name);
      any = true;
    }
  }
  return any;
}

// The first failing check in documented order decides the status.
class Expect {
 public:
  Expect& fail_if(bool failing, int status) {
    if (failing && status_ == FuzzInput::kAnyValid) status_ = status;
    return *this;
  }
  int status() const { return status_; }
  bool failing() const { return status_ != FuzzInput::kAnyValid; }
  // Hands the status to the driver; returns true (the hook's result).
  bool to(FuzzInput& in, bool mayWrite = false) const {
    in.expect(status_, mayWrite);
    return true;
  }

 private:
  int status_ = FuzzInput::kAnyValid;
};

// Misaligns a state block by a fuzzer-chosen 0..15 bytes.
inline std::size_t misalign(FuzzInput& in) { return static_cast<std::size_t>(in.scalar("misalign", 0, 15)); }

}  // namespace vt::fz
