// G.729 Annex A post-filter (clause A.4.2: integer-delay harmonic filter,
// short-term filter A(z/0.55)/A(z/0.70) with first-order tilt compensation,
// adaptive gain control), one subframe per call, with its state block.
#include <cstring>

#include "g729/codec_ops.h"
#include "g729/postfilter_state.h"
#include "speech/corr/mac_sums.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

namespace {

constexpr int kLh = 22;  // impulse-response length of the tilt estimate

// pit_pst_filt: s and ss point at sample 0 with 143 samples of history.
// The correlations are exact sums when the energy of ss[-kMemRes..39] is
// below 2^30 (Cauchy-Schwarz, speech/corr/mac_sums.h).
void pit_pst_filt(const int16_t* s, const int16_t* ss, int16_t t0Min, int16_t t0Max, int16_t* out) {
  const bool exact = speech::energy(ss - kMemRes, kMemRes + kSubfr) < (int64_t{1} << 30);
  int32_t cmax = kMin32;
  int t0 = t0Min;
  for (int t = t0Min; t <= t0Max; ++t) {
    int32_t c = 0;
    if (exact)
      c = speech::mac_cross(ss, ss - t, kSubfr);
    else
      for (int j = 0; j < kSubfr; ++j) c = L_mac(c, ss[j], ss[j - t]);
    if (L_sub(c, cmax) > 0) {
      cmax = c;
      t0 = t;
    }
  }
  const int32_t en = speech::mac_energy(1, ss - t0, kSubfr), en0 = speech::mac_energy(1, ss, kSubfr);
  if (cmax < 0) cmax = 0;
  int32_t m = cmax;
  if (L_sub(en, m) > 0) m = en;
  if (L_sub(en0, m) > 0) m = en0;
  const int16_t j = norm_l(m);
  int16_t c16 = round(L_shl(cmax, j));
  int16_t e16 = round(L_shl(en, j));
  const int16_t e016 = round(L_shl(en0, j));
  if (L_sub(L_mult(c16, c16), L_shr(L_mult(e16, e016), 1)) < 0) {
    for (int i = 0; i < kSubfr; ++i) out[i] = s[i];
    return;
  }
  int16_t g0, gain;
  if (sub(c16, e16) > 0) {
    g0 = 21845;    // INV_GAMMAP
    gain = 10923;  // GAMMAP_2
  } else {
    c16 = shr(mult(c16, 16384), 1);
    e16 = shr(e16, 1);
    const int16_t i = add(c16, e16);
    if (i > 0) {
      gain = div_s(c16, i);
      g0 = sub(32767, gain);
    } else {
      g0 = 32767;
      gain = 0;
    }
  }
  for (int i = 0; i < kSubfr; ++i) out[i] = add(mult(g0, s[i]), mult(gain, s[i - t0]));
}

// agc: scales out towards the gain of in (AGC_FAC 0.9).
// The L_mac chain of (x >> 2)^2 from 0: min(2 E, MAX_32) (non-negative terms).
int32_t energy_q2(const int16_t* x) {
  const int64_t e = 2 * simd::energy64_shifted(x, kSubfr, 2);
  return e > kMax32 ? kMax32 : static_cast<int32_t>(e);
}

void agc(const int16_t* in, int16_t* out, int16_t* pastGain) {
  int32_t L = energy_q2(out);
  if (L == 0) {
    *pastGain = 0;
    return;
  }
  int16_t e = sub(norm_l(L), 1);
  const int16_t gout = round(L_shl(L, e));
  L = energy_q2(in);
  int16_t g0 = 0;
  if (L != 0) {
    const int16_t i = norm_l(L);
    const int16_t gin = round(L_shl(L, i));
    e = sub(e, i);
    L = L_shr(L_shl(L_deposit_l(div_s(gout, gin)), 7), e);
    g0 = mult(round(L_shl(inv_sqrt(L), 9)), 3276);
  }
  int16_t g = *pastGain;
  for (int i = 0; i < kSubfr; ++i) {
    g = add(mult(g, 29491), g0);
    out[i] = extract_h(L_shl(L_mult(out[i], g), 3));
  }
  *pastGain = g;
}

}  // namespace

VspStatus legacy90vspsPostFilterGetStateSize_G729A(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(PostFilterAState));
  return vspStsNoErr;
}

VspStatus legacy90vspsPostFilterInit_G729A(Vsp8u* pState) {
  if (pState == nullptr) return vspStsNullPtrErr;
  PostFilterAState st{};
  st.pastGain = 4096;
  std::memcpy(pState, &st, sizeof st);
  return vspStsNoErr;
}

VspStatus legacy90vspsPostFilter_G729A_16s(const Vsp16s* pLpc, const Vsp16s* pSrc, Vsp16s* pDst, Vsp16s T0, int vad,
                                           Vsp8u* pState) {
  if (pLpc == nullptr || pSrc == nullptr || pDst == nullptr || pState == nullptr) return vspStsNullPtrErr;
  if (T0 < kLagMin || T0 > kLagMax || vad < 0 || vad > 1) return vspStsRangeErr;
  PostFilterAState st;
  std::memcpy(&st, pState, sizeof st);
  int16_t t0Min = sub(T0, 3);
  int16_t t0Max = add(t0Min, 6);
  if (t0Max > kPitMax) {
    t0Max = kPitMax;
    t0Min = sub(kPitMax, 6);
  }
  int16_t ap3[kM + 1], ap4[kM + 1];
  weight_az(pLpc, 18022, ap3);  // GAMMA2_PST 0.55
  weight_az(pLpc, 22938, ap4);  // GAMMA1_PST 0.70
  int16_t syn[kM + kSubfr];
  for (int i = 0; i < kM; ++i) syn[i] = st.synMem[i];
  for (int i = 0; i < kSubfr; ++i) syn[kM + i] = pSrc[i];
  int16_t* res2 = st.res2 + PostFilterAState::kMemRes;
  int16_t* scal = st.scalRes2 + PostFilterAState::kMemRes;
  residu(ap3, syn + kM, res2, kSubfr);
  for (int i = 0; i < kSubfr; ++i) scal[i] = shr(res2[i], 2);
  int16_t r[kSubfr];
  if (vad == 1)
    pit_pst_filt(res2, scal, t0Min, t0Max, r);
  else
    for (int i = 0; i < kSubfr; ++i) r[i] = res2[i];
  int16_t h[kLh] = {};
  for (int i = 0; i <= kM; ++i) h[i] = ap3[i];
  int16_t zero[kM] = {};
  syn_filt(ap4, h, h, kLh, zero, false);
  const int64_t eH = speech::energy(h, kLh);
  int32_t L = speech::mac_energy(0, h, kLh);
  const int16_t r0 = extract_h(L);
  if (speech::cross_fits(eH, eH)) {
    L = speech::mac_cross(h, h + 1, kLh - 1);
  } else {
    L = L_mult(h[0], h[1]);
    for (int i = 1; i < kLh - 1; ++i) L = L_mac(L, h[i], h[i + 1]);
  }
  const int16_t r1 = extract_h(L);
  const int16_t k = r1 <= 0 ? int16_t(0) : div_s(mult(r1, 26214), r0);
  const int16_t last = r[kSubfr - 1];
  for (int i = kSubfr - 1; i > 0; --i) r[i] = sub(r[i], mult(k, r[i - 1]));
  r[0] = sub(r[0], mult(k, st.memPre));
  st.memPre = last;
  int16_t out[kSubfr];
  syn_filt(ap4, r, out, kSubfr, st.memSynPst, true);
  agc(pSrc, out, &st.pastGain);
  std::memmove(st.res2, st.res2 + kSubfr, sizeof(int16_t) * PostFilterAState::kMemRes);
  std::memmove(st.scalRes2, st.scalRes2 + kSubfr, sizeof(int16_t) * PostFilterAState::kMemRes);
  for (int i = 0; i < kM; ++i) st.synMem[i] = pSrc[kSubfr - kM + i];
  for (int i = 0; i < kSubfr; ++i) pDst[i] = out[i];
  std::memcpy(pState, &st, sizeof st);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
