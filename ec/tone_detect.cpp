// 2100 Hz tone detector with phase-reversal counting (G.165 disabling
// tone): a resonator at 2100 Hz, smoothed input and output energies, the
// tone-run and gap-run counters and the reversal count.
#include <cstring>

#include "core/float_canonical.h"
#include "ec/ec_tables.h"
#include "ec/subband_layout.h"
#include "ec/tone_layout.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

using vsps::ec::ToneState16s;
using vsps::ec::ToneState32f;

struct Limits {
  int32_t minRun, maxRun, gapLimit;
};
// fs * 0.413, fs * 0.466, fs / 50, truncated.
inline Limits limits_for(int rate) { return {rate * 413 / 1000, rate * 466 / 1000, rate / 50}; }

inline bool rate_ok(int rate) { return rate == 8000 || rate == 16000; }

// The non-tone branch shared by both twins: a dip below 0.48 ends the tone
// run; when the run lasted between the minimum and the maximum the dip
// counts as a reversal. Then the gap run grows, and a gap longer than the
// limit resets the counters.
template <class S>
inline void dip_or_gap(S& s, bool below048, int& result) {
  if (below048) {
    if (s.toneRun > s.minRun && s.toneRun < s.maxRun) {
      if (s.reversals < INT32_MAX) s.reversals += 1;
      if (s.reversals >= 2) result = 1;
    }
    s.toneRun = 0;  // on every dip, counted or not
  }
  s.gapRun += 1;
  if (s.gapRun > s.gapLimit) {
    s.toneRun = 0;
    s.gapRun = 0;
    s.reversals = 0;
  }
}

}  // namespace

VspStatus legacy90vspsToneDetectGetStateSize_EC_16s(int rate, int* size) {
  if (size == nullptr) return vspStsNullPtrErr;
  if (!rate_ok(rate)) return vspStsRangeErr;
  *size = vsps::ec::kToneStateBytes16s;
  return vspStsNoErr;
}

VspStatus legacy90vspsToneDetectGetStateSize_EC_32f(int rate, int* size) {
  if (size == nullptr) return vspStsNullPtrErr;
  if (!rate_ok(rate)) return vspStsRangeErr;
  *size = vsps::ec::kToneStateBytes32f;
  return vspStsNoErr;
}

VspStatus legacy90vspsToneDetectInit_EC_16s(Vsp8u* state, int rate) {
  if (state == nullptr) return vspStsNullPtrErr;
  if (!rate_ok(rate)) return vspStsRangeErr;
  ToneState16s s{};
  s.coeffs = rate == 8000 ? vsps::ec::kToneCoeffs8kQ12 : vsps::ec::kToneCoeffs16kQ12;
  const Limits l = limits_for(rate);
  s.minRun = l.minRun;
  s.maxRun = l.maxRun;
  s.gapLimit = l.gapLimit;
  s.alpha = static_cast<int16_t>(rate == 8000 ? 15728 : 15073);  // 0.96, 0.92 in Q14
  std::memcpy(vsps::ec::align16(state), &s, sizeof s);
  return vspStsNoErr;
}

VspStatus legacy90vspsToneDetectInit_EC_32f(Vsp8u* state, int rate) {
  if (state == nullptr) return vspStsNullPtrErr;
  if (!rate_ok(rate)) return vspStsRangeErr;
  ToneState32f s{};
  s.coeffs = rate == 8000 ? vsps::ec::kToneCoeffs8k : vsps::ec::kToneCoeffs16k;
  const Limits l = limits_for(rate);
  s.minRun = l.minRun;
  s.maxRun = l.maxRun;
  s.gapLimit = l.gapLimit;
  s.alpha = rate == 8000 ? 0.96f : 0.92f;
  std::memcpy(vsps::ec::align16(state), &s, sizeof s);
  return vspStsNoErr;
}

VspStatus legacy90vspsToneDetect_EC_16s(const Vsp16s* signal, int len, int* result, VspsToneDetectState_16s* state) {
  if (signal == nullptr || result == nullptr || state == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsBadArgErr;
  auto* block = vsps::ec::align16(reinterpret_cast<uint8_t*>(state));
  ToneState16s s;
  std::memcpy(&s, block, sizeof s);
  const int32_t c0 = s.coeffs[0], c1 = s.coeffs[1], c2 = s.coeffs[2], c3 = s.coeffs[3];
  const int64_t alpha = s.alpha, beta = 16384 - alpha;
  int found = 0;
  for (int n = 0; n < len; ++n) {
    const int32_t x = signal[n];
    int32_t y = (c0 * x + c1 * s.x2 - c2 * s.y1 - c3 * s.y2 + 2048) >> 12;
    y = y > 32767 ? 32767 : (y < -32768 ? -32768 : y);
    s.x2 = s.x1;
    s.x1 = static_cast<int16_t>(x);
    s.y2 = s.y1;
    s.y1 = static_cast<int16_t>(y);
    s.ex = static_cast<int32_t>((int64_t(x * x) * beta + int64_t(s.ex) * alpha) >> 14);
    s.ey = static_cast<int32_t>((int64_t(y * y) * beta + int64_t(s.ey) * alpha) >> 14);
    if (s.ey > ((int64_t(s.ex) * 13107) >> 14)) {  // 0.8
      if (s.toneRun < INT32_MAX) s.toneRun += 1;
      s.gapRun = 0;
    } else {
      dip_or_gap(s, s.ey < ((int64_t(s.ex) * 7864) >> 14), found);  // 0.48
    }
  }
  std::memcpy(block, &s, sizeof s);
  *result = found;
  return vspStsNoErr;
}

VspStatus legacy90vspsToneDetect_EC_32f(const Vsp32f* signal, int len, int* result, VspsToneDetectState_32f* state) {
  if (signal == nullptr || result == nullptr || state == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsBadArgErr;
  auto* block = vsps::ec::align16(reinterpret_cast<uint8_t*>(state));
  ToneState32f s;
  std::memcpy(&s, block, sizeof s);
  const Vsp32f c0 = s.coeffs[0], c1 = s.coeffs[1], c2 = s.coeffs[2], c3 = s.coeffs[3];
  const Vsp32f alpha = s.alpha, beta = 1.0f - s.alpha;
  int found = 0;
  for (int n = 0; n < len; ++n) {
    const Vsp32f x = signal[n];
    const Vsp32f y = ((c0 * x + c1 * s.x2) - c2 * s.y1) - c3 * s.y2;
    s.x2 = s.x1;
    s.x1 = x;
    s.y2 = s.y1;
    s.y1 = y;
    s.ex = alpha * s.ex + beta * (x * x);
    s.ey = alpha * s.ey + beta * (y * y);
    if (s.ey > 0.8f * s.ex && 10000.0f * s.ex > s.ey) {
      s.gapRun = 0;
      if (s.toneRun < INT32_MAX) s.toneRun += 1;
    } else if (s.ey > 0.0008f * s.ex && s.ex > s.ey) {
      dip_or_gap(s, s.ey < 0.48f * s.ex, found);
    } else {  // output energy negligible, or not below the input's
      s.gapRun = 0;
      s.toneRun = 0;
    }
  }
  // The filter and energy memories are computed values: canonical NaNs.
  s.y1 = fout::canonical(s.y1);
  s.y2 = fout::canonical(s.y2);
  s.ex = fout::canonical(s.ex);
  s.ey = fout::canonical(s.ey);
  std::memcpy(block, &s, sizeof s);
  *result = found;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
