// Geigel double-talk detector on block maxima: near-end talk when the
// near end's peak exceeds a fraction of the far end's peak over the tail.
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

// Shifts the history by one (entry 0 the newest), stores `newest` and
// returns the maximum of the history.
template <class T>
T push_max(T* history, int historyLen, T newest) {
  T peak = newest;
  for (int i = historyLen - 1; i > 0; --i) {
    history[i] = history[i - 1];
    peak = history[i] > peak ? history[i] : peak;
  }
  history[0] = newest;
  return peak;
}

// The common decision with its hangover.
inline void decide(bool talk, int hangLen, int* hangCount, int* result) {
  if (talk) {
    *hangCount = hangLen;
    *result = 1;
  } else if (*hangCount > 0) {
    *hangCount -= 1;
    *result = 1;
  } else {
    *result = 0;
  }
}

inline Vsp16s magnitude16(Vsp16s v) { return v == -32768 ? Vsp16s(32767) : static_cast<Vsp16s>(v < 0 ? -v : v); }

}  // namespace

VspStatus legacy90vspsDoubleTalkDetect_EC_32f(const Vsp32f* reference, const Vsp32f* nearEnd, int len,
                                              Vsp32f* maxHistory, int historyLen, Vsp32f threshold, int hangLen,
                                              int* hangCount, int* result) {
  if (reference == nullptr || nearEnd == nullptr || maxHistory == nullptr || hangCount == nullptr || result == nullptr)
    return vspStsNullPtrErr;
  if (len < 1 || historyLen < 1) return vspStsSizeErr;
  if (!(threshold >= 0.0f && threshold - threshold == 0.0f) || hangLen < 0) return vspStsRangeErr;
  Vsp32f fm = 0.0f, dm = 0.0f;
  for (int n = 0; n < len; ++n) {
    const Vsp32f x = __builtin_fabsf(reference[n]), d = __builtin_fabsf(nearEnd[n]);
    fm = x > fm ? x : fm;  // a NaN sample is skipped
    dm = d > dm ? d : dm;
  }
  const Vsp32f peak = push_max(maxHistory, historyLen, fm);
  decide(dm > threshold * peak, hangLen, hangCount, result);
  return vspStsNoErr;
}

VspStatus legacy90vspsDoubleTalkDetect_EC_16s(const Vsp16s* reference, const Vsp16s* nearEnd, int len,
                                              Vsp16s* maxHistory, int historyLen, Vsp16s threshold, int hangLen,
                                              int* hangCount, int* result) {
  if (reference == nullptr || nearEnd == nullptr || maxHistory == nullptr || hangCount == nullptr || result == nullptr)
    return vspStsNullPtrErr;
  if (len < 1 || historyLen < 1) return vspStsSizeErr;
  if (threshold < 0 || hangLen < 0) return vspStsRangeErr;
  Vsp16s fm = 0, dm = 0;
  for (int n = 0; n < len; ++n) {
    const Vsp16s x = magnitude16(reference[n]), d = magnitude16(nearEnd[n]);
    fm = x > fm ? x : fm;
    dm = d > dm ? d : dm;
  }
  // History entries are taken as stored (a caller's negative value counts
  // as it is).
  const Vsp16s peak = push_max(maxHistory, historyLen, fm);
  decide(int32_t(dm) * 32768 > int32_t(threshold) * int32_t(peak), hangLen, hangCount, result);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
