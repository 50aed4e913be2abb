// Contracts of the sub-band filter bank.
#include <cmath>

#include "tests/ec/ec_test_util.h"
#include "tests/support/contract.h"

namespace {

vt::Call get_size(const char* name) {
  return vt::Call(name)
      .scalar("order", 5)
      .scalar("windowLen", 128)
      .out("stateSize", 1)
      .out("initBufSize", 1)
      .out("workBufSize", 1);
}

std::vector<vt::Check> get_size_checks() {
  return {vt::bad("order", 0, vspStsBadArgErr),
          vt::bad("windowLen", 0, vspStsBadArgErr),
          vt::bad("windowLen", -32, vspStsBadArgErr),
          vt::null_check("stateSize"),
          vt::null_check("initBufSize"),
          vt::null_check("workBufSize"),
          vt::bad("windowLen", 100, vspStsBadArgErr),
          vt::custom(
              "order 14", {"order", "windowLen"}, [](vt::Call& c) { c.scalar("order", 14).scalar("windowLen", 16384); },
              vspStsBadArgErr)};
}

void random_get_size(vt::Call& c, std::mt19937& rng) {
  const int order = 1 + static_cast<int>(rng() % 13);
  c.scalar("order", order).scalar("windowLen", (1 + static_cast<int>(rng() % 4)) << order);
}

template <class W>
vt::Call init_call(const char* name, bool fixedPoint) {
  const ect::SubbandSizes sz = ect::subband_sizes(fixedPoint, 5, 96);
  vt::Call c(name);
  c.bytes("state", static_cast<std::size_t>(sz.state), 3).bytes("initBuffer", static_cast<std::size_t>(sz.init), 1);
  c.scalar("order", 5).scalar("frameSize", 24).scalar("windowLen", 96).in("window", 96);
  auto w = c.buf<W>("window");
  for (std::size_t i = 0; i < w.size(); ++i)
    w[i] = static_cast<W>(fixedPoint ? 8000.0 - 60.0 * double(i) : 0.01 * double(i));
  c.self_pointers("state", ect::subband_self_pointers(fixedPoint));
  return c;
}

std::vector<vt::Check> init_checks() {
  return {vt::bad("order", 0, vspStsBadArgErr),
          vt::bad("frameSize", 0, vspStsBadArgErr),
          vt::bad("frameSize", 33, vspStsBadArgErr),
          vt::bad("windowLen", 0, vspStsBadArgErr),
          vt::null_check("state"),
          vt::bad("windowLen", 100, vspStsBadArgErr),
          vt::custom(
              "built-in window for (5, 24, 96)", {"window"}, [](vt::Call& c) { c.null("window"); }, vspStsBadArgErr)};
}

// A working call on a formatted state (built-in window of (5, 24, 128) or
// (6, 44, 256)).
vt::Call working_call(const char* name, bool fixedPoint, bool analysis, int order) {
  const int frameSize = order == 5 ? 24 : 44, windowLen = order == 5 ? 128 : 256;
  const std::size_t bins = (std::size_t(1) << order) / 2 + 1;
  vt::Call c(name);
  if (analysis)
    c.in("source", static_cast<std::size_t>(frameSize)).out("destination", bins);
  else
    c.in("source", bins).out("destination", static_cast<std::size_t>(frameSize));
  if (fixedPoint) c.scalar("scaleFactor", analysis ? 4 : -2);
  ect::setup_subband_state(c, fixedPoint, order, frameSize, windowLen, {}, "state", "workBuffer", 5);
  return c;
}

std::vector<vt::Check> working_checks() {
  // Null checks first (default order), then a block Init never formatted.
  return {vt::custom(
      "unformatted state", {"state"},
      [](vt::Call& c) {
        auto s = c.buf<uint8_t>("state");
        std::fill(s.begin(), s.end(), uint8_t{0});
      },
      vspStsErr)};
}

}  // namespace

VT_CONTRACT(legacy90vspsSubbandProcessGetSize_16s) {
  vt::Contract c;
  c.valid = [=] { return get_size(name); };
  c.checks = get_size_checks();
  c.randomize = random_get_size;
  return c;
}

VT_CONTRACT(legacy90vspsSubbandProcessGetSize_32f) {
  vt::Contract c;
  c.valid = [=] { return get_size(name); };
  c.checks = get_size_checks();
  c.randomize = random_get_size;
  return c;
}

VT_CONTRACT(legacy90vspsSubbandProcessInit_16s) {
  vt::Contract c;
  c.valid = [=] { return init_call<Vsp16s>(name, true); };
  c.checks = init_checks();
  c.nullable = {"window", "initBuffer"};
  return c;
}

VT_CONTRACT(legacy90vspsSubbandProcessInit_32f) {
  vt::Contract c;
  c.valid = [=] { return init_call<Vsp32f>(name, false); };
  c.checks = init_checks();
  c.nullable = {"window", "initBuffer"};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    for (float& w : call.buf<float>("window")) w = std::fabs(w);
  };
  return c;
}

VT_CONTRACT(legacy90vspsSubbandAnalysis_16s32sc_Sfs) {
  vt::Contract c;
  c.valid = [=] { return working_call(name, true, true, 5); };
  c.checks = working_checks();
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);  // full-scale samples: the fold saturates
    call.scalar("scaleFactor", static_cast<int>(rng() % 24) - 4);
  };
  return c;
}

VT_CONTRACT(legacy90vspsSubbandAnalysis_32f32fc) {
  vt::Contract c;
  c.valid = [=] { return working_call(name, false, true, 6); };
  c.checks = working_checks();
  return c;
}

VT_CONTRACT(legacy90vspsSubbandSynthesis_32sc16s_Sfs) {
  vt::Contract c;
  c.valid = [=] { return working_call(name, true, false, 6); };
  c.checks = working_checks();
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    const int shift = static_cast<int>(rng() % 24);  // from full-range bins to small ones
    for (Vsp32sc& x : call.buf<Vsp32sc>("source")) x = {x.re >> shift, x.im >> shift};
    call.scalar("scaleFactor", static_cast<int>(rng() % 12) - 4);
  };
  return c;
}

VT_CONTRACT(legacy90vspsSubbandSynthesis_32fc32f) {
  vt::Contract c;
  c.valid = [=] { return working_call(name, false, false, 5); };
  c.checks = working_checks();
  return c;
}
