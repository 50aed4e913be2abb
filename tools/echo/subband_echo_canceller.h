// A sub-band acoustic/line echo canceller assembled from the toolkit's
// primitives: analysis of the far-end (reference) and near-end signals,
// one adaptive filter of numSegments taps per sub-band (FIRSubband_EC_32fc),
// a normalised step per sub-band (mu / (reference energy over the taps +
// delta)), the LMS coefficient update (FIRSubbandCoeffUpdate_EC_32fc_I) and
// synthesis of the error sub-bands into the output signal.
//
// Header-only and dependent only on vsps.h; all memory is owned here.
#pragma once

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "vsps.h"

namespace ecdemo {

// A low-pass prototype for a bank of N = 2^order sub-bands: a sinc with its
// first zeros at +-N samples under a Blackman window, scaled so that the
// analysis/synthesis pair has unit gain at hop frameSize (sum of w^2 =
// frameSize). With hop N/2 its aliasing stays far below the built-in
// windows' at their hops (N = 64, hop 44).
inline std::vector<Vsp32f> design_prototype(int order, int windowLen, int frameSize) {
  const double n = double(1 << order), len = double(windowLen), pi = 3.14159265358979323846;
  std::vector<double> w(static_cast<std::size_t>(windowLen));
  double energy = 0;
  for (int i = 0; i < windowLen; ++i) {
    const double t = (double(i) - (len - 1) / 2) / n;
    const double sinc = t == 0 ? 1.0 : std::sin(pi * t) / (pi * t);
    const double phase = 2 * pi * (double(i) + 0.5) / len;
    w[static_cast<std::size_t>(i)] = sinc * (0.42 - 0.5 * std::cos(phase) + 0.08 * std::cos(2 * phase));
    energy += w[static_cast<std::size_t>(i)] * w[static_cast<std::size_t>(i)];
  }
  std::vector<Vsp32f> out;
  for (double v : w) out.push_back(static_cast<Vsp32f>(v * std::sqrt(double(frameSize) / energy)));
  return out;
}

struct CancellerConfig {
  int order = 6;                                              // N = 64: 33 sub-bands
  int frameSize = 32;                                         // hop N/2
  int windowLen = 256;                                        // prototype length 4N
  int segments = 16;                                          // taps per sub-band (frames of echo tail)
  double mu = 0.5;                                            // normalised step, 0 < mu < 2
  double delta = 1e-2;                                        // regularisation of the normaliser: about 0.2% of the
                                                              // reference energy over the taps at -20 dBFS
  std::vector<Vsp32f> window = design_prototype(6, 256, 32);  // empty: built-in window
};

// The toolkit's built-in configuration: N = 64, hop 44, its own window.
inline CancellerConfig builtin_config() {
  CancellerConfig c;
  c.frameSize = 44;
  c.segments = 16;
  c.window.clear();
  return c;
}

// Sizes, allocates and formats filter-bank states of the configuration
// (the window of cfg, or the built-in one), and one work buffer for them.
inline bool init_bank_states(const CancellerConfig& cfg, std::initializer_list<std::vector<Vsp8u>*> states,
                             std::vector<Vsp8u>* work) {
  int stateSize = 0, initSize = 0, workSize = 0;
  if (legacy90vspsSubbandProcessGetSize_32f(cfg.order, cfg.windowLen, &stateSize, &initSize, &workSize) != 0)
    return false;
  std::vector<Vsp8u> initBuf(static_cast<std::size_t>(initSize) + 1);  // only needed during Init
  work->assign(static_cast<std::size_t>(workSize), 0);
  const Vsp32f* window = cfg.window.empty() ? nullptr : cfg.window.data();
  for (std::vector<Vsp8u>* s : states) {
    s->assign(static_cast<std::size_t>(stateSize), 0);
    if (legacy90vspsSubbandProcessInit_32f(s->data(), cfg.order, cfg.frameSize, cfg.windowLen, window,
                                           initBuf.data()) != 0)
      return false;
  }
  return true;
}

class SubbandEchoCanceller {
 public:
  // Returns false when the library refuses the configuration.
  bool init(const CancellerConfig& cfg) {
    cfg_ = cfg;
    bins_ = (1 << cfg.order) / 2 + 1;
    if (!init_bank_states(cfg, {&farState_, &nearState_, &outState_}, &work_)) return false;
    const auto frames = static_cast<std::size_t>(cfg.segments);
    history_.assign(frames * bins_, Vsp32fc{0, 0});
    coeffs_.assign(frames * bins_, Vsp32fc{0, 0});
    nearFrame_.assign(bins_, Vsp32fc{0, 0});
    estimate_.assign(bins_, Vsp32fc{0, 0});
    error_.assign(bins_, Vsp32fc{0, 0});
    step_.assign(bins_, 0.0);
    inPtrs_.assign(frames, nullptr);
    coeffPtrs_.assign(frames, nullptr);
    newest_ = 0;
    return true;
  }

  // One hop: frameSize far-end and near-end samples in, frameSize output
  // samples (near end with the echo removed). Returns false on a library
  // error.
  bool process(const Vsp32f* farEnd, const Vsp32f* nearEnd, Vsp32f* out, bool adapt = true) {
    // The newest far-end frame replaces the oldest one of the ring.
    newest_ = (newest_ + cfg_.segments - 1) % cfg_.segments;
    Vsp32fc* x0 = &history_[static_cast<std::size_t>(newest_) * bins_];
    if (legacy90vspsSubbandAnalysis_32f32fc(farEnd, x0, far(), work_.data()) != 0) return false;
    if (legacy90vspsSubbandAnalysis_32f32fc(nearEnd, nearFrame_.data(), nearSt(), work_.data()) != 0) return false;
    for (int m = 0; m < cfg_.segments; ++m) {
      const std::size_t slot = static_cast<std::size_t>((newest_ + m) % cfg_.segments);
      inPtrs_[static_cast<std::size_t>(m)] = &history_[slot * bins_];
      coeffPtrs_[static_cast<std::size_t>(m)] = &coeffs_[static_cast<std::size_t>(m) * bins_];
    }
    const int nb = static_cast<int>(bins_);
    if (legacy90vspsFIRSubband_EC_32fc(inPtrs_.data(), constCoeffs(), estimate_.data(), cfg_.segments, nb) != 0)
      return false;
    for (std::size_t k = 0; k < bins_; ++k)
      error_[k] = {nearFrame_[k].re - estimate_[k].re, nearFrame_[k].im - estimate_[k].im};
    if (adapt) {
      for (std::size_t k = 0; k < bins_; ++k) {
        double energy = 0.0;
        for (int m = 0; m < cfg_.segments; ++m) {
          const Vsp32fc x = inPtrs_[static_cast<std::size_t>(m)][k];
          energy += double(x.re) * x.re + double(x.im) * x.im;
        }
        step_[k] = cfg_.mu / (energy + cfg_.delta);
      }
      if (legacy90vspsFIRSubbandCoeffUpdate_EC_32fc_I(step_.data(), inPtrs_.data(), error_.data(), coeffPtrs_.data(),
                                                      cfg_.segments, nb) != 0)
        return false;
    }
    return legacy90vspsSubbandSynthesis_32fc32f(error_.data(), out, outSt(), work_.data()) == 0;
  }

  // The echo estimate of the last hop (bins 0..N/2), for measurements.
  const std::vector<Vsp32fc>& estimate() const { return estimate_; }
  int frame_size() const { return cfg_.frameSize; }
  std::size_t bins() const { return bins_; }
  const CancellerConfig& config() const { return cfg_; }

 private:
  VspsSubbandProcessState_32f* far() { return reinterpret_cast<VspsSubbandProcessState_32f*>(farState_.data()); }
  VspsSubbandProcessState_32f* nearSt() { return reinterpret_cast<VspsSubbandProcessState_32f*>(nearState_.data()); }
  VspsSubbandProcessState_32f* outSt() { return reinterpret_cast<VspsSubbandProcessState_32f*>(outState_.data()); }
  const Vsp32fc* const* constCoeffs() const { return reinterpret_cast<const Vsp32fc* const*>(coeffPtrs_.data()); }

  CancellerConfig cfg_;
  std::size_t bins_ = 0;
  int newest_ = 0;
  std::vector<Vsp8u> farState_, nearState_, outState_, work_;
  std::vector<Vsp32fc> history_, coeffs_, nearFrame_, estimate_, error_;
  std::vector<double> step_;
  std::vector<const Vsp32fc*> inPtrs_;
  std::vector<Vsp32fc*> coeffPtrs_;
};

// Synthesises the echo-only residual of a canceller: the echo signal's own
// analysis minus the canceller's estimate, through a separate synthesis
// bank. Fed with the echo part of the near-end signal it gives exactly the
// echo left in the canceller's output (the bank is linear).
class ResidualProbe {
 public:
  bool init(const CancellerConfig& cfg) {
    if (!init_bank_states(cfg, {&anaState_, &synState_}, &work_)) return false;
    frame_.assign(static_cast<std::size_t>((1 << cfg.order) / 2 + 1), Vsp32fc{0, 0});
    return true;
  }
  bool process(const Vsp32f* echo, const std::vector<Vsp32fc>& estimate, Vsp32f* residual) {
    auto* ana = reinterpret_cast<VspsSubbandProcessState_32f*>(anaState_.data());
    auto* syn = reinterpret_cast<VspsSubbandProcessState_32f*>(synState_.data());
    if (legacy90vspsSubbandAnalysis_32f32fc(echo, frame_.data(), ana, work_.data()) != 0) return false;
    for (std::size_t k = 0; k < frame_.size(); ++k)
      frame_[k] = {frame_[k].re - estimate[k].re, frame_[k].im - estimate[k].im};
    return legacy90vspsSubbandSynthesis_32fc32f(frame_.data(), residual, syn, work_.data()) == 0;
  }

 private:
  std::vector<Vsp8u> anaState_, synState_, work_;
  std::vector<Vsp32fc> frame_;
};

}  // namespace ecdemo
