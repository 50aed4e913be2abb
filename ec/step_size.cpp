// Step-size control of a sub-band echo canceller: the full-band leak
// estimate (share of the echo estimate's power left in the residual) and
// the per-sub-band normalised steps derived from it.
#include "core/float_canonical.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

inline constexpr int kMaxSubbands = 4097;
inline constexpr int kMaxSegments = 255;
inline constexpr float kMeanRate = 0.02f;  // smoothing of the per-band power means
inline constexpr float kErrorKeep = 0.7f;  // smoothing of the error power (keep, new)
inline constexpr float kErrorNew = 0.3f;

inline bool finite(float v) { return v == v && v - v == 0.0f; }

inline float power(Vsp32fc v) { return v.re * v.re + v.im * v.im; }

}  // namespace

VspStatus legacy90vspsFullbandStepSize_EC_32f(const Vsp32fc* errorFrame, const Vsp32fc* estimateFrame, Vsp32f* memory,
                                              Vsp32f* leak, int numSubbands, Vsp32f smoothing) {
  if (errorFrame == nullptr || estimateFrame == nullptr || memory == nullptr || leak == nullptr)
    return vspStsNullPtrErr;
  if (numSubbands < 1 || numSubbands > kMaxSubbands) return vspStsFIRLenErr;
  if (!(smoothing > 0.0f && smoothing <= 1.0f)) return vspStsRangeErr;
  Vsp32f* meanE = memory;
  Vsp32f* meanY = memory + numSubbands;
  Vsp32f sey = 0.0f, syy = 0.0f;
  for (int k = 0; k < numSubbands; ++k) {
    const Vsp32f de = power(errorFrame[k]) - meanE[k];
    const Vsp32f dy = power(estimateFrame[k]) - meanY[k];
    sey = sey + de * dy;
    syy = syy + dy * dy;
    meanE[k] = fout::canonical(meanE[k] + kMeanRate * de);
    meanY[k] = fout::canonical(meanY[k] + kMeanRate * dy);
  }
  const Vsp32f keep = 1.0f - smoothing;
  const Vsp32f rey = keep * memory[2 * numSubbands] + smoothing * sey;
  const Vsp32f ryy = keep * memory[2 * numSubbands + 1] + smoothing * syy;
  memory[2 * numSubbands] = fout::canonical(rey);
  memory[2 * numSubbands + 1] = fout::canonical(ryy);
  Vsp32f l = 0.0f;
  if (ryy > 0.0f) {
    l = rey / ryy;
    l = l > 1.0f ? 1.0f : (l > 0.0f ? l : 0.0f);  // NaN -> 0
  }
  *leak = l;
  return vspStsNoErr;
}

VspStatus legacy90vspsSubbandStepSize_EC_32f(const Vsp32fc* const* inputFrames, const Vsp32fc* errorFrame,
                                             const Vsp32fc* estimateFrame, Vsp32f* errorPower, Vsp64f* step,
                                             int numSegments, int numSubbands, Vsp32f leak, Vsp32f muMin, Vsp32f muMax,
                                             Vsp32f delta) {
  if (inputFrames == nullptr || errorFrame == nullptr || estimateFrame == nullptr || errorPower == nullptr ||
      step == nullptr)
    return vspStsNullPtrErr;
  if (numSubbands < 1 || numSubbands > kMaxSubbands) return vspStsFIRLenErr;
  if (numSegments < 1 || numSegments > kMaxSegments) return vspStsRangeErr;
  if (!(leak >= 0.0f && leak <= 1.0f) || !(muMin >= 0.0f) || !(muMax >= muMin && muMax <= 2.0f) ||
      !(delta > 0.0f && finite(delta)))
    return vspStsRangeErr;
  for (int k = 0; k < numSubbands; ++k) {
    Vsp32f px = 0.0f;
    for (int m = 0; m < numSegments; ++m) px = px + power(inputFrames[m][k]);
    const Vsp32f pe = kErrorKeep * errorPower[k] + kErrorNew * power(errorFrame[k]);
    errorPower[k] = fout::canonical(pe);
    Vsp32f mu = muMin;
    if (pe > 0.0f) {
      mu = leak * power(estimateFrame[k]) / pe;
      mu = mu > muMax ? muMax : (mu > muMin ? mu : muMin);  // NaN -> muMin
    }
    step[k] = fout::canonical(static_cast<Vsp64f>(mu) / (static_cast<Vsp64f>(px) + static_cast<Vsp64f>(delta)));
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
