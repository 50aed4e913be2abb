// Contracts of the 2100 Hz tone detector.
#include <cmath>
#include <numbers>

#include "tests/support/contract.h"

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

}  // namespace

VT_CONTRACT(legacy90vspsToneDetectGetStateSize_EC_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).scalar("rate", 8000).out("size", 1); };
  c.checks = {vt::bad("rate", 11025, vspStsRangeErr), vt::bad("rate", 0, vspStsRangeErr)};
  return c;
}

VT_CONTRACT(legacy90vspsToneDetectGetStateSize_EC_32f) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).scalar("rate", 16000).out("size", 1); };
  c.checks = {vt::bad("rate", 8001, vspStsRangeErr), vt::bad("rate", -8000, vspStsRangeErr)};
  return c;
}

VT_CONTRACT(legacy90vspsToneDetectInit_EC_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).bytes("state", 72, 5).scalar("rate", 8000); };
  c.checks = {vt::bad("rate", 44100, vspStsRangeErr)};
  return c;
}

VT_CONTRACT(legacy90vspsToneDetectInit_EC_32f) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).bytes("state", 80, 13).scalar("rate", 16000); };
  c.checks = {vt::bad("rate", 32000, vspStsRangeErr)};
  return c;
}

VT_CONTRACT(legacy90vspsToneDetect_EC_16s) {
  vt::Contract c;
  c.valid = [=] { return detector(name, true, 8000, 160); };
  c.checks = {vt::bad("len", 0, vspStsBadArgErr), vt::bad("len", -5, vspStsBadArgErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    if (rng() % 3 == 0)
      call.randomize_inputs(rng);
    else
      tone_with_reversal<Vsp16s>(call, rng, 8000.0, 32767.0);
  };
  return c;
}

VT_CONTRACT(legacy90vspsToneDetect_EC_32f) {
  vt::Contract c;
  c.valid = [=] { return detector(name, false, 16000, 320); };
  c.checks = {vt::bad("len", 0, vspStsBadArgErr), vt::bad("len", -5, vspStsBadArgErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    if (rng() % 3 == 0)
      call.randomize_inputs(rng);
    else
      tone_with_reversal<Vsp32f>(call, rng, 16000.0, 1.0);
  };
  return c;
}
