// G.729 Annex B comfort noise shared by the encoder and the decoder: SID
// LSF reconstruction (clause B.4.2, sid_lsfq_decode), SID energy
// quantisation (Qua_Sidgain) and gain table, the random excitation
// (Calc_exc_rand) with its gain smoothing, and the frame energy the
// decoder keeps for a lost first SID frame.
#include "g729/codec_ops.h"
#include "g729/sid_lsf.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

namespace {

constexpr int16_t kFrac1 = 19043;
constexpr int16_t kK0 = 24576;
constexpr int16_t kGMax = 5000;

int16_t random16(int16_t* seed) {
  *seed = extract_l(L_add(L_shr(L_mult(*seed, 31821), 1), 13849));
  return *seed;
}

int16_t gauss(int16_t* seed) {
  int32_t L = 0;
  for (int i = 0; i < 12; ++i) L = L_add(L, L_deposit_l(random16(seed)));
  return extract_l(L_shr(L, 7));
}

// Calc_exc_rand over one frame; exc points at the frame (154 past samples before it).
void exc_rand(int16_t curGain, int16_t* seed, int16_t* exc, int32_t* excErr) {
  if (curGain == 0) {
    for (int i = 0; i < kFrame; ++i) exc[i] = 0;
    if (excErr != nullptr) {
      taming_update(0, 41, excErr);
      taming_update(0, 41, excErr);
    }
    return;
  }
  for (int sf = 0; sf < 2; ++sf) {
    int16_t* cur = exc + sf * kSubfr;
    int16_t r = random16(seed);
    int16_t frac = sub(static_cast<int16_t>(r & 3), 1);
    if (frac == 2) frac = 0;
    r = shr(r, 2);
    const int16_t t0 = add(static_cast<int16_t>(r & 63), 40);
    r = shr(r, 6);
    int pos[4], sign[4];
    pos[0] = 5 * (r & 7);
    r = shr(r, 3);
    sign[0] = r & 1;
    r = shr(r, 1);
    pos[1] = 5 * (r & 7) + 1;
    r = shr(r, 3);
    sign[1] = r & 1;
    r = random16(seed);
    pos[2] = 5 * (r & 7) + 2;
    r = shr(r, 3);
    sign[2] = r & 1;
    r = shr(r, 1);
    const int q = r & 15;
    pos[3] = (q & 1) + 3 + 5 * ((q >> 1) & 7);
    r = shr(r, 4);
    sign[3] = r & 1;
    int16_t gp = static_cast<int16_t>(random16(seed) & 0x1FFF);
    const int16_t gp2 = shl(gp, 1);
    int16_t g[kSubfr];
    int32_t L = 0;
    for (int i = 0; i < kSubfr; ++i) {
      g[i] = gauss(seed);
      L = L_mac(L, g[i], g[i]);
    }
    L = dpf::Mpy_32_16(dpf::L_Extract(inv_sqrt(L_shr(L, 1))), add(curGain, mult_r(curGain, kFrac1)));
    int16_t sh = norm_l(L);
    const int16_t t = extract_h(L_shl(L, sh));
    sh = sub(sh, 14);
    for (int i = 0; i < kSubfr; ++i) g[i] = shr_r(mult_r(g[i], t), sh);
    pred_lt_3(cur, t0, frac, kSubfr);
    int16_t max = 0;
    for (int i = 0; i < kSubfr; ++i) {
      cur[i] = add(mult_r(cur[i], gp2), g[i]);
      if (sub(abs_s(cur[i]), max) > 0) max = abs_s(cur[i]);
    }
    sh = 0;
    if (max != 0) {
      sh = sub(3, norm_s(max));
      if (sh < 0) sh = 0;
    }
    int16_t xs[kSubfr];
    for (int i = 0; i < kSubfr; ++i) xs[i] = shr(cur[i], sh);
    int32_t le = 0;
    for (int i = 0; i < kSubfr; ++i) le = L_mac(le, xs[i], xs[i]);
    int16_t b = 0;
    for (int k = 0; k < 4; ++k) b = sign[k] ? add(b, xs[pos[k]]) : sub(b, xs[pos[k]]);
    const int32_t lk = L_mult(curGain, extract_l(L_shr(L_mult(curGain, 40), 6)));
    L = L_sub(L_shr(lk, add(1, shl(sh, 1))), le);
    b = shr(b, 1);
    L = L_mac(L, b, b);
    sh = add(sh, 1);
    if (L < 0) {
      for (int i = 0; i < kSubfr; ++i) cur[i] = g[i];
      const int m = abs_s(g[pos[0]]) | abs_s(g[pos[1]]) | abs_s(g[pos[2]]) | abs_s(g[pos[3]]);
      sh = (m & 0x4000) == 0 ? int16_t(1) : int16_t(2);
      b = 0;
      for (int k = 0; k < 4; ++k) b = sign[k] ? add(b, shr(g[pos[k]], sh)) : sub(b, shr(g[pos[k]], sh));
      L = L_mac(L_shr(dpf::Mpy_32_16(dpf::L_Extract(lk), kK0), sub(shl(sh, 1), 1)), b, b);
      gp = 0;
    }
    int16_t root = 0, e = 0x4000;
    for (int i = 0; i < 14; ++i) {
      const int16_t c = add(root, e);
      if (L_sub(L, L_mult(c, c)) >= 0) root = c;
      e = shr(e, 1);
    }
    int16_t x1 = sub(root, b);
    const int16_t x2 = negate(add(b, root));
    if (sub(abs_s(x2), abs_s(x1)) < 0) x1 = x2;
    int16_t gg = shr_r(x1, sub(2, sh));
    if (gg >= 0) {
      if (gg > kGMax) gg = kGMax;
    } else if (add(gg, kGMax) < 0) {
      gg = -kGMax;
    }
    for (int k = 0; k < 4; ++k) cur[pos[k]] = sign[k] ? add(cur[pos[k]], gg) : sub(cur[pos[k]], gg);
    if (excErr != nullptr) taming_update(gp, t0, excErr);
  }
}

}  // namespace

VspStatus legacy90vspsDecodeSID_G729B_16s(const Vsp16s* pIndex, Vsp16s* pSrcDstPrevFreq, Vsp16s* pDstLsp) {
  if (pIndex == nullptr || pSrcDstPrevFreq == nullptr || pDstLsp == nullptr) return vspStsNullPtrErr;
  const int mode = pIndex[0], i1 = pIndex[1], i2 = pIndex[2];
  if (mode < 0 || mode > 1 || i1 < 0 || i1 > 31 || i2 < 0 || i2 > 15) return vspStsRangeErr;
  sid::reconstruct(mode, i1, i2, pSrcDstPrevFreq, pDstLsp);
  return vspStsNoErr;
}

VspStatus legacy90vspsQuantSidEnergy_G729B_16s(const Vsp16s* pEner, const Vsp16s* pShEner, int nb,
                                               Vsp16s* pDstEnergyQ, Vsp16s* pDstIndex) {
  if (pEner == nullptr || pShEner == nullptr || pDstEnergyQ == nullptr || pDstIndex == nullptr) return vspStsNullPtrErr;
  if (nb < 0 || nb > 2) return vspStsRangeErr;
  for (int i = 0; i < (nb == 0 ? 1 : nb); ++i)
    if (pShEner[i] < -64 || pShEner[i] > 64) return vspStsRangeErr;
  int32_t L;
  int16_t sh;
  if (nb == 0) {
    L = L_shl(L_deposit_l(pEner[0]), pShEner[0]);
    L = dpf::Mpy_32_16(dpf::L_Extract(L), tb::kSidFact[0]);
    sh = 0;
  } else {
    sh = pShEner[0];
    for (int i = 1; i < nb; ++i)
      if (pShEner[i] < sh) sh = pShEner[i];
    sh = add(sh, static_cast<int16_t>(16 - tb::kSidMarg[nb]));
    L = 0;
    for (int i = 0; i < nb; ++i) L = L_add(L, L_shl(L_deposit_l(pEner[i]), sub(sh, pShEner[i])));
    L = dpf::Mpy_32_16(dpf::L_Extract(L), tb::kSidFact[nb]);
  }
  int16_t e, f;
  log2_q15(L, &e, &f);
  const int16_t x = add(shl(sub(e, sh), 10), mult_r(f, 1024));
  int16_t energyq, index;
  if (sub(x, -2721) <= 0) {
    energyq = -12;
    index = 0;
  } else if (sub(x, 22111) > 0) {
    energyq = 66;
    index = 31;
  } else if (sub(x, 4762) <= 0) {
    index = mult(add(x, 3401), 24);
    if (index < 1) index = 1;
    energyq = sub(shl(index, 2), 8);
  } else {
    index = sub(shr(mult(sub(x, 340), 193), 2), 1);
    if (index < 6) index = 6;
    energyq = add(shl(index, 1), 4);
  }
  *pDstEnergyQ = energyq;
  *pDstIndex = index;
  return vspStsNoErr;
}

VspStatus legacy90vspsDecodeSidGain_G729B_16s(Vsp16s index, Vsp16s* pDstGain) {
  if (pDstGain == nullptr) return vspStsNullPtrErr;
  if (index < 0 || index > 31) return vspStsRangeErr;
  *pDstGain = tb::kSidGain[index];
  return vspStsNoErr;
}

VspStatus legacy90vspsComfortNoiseExcitation_G729B_16s(Vsp16s sidGain, int first, Vsp16s* pSrcDstCurGain,
                                                       Vsp16s* pSrcDstSeed, Vsp16s* pSrcDstExc,
                                                       Vsp32s* pSrcDstExcErr) {
  if (pSrcDstCurGain == nullptr || pSrcDstSeed == nullptr || pSrcDstExc == nullptr) return vspStsNullPtrErr;
  const int16_t cur = first ? sidGain : add(mult_r(*pSrcDstCurGain, 28672), mult_r(sidGain, 4096));
  exc_rand(cur, pSrcDstSeed, pSrcDstExc + kExcHistory, pSrcDstExcErr);
  *pSrcDstCurGain = cur;
  return vspStsNoErr;
}

VspStatus legacy90vspsExcitationEnergy_G729B_16s(const Vsp16s* pExc, Vsp16s* pDstEnergy, Vsp16s* pDstShift) {
  if (pExc == nullptr || pDstEnergy == nullptr || pDstShift == nullptr) return vspStsNullPtrErr;
  int32_t L = 0;
  for (int i = 0; i < kFrame; ++i) L = L_mac(L, pExc[i], pExc[i]);
  const int16_t k = norm_l(L);
  *pDstEnergy = round(L_shl(L, k));
  *pDstShift = sub(16, k);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
