// Contract of the sub-band step-size controller (frame arrays); the other
// control exports are rows in contracts.txt.
#include <cmath>

#include "tests/support/contract.h"

namespace {

constexpr int kBands = 33;
constexpr int kSegments = 6;

std::vector<vt::Check> subband_count_checks() {
  return {vt::bad("numSubbands", 0, vspStsFIRLenErr), vt::bad("numSubbands", 4098, vspStsFIRLenErr)};
}

vt::Check bad_f(const char* param, double value, int expected) {
  return vt::custom(
      std::string(param) + " = " + std::to_string(value), {param}, [=](vt::Call& c) { c.scalar_f(param, value); },
      expected);
}

// Smoothed powers are not negative: the random inputs' magnitudes.
void non_negative(vt::Call& call, const char* name) {
  for (float& v : call.buf<float>(name)) v = std::fabs(v);
}

}  // namespace

VT_CONTRACT(legacy90vspsSubbandStepSize_EC_32f) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.frames("inputFrames", kSegments, kBands).in("errorFrame", kBands).in("estimateFrame", kBands);
    call.inout("errorPower", kBands).out("step", kBands);
    call.scalar("numSegments", kSegments).scalar("numSubbands", kBands);
    return call.scalar_f("leak", 0.5).scalar_f("muMin", 0.0).scalar_f("muMax", 0.8).scalar_f("delta", 1e-4);
  };
  c.checks = subband_count_checks();
  c.checks.push_back(vt::bad("numSegments", 0, vspStsRangeErr));
  c.checks.push_back(vt::bad("numSegments", 256, vspStsRangeErr));
  c.checks.push_back(bad_f("leak", -0.1, vspStsRangeErr));
  c.checks.push_back(bad_f("leak", 1.01, vspStsRangeErr));
  c.checks.push_back(bad_f("muMin", -1e-6, vspStsRangeErr));
  c.checks.push_back(bad_f("muMax", -1.0, vspStsRangeErr));
  c.checks.push_back(bad_f("muMax", 2.5, vspStsRangeErr));
  c.checks.push_back(bad_f("delta", 0.0, vspStsRangeErr));
  c.checks.push_back(bad_f("delta", INFINITY, vspStsRangeErr));
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    non_negative(call, "errorPower");
    call.scalar_f("leak", double(rng() % 1001) / 1000.0);
    call.scalar_f("muMin", double(rng() % 3) / 10.0);
  };
  return c;
}
