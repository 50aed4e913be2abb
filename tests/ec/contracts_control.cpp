// Contracts of the canceller's control: step-size controllers, double-talk
// detectors and the noise filter.
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

vt::Call geigel(const char* name, int len, int history) {
  vt::Call c(name);
  c.in("reference", static_cast<std::size_t>(len)).in("nearEnd", static_cast<std::size_t>(len));
  c.scalar("len", len).inout("maxHistory", static_cast<std::size_t>(history)).scalar("historyLen", history);
  c.scalar("hangLen", 10).inout("hangCount", 1).out("result", 1);
  return c;
}

}  // namespace

VT_CONTRACT(legacy90vspsFullbandStepSize_EC_32f) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("errorFrame", kBands).in("estimateFrame", kBands).inout("memory", 2 * kBands + 2).out("leak", 1);
    return call.scalar("numSubbands", kBands).scalar_f("smoothing", 0.05);
  };
  c.checks = subband_count_checks();
  c.checks.push_back(bad_f("smoothing", 0.0, vspStsRangeErr));
  c.checks.push_back(bad_f("smoothing", 1.5, vspStsRangeErr));
  c.checks.push_back(bad_f("smoothing", NAN, vspStsRangeErr));
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    non_negative(call, "memory");
  };
  return c;
}

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

VT_CONTRACT(legacy90vspsDoubleTalkDetect_EC_32f) {
  vt::Contract c;
  c.valid = [=] { return geigel(name, 32, 16).scalar_f("threshold", 0.5); };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("historyLen", 0, vspStsSizeErr),
              bad_f("threshold", -0.5, vspStsRangeErr), bad_f("threshold", NAN, vspStsRangeErr),
              vt::bad("hangLen", -1, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    non_negative(call, "maxHistory");
    call.buf<int>("hangCount")[0] = static_cast<int>(rng() % 11);
  };
  return c;
}

VT_CONTRACT(legacy90vspsDoubleTalkDetect_EC_16s) {
  vt::Contract c;
  c.valid = [=] { return geigel(name, 40, 12).scalar("threshold", 16384); };
  c.checks = {vt::bad("len", -1, vspStsSizeErr), vt::bad("historyLen", 0, vspStsSizeErr),
              vt::bad("threshold", -1, vspStsRangeErr), vt::bad("hangLen", -3, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.buf<int>("hangCount")[0] = static_cast<int>(rng() % 11);
    call.scalar("threshold", static_cast<int>(rng() % 32768));
  };
  return c;
}

VT_CONTRACT(legacy90vspsNoiseFilter_EC_32f) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.inout("errorFrame", kBands).in("estimateFrame", kBands).inout("memory", 3 * kBands).inout("seed", 1);
    call.scalar("numSubbands", kBands);
    return call.scalar_f("leak", 0.3).scalar_f("overSuppression", 2.0).scalar_f("gainFloor", 0.01);
  };
  c.checks = subband_count_checks();
  c.checks.push_back(bad_f("leak", 1.5, vspStsRangeErr));
  c.checks.push_back(bad_f("overSuppression", -1.0, vspStsRangeErr));
  c.checks.push_back(bad_f("overSuppression", 101.0, vspStsRangeErr));
  c.checks.push_back(bad_f("gainFloor", 1.1, vspStsRangeErr));
  c.checks.push_back(bad_f("gainFloor", NAN, vspStsRangeErr));
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    non_negative(call, "memory");
    call.scalar_f("leak", double(rng() % 1001) / 1000.0);
  };
  return c;
}
