// Contracts of the G.729 high-pass filter, Levinson-Durbin and
// autocorrelation exports, whose valid calls or fuzzing need code; the
// other LP helpers are rows in contracts.txt.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract.h"
#include "tests/support/fuzz_hooks.h"

namespace {

namespace fz = vt::fz;

std::vector<Vsp32f> to_float(const std::vector<Vsp32s>& r) {
  std::vector<Vsp32f> f(r.size());
  for (std::size_t k = 0; k < r.size(); ++k) f[k] = static_cast<float>(r[k]) / 1048576.0f;
  return f;
}

// Levinson-Durbin: orders 1..maxOrder (0: no upper bound; the hook stops
// at 1000, the recursion being quadratic), r[0..order], a[0..order],
// rc[0..order-1]; a fuzzer choice makes r a realistic autocorrelation.
bool fuzz_levinson(vt::Call& call, vt::FuzzInput& in, int64_t maxOrder) {
  const int64_t order = fz::pick(in, "order", -2, maxOrder ? maxOrder + 2 : 1000);
  const bool ok = order >= 1 && (maxOrder == 0 || order <= maxOrder);
  if (ok && order > 1000) return false;
  const auto n = fz::count(ok, order + 1);
  call.in("pSrcAutoCorr", n).scalar("order", order).out("pDstLpc", n).out("pDstRc", fz::count(ok, order));
  call.out("pResultResidualEnergy", 1);
  fz::fill_inputs(call, in);
  if (ok && in.choice("realistic autocorrelation")) {
    std::mt19937 rng(static_cast<uint32_t>(in.scalar("seed", 0, INT32_MAX)));
    const auto r = g729t::random_autocorr(rng, static_cast<int>(order));
    if (maxOrder)
      g729t::put(call, "pSrcAutoCorr", r);
    else
      g729t::put(call, "pSrcAutoCorr", to_float(r));
  }
  return fz::Expect().fail_if(fz::nulls(call, in), vspStsNullPtrErr).fail_if(!ok, vspStsSizeErr).to(in);
}

}  // namespace

VT_CONTRACT(legacy90vspsHighPassFilter_G729_16s_ISfs) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.inout("pSrcDst", 80).scalar("len", 80).scalar("scaleFactor", 12).bytes("pState", 24, 1);
    const g729t::V16 coeff = {4096, 7807, -3733, 1899, -3798, 1899};
    legacy90vspsHighPassFilterInit_G729(coeff.data(), call.buf<Vsp8u>("pState").data());
    return call;
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -7, vspStsSizeErr),
              vt::bad("scaleFactor", 14, vspStsOutOfRangeErr), vt::bad("scaleFactor", 11, vspStsOutOfRangeErr),
              vt::bad("scaleFactor", 0, vspStsOutOfRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);  // samples, and a random state (history and coefficients)
    call.scalar("scaleFactor", 12 + static_cast<int64_t>(rng() % 2));
  };
  // The state formatted by Init with fuzzed coefficients, or every byte
  // fuzzed (all its fields, outputs, inputs and coefficients, take any value).
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    const int64_t len = fz::pick(in, "len", -2, 5000), sf = fz::pick(in, "scaleFactor", 10, 15);
    const auto n = fz::count(len >= 1 && (sf == 12 || sf == 13), len, 2);
    call.inout("pSrcDst", n).scalar("len", len).scalar("scaleFactor", sf).bytes("pState", 24, fz::misalign(in));
    fz::fill_inputs(call, in);
    Vsp16s coeff[6];
    in.fill("pCoeff", {reinterpret_cast<uint8_t*>(coeff), sizeof coeff});
    legacy90vspsHighPassFilterInit_G729(coeff, call.buf<Vsp8u>("pState").data());
    if (in.choice("corrupt state")) in.fill("pState", call.buf<uint8_t>("pState"));
    return fz::Expect()
        .fail_if(fz::nulls(call, in), vspStsNullPtrErr)
        .fail_if(len < 1, vspStsSizeErr)
        .fail_if(sf != 12 && sf != 13, vspStsOutOfRangeErr)
        .to(in);
  };
  return c;
}

VT_CONTRACT(legacy90vspsLevinsonDurbin_G729_32s16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcAutoCorr", 31)
        .scalar("order", 10)
        .out("pDstLpc", 31)
        .out("pDstRc", 30)
        .out("pResultResidualEnergy", 1);
    std::mt19937 rng(1);
    g729t::put(call, "pSrcAutoCorr", g729t::random_autocorr(rng));
    return call;
  };
  c.checks = {vt::bad("order", 0, vspStsSizeErr), vt::bad("order", 31, vspStsSizeErr),
              vt::bad("order", -2, vspStsSizeErr)};
  c.validStatuses = {vspStsNoErr, vspStsLPCUnstable};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    const int order = 1 + static_cast<int>(rng() % 30);
    call.scalar("order", order);
    if (rng() % 4 == 0) {
      call.randomize_inputs(rng);  // arbitrary words: mostly unstable
    } else {
      g729t::put(call, "pSrcAutoCorr", g729t::random_autocorr(rng, order));
    }
  };
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) { return fuzz_levinson(call, in, 30); };
  return c;
}

VT_CONTRACT(legacy90vspsLevinsonDurbin_G729_32f) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcAutoCorr", 41)
        .scalar("order", 10)
        .out("pDstLpc", 41)
        .out("pDstRc", 40)
        .out("pResultResidualEnergy", 1);
    std::mt19937 rng(2);
    g729t::put(call, "pSrcAutoCorr", to_float(g729t::random_autocorr(rng)));
    return call;
  };
  c.checks = {vt::bad("order", 0, vspStsSizeErr), vt::bad("order", -1, vspStsSizeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    const int order = 1 + static_cast<int>(rng() % 40);
    call.scalar("order", order);
    g729t::put(call, "pSrcAutoCorr", to_float(g729t::random_autocorr(rng, order)));
  };
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) { return fuzz_levinson(call, in, 0); };
  return c;
}

VT_CONTRACT(legacy90vspsAutoCorr_NormE_16s32s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).in("pSrc", 240).scalar("len", 240).out("pDst", 11).scalar("lenDst", 11).out("pNorm", 1);
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -1, vspStsSizeErr), vt::bad("lenDst", 0, vspStsSizeErr),
              vt::bad("lenDst", 241, vspStsSizeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);  // full-scale samples: the overflow control runs
    if (rng() % 2) {
      auto s = call.buf<Vsp16s>("pSrc");
      const int shift = static_cast<int>(rng() % 15);
      for (auto& v : s) v = static_cast<Vsp16s>(v >> shift);
    }
    call.scalar("lenDst", 1 + static_cast<int64_t>(rng() % 11));
  };
  // Quadratic in the lengths: len up to 2000.
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    const int64_t len = fz::pick(in, "len", -2, 2000), lenDst = fz::pick(in, "lenDst", -2, 2002);
    const bool lenOk = len >= 1 && len < (int64_t(1) << 29), ok = lenOk && lenDst >= 1 && lenDst <= len;
    if (ok && len > 2000) return false;
    call.in("pSrc", fz::count(lenOk, len)).scalar("len", len).out("pDst", fz::count(ok, lenDst));
    call.scalar("lenDst", lenDst).out("pNorm", 1);
    fz::fill_inputs(call, in);
    return fz::Expect().fail_if(fz::nulls(call, in), vspStsNullPtrErr).fail_if(!ok, vspStsSizeErr).to(in);
  };
  return c;
}

VT_CONTRACT(legacy90vspsAutoCorr_NormE_G729_16s32s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pSrc", 240).out("pDst", 13).scalar("lenDst", 11).out("pNorm", 1); };
  c.checks = {vt::bad("lenDst", 0, vspStsSizeErr), vt::bad("lenDst", 241, vspStsSizeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    auto s = call.buf<Vsp16s>("pSrc");
    const int shift = static_cast<int>(rng() % 15);
    for (auto& v : s) v = static_cast<Vsp16s>(v >> shift);
    call.scalar("lenDst", 1 + static_cast<int64_t>(rng() % 13));
  };
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    const int64_t lenDst = fz::pick(in, "lenDst", -2, 242);
    const bool ok = lenDst >= 1 && lenDst <= 240;
    call.in("pSrc", 240).out("pDst", fz::count(ok, lenDst)).scalar("lenDst", lenDst).out("pNorm", 1);
    fz::fill_inputs(call, in);
    return fz::Expect().fail_if(fz::nulls(call, in), vspStsNullPtrErr).fail_if(!ok, vspStsSizeErr).to(in);
  };
  return c;
}
