// The echo canceller of the codec layer: one hop per call, every signal-
// processing step a call into vsps.h.
//
// Per hop: analysis of the far end into the newest frame of the ring and of
// the near end; the echo estimate per sub-band; the error; the 2100 Hz tone
// detectors and the Geigel detector; the full-band leak and the sub-band
// steps; the coefficient update (held during double talk and while the
// tone disables the canceller); the noise filter; synthesis.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>

#include "codecs/echo/prototype.h"
#include "vsps_codecs.h"

namespace {

using vsps::codecs::echo::root_nyquist_prototype;

constexpr float kPcmScale = 1.0f / 32768.0f;
constexpr float kMuStart = 0.25f;           // sub-band step before convergence
constexpr float kMuMax = 0.5f;              // largest sub-band step
constexpr float kLeakGain = 3.0f;           // the steps assume three times the estimated leak
constexpr float kDelta = 1e-6f;             // normaliser regularisation (full scale 1)
constexpr float kLeakSmoothing = 0.05f;     // full-band controller, per 4 ms hop
constexpr float kGeigelThreshold = 0.5f;    // 6 dB of echo return loss assumed
constexpr int kHangHops = 10;               // 40 ms double-talk hangover
constexpr float kOverSuppression = 8.0f;    // noise filter
constexpr float kGainFloor = 0.03f;         // noise filter, -30 dB
constexpr int kToneReleaseHops = 63;        // 250 ms of low level ends the disabling
constexpr float kToneReleasePower = 1e-5f;  // -50 dBFS mean power per sample
constexpr int kExtraSegments = 2;           // the bank's spread beyond the tail
constexpr int kNearDelayHops = 2;           // near-end delay (8 ms)
constexpr int kPrototypeBlocks = 4;         // prototype length in transform blocks
constexpr std::size_t kHeaderBytes = 512;   // the object's header, in front of its arrays

struct Layout {
  int rate = 0, order = 0, hop = 0, windowLen = 0, bins = 0, segments = 0, history = 0;
  int bankState = 0, bankInit = 0, bankWork = 0, toneState = 0;
  std::size_t total = 0;
  // byte offsets from the aligned start
  std::size_t far = 0, nearSt = 0, outSt = 0, work = 0, init = 0, toneFar = 0, toneNear = 0, ring = 0, coeffs = 0,
              nearFrame = 0, estimate = 0, error = 0, step = 0, inPtrs = 0, coeffPtrs = 0, leakMem = 0, errPower = 0,
              nfMem = 0, geigel = 0, nearLine = 0, window = 0, hopFar = 0, hopNear = 0, hopOut = 0;
};

std::size_t take(std::size_t* at, std::size_t bytes) {
  const std::size_t here = (*at + 63) / 64 * 64;
  *at = here + bytes;
  return here;
}

bool valid_config(int rate, int tailMs) {
  if (rate == 8000) return tailMs >= 1 && tailMs <= 128;
  if (rate == 16000) return tailMs >= 1 && tailMs <= 64;
  return false;
}

VspStatus make_layout(int rate, int tailMs, Layout* l) {
  l->rate = rate;
  l->order = rate == 8000 ? 6 : 7;
  l->hop = (1 << l->order) / 2;
  l->windowLen = kPrototypeBlocks << l->order;
  l->bins = (1 << l->order) / 2 + 1;
  const int tail = tailMs * (rate / 1000);
  l->history = (tail + l->hop - 1) / l->hop;
  l->segments = l->history + kNearDelayHops + kExtraSegments;
  VspStatus st =
      legacy90vspsSubbandProcessGetSize_32f(l->order, l->windowLen, &l->bankState, &l->bankInit, &l->bankWork);
  if (st != vspStsNoErr) return st;
  st = legacy90vspsToneDetectGetStateSize_EC_16s(rate, &l->toneState);
  if (st != vspStsNoErr) return st;
  const auto bins = static_cast<std::size_t>(l->bins), segs = static_cast<std::size_t>(l->segments);
  const auto hop = static_cast<std::size_t>(l->hop);
  std::size_t at = kHeaderBytes;  // the header (VspscodecEchoCanceller) sits in front
  l->far = take(&at, static_cast<std::size_t>(l->bankState));
  l->nearSt = take(&at, static_cast<std::size_t>(l->bankState));
  l->outSt = take(&at, static_cast<std::size_t>(l->bankState));
  l->work = take(&at, static_cast<std::size_t>(l->bankWork));
  l->init = take(&at, static_cast<std::size_t>(l->bankInit) + 1);
  l->toneFar = take(&at, static_cast<std::size_t>(l->toneState));
  l->toneNear = take(&at, static_cast<std::size_t>(l->toneState));
  l->ring = take(&at, segs * bins * sizeof(Vsp32fc));
  l->coeffs = take(&at, segs * bins * sizeof(Vsp32fc));
  l->nearFrame = take(&at, bins * sizeof(Vsp32fc));
  l->estimate = take(&at, bins * sizeof(Vsp32fc));
  l->error = take(&at, bins * sizeof(Vsp32fc));
  l->step = take(&at, bins * sizeof(Vsp64f));
  l->inPtrs = take(&at, segs * sizeof(Vsp32fc*));
  l->coeffPtrs = take(&at, segs * sizeof(Vsp32fc*));
  l->leakMem = take(&at, (2 * bins + 2) * sizeof(Vsp32f));
  l->errPower = take(&at, bins * sizeof(Vsp32f));
  l->nfMem = take(&at, 3 * bins * sizeof(Vsp32f));
  l->geigel = take(&at, static_cast<std::size_t>(l->history + 1) * sizeof(Vsp32f));
  l->window = take(&at, static_cast<std::size_t>(l->windowLen) * sizeof(Vsp32f));
  l->nearLine = take(&at, static_cast<std::size_t>((kNearDelayHops + 1) * l->hop) * sizeof(Vsp32f));
  l->hopFar = take(&at, hop * sizeof(Vsp32f));
  l->hopNear = take(&at, hop * sizeof(Vsp32f));
  l->hopOut = take(&at, hop * sizeof(Vsp32f));
  l->total = at + 64;  // alignment slack
  return vspStsNoErr;
}

}  // namespace

// The header of the object, at its 64-byte aligned start.
struct VspscodecEchoCanceller {
  Layout layout;
  int flags = 0;
  int newest = 0;
  int hangCount = 0;
  int converged = 0;
  int toneHold = 0;  // hops of low level still needed to release the tone disabling
  int toneActive = 0;
  Vsp32u seed = 1;

  template <class T>
  T* at(std::size_t offset) {
    return reinterpret_cast<T*>(reinterpret_cast<Vsp8u*>(this) + offset);
  }
};

namespace {

VspscodecEchoCanceller* aligned(Vsp8u* memory) {
  const auto skip = (64 - reinterpret_cast<std::uintptr_t>(memory) % 64) % 64;
  return reinterpret_cast<VspscodecEchoCanceller*>(memory + skip);
}

float hop_power(const Vsp32f* x, int n) {
  float p = 0.0f;
  for (int i = 0; i < n; ++i) p += x[i] * x[i];
  return p / float(n);
}

}  // namespace

extern "C" {

VSPS_CODECS_API int vspscodecEchoCancellerFrameSize(int rate) { return rate == 8000 ? 32 : rate == 16000 ? 64 : 0; }

VSPS_CODECS_API int vspscodecEchoCancellerDelay(int rate) {
  // windowLen - hop of the bank, and the near-end delay
  return rate == 8000    ? (kPrototypeBlocks - 1) * 64 + 32 + kNearDelayHops * 32
         : rate == 16000 ? (kPrototypeBlocks - 1) * 128 + 64 + kNearDelayHops * 64
                         : 0;
}

VSPS_CODECS_API VspStatus vspscodecEchoCancellerGetSize(int rate, int tailMs, int* size) {
  if (size == nullptr) return vspStsNullPtrErr;
  if (!valid_config(rate, tailMs)) return vspStsRangeErr;
  static_assert(sizeof(VspscodecEchoCanceller) <= kHeaderBytes, "header must fit in front of the arrays");
  Layout l;
  const VspStatus st = make_layout(rate, tailMs, &l);
  if (st != vspStsNoErr) return st;
  *size = static_cast<int>(l.total);
  return vspStsNoErr;
}

VSPS_CODECS_API VspStatus vspscodecEchoCancellerInit(Vsp8u* memory, int rate, int tailMs, int flags) {
  if (memory == nullptr) return vspStsNullPtrErr;
  if (!valid_config(rate, tailMs)) return vspStsRangeErr;
  if (flags != 0 && flags != VSPSCODEC_EC_NO_NLP) return vspStsBadArgErr;
  Layout l;
  VspStatus st = make_layout(rate, tailMs, &l);
  if (st != vspStsNoErr) return st;
  VspscodecEchoCanceller* ec = aligned(memory);
  std::memset(static_cast<void*>(ec), 0, l.total - 64);
  ec->layout = l;
  ec->flags = flags;
  ec->seed = 1;
  Vsp32f* window = ec->at<Vsp32f>(l.window);
  root_nyquist_prototype(l.order, l.windowLen, l.hop, window);
  for (std::size_t off : {l.far, l.nearSt, l.outSt}) {
    st = legacy90vspsSubbandProcessInit_32f(ec->at<Vsp8u>(off), l.order, l.hop, l.windowLen, window,
                                            ec->at<Vsp8u>(l.init));
    if (st != vspStsNoErr) return st;
  }
  for (std::size_t off : {l.toneFar, l.toneNear}) {
    st = legacy90vspsToneDetectInit_EC_16s(ec->at<Vsp8u>(off), rate);
    if (st != vspStsNoErr) return st;
  }
  return vspStsNoErr;
}

VSPS_CODECS_API VspStatus vspscodecEchoCancellerProcess(VspscodecEchoCanceller* canceller, const Vsp16s* farEnd,
                                                        const Vsp16s* nearEnd, Vsp16s* out,
                                                        VspscodecEchoDiagnostics* diag) {
  if (canceller == nullptr || farEnd == nullptr || nearEnd == nullptr || out == nullptr) return vspStsNullPtrErr;
  VspscodecEchoCanceller* ec = aligned(reinterpret_cast<Vsp8u*>(canceller));  // the memory Init formatted
  const Layout& l = ec->layout;
  const int hop = l.hop, bins = l.bins, segs = l.segments;
  Vsp32f* f = ec->at<Vsp32f>(l.hopFar);
  Vsp32f* d = ec->at<Vsp32f>(l.hopNear);
  Vsp32f* y = ec->at<Vsp32f>(l.hopOut);
  for (int i = 0; i < hop; ++i) {
    f[i] = float(farEnd[i]) * kPcmScale;
    d[i] = float(nearEnd[i]) * kPcmScale;
  }
  // The near end runs kNearDelayHops hops behind the far end, so that the
  // sub-band filters also hold the part of the echo path that the bank's
  // prototype spreads ahead of the path's first tap.
  Vsp32f* line = ec->at<Vsp32f>(l.nearLine);
  const int lag = kNearDelayHops * hop;
  for (int i = 0; i < lag; ++i) line[i] = line[i + hop];
  for (int i = 0; i < hop; ++i) {
    line[lag + i] = d[i];
    d[i] = line[i];
  }
  Vsp8u* work = ec->at<Vsp8u>(l.work);
  Vsp32fc* ring = ec->at<Vsp32fc>(l.ring);
  Vsp32fc* coeffs = ec->at<Vsp32fc>(l.coeffs);
  Vsp32fc* nearFrame = ec->at<Vsp32fc>(l.nearFrame);
  Vsp32fc* estimate = ec->at<Vsp32fc>(l.estimate);
  Vsp32fc* error = ec->at<Vsp32fc>(l.error);
  const Vsp32fc** inPtrs = ec->at<const Vsp32fc*>(l.inPtrs);
  Vsp32fc** coeffPtrs = ec->at<Vsp32fc*>(l.coeffPtrs);

  // The 2100 Hz disabling tone on either end; released after 250 ms of low level.
  int toneFar = 0, toneNear = 0;
  VspStatus st = legacy90vspsToneDetect_EC_16s(farEnd, hop, &toneFar, ec->at<VspsToneDetectState_16s>(l.toneFar));
  if (st == vspStsNoErr)
    st = legacy90vspsToneDetect_EC_16s(nearEnd, hop, &toneNear, ec->at<VspsToneDetectState_16s>(l.toneNear));
  if (st != vspStsNoErr) return st;
  if (toneFar || toneNear) {
    ec->toneActive = 1;
    ec->toneHold = kToneReleaseHops;
  } else if (ec->toneActive) {
    if (hop_power(f, hop) < kToneReleasePower && hop_power(d, hop) < kToneReleasePower)
      ec->toneHold -= 1;
    else
      ec->toneHold = kToneReleaseHops;
    if (ec->toneHold <= 0) ec->toneActive = 0;
  }

  ec->newest = (ec->newest + segs - 1) % segs;
  const auto bn = static_cast<std::size_t>(bins);
  st = legacy90vspsSubbandAnalysis_32f32fc(f, ring + static_cast<std::size_t>(ec->newest) * bn,
                                           ec->at<VspsSubbandProcessState_32f>(l.far), work);
  if (st == vspStsNoErr)
    st = legacy90vspsSubbandAnalysis_32f32fc(d, nearFrame, ec->at<VspsSubbandProcessState_32f>(l.nearSt), work);
  if (st != vspStsNoErr) return st;
  for (int m = 0; m < segs; ++m) {
    inPtrs[m] = ring + static_cast<std::size_t>((ec->newest + m) % segs) * bn;
    coeffPtrs[m] = coeffs + static_cast<std::size_t>(m) * bn;
  }
  st = legacy90vspsFIRSubband_EC_32fc(inPtrs, coeffPtrs, estimate, segs, bins);
  if (st != vspStsNoErr) return st;
  float pd = 0.0f, pe = 0.0f;
  for (int k = 0; k < bins; ++k) {
    error[k] = {nearFrame[k].re - estimate[k].re, nearFrame[k].im - estimate[k].im};
    pd += nearFrame[k].re * nearFrame[k].re + nearFrame[k].im * nearFrame[k].im;
    pe += error[k].re * error[k].re + error[k].im * error[k].im;
  }

  int doubleTalk = 0;
  st = legacy90vspsDoubleTalkDetect_EC_32f(f, d, hop, ec->at<Vsp32f>(l.geigel), l.history + 1, kGeigelThreshold,
                                           kHangHops, &ec->hangCount, &doubleTalk);
  Vsp32f leak = 0.0f;
  if (st == vspStsNoErr)
    st = legacy90vspsFullbandStepSize_EC_32f(error, estimate, ec->at<Vsp32f>(l.leakMem), &leak, bins, kLeakSmoothing);
  if (st != vspStsNoErr) return st;
  const bool farActive = hop_power(f, hop) > kToneReleasePower;
  const Vsp32f stepLeak = leak * kLeakGain < 1.0f ? leak * kLeakGain : 1.0f;
  if (!ec->converged && farActive && !doubleTalk && pe < 0.1f * pd) ec->converged = 1;
  if (!doubleTalk && !ec->toneActive && farActive) {
    Vsp64f* step = ec->at<Vsp64f>(l.step);
    st = legacy90vspsSubbandStepSize_EC_32f(inPtrs, error, estimate, ec->at<Vsp32f>(l.errPower), step, segs, bins,
                                            stepLeak, ec->converged ? 0.0f : kMuStart, kMuMax, kDelta);
    if (st == vspStsNoErr) st = legacy90vspsFIRSubbandCoeffUpdate_EC_32fc_I(step, inPtrs, error, coeffPtrs, segs, bins);
    if (st != vspStsNoErr) return st;
  }
  if (!(ec->flags & VSPSCODEC_EC_NO_NLP) && !ec->toneActive) {
    st = legacy90vspsNoiseFilter_EC_32f(error, estimate, ec->at<Vsp32f>(l.nfMem), &ec->seed, bins, stepLeak,
                                        kOverSuppression, kGainFloor);
    if (st != vspStsNoErr) return st;
  }
  const Vsp32fc* synth = ec->toneActive ? nearFrame : error;
  st = legacy90vspsSubbandSynthesis_32fc32f(synth, y, ec->at<VspsSubbandProcessState_32f>(l.outSt), work);
  if (st != vspStsNoErr) return st;
  for (int i = 0; i < hop; ++i) {
    const float v = y[i] * 32768.0f;
    const float r = v >= 0.0f ? v + 0.5f : v - 0.5f;
    out[i] = r >= 32767.0f ? Vsp16s(32767) : r <= -32768.0f ? Vsp16s(-32768) : static_cast<Vsp16s>(r);
  }
  if (diag != nullptr) {
    diag->doubleTalk = doubleTalk;
    diag->toneDisabled = ec->toneActive;
    diag->converged = ec->converged;
    diag->leak = leak;
  }
  return vspStsNoErr;
}

}  // extern "C"
