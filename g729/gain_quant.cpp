// G.729 gain quantisation (clause 3.9, Qua_gain): the unquantised optimum
// from the five correlations (Corr_xy2), pre-selection of the two
// conjugate codebooks, the weighted-error search and the MA prediction
// update; and the encoder's memory update of clause 3.10 (main body and
// Annex A).
#include "g729/codec_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

namespace {

// Normalised numerator L1 2^-x1 - L2 2^-x2 (halved), mantissa and exponent.
void numerator(int32_t L1, int16_t x1, int32_t L2, int16_t x2, int16_t* nume, int16_t* expNume) {
  int32_t L;
  int16_t x;
  if (sub(x1, x2) > 0) {
    L = L_sub(L_shr(L1, add(sub(x1, x2), 1)), L_shr(L2, 1));
    x = sub(x2, 1);
  } else {
    L = L_sub(L_shr(L1, 1), L_shr(L2, add(sub(x2, x1), 1)));
    x = sub(x1, 1);
  }
  const int16_t sft = norm_l(L);
  *nume = extract_h(L_shl(L, sft));
  *expNume = sub(add(x, sft), 16);
}

}  // namespace

VspStatus legacy90vspsGainQuant_G729_16s(const Vsp16s* pCode, const Vsp16s* pTarget, const Vsp16s* pFiltAdapt,
                                         const Vsp16s* pFiltCode, const Vsp16s* pCoeff, int taming,
                                         Vsp16s* pSrcDstPastQuaEn, Vsp16s* pDstGains, Vsp16s* pDstIndex) {
  if (pCode == nullptr || pTarget == nullptr || pFiltAdapt == nullptr || pFiltCode == nullptr || pCoeff == nullptr ||
      pSrcDstPastQuaEn == nullptr || pDstGains == nullptr || pDstIndex == nullptr)
    return vspStsNullPtrErr;
  if (pCoeff[1] < -64 || pCoeff[1] > 64 || pCoeff[3] < -64 || pCoeff[3] > 64) return vspStsRangeErr;
  // step 0: correlations c[i] 2^-e[i]
  int16_t c[5], e[5];
  c[0] = pCoeff[0];
  e[0] = negate(pCoeff[1]);
  c[1] = negate(pCoeff[2]);
  e[1] = negate(add(pCoeff[3], 1));
  int16_t z[kSubfr];
  for (int i = 0; i < kSubfr; ++i) z[i] = shr(pFiltCode[i], 3);
  int32_t L = 1;
  for (int i = 0; i < kSubfr; ++i) L = L_mac(L, z[i], z[i]);
  int16_t k = norm_l(L);
  c[2] = round(L_shl(L, k));
  e[2] = add(k, 3);
  L = 1;
  for (int i = 0; i < kSubfr; ++i) L = L_mac(L, pTarget[i], z[i]);
  k = norm_l(L);
  c[3] = negate(round(L_shl(L, k)));
  e[3] = sub(add(k, -6), 1);
  L = 1;
  for (int i = 0; i < kSubfr; ++i) L = L_mac(L, pFiltAdapt[i], z[i]);
  k = norm_l(L);
  c[4] = round(L_shl(L, k));
  e[4] = sub(add(k, -6), 1);
  // step 1: unquantised optimum gains
  int32_t L1 = L_mult(c[0], c[2]);
  int16_t x1 = add(add(e[0], e[2]), -1);
  int32_t L2 = L_mult(c[4], c[4]);
  int16_t x2 = add(add(e[4], e[4]), 1);
  int16_t x;
  if (sub(x1, x2) > 0) {
    L = L_sub(L_shr(L1, sub(x1, x2)), L2);
    x = x2;
  } else {
    L = L_sub(L1, L_shr(L2, sub(x2, x1)));
    x = x1;
  }
  int16_t sft = norm_l(L);
  const int16_t denom = extract_h(L_shl(L, sft));
  const int16_t expDenom = sub(add(x, sft), 16);
  // A non-positive determinant (y1 and y2 collinear) cannot be inverted:
  // div_s is then given the smallest normalised denominator.
  const int16_t invDenom = negate(div_s(16384, denom < 16384 ? int16_t(16384) : denom));
  const int16_t expInv = sub(29, expDenom);
  int16_t nume, expNume;
  numerator(L_mult(c[2], c[1]), add(e[2], e[1]), L_mult(c[3], c[4]), add(add(e[3], e[4]), 1), &nume, &expNume);
  int16_t bg0 = extract_h(L_shr(L_mult(nume, invDenom), sub(add(expNume, expInv), 24)));
  if (taming && sub(bg0, 481) > 0) bg0 = 481;  // GPCLIP2 0.94, Q9
  numerator(L_mult(c[0], c[3]), add(e[0], e[3]), L_mult(c[1], c[4]), add(add(e[1], e[4]), 1), &nume, &expNume);
  const int16_t bg1 = extract_h(L_shr(L_mult(nume, invDenom), sub(add(expNume, expInv), 17)));
  // step 2: predicted gain, and in Q4
  int16_t gcode0, expGcode0;
  gain_predict(pSrcDstPastQuaEn, pCode, &gcode0, &expGcode0);
  const int16_t g4 = sub(expGcode0, 4) >= 0 ? shr(gcode0, sub(expGcode0, 4))
                                            : extract_h(L_shl(L_deposit_l(gcode0), sub(20, expGcode0)));
  // step 3: pre-selection
  const int16_t* coef = tb::kGainCoef;    // [2][2]
  const int32_t* lcoef = tb::kGainLCoef;  // [2][2]
  const int32_t cfbg = L_mult(coef[0], bg0);
  int16_t acc = extract_h(L_add(cfbg, L_shr(lcoef[3], 15)));
  const int32_t Lx = L_mult(extract_h(L_shl(L_sub(L_shl(L_deposit_l(bg1), 7), L_mult(acc, g4)), 2)), -17103);
  acc = mult(extract_h(L_sub(cfbg, L_shr(lcoef[1], 10))), g4);
  const int32_t Ly =
      L_mult(extract_h(L_shl(L_sub(L_mult(acc, coef[2]), L_shr(L_mult(coef[0], bg1), 3)), 2)), -17103);
  int cand1 = 0, cand2 = 0;
  if (g4 > 0) {
    while (cand1 < 4 && L_sub(Ly, L_shr(L_mult(tb::kGainThr1[cand1], g4), 3)) > 0) ++cand1;
    while (cand2 < 8 && L_sub(Lx, L_shr(L_mult(tb::kGainThr2[cand2], g4), 5)) > 0) ++cand2;
  } else {
    while (cand1 < 4 && L_sub(Ly, L_shr(L_mult(tb::kGainThr1[cand1], g4), 3)) < 0) ++cand1;
    while (cand2 < 8 && L_sub(Lx, L_shr(L_mult(tb::kGainThr2[cand2], g4), 5)) < 0) ++cand2;
  }
  // step 4: common exponent
  int16_t expMin[5] = {add(e[0], 13), add(e[1], 14), add(e[2], sub(shl(expGcode0, 1), 21)),
                       add(e[3], sub(expGcode0, 3)), add(e[4], sub(expGcode0, 4))};
  int16_t eMin = expMin[0];
  for (int i = 1; i < 5; ++i)
    if (sub(expMin[i], eMin) < 0) eMin = expMin[i];
  dpf::Dpf C[5];
  for (int i = 0; i < 5; ++i) C[i] = dpf::L_Extract(L_shr(L_deposit_h(c[i]), sub(expMin[i], eMin)));
  // step 5: search
  int32_t dmin = kMax32;
  int i1 = cand1, i2 = cand2;
  for (int i = cand1; i < cand1 + 4; ++i)
    for (int j = cand2; j < cand2 + 8; ++j) {
      const int16_t gp = add(tb::kGbk1[2 * i], tb::kGbk2[2 * j]);
      if (taming && gp >= 16383) continue;  // GP0999
      const int16_t t = extract_l(L_shr(L_add(L_deposit_l(tb::kGbk1[2 * i + 1]), L_deposit_l(tb::kGbk2[2 * j + 1])), 1));
      const int16_t gc = mult(gcode0, t);
      int32_t d = dpf::Mpy_32_16(C[0], mult(gp, gp));
      d = L_add(d, dpf::Mpy_32_16(C[1], gp));
      d = L_add(d, dpf::Mpy_32_16(C[2], mult(gc, gc)));
      d = L_add(d, dpf::Mpy_32_16(C[3], gc));
      d = L_add(d, dpf::Mpy_32_16(C[4], mult(gc, gp)));
      if (L_sub(d, dmin) < 0) dmin = d, i1 = i, i2 = j;
    }
  // step 6: output and prediction update
  const int32_t gbk12 = L_add(L_deposit_l(tb::kGbk1[2 * i1 + 1]), L_deposit_l(tb::kGbk2[2 * i2 + 1]));
  pDstGains[0] = add(tb::kGbk1[2 * i1], tb::kGbk2[2 * i2]);
  pDstGains[1] = code_gain(gbk12, gcode0, expGcode0);
  *pDstIndex = static_cast<Vsp16s>(tb::kMap1[i1] * 16 + tb::kMap2[i2]);
  gain_update(pSrcDstPastQuaEn, gbk12);
  return vspStsNoErr;
}

VspStatus legacy90vspsEncoderMemoryUpdate_G729A_16s(const Vsp16s* pTarget, const Vsp16s* pFiltAdapt,
                                                    const Vsp16s* pFiltCode, Vsp16s gainPitch, Vsp16s gainCode,
                                                    Vsp16s* pDstMemW0) {
  if (pTarget == nullptr || pFiltAdapt == nullptr || pFiltCode == nullptr || pDstMemW0 == nullptr)
    return vspStsNullPtrErr;
  for (int i = kSubfr - kM, j = 0; i < kSubfr; ++i, ++j)
    pDstMemW0[j] = sub(pTarget[i], add(extract_h(L_shl(L_mult(pFiltAdapt[i], gainPitch), 1)),
                                       extract_h(L_shl(L_mult(pFiltCode[i], gainCode), 2))));
  return vspStsNoErr;
}

VspStatus legacy90vspsEncoderMemoryUpdate_G729_16s(const Vsp16s* pLpc, const Vsp16s* pExc, const Vsp16s* pSpeech,
                                                   const Vsp16s* pTarget, const Vsp16s* pFiltAdapt,
                                                   const Vsp16s* pFiltCode, Vsp16s gainPitch, Vsp16s gainCode,
                                                   Vsp16s* pSrcDstMemSyn, Vsp16s* pDstMemErr, Vsp16s* pDstMemW0) {
  if (pLpc == nullptr || pExc == nullptr || pSpeech == nullptr || pTarget == nullptr || pFiltAdapt == nullptr ||
      pFiltCode == nullptr || pSrcDstMemSyn == nullptr || pDstMemErr == nullptr || pDstMemW0 == nullptr)
    return vspStsNullPtrErr;
  int16_t synth[kSubfr];
  syn_filt(pLpc, pExc, synth, kSubfr, pSrcDstMemSyn, true);
  for (int i = kSubfr - kM, j = 0; i < kSubfr; ++i, ++j) pDstMemErr[j] = sub(pSpeech[i], synth[i]);
  for (int i = kSubfr - kM, j = 0; i < kSubfr; ++i, ++j)
    pDstMemW0[j] = sub(pTarget[i], add(extract_h(L_shl(L_mult(pFiltAdapt[i], gainPitch), 1)),
                                       extract_h(L_shl(L_mult(pFiltCode[i], gainCode), 2))));
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
