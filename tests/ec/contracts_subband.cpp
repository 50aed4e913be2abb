// Contracts of the sub-band filter bank.
#include <cmath>
#include <cstring>

#include "tests/ec/ec_fuzz.h"
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
  return {
      vt::bad("order", 0, vspStsBadArgErr), vt::bad("frameSize", 0, vspStsBadArgErr),
      vt::bad("frameSize", 33, vspStsBadArgErr), vt::bad("windowLen", 0, vspStsBadArgErr), vt::null_check("state"),
      vt::bad("windowLen", 100, vspStsBadArgErr),
      vt::custom(
          "built-in window for (5, 24, 96)", {"window"}, [](vt::Call& c) { c.null("window"); }, vspStsBadArgErr),
      // Beyond the transform's range: refused before the window is copied.
      vt::custom(
          "order 14", {"order", "frameSize", "windowLen"},
          [](vt::Call& c) { c.scalar("order", 14).scalar("frameSize", 24).scalar("windowLen", 16384); }, vspStsErr)};
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

namespace fz = vt::fz;

// GetSize: order and windowLen around their limits; by choice a multiple of
// 2^order, or the multiples around the largest one whose state fits INT_MAX.
bool fuzz_get_size(vt::Call& call, vt::FuzzInput& in, bool fixedPoint) {
  const int64_t order = fz::pick(in, "order", -2, 16);
  int64_t len = fz::pick(in, "windowLen", -2, 70000);
  const bool orderOk = order >= 1 && order <= 13;
  const int64_t n = orderOk ? int64_t(1) << order : 0;
  if (orderOk && in.choice("multiple of 2^order")) len = (len & 0xFFFF) * n;
  if (orderOk && in.choice("near the size limit")) {
    int64_t k = 1;  // the largest multiple of n whose state fits INT_MAX
    while (ect::documented_sizes(fixedPoint, order, 2 * k * n).state <= INT32_MAX) k *= 2;
    for (int64_t step = k / 2; step >= 1; step /= 2)
      if (ect::documented_sizes(fixedPoint, order, (k + step) * n).state <= INT32_MAX) k += step;
    len = (k + in.scalar("beyond", 0, 1)) * n;
  }
  call.scalar("order", order).scalar("windowLen", len);
  call.out("stateSize", 1).out("initBufSize", 1).out("workBufSize", 1);
  const bool fits =
      orderOk && len >= 1 && len % n == 0 && ect::documented_sizes(fixedPoint, order, len).state <= INT32_MAX;
  return fz::Expect()
      .fail_if(order < 1 || len < 1, vspStsBadArgErr)
      .fail_if(fz::nulls(call, in), vspStsNullPtrErr)
      .fail_if(!fits, vspStsBadArgErr)
      .to(in);
}

// Init: order, frameSize and windowLen around their limits (windowLen by
// choice a multiple of 2^order), the built-in window by a null window, a
// null init buffer by choice; blocks of the documented sizes.
template <class W>
bool fuzz_init(vt::Call& call, vt::FuzzInput& in, bool fixedPoint) {
  const int64_t order = fz::pick(in, "order", -2, 15);
  const int64_t n = order >= 1 && order <= 30 ? int64_t(1) << order : INT64_MAX;
  const int64_t frameSize = fz::pick(in, "frameSize", -2, std::min<int64_t>(n, 8192) + 2);
  int64_t len = fz::pick(in, "windowLen", -2, 70000);
  if (order >= 1 && order <= 13 && in.choice("multiple of 2^order")) len = (len % 16 + 1) * n;
  const bool argsOk = order >= 1 && frameSize >= 1 && frameSize <= n && len >= 1;
  const bool lenOk = argsOk && len % n == 0;
  const bool builtIn = in.choice("built-in window");
  const bool builtInOk = (order == 5 && frameSize == 24 && len == 128) || (order == 6 && frameSize == 44 && len == 256);
  const bool noInit = in.choice("no init buffer");
  const bool sized = lenOk && order <= 13;  // a block size exists
  const ect::DocumentedSizes sz = sized ? ect::documented_sizes(fixedPoint, order, len) : ect::DocumentedSizes{1, 1, 1};
  if (sz.state > fz::kMaxBytes) return false;
  call.scalar("order", order).scalar("frameSize", frameSize).scalar("windowLen", len);
  call.bytes("state", static_cast<std::size_t>(sz.state), fz::misalign(in));
  if (sized) call.self_pointers("state", ect::subband_self_pointers(fixedPoint));
  call.bytes("initBuffer", static_cast<std::size_t>(std::max<int64_t>(sz.init, 1)), 3);
  call.in("window", static_cast<std::size_t>(sized ? len : 1));
  fz::fill_inputs(call, in);
  if (builtIn) call.null("window");
  if (noInit) call.null("initBuffer");
  const bool stateNull = fz::nulls(call, in, {"state"});
  const fz::Expect e = fz::Expect()
                           .fail_if(!argsOk, vspStsBadArgErr)
                           .fail_if(stateNull, vspStsNullPtrErr)
                           .fail_if(!lenOk || (builtIn && !builtInOk), vspStsBadArgErr)
                           .fail_if(order > 13, vspStsErr)
                           .fail_if(noInit && order >= 5, vspStsErr);
  // Only the missing init buffer leaves the window copied.
  return e.to(in, e.status() == vspStsErr && order <= 13);
}

// Analysis and synthesis on a state formatted by Init (any working
// configuration, a fuzzed window), its delay line then filled with fuzzed
// samples (any value is a possible history); by choice a header size out
// of range (vspStsErr).
bool fuzz_working(vt::Call& call, vt::FuzzInput& in, bool fixedPoint, bool analysis) {
  ect::BankConfig b{};
  if (!ect::pick_bank(in, b)) return false;
  const std::size_t bins = (std::size_t(1) << b.order) / 2 + 1, hop = static_cast<std::size_t>(b.frameSize);
  std::vector<uint8_t> window(static_cast<std::size_t>(b.windowLen) * (fixedPoint ? 2 : 4));
  in.fill("window", window);
  if (!fixedPoint) fz::finite({reinterpret_cast<float*>(window.data()), window.size() / 4}, 1e6f);
  if (ect::setup_subband_state(call, fixedPoint, b.order, b.frameSize, b.windowLen, window, "state", "workBuffer",
                               fz::misalign(in)) != 0)
    return false;
  call.in("source", analysis ? hop : bins).out("destination", analysis ? bins : hop);
  if (fixedPoint) call.scalar("scaleFactor", fz::pick(in, "scaleFactor", -40, 40));
  fz::fill_inputs(call, in);
  uint8_t* state = call.buf<uint8_t>("state").data();
  state += (16 - reinterpret_cast<uintptr_t>(state) % 16) % 16;
  void* delay;
  std::memcpy(&delay, state + (fixedPoint ? 0 : 16), sizeof delay);
  const std::size_t delayBytes = static_cast<std::size_t>(b.windowLen) * (fixedPoint ? 2 : 4);
  in.fill("delay", {static_cast<uint8_t*>(delay), delayBytes});
  if (!fixedPoint) fz::finite({static_cast<float*>(delay), delayBytes / 4}, 1e30f);
  const bool badHeader = in.choice("header out of range");
  if (badHeader) {
    // windowLen, fftLen and frameSize follow the three pointers (fixed
    // point) or open the header (float).
    uint8_t* sizes = state + (fixedPoint ? 24 : 0);
    const int32_t n = 1 << b.order;
    const struct {
      int field;
      int32_t value;
    } bad[4] = {{1, 16384}, {1, 3}, {2, n + 1}, {0, n - 1}};
    const auto& c = bad[in.scalar("bad field", 0, 3)];
    std::memcpy(sizes + 4 * c.field, &c.value, sizeof c.value);
  }
  return fz::Expect().fail_if(fz::nulls(call, in), vspStsNullPtrErr).fail_if(badHeader, vspStsErr).to(in);
}

// One contract shape per function of the bank, shared by the twins.
vt::Contract get_size_contract(const char* name, bool fixedPoint) {
  vt::Contract c;
  c.valid = [=] { return get_size(name); };
  c.checks = get_size_checks();
  c.randomize = random_get_size;
  c.fuzz = [=](vt::Call& call, vt::FuzzInput& in) { return fuzz_get_size(call, in, fixedPoint); };
  return c;
}

template <class T>
vt::Contract init_contract(const char* name, bool fixedPoint) {
  vt::Contract c;
  c.valid = [=] { return init_call<T>(name, fixedPoint); };
  c.checks = init_checks();
  c.nullable = {"window", "initBuffer"};
  c.fuzz = [=](vt::Call& call, vt::FuzzInput& in) { return fuzz_init<T>(call, in, fixedPoint); };
  return c;
}

vt::Contract working_contract(const char* name, bool fixedPoint, bool analysis, int order) {
  vt::Contract c;
  c.valid = [=] { return working_call(name, fixedPoint, analysis, order); };
  c.checks = working_checks();
  c.fuzz = [=](vt::Call& call, vt::FuzzInput& in) { return fuzz_working(call, in, fixedPoint, analysis); };
  return c;
}

}  // namespace

VT_CONTRACT(legacy90vspsSubbandProcessGetSize_16s) { return get_size_contract(name, true); }
VT_CONTRACT(legacy90vspsSubbandProcessGetSize_32f) { return get_size_contract(name, false); }
VT_CONTRACT(legacy90vspsSubbandProcessInit_16s) { return init_contract<Vsp16s>(name, true); }

VT_CONTRACT(legacy90vspsSubbandProcessInit_32f) {
  vt::Contract c = init_contract<Vsp32f>(name, false);
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    for (float& w : call.buf<float>("window")) w = std::fabs(w);
  };
  return c;
}

VT_CONTRACT(legacy90vspsSubbandAnalysis_16s32sc_Sfs) {
  vt::Contract c = working_contract(name, true, true, 5);
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);  // full-scale samples: the fold saturates
    call.scalar("scaleFactor", static_cast<int>(rng() % 24) - 4);
  };
  return c;
}

VT_CONTRACT(legacy90vspsSubbandAnalysis_32f32fc) { return working_contract(name, false, true, 6); }

VT_CONTRACT(legacy90vspsSubbandSynthesis_32sc16s_Sfs) {
  vt::Contract c = working_contract(name, true, false, 6);
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    const int shift = static_cast<int>(rng() % 24);  // from full-range bins to small ones
    for (Vsp32sc& x : call.buf<Vsp32sc>("source")) x = {x.re >> shift, x.im >> shift};
    call.scalar("scaleFactor", static_cast<int>(rng() % 12) - 4);
  };
  return c;
}

VT_CONTRACT(legacy90vspsSubbandSynthesis_32fc32f) { return working_contract(name, false, false, 5); }
