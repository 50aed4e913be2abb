// GSM-AMR pitch gain of the encoder (TS 26.073 G_pitch, the gain limits
// and the 12.2 kbit/s scalar pitch-gain quantiser of cl_ltp, the target
// updates) and the tone stabiliser (check_lsp, check_gp_clipping,
// update_gp_clipping). Tone state: count, then gp[7] (Q11 = gain >> 3).
#include "gsmamr/enc_ops.h"
#include "gsmamr/gain_common.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace amr {
namespace {

constexpr int16_t kGpClip = 15565;  // 0.95 in Q14

// Sum of 2 a[i] b[i] + 1 with the saturation flag, normalised: (mantissa,
// exponent).
void norm_dot(const int16_t* a, const int16_t* b, int16_t& mant, int16_t& exp, bool& ovf) {
  ovf = false;
  int32_t s = 1;
  for (int i = 0; i < kSubfr; ++i) s = bop::L_mac_ovf(s, a[i], b[i], ovf);
  exp = bop::norm_l(s);
  mant = bop::round(bop::L_shl(s, exp));
}

// G_pitch: the unquantised pitch gain (Q14) and the correlations (yy, its
// exponent, xy, its exponent) for the gain quantisers.
int16_t g_pitch(int16_t m, const int16_t* xn, const int16_t* y1, int16_t* coeff) {
  using namespace bop;
  int16_t scaled[kSubfr];
  for (int i = 0; i < kSubfr; ++i) scaled[i] = shr(y1[i], 2);
  int16_t yy = 0, exp_yy = 0, xy = 0, exp_xy = 0;
  bool ovf = false;
  norm_dot(y1, y1, yy, exp_yy, ovf);
  if (ovf) {
    norm_dot(scaled, scaled, yy, exp_yy, ovf);
    exp_yy = sub(exp_yy, 4);
  }
  norm_dot(xn, y1, xy, exp_xy, ovf);
  if (ovf) {
    norm_dot(xn, scaled, xy, exp_xy, ovf);
    exp_xy = sub(exp_xy, 2);
  }
  coeff[0] = yy;
  coeff[1] = sub(15, exp_yy);
  coeff[2] = xy;
  coeff[3] = sub(15, exp_xy);
  if (xy < 4) return 0;
  int16_t gain = shr(div_s(shr(xy, 1), yy), sub(exp_xy, exp_yy));
  if (gain > 19661) gain = 19661;
  if (m == MR122) gain = static_cast<int16_t>(gain & 0xFFFC);
  return gain;
}

bool check_gp_clipping(const int16_t* tone, int16_t g) {
  int16_t sum = bop::shr(g, 3);
  for (int i = 1; i <= 7; ++i) sum = bop::add(sum, tone[i]);
  return bop::sub(sum, kGpClip) > 0;
}

}  // namespace
}  // namespace amr

VspStatus legacy90vspsPitchGain_GSMAMR_16s(const Vsp16s* pSrcTarget, const Vsp16s* pSrcFltAdapt,
                                           const Vsp16s* pSrcAdapt, const Vsp16s* pSrcToneState, Vsp16s* pSrcDstRes,
                                           Vsp16s* pDstTarget2, Vsp16s* pDstGain, Vsp16s* pDstCoeff, int lspFlag,
                                           int mode) {
  using namespace amr;
  using namespace bop;
  if (pSrcTarget == nullptr || pSrcFltAdapt == nullptr || pSrcAdapt == nullptr || pSrcToneState == nullptr ||
      pSrcDstRes == nullptr || pDstTarget2 == nullptr || pDstGain == nullptr || pDstCoeff == nullptr)
    return vspStsNullPtrErr;
  const int16_t m = speech_mode(mode);
  if (m < 0) return vspStsRangeErr;
  int16_t coeff[4];
  int16_t gain_pit = g_pitch(m, pSrcTarget, pSrcFltAdapt, coeff);
  const bool gpc = lspFlag != 0 && sub(gain_pit, kGpClip) > 0 && check_gp_clipping(pSrcToneState, gain_pit);
  int16_t gp_limit = 32767, index = 0;
  if (m == MR475 || m == MR515) {
    if (sub(gain_pit, 13926) > 0) gain_pit = 13926;
    if (gpc) gp_limit = kGpClip;
  } else {
    if (gpc) gp_limit = gain_pit = kGpClip;
    if (m == MR122) index = gq::q_gain_pitch(m, gp_limit, gain_pit);
  }
  for (int i = 0; i < kSubfr; ++i) {
    pDstTarget2[i] = sub(pSrcTarget[i], extract_h(L_shl(L_mult(pSrcFltAdapt[i], gain_pit), 1)));
    pSrcDstRes[i] = sub(pSrcDstRes[i], extract_h(L_shl(L_mult(pSrcAdapt[i], gain_pit), 1)));
  }
  for (int i = 0; i < 4; ++i) pDstCoeff[i] = coeff[i];
  pDstGain[0] = gain_pit;
  pDstGain[1] = gp_limit;
  pDstGain[2] = index;
  return vspStsNoErr;
}

VspStatus legacy90vspsToneStabCheck_GSMAMR_16s(const Vsp16s* pSrcLsp, Vsp16s* pSrcDstToneState, int* pFlag) {
  using namespace bop;
  if (pSrcLsp == nullptr || pSrcDstToneState == nullptr || pFlag == nullptr) return vspStsNullPtrErr;
  int16_t dist_min1 = 32767, dist_min2 = 32767;
  for (int i = 3; i < 8; ++i) {
    const int16_t d = sub(pSrcLsp[i], pSrcLsp[i + 1]);
    if (d < dist_min1) dist_min1 = d;
  }
  for (int i = 1; i < 3; ++i) {
    const int16_t d = sub(pSrcLsp[i], pSrcLsp[i + 1]);
    if (d < dist_min2) dist_min2 = d;
  }
  const int16_t dist_th = pSrcLsp[1] > 32000 ? 600 : (pSrcLsp[1] > 30500 ? 800 : 1100);
  int16_t count = pSrcDstToneState[0];
  count = sub(dist_min1, 1500) < 0 || sub(dist_min2, dist_th) < 0 ? add(count, 1) : int16_t(0);
  int flag = 0;
  if (sub(count, 12) >= 0) {
    count = 12;
    flag = 1;
  }
  pSrcDstToneState[0] = count;
  *pFlag = flag;
  return vspStsNoErr;
}

VspStatus legacy90vspsToneStabUpdate_GSMAMR_16s(Vsp16s gain, Vsp16s* pSrcDstToneState) {
  if (pSrcDstToneState == nullptr) return vspStsNullPtrErr;
  for (int i = 1; i < 7; ++i) pSrcDstToneState[i] = pSrcDstToneState[i + 1];
  pSrcDstToneState[7] = bop::shr(gain, 3);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
