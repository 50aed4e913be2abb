// Contracts of the full-band and sub-band adaptive filters.
#include <algorithm>
#include <cmath>
#include <functional>
#include <tuple>

#include "tests/ec/ec_fuzz.h"
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

namespace fz = vt::fz;

// Fuzz hook of the full-band filters: len and tapLen around 1, the
// reference sized to its history (tapLen - 1 samples, tapLen with the
// one-sample update lag) plus the block.
bool fuzz_full_band(vt::Call& call, vt::FuzzInput& in, bool withStep) {
  const int64_t len = fz::pick(in, "len", -2, 600), taps = fz::pick(in, "tapLen", -2, 300);
  const bool ok = len >= 1 && taps >= 1;
  if (ok && len * taps > 200000) return false;
  const int64_t history = withStep ? taps : taps - 1;
  if (ok)
    call.in("reference", history + len).offset("reference", history);
  else
    call.in("reference", 1);
  const auto n = fz::count(ok, len), t = fz::count(ok, taps);
  call.in("nearEnd", n).out("error", n).scalar("len", len).scalar("tapLen", taps);
  if (withStep)
    call.in("step", n).inout("coeffs", t).inout("carriedError", 1);
  else
    call.in("coeffs", t);
  fz::fill_inputs(call, in);
  return fz::Expect().fail_if(fz::nulls(call, in), vspStsNullPtrErr).fail_if(!ok, vspStsBadArgErr).to(in);
}

// Fuzz hook of the sub-band filters and updates, driven by a description:
// `first`: the economical forms (firstSubband, whose range check comes
// before the sub-band count's); `sfLo..sfHi`: the accepted scale factors
// (no scale factor when sfLo > sfHi); `projection`: a projection order
// 1..16; `frameArrays`: the pointer arrays and their frame counts;
// `perSubband`: buffers of numSubbands elements times a factor;
// `negative`: true when a step the call must refuse is present (checked
// last, vspStsSizeErr).
struct SubbandHook {
  bool first = false;
  int sfLo = 1, sfHi = 0;
  bool projection = false;
  // name, frames (0: numSegments, -1: numSegments + P - 1, -2: P)
  std::vector<std::pair<const char*, int>> frameArrays = {{"inputFrames", 0}, {"coeffFrames", 0}};
  std::vector<std::tuple<const char*, vt::Role, int>> perSubband = {};
  std::function<bool(vt::Call&)> negative = nullptr;
};
bool fuzz_subband(vt::Call& call, vt::FuzzInput& in, const SubbandHook& h) {
  const ect::SubbandCounts c = ect::pick_counts(in);
  const int64_t firstSubband = h.first ? fz::pick(in, "firstSubband", -2, std::max<int64_t>(c.subbands, 0) + 2) : 0;
  const int64_t sf = h.sfLo <= h.sfHi ? fz::pick(in, "scaleFactor", h.sfLo - 2, h.sfHi + 2) : 0;
  const int64_t order = h.projection ? fz::pick(in, "projectionOrder", -2, 18) : 1;
  const bool orderOk = order >= 1 && order <= 16;
  const bool firstOk = firstSubband >= 0 && firstSubband <= c.subbands;
  const bool sfOk = h.sfLo > h.sfHi || (sf >= h.sfLo && sf <= h.sfHi);
  const bool ok = c.segmentsOk && c.subbandsOk && firstOk && sfOk && orderOk;
  if (ok && (c.segments + order) * c.subbands * 8 > fz::kMaxBytes) return false;
  if (ok && c.subbands * order * order * c.segments > 4000000) return false;
  for (const auto& [name, extra] : h.frameArrays) {
    const int64_t frames = extra == -1 ? c.segments + order - 1 : extra == -2 ? order : c.segments;
    ect::frames(call, name, ok, frames, c.subbands);
  }
  for (const auto& [name, role, factor] : h.perSubband) {
    const auto n = fz::count(ok, c.subbands * factor);
    if (role == vt::Role::In)
      call.in(name, n);
    else if (role == vt::Role::Out)
      call.out(name, n);
  }
  call.scalar("numSegments", c.segments).scalar("numSubbands", c.subbands);
  if (h.first) call.scalar("firstSubband", firstSubband);
  if (h.sfLo <= h.sfHi) call.scalar("scaleFactor", sf);
  if (h.projection) call.scalar("projectionOrder", order);
  fz::fill_inputs(call, in);
  const bool negative = ok && h.negative && h.negative(call);
  fz::Expect e;
  e.fail_if(fz::nulls(call, in), vspStsNullPtrErr);
  if (h.first) e.fail_if(!c.segmentsOk || !firstOk, vspStsRangeErr);
  e.fail_if(!c.subbandsOk, vspStsFIRLenErr).fail_if(!c.segmentsOk || !orderOk, vspStsRangeErr);
  return e.fail_if(!sfOk, vspStsRangeErr).fail_if(negative, vspStsSizeErr).to(in);
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

// The economical forms: firstSubband's range before the sub-band count.
std::vector<vt::Check> low_checks() {
  return {vt::bad("numSegments", 0, vspStsRangeErr),     vt::bad("numSegments", 256, vspStsRangeErr),
          vt::bad("firstSubband", -1, vspStsRangeErr),   first_above(),
          vt::bad("numSubbands", 4098, vspStsFIRLenErr), vt::bad("scaleFactor", -1, vspStsRangeErr),
          vt::bad("scaleFactor", 32, vspStsRangeErr)};
}

std::vector<vt::Check> count_checks() {
  return {vt::bad("numSubbands", 0, vspStsFIRLenErr), vt::bad("numSubbands", 4098, vspStsFIRLenErr),
          vt::bad("numSegments", 0, vspStsRangeErr), vt::bad("numSegments", 256, vspStsRangeErr)};
}

// The full-band filters: one contract shape, the adapting ones with their
// own random steps (float: small positive; Q15: full range, so that the
// 32-bit wrap is exercised, or small).
vt::Contract full_band_contract(const char* name, bool withStep) {
  vt::Contract c;
  c.valid = [=] { return full_band(name, withStep ? 1 : 0, withStep); };
  c.checks = length_checks();
  c.fuzz = [=](vt::Call& call, vt::FuzzInput& in) { return fuzz_full_band(call, in, withStep); };
  return c;
}

}  // namespace

VT_CONTRACT(legacy90vspsFIR_EC_32f) { return full_band_contract(name, false); }
VT_CONTRACT(legacy90vspsFIR_EC_16s) { return full_band_contract(name, false); }

VT_CONTRACT(legacy90vspsNLMS_EC_32f) {
  vt::Contract c = full_band_contract(name, true);
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    positive_steps(call, rng, 0.05f);
  };
  return c;
}

VT_CONTRACT(legacy90vspsNLMS_EC_16s) {
  vt::Contract c = full_band_contract(name, true);
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    if (rng() % 2)
      for (Vsp32s& s : call.buf<Vsp32s>("step")) s = static_cast<Vsp32s>(rng() % 4096);
  };
  return c;
}

VT_CONTRACT(legacy90vspsFIRSubband_EC_32fc) {
  vt::Contract c;
  c.valid = [=] { return subband(name, 6, 33, true); };
  c.checks = count_checks();
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    return fuzz_subband(call, in, {.perSubband = {{"output", vt::Role::Out, 1}}});
  };
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
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    return fuzz_subband(call, in, {.sfLo = -31, .sfHi = 31, .perSubband = {{"output", vt::Role::Out, 1}}});
  };
  return c;
}

VT_CONTRACT(legacy90vspsFIRSubbandLow_EC_32sc_Sfs) {
  vt::Contract c;
  c.valid = [=] { return subband(name, 6, 33, true).scalar("firstSubband", 2).scalar("scaleFactor", 20); };
  c.checks = low_checks();
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("firstSubband", static_cast<int>(rng() % 34));
    call.scalar("scaleFactor", static_cast<int>(rng() % 32));
  };
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    return fuzz_subband(call, in, {.first = true, .sfLo = 0, .sfHi = 31, .perSubband = {{"output", vt::Role::Out, 1}}});
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
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    return fuzz_subband(
        call, in,
        {.perSubband = {{"step", vt::Role::In, 1}, {"errorFrame", vt::Role::In, 1}}, .negative = [](vt::Call& k) {
           auto s = k.buf<double>("step");
           return std::any_of(s.begin(), s.end(), [](double v) { return v < 0; });
         }});
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
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    return fuzz_subband(call, in,
                        {.sfLo = 0,
                         .sfHi = 31,
                         .perSubband = {{"step", vt::Role::In, 2}, {"errorFrame", vt::Role::In, 1}},
                         .negative = [](vt::Call& k) {
                           auto s = k.buf<Vsp32s>("step");
                           for (std::size_t i = 0; i < s.size(); i += 2)
                             if (s[i] < 0) return true;
                           return false;
                         }});
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
  c.checks = low_checks();
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    auto step = call.buf<Vsp32s>("step");
    for (std::size_t k = 1; k < step.size(); k += 2) step[k] = static_cast<Vsp32s>(rng() % 100) - 10;
    call.scalar("firstSubband", static_cast<int>(rng() % 34));
  };
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    return fuzz_subband(
        call, in,
        {.first = true,
         .sfLo = 0,
         .sfHi = 31,
         .perSubband = {{"errorFrame", vt::Role::In, 1}, {"workFrame", vt::Role::Out, 1}, {"step", vt::Role::In, 2}}});
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
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    return fuzz_subband(call, in,
                        {.projection = true,
                         .frameArrays = {{"inputFrames", -1}, {"errorFrames", -2}, {"coeffFrames", 0}},
                         .perSubband = {{"stepData", vt::Role::In, 2}},
                         .negative = [](vt::Call& k) {
                           auto s = k.buf<double>("stepData");
                           return std::any_of(s.begin(), s.end(), [](double v) { return !(v >= 0); });
                         }});
  };
  return c;
}
