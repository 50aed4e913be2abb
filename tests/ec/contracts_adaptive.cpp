// Contracts of the full-band and sub-band adaptive filters.
#include <cmath>

#include "tests/support/contract.h"

namespace {

constexpr int kLen = 48;
constexpr int kTaps = 20;

// reference with history in front of the block (tapLen - 1 + extra samples).
vt::Call full_band(const char* name, int extra, bool withStep) {
  vt::Call c(name);
  c.in("reference", kTaps - 1 + extra + kLen).offset("reference", kTaps - 1 + extra);
  c.in("nearEnd", kLen).out("error", kLen).scalar("len", kLen).scalar("tapLen", kTaps);
  if (withStep) {
    c.in("step", kLen).inout("coeffs", kTaps).inout("carriedError", 1);
  } else {
    c.in("coeffs", kTaps);
  }
  return c;
}

std::vector<vt::Check> length_checks() {
  return {vt::bad("len", 0, vspStsBadArgErr), vt::bad("len", -1, vspStsBadArgErr),
          vt::bad("tapLen", 0, vspStsBadArgErr), vt::bad("tapLen", INT32_MIN, vspStsBadArgErr)};
}

// Float steps: small and positive (a normalised step over the block).
void positive_steps(vt::Call& c, std::mt19937& rng, float scale) {
  for (float& s : c.buf<float>("step")) s = scale * float(rng() % 1000) / 1000.0f;
}

vt::Call subband(const char* name, int segments, int subbands, bool withOutput) {
  vt::Call c(name);
  c.frames("inputFrames", static_cast<std::size_t>(segments), static_cast<std::size_t>(subbands));
  c.frames("coeffFrames", static_cast<std::size_t>(segments), static_cast<std::size_t>(subbands));
  if (withOutput) c.out("output", static_cast<std::size_t>(subbands));
  c.scalar("numSegments", segments).scalar("numSubbands", subbands);
  return c;
}

// firstSubband above numSubbands: depends on both.
vt::Check first_above() {
  return vt::custom(
      "firstSubband > numSubbands", {"firstSubband", "numSubbands"},
      [](vt::Call& c) { c.scalar("firstSubband", c.scalar_value("numSubbands") + 1); }, vspStsRangeErr);
}

std::vector<vt::Check> count_checks() {
  return {vt::bad("numSubbands", 0, vspStsFIRLenErr), vt::bad("numSubbands", 4098, vspStsFIRLenErr),
          vt::bad("numSegments", 0, vspStsRangeErr), vt::bad("numSegments", 256, vspStsRangeErr)};
}

}  // namespace

VT_CONTRACT(legacy90vspsFIR_EC_32f) {
  vt::Contract c;
  c.valid = [=] { return full_band(name, 0, false); };
  c.checks = length_checks();
  return c;
}

VT_CONTRACT(legacy90vspsFIR_EC_16s) {
  vt::Contract c;
  c.valid = [=] { return full_band(name, 0, false); };
  c.checks = length_checks();
  return c;
}

VT_CONTRACT(legacy90vspsNLMS_EC_32f) {
  vt::Contract c;
  c.valid = [=] { return full_band(name, 1, true); };
  c.checks = length_checks();
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    positive_steps(call, rng, 0.05f);
  };
  return c;
}

VT_CONTRACT(legacy90vspsNLMS_EC_16s) {
  vt::Contract c;
  c.valid = [=] { return full_band(name, 1, true); };
  c.checks = length_checks();
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);  // full-range steps: the 32-bit wrap included
    if (rng() % 2)
      for (Vsp32s& s : call.buf<Vsp32s>("step")) s = static_cast<Vsp32s>(rng() % 4096);
  };
  return c;
}

VT_CONTRACT(legacy90vspsFIRSubband_EC_32fc) {
  vt::Contract c;
  c.valid = [=] { return subband(name, 6, 33, true); };
  c.checks = count_checks();
  return c;
}

VT_CONTRACT(legacy90vspsFIRSubband_EC_32sc_Sfs) {
  vt::Contract c;
  c.valid = [=] { return subband(name, 6, 33, true).scalar("scaleFactor", 20); };
  c.checks = count_checks();
  c.checks.push_back(vt::bad("scaleFactor", 32, vspStsRangeErr));
  c.checks.push_back(vt::bad("scaleFactor", -32, vspStsRangeErr));
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("scaleFactor", static_cast<int>(rng() % 63) - 31);
  };
  return c;
}

VT_CONTRACT(legacy90vspsFIRSubbandLow_EC_32sc_Sfs) {
  vt::Contract c;
  c.valid = [=] { return subband(name, 6, 33, true).scalar("firstSubband", 2).scalar("scaleFactor", 20); };
  c.checks = {vt::bad("numSegments", 0, vspStsRangeErr),     vt::bad("numSegments", 256, vspStsRangeErr),
              vt::bad("firstSubband", -1, vspStsRangeErr),   first_above(),
              vt::bad("numSubbands", 4098, vspStsFIRLenErr), vt::bad("scaleFactor", -1, vspStsRangeErr),
              vt::bad("scaleFactor", 32, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("firstSubband", static_cast<int>(rng() % 34));
    call.scalar("scaleFactor", static_cast<int>(rng() % 32));
  };
  return c;
}

VT_CONTRACT(legacy90vspsFIRSubbandCoeffUpdate_EC_32fc_I) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call = subband(name, 6, 33, false);
    call.in("step", 33).in("errorFrame", 33);
    return call;
  };
  c.checks = count_checks();
  c.checks.push_back(vt::custom(
      "negative step", {"step"}, [](vt::Call& k) { k.buf<double>("step")[7] = -1e-9; }, vspStsSizeErr));
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    for (double& s : call.buf<double>("step")) s = std::fabs(s);
  };
  return c;
}

VT_CONTRACT(legacy90vspsFIRSubbandCoeffUpdate_EC_32sc_I) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call = subband(name, 6, 33, false);
    call.in("step", 66).in("errorFrame", 33).scalar("scaleFactor", 24);
    return call;
  };
  c.checks = count_checks();
  c.checks.push_back(vt::bad("scaleFactor", -1, vspStsRangeErr));
  c.checks.push_back(vt::bad("scaleFactor", 32, vspStsRangeErr));
  c.checks.push_back(vt::custom(
      "negative mantissa", {"step"}, [](vt::Call& k) { k.buf<Vsp32s>("step")[10] = -5; }, vspStsSizeErr));
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    auto step = call.buf<Vsp32s>("step");
    for (std::size_t k = 0; k < step.size(); k += 2) {
      step[k] = static_cast<Vsp32s>(rng() & 0x7FFFFFFF);
      step[k + 1] = static_cast<Vsp32s>(rng() % 100) - 10;  // shifts both ways
    }
  };
  return c;
}

VT_CONTRACT(legacy90vspsFIRSubbandLowCoeffUpdate_EC_32sc_I) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call = subband(name, 6, 33, false);
    call.in("errorFrame", 33).out("workFrame", 33).in("step", 66);
    call.scalar("firstSubband", 3).scalar("scaleFactor", 24);
    return call;
  };
  c.checks = {vt::bad("numSegments", 0, vspStsRangeErr),     vt::bad("numSegments", 256, vspStsRangeErr),
              vt::bad("firstSubband", -1, vspStsRangeErr),   first_above(),
              vt::bad("numSubbands", 4098, vspStsFIRLenErr), vt::bad("scaleFactor", -1, vspStsRangeErr),
              vt::bad("scaleFactor", 32, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    auto step = call.buf<Vsp32s>("step");
    for (std::size_t k = 1; k < step.size(); k += 2) step[k] = static_cast<Vsp32s>(rng() % 100) - 10;
    call.scalar("firstSubband", static_cast<int>(rng() % 34));
  };
  return c;
}

VT_CONTRACT(legacy90vspsFIRSubbandAPCoeffUpdate_EC_32fc_I) {
  constexpr int kSeg = 5, kSub = 17, kOrder = 3;
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("stepData", 2 * kSub);
    for (double& s : call.buf<double>("stepData")) s = 0.5;
    call.frames("inputFrames", kSeg + kOrder - 1, kSub).frames("errorFrames", kOrder, kSub);
    call.frames("coeffFrames", kSeg, kSub);
    call.scalar("numSegments", kSeg).scalar("numSubbands", kSub).scalar("projectionOrder", kOrder);
    return call;
  };
  c.checks = count_checks();
  c.checks.push_back(vt::bad("projectionOrder", 0, vspStsRangeErr));
  c.checks.push_back(vt::bad("projectionOrder", 17, vspStsRangeErr));
  c.checks.push_back(vt::custom(
      "negative step", {"stepData"}, [](vt::Call& k) { k.buf<double>("stepData")[4] = -0.1; }, vspStsSizeErr));
  c.checks.push_back(vt::custom(
      "NaN regularisation", {"stepData"}, [](vt::Call& k) { k.buf<double>("stepData")[5] = std::nan(""); },
      vspStsSizeErr));
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    for (double& s : call.buf<double>("stepData")) s = std::fabs(s);
  };
  return c;
}
