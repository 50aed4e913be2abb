// Contracts of the 2100 Hz tone detector itself (its GetStateSize and Init
// are rows in contracts.txt).
#include <bit>
#include <cmath>
#include <cstring>
#include <numbers>

#include "tests/support/contract.h"
#include "tests/support/fuzz_hooks.h"

namespace {

vt::Call detector(const char* name, bool fixedPoint, int rate, int len) {
  vt::Call c(name);
  c.in("signal", static_cast<std::size_t>(len)).scalar("len", len).out("result", 1);
  c.bytes("state", fixedPoint ? 72 : 80, 6);
  auto* block = c.buf<uint8_t>("state").data();
  if (fixedPoint)
    legacy90vspsToneDetectInit_EC_16s(block, rate);
  else
    legacy90vspsToneDetectInit_EC_32f(block, rate);
  return c;
}

// A 2100 Hz tone with a phase reversal at a random place, plus noise.
template <class T>
void tone_with_reversal(vt::Call& c, std::mt19937& rng, double rate, double scale) {
  auto s = c.buf<T>("signal");
  const std::size_t flip = rng() % (s.size() + 1);
  const double amp = 0.1 + 0.8 * double(rng() % 1000) / 1000.0;
  std::normal_distribution<double> noise(0.0, 0.01);
  for (std::size_t n = 0; n < s.size(); ++n) {
    const double v =
        amp * std::sin(2 * std::numbers::pi * 2100.0 * double(n) / rate + (n >= flip ? std::numbers::pi : 0.0)) +
        noise(rng);
    s[n] = static_cast<T>(v * scale);
  }
}

namespace fz = vt::fz;

// Stores a fuzzed value at a byte offset of the formatted state.
template <class T>
void corrupt(uint8_t* state, std::size_t offset, T value) {
  std::memcpy(state + offset, &value, sizeof value);
}

// The detector on a state formatted by Init at either rate, whose running
// fields are then set, by choice, to any value a long run can reach:
// histories, energies (fixed point 0..2^30, float any finite non-negative
// value), the tone run and reversal count (0..INT32_MAX) and the gap run
// (0..its limit). The
// coefficient pointer, alpha and the limits keep Init's values.
bool fuzz_detect(vt::Call& call, vt::FuzzInput& in, bool fixedPoint) {
  const int64_t len = fz::pick(in, "len", -2, 5000);
  const auto n = fz::count(len >= 1, len, 4);
  const int rate = in.choice("16000 Hz") ? 16000 : 8000;
  call.in("signal", static_cast<std::size_t>(n)).scalar("len", len).out("result", 1);
  call.bytes("state", fixedPoint ? 72 : 80, fz::misalign(in));
  uint8_t* state = call.buf<uint8_t>("state").data();
  if (fixedPoint)
    legacy90vspsToneDetectInit_EC_16s(state, rate);
  else
    legacy90vspsToneDetectInit_EC_32f(state, rate);
  fz::fill_inputs(call, in);
  state += (16 - reinterpret_cast<uintptr_t>(state) % 16) % 16;
  if (in.choice("corrupt state")) {
    uint32_t w[10];
    in.fill("state fields", {reinterpret_cast<uint8_t*>(w), sizeof w});
    const std::size_t counters[3] = {24, 36, 44};  // fixed point: tone run, gap run, reversals
    const std::size_t countersF[3] = {36, 48, 56};
    int32_t gapLimit;  // the gap run never exceeds its limit
    std::memcpy(&gapLimit, state + (fixedPoint ? 40 : 52), sizeof gapLimit);
    w[1] %= static_cast<uint32_t>(gapLimit) + 1;
    for (int k = 0; k < 3; ++k) corrupt(state, (fixedPoint ? counters : countersF)[k], int32_t(w[k] & 0x7FFFFFFF));
    for (int k = 0; k < 2; ++k) {  // Ey, Ex
      if (fixedPoint)
        corrupt(state, 8 + 4 * std::size_t(k), int32_t(w[3 + k] % ((1u << 30) + 1)));
      else
        corrupt(state, 8 + 4 * std::size_t(k),
                std::isfinite(std::bit_cast<float>(w[3 + k] & 0x7FFFFFFF)) ? std::bit_cast<float>(w[3 + k] & 0x7FFFFFFF)
                                                                           : 0.0f);
    }
    for (int k = 0; k < 4; ++k) {  // x1, x2, y1, y2
      if (fixedPoint)
        corrupt(state, 16 + 2 * std::size_t(k), int16_t(w[5 + k]));
      else
        corrupt(state, 16 + 4 * std::size_t(k), float(int32_t(w[5 + k])) / 65536.0f);
    }
  }
  return fz::Expect().fail_if(fz::nulls(call, in), vspStsNullPtrErr).fail_if(len < 1, vspStsBadArgErr).to(in);
}

// The detector on a formatted state: a tone with a phase reversal at a
// random place (a third of the trials: uniform samples).
vt::Contract detect_contract(const char* name, bool fixedPoint, int rate, int len) {
  vt::Contract c;
  c.valid = [=] { return detector(name, fixedPoint, rate, len); };
  c.checks = {vt::bad("len", 0, vspStsBadArgErr), vt::bad("len", -5, vspStsBadArgErr)};
  c.randomize = [=](vt::Call& call, std::mt19937& rng) {
    if (rng() % 3 == 0)
      call.randomize_inputs(rng);
    else if (fixedPoint)
      tone_with_reversal<Vsp16s>(call, rng, rate, 32767.0);
    else
      tone_with_reversal<Vsp32f>(call, rng, rate, 1.0);
  };
  c.fuzz = [=](vt::Call& call, vt::FuzzInput& in) { return fuzz_detect(call, in, fixedPoint); };
  return c;
}

}  // namespace

VT_CONTRACT(legacy90vspsToneDetect_EC_16s) { return detect_contract(name, true, 8000, 160); }
VT_CONTRACT(legacy90vspsToneDetect_EC_32f) { return detect_contract(name, false, 16000, 320); }
