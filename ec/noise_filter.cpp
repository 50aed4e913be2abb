// Noise filter of the echo canceller: suppression of the residual echo
// per sub-band (a gain from the residual-echo and error powers) with
// comfort noise at the level of the tracked background noise.
#include "core/float_canonical.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

inline constexpr int kMaxSubbands = 4097;
inline constexpr float kKeep = 0.6f;  // smoothing of P and R (keep, new)
inline constexpr float kNew = 0.4f;
inline constexpr float kFloorRise = 1.0007f;         // noise-floor rise per call
inline constexpr float kComplexScale = 1.22474487f;  // sqrt(1.5): two uniforms of variance 1/3
inline constexpr float kRealScale = 1.73205081f;     // sqrt(3): one uniform

inline float power(Vsp32fc v) { return v.re * v.re + v.im * v.im; }

inline float uniform(Vsp32u* seed) {
  *seed = *seed * 1664525u + 1013904223u;
  return static_cast<float>(static_cast<int32_t>(*seed)) * 4.656612873e-10f;  // 2^-31
}

}  // namespace

VspStatus legacy90vspsNoiseFilter_EC_32f(Vsp32fc* errorFrame, const Vsp32fc* estimateFrame, Vsp32f* memory,
                                         Vsp32u* seed, int numSubbands, Vsp32f leak, Vsp32f overSuppression,
                                         Vsp32f gainFloor) {
  if (errorFrame == nullptr || estimateFrame == nullptr || memory == nullptr || seed == nullptr)
    return vspStsNullPtrErr;
  if (numSubbands < 1 || numSubbands > kMaxSubbands) return vspStsFIRLenErr;
  if (!(leak >= 0.0f && leak <= 1.0f) || !(overSuppression >= 0.0f && overSuppression <= 100.0f) ||
      !(gainFloor >= 0.0f && gainFloor <= 1.0f))
    return vspStsRangeErr;
  Vsp32f* residual = memory;
  Vsp32f* smoothed = memory + numSubbands;
  Vsp32f* floor = memory + 2 * numSubbands;
  Vsp32u s = *seed;
  for (int k = 0; k < numSubbands; ++k) {
    const Vsp32f p = kKeep * smoothed[k] + kNew * power(errorFrame[k]);
    const Vsp32f r0 = leak * power(estimateFrame[k]);
    const Vsp32f r = r0 > residual[k] ? r0 : kKeep * residual[k] + kNew * r0;
    const Vsp32f nf = (floor[k] == 0.0f || p < floor[k]) ? p : floor[k] * kFloorRise;
    Vsp32f g = 1.0f;
    if (p > 0.0f) {
      g = 1.0f - overSuppression * r / p;
      g = g > gainFloor ? (g < 1.0f ? g : 1.0f) : gainFloor;  // NaN -> gainFloor
    }
    const Vsp32f level = nf * (1.0f - g * g);
    const Vsp32f amp = level > 0.0f ? __builtin_sqrtf(level) : 0.0f;
    const bool edge = k == 0 || k == numSubbands - 1;
    const Vsp32f u1 = uniform(&s);
    const Vsp32f u2 = edge ? 0.0f : uniform(&s);
    const Vsp32f c = amp * (edge ? kRealScale : kComplexScale);
    errorFrame[k] = {fout::canonical(g * errorFrame[k].re + c * u1), fout::canonical(g * errorFrame[k].im + c * u2)};
    smoothed[k] = fout::canonical(p);
    residual[k] = fout::canonical(r);
    floor[k] = fout::canonical(nf);
  }
  *seed = s;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
