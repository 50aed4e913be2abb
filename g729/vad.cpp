// G.729 Annex B voice-activity detector (clause B.3): frame energy, low-band
// energy, spectral distortion and zero-crossing features against running
// background means, with the minimum tracking, the start-up means over the
// first 32 frames, the 14-test decision and the hangover smoothing. The
// detector's memory is a state block.
#include <cstring>

#include "g729/codec_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

namespace {

struct VadState {
  int16_t meanLsf[kM];
  int16_t meanSE, meanSLE, meanE, meanSZC;
  int16_t countSil, countUpdate, countExt, lessCount, flag, vFlag;
  int16_t min, prevMin, nextMin, minBuffer[16];
  int16_t prevEnergy, prevMarker, pprevMarker;
  int16_t frmCount;
};

// 10 log10 of a 32-bit energy with exponent expR0, Q7 (minus the offset).
int16_t energy_db(int32_t L, int16_t expR0) {
  int16_t e, f;
  log2_q15(L, &e, &f);
  L = dpf::Mpy_32_16(e, f, 9864);
  L = L_mac(L, 9864, sub(expR0, 2));
  L = L_shl(L, 11);
  return sub(extract_h(L), 4875);
}

bool make_dec(int16_t dSLE, int16_t dSE, int16_t SD, int16_t dSZC) {
  auto h = [](int16_t x) { return L_deposit_h(x); };
  if (L_add(L_shr(L_mac(L_mult(dSZC, -14680), 8192, -28521), 8), h(SD)) > 0) return true;
  if (L_add(L_shr(L_mac(L_mult(dSZC, 19065), 8192, -19446), 7), h(SD)) > 0) return true;
  if (L_add(L_shr(L_mac(L_mult(dSZC, 20480), 8192, 16384), 2), h(dSE)) < 0) return true;
  if (L_add(L_shr(L_mac(L_mult(dSZC, -16384), 8192, 19660), 2), h(dSE)) < 0) return true;
  if (L_mac(L_mult(dSE, 32767), 1024, 30802) < 0) return true;
  if (L_mac(L_mac(L_mult(SD, -28160), 64, 19988), dSE, 512) < 0) return true;
  if (L_mac(L_mult(SD, 32767), 32, -30199) > 0) return true;
  if (L_add(L_shr(L_mac(L_mult(dSZC, -20480), 8192, 22938), 2), h(dSE)) < 0) return true;
  if (L_add(L_shr(L_mac(L_mult(dSZC, 23831), 4096, 31576), 2), h(dSE)) < 0) return true;
  if (L_mac(L_mult(dSE, 32767), 2048, 17367) < 0) return true;
  if (L_mac(L_mac(L_mult(SD, -22400), 32, 25395), dSLE, 256) < 0) return true;
  if (L_add(L_mac(L_mult(dSE, -30427), 256, -29959), h(dSLE)) > 0) return true;
  if (L_add(L_mac(L_mult(dSE, -23406), 512, 28087), h(dSLE)) < 0) return true;
  if (L_mac(L_mac(L_mult(dSE, 24576), 1024, 29491), dSLE, 16384) < 0) return true;
  return false;
}

int16_t mean_of(int16_t m, int16_t x) { return extract_h(L_mac(L_deposit_h(m), x, 1024)); }
int16_t smooth(int16_t c, int16_t m, int16_t cc, int16_t x) { return extract_h(L_mac(L_mult(c, m), cc, x)); }

}  // namespace

VspStatus legacy90vspsVADGetStateSize_G729B(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(VadState));
  return vspStsNoErr;
}

VspStatus legacy90vspsVADInit_G729B(Vsp8u* pState) {
  if (pState == nullptr) return vspStsNullPtrErr;
  VadState st{};
  st.flag = 1;
  st.min = 32767;
  st.prevMarker = st.pprevMarker = 1;
  std::memcpy(pState, &st, sizeof st);
  return vspStsNoErr;
}

VspStatus legacy90vspsVAD_G729B_16s(const Vsp32s* pAutoCorr, int norm, Vsp16s rc, const Vsp16s* pLsf,
                                    const Vsp16s* pSpeech, int* pDstVad, Vsp8u* pState) {
  if (pAutoCorr == nullptr || pLsf == nullptr || pSpeech == nullptr || pDstVad == nullptr || pState == nullptr)
    return vspStsNullPtrErr;
  if (norm < -64 || norm > 64) return vspStsRangeErr;
  VadState st;
  std::memcpy(&st, pState, sizeof st);
  const int16_t expR0 = static_cast<int16_t>(1 - norm);
  // frame counter: 1 for the first frame, after 32767 it continues at 256
  // (a block not formatted by Init is brought back into the ranges the
  // counters can reach, so that no table index leaves its table)
  st.frmCount = st.frmCount == 32767 ? int16_t(256) : static_cast<int16_t>(st.frmCount < 0 ? 1 : st.frmCount + 1);
  if (st.lessCount < 0 || st.lessCount > 32) st.lessCount = 0;
  const int16_t frm = st.frmCount;
  int16_t rh[13];
  for (int i = 0; i < 13; ++i) rh[i] = extract_h(pAutoCorr[i]);
  const int16_t ENERGY = energy_db(pAutoCorr[0], expR0);
  int32_t L = 0;
  for (int i = 1; i <= 12; ++i) L = L_mac(L, rh[i], tb::kLbfCorr[i]);
  L = L_shl(L, 1);
  L = L_mac(L, rh[0], tb::kLbfCorr[0]);
  const int16_t ENERGY_low = energy_db(L, expR0);
  L = 0;
  for (int i = 0; i < kM; ++i) {
    const int16_t t = sub(pLsf[i], st.meanLsf[i]);
    L = L_mac(L, t, t);
  }
  const int16_t SD = extract_h(L);
  int16_t ZC = 0;
  for (int i = 121; i <= 200; ++i)
    if (mult(pSpeech[i - 1], pSpeech[i]) < 0) ZC = add(ZC, 410);
  // minimum tracking
  if (frm < 129) {
    if (sub(ENERGY, st.min) < 0) {
      st.min = ENERGY;
      st.prevMin = ENERGY;
    }
    if ((frm & 7) == 0) {
      st.minBuffer[shr(frm, 3) - 1] = st.min;
      st.min = 32767;
    }
  }
  if ((frm & 7) == 0) {
    st.prevMin = st.minBuffer[0];
    for (int i = 1; i < 16; ++i)
      if (sub(st.minBuffer[i], st.prevMin) < 0) st.prevMin = st.minBuffer[i];
  }
  if (frm >= 129) {
    if ((frm & 7) == 1) {
      st.min = st.prevMin;
      st.nextMin = 32767;
    }
    if (sub(ENERGY, st.min) < 0) st.min = ENERGY;
    if (sub(ENERGY, st.nextMin) < 0) st.nextMin = ENERGY;
    if ((frm & 7) == 0) {
      for (int i = 0; i < 15; ++i) st.minBuffer[i] = st.minBuffer[i + 1];
      st.minBuffer[15] = st.nextMin;
      st.prevMin = st.minBuffer[0];
      for (int i = 1; i < 16; ++i)
        if (sub(st.minBuffer[i], st.prevMin) < 0) st.prevMin = st.minBuffer[i];
    }
  }
  int16_t marker = 1;
  if (frm <= 32) {
    if (sub(ENERGY, 3072) < 0) {
      marker = 0;
      st.lessCount = static_cast<int16_t>(st.lessCount + 1);
    } else {
      marker = 1;
      st.meanE = mean_of(st.meanE, ENERGY);
      st.meanSZC = mean_of(st.meanSZC, ZC);
      for (int i = 0; i < kM; ++i) st.meanLsf[i] = mean_of(st.meanLsf[i], pLsf[i]);
    }
  }
  if (frm >= 32) {
    if (frm == 32) {
      const int16_t f = tb::kVadFactor[st.lessCount], s = tb::kVadShift[st.lessCount];
      auto scale = [&](int16_t x) { return extract_h(L_shl(L_mult(x, f), s)); };
      st.meanE = scale(st.meanE);
      st.meanSZC = scale(st.meanSZC);
      for (int i = 0; i < kM; ++i) st.meanLsf[i] = scale(st.meanLsf[i]);
      st.meanSE = sub(st.meanE, 2048);
      st.meanSLE = sub(st.meanE, 2458);
    }
    const int16_t dSE = sub(st.meanSE, ENERGY);
    const int16_t dSLE = sub(st.meanSLE, ENERGY_low);
    const int16_t dSZC = sub(st.meanSZC, ZC);
    marker = sub(ENERGY, 3072) < 0 ? int16_t(0) : (make_dec(dSLE, dSE, SD, dSZC) ? int16_t(1) : int16_t(0));
    st.vFlag = 0;
    if (st.prevMarker == 1 && marker == 0 && add(dSE, 410) < 0 && sub(ENERGY, 3072) > 0) {
      marker = 1;
      st.vFlag = 1;
    }
    if (st.flag == 1) {
      if (st.pprevMarker == 1 && st.prevMarker == 1 && marker == 0 &&
          sub(abs_s(sub(st.prevEnergy, ENERGY)), 614) <= 0) {
        st.countExt = static_cast<int16_t>(st.countExt + 1);
        marker = 1;
        st.vFlag = 1;
        if (st.countExt <= 4) {
          st.flag = 1;
        } else {
          st.countExt = 0;
          st.flag = 0;
        }
      }
    } else {
      st.flag = 1;
    }
    if (marker == 0) st.countSil = static_cast<int16_t>(st.countSil + 1);
    if (marker == 1 && st.countSil > 10 && sub(sub(ENERGY, st.prevEnergy), 614) <= 0) {
      marker = 0;
      st.countSil = 0;
    }
    if (marker == 1) st.countSil = 0;
    if (sub(sub(ENERGY, 614), st.meanSE) < 0 && frm > 128 && st.vFlag == 0 && rc < 19661) marker = 0;
    if (sub(sub(ENERGY, 614), st.meanSE) < 0 && rc < 24576 && SD < 83) {
      st.countUpdate = static_cast<int16_t>(st.countUpdate + 1);
      int16_t c, cc, cz, ccz, cs, ccs;
      if (st.countUpdate < 20) {
        c = 24576, cc = 8192, cz = 26214, ccz = 6554, cs = 19661, ccs = 13017;
      } else if (st.countUpdate < 30) {
        c = 31130, cc = 1638, cz = 30147, ccz = 2621, cs = 21299, ccs = 11469;
      } else if (st.countUpdate < 40) {
        c = 31785, cc = 983, cz = 30802, ccz = 1966, cs = 22938, ccs = 9830;
      } else if (st.countUpdate < 50) {
        c = 32440, cc = 328, cz = 31457, ccz = 1311, cs = 24576, ccs = 8192;
      } else if (st.countUpdate < 60) {
        c = 32604, cc = 164, cz = 32440, ccz = 328, cs = 24576, ccs = 8192;
      } else {
        c = 32604, cc = 164, cz = 32702, ccz = 66, cs = 24576, ccs = 8192;
      }
      st.meanSE = smooth(c, st.meanSE, cc, ENERGY);
      st.meanSLE = smooth(c, st.meanSLE, cc, ENERGY_low);
      st.meanSZC = smooth(cz, st.meanSZC, ccz, ZC);
      for (int i = 0; i < kM; ++i) st.meanLsf[i] = smooth(cs, st.meanLsf[i], ccs, pLsf[i]);
    }
    if (frm > 128 && ((sub(st.meanSE, st.min) < 0 && SD < 83) || sub(st.meanSE, st.min) > 2048)) {
      st.meanSE = st.min;
      st.countUpdate = 0;
    }
  }
  st.prevEnergy = ENERGY;
  st.pprevMarker = st.prevMarker;
  st.prevMarker = marker;
  *pDstVad = marker;
  std::memcpy(pState, &st, sizeof st);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
