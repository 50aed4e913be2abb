// The G.726 ADPCM decoder (16, 24, 32, 40 kbit/s) with its state block:
// A-law and mu-law output through COMPRESS and the synchronous coding
// adjustment (ITU-T G.726 clause 4.3), 16-bit linear output through the
// Annex A limiter.
#include "g726/adpcm.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

using g726::Estimate;
using vsps::tables::g726::RateTables;

// EXPAND (clause 4.2.1): a code word as transmitted -> SL, 14-bit TC.
int32_t expand(int32_t code, bool alaw) {
  int32_t mag;
  bool negative;
  if (alaw) {
    const int32_t v = code ^ 0x55;
    negative = (v & 0x80) == 0;
    const int32_t e = (v & 0x7F) >> 4, m = v & 15;
    mag = 2 * (e == 0 ? 2 * m + 1 : (2 * m + 33) << (e - 1));
  } else {
    negative = (code & 0x80) == 0;
    const int32_t c = ~code & 0x7F;
    const int32_t e = c >> 4, m = c & 15;
    mag = e == 0 ? 2 * m : ((2 * m + 33) << e) - 33;
  }
  return negative ? (16384 - mag) & 16383 : mag;
}

// COMPRESS (clause 4.3.1): SR (16-bit TC) -> log-PCM word SP. A-law SP has
// bit 7 = 1 for positive values and no even-bit inversion; mu-law SP is as
// transmitted.
int32_t compress(int32_t sr, bool alaw) {
  const int32_t is = sr >> 15;
  int32_t im = is == 0 ? sr : (65536 - sr) & 32767;
  if (alaw) {
    if (sr == 0x8000) im = 2;
    int32_t mag = is == 0 ? im >> 1 : (im + 1) >> 1;
    if (is != 0) mag -= 1;
    if (mag > 4095) mag = 4095;
    int32_t seg = 7;
    for (int k = 1; k <= 7; ++k) {
      mag *= 2;
      if (mag >= 4096) break;
      seg = 7 - k;
    }
    const int32_t mant = (mag & 4095) >> 8;
    return (mant + (seg << 4) + (is != 0 ? 128 : 0)) ^ 128;
  }
  int32_t mag = (im > 8158 ? 8158 : im) + 1;
  int32_t seg = 0;
  if (mag > 31) {
    int32_t ofst = 31, prev = 31;
    for (seg = 1; seg <= 8; ++seg) {
      prev = ofst;
      ofst += 1 << (seg + 5);
      if (mag <= ofst) break;
    }
    mag -= prev + 1;
  }
  mag >>= seg + 1;
  return (mag + (seg << 4) + (is != 0 ? 128 : 0)) ^ 128 ^ 127;
}

// SYNC (clause 4.3.2): moves SP by one level when a tandem encoder would
// not reproduce the received word I; returns the output word as transmitted.
int32_t sync(const RateTables& rt, int32_t i, int32_t sp, const Estimate& est, bool alaw) {
  const int32_t n = rt.bits, half = 1 << (n - 1);
  const int32_t slx = expand(alaw ? sp ^ 0x55 : sp, alaw);
  const int32_t dx = (g726::sx14to16(slx) - g726::sx15to16(est.se)) & 65535;
  const g726::LogDiff l = g726::log_diff(dx, est.y);
  const int32_t im = (i >> (n - 1)) == 0 ? i + half : i & (half - 1);
  int32_t id = g726::quan_row(rt, l.dln).id;
  if (l.sign != 0) id = (1 << n) - 1 - id;
  if (id == half && n > 2) id = half - 1;
  int32_t ss = sp >> 7, m = sp & 127;
  if (alaw) {  // m grows with the magnitude
    if (id > im) {
      if (ss == 1 && m == 0)
        ss = 0;
      else if (ss == 1)
        m -= 1;
      else if (m < 127)
        m += 1;
    } else if (id < im) {
      if (ss == 1 && m < 127)
        m += 1;
      else if (ss == 0 && m == 0)
        ss = 1;
      else if (ss == 0)
        m -= 1;
    }
    return (m + (ss << 7)) ^ 0x55;
  }
  if (id > im) {  // mu-law: m falls with the magnitude
    if (ss == 1 && m == 127) {
      ss = 0;
      m = 126;
    } else if (ss == 1) {
      m += 1;
    } else if (m > 0) {
      m -= 1;
    }
  } else if (id < im) {
    if (ss == 1 && m > 0)
      m -= 1;
    else if (ss == 0 && m == 127)
      ss = 1;
    else if (ss == 0)
      m += 1;
  }
  return m + (ss << 7);
}

}  // namespace

VspStatus legacy90vspsDecode_G726_8u16s(const Vsp8u* pSrc, Vsp16s* pDst, int len,
                                        VspsDecoderState_G726_16s* pDecState) {
  if (pSrc == nullptr || pDst == nullptr || pDecState == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  vsps::g726::State s = g726::load_state(pDecState);
  const RateTables& rt = vsps::tables::g726::kRates[s.bits - 2];
  const int32_t mask = (1 << s.bits) - 1;
  const bool logPcm = s.law == vspPcmALaw || s.law == vspPcmMuLaw, alaw = s.law == vspPcmALaw;
  for (int k = 0; k < len; ++k) {
    const Estimate est = g726::estimate(s);
    const int32_t i = pSrc[k] & mask;
    const int32_t sr = g726::adapt(s, rt, i, est);
    if (logPcm) {
      pDst[k] = static_cast<Vsp16s>(sync(rt, i, compress(sr, alaw), est, alaw));
    } else {  // LIMO: SR limited to 14 bits, then to the 16-bit scale
      const int32_t v = sr >= 32768 ? sr - 65536 : sr;
      pDst[k] = static_cast<Vsp16s>((v < -8192 ? -8192 : (v > 8191 ? 8191 : v)) * 4);
    }
  }
  std::memcpy(pDecState, &s, sizeof s);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
