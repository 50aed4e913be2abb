// Contracts of the G.729 high-pass filter, lag window, Levinson-Durbin and
// interpolation exports.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract.h"

namespace {

std::vector<Vsp32f> to_float(const std::vector<Vsp32s>& r) {
  std::vector<Vsp32f> f(r.size());
  for (std::size_t k = 0; k < r.size(); ++k) f[k] = static_cast<float>(r[k]) / 1048576.0f;
  return f;
}

}  // namespace

VT_CONTRACT(legacy90vspsHighPassFilterSize_G729) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).out("pSize", 1); };
  return c;
}

VT_CONTRACT(legacy90vspsHighPassFilterInit_G729) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pCoeff", 6).bytes("pState", 24, 3); };
  return c;
}

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
  return c;
}

VT_CONTRACT(legacy90vspsLagWindow_G729_32s_I) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).inout("pSrcDst", 12).scalar("len", 12); };
  c.checks = {vt::bad("len", 0, vspStsBadArgErr), vt::bad("len", -1, vspStsBadArgErr),
              vt::bad("len", 13, vspStsSizeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("len", 1 + static_cast<int64_t>(rng() % 12));
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
  return c;
}

VT_CONTRACT(legacy90vspsInterpolate_G729_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pSrc1", 10).in("pSrc2", 10).out("pDst", 10).scalar("len", 10); };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -1, vspStsSizeErr)};
  return c;
}

VT_CONTRACT(legacy90vspsInterpolateC_G729_16s_Sfs) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pSrc1", 10)
        .scalar("val1", 8192)
        .in("pSrc2", 10)
        .scalar("val2", 24576)
        .out("pDst", 10)
        .scalar("len", 10)
        .scalar("scaleFactor", 15);
  };
  c.checks = {vt::bad("scaleFactor", -1, vspStsOutOfRangeErr), vt::bad("len", 0, vspStsSizeErr),
              vt::bad("len", -4, vspStsSizeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("val1", static_cast<int16_t>(rng()));
    call.scalar("val2", static_cast<int16_t>(rng()));
    call.scalar("scaleFactor", static_cast<int64_t>(rng() % 40));
  };
  return c;
}

VT_CONTRACT(legacy90vspsInterpolateC_G729_32f) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pSrc1", 10)
        .scalar_f("val1", 0.25)
        .in("pSrc2", 10)
        .scalar_f("val2", 0.75)
        .out("pDst", 10)
        .scalar("len", 10);
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -1, vspStsSizeErr)};
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
  return c;
}
