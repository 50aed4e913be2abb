// Echo scenarios for the sub-band echo canceller: far-end signals (white
// noise, or a speech-like sequence built from the G.168 composite source
// signal: voiced fragments, coloured noise bursts and pauses), the echo
// through a G.168 hybrid model scaled to an echo return loss, near-end
// noise, and the measurement of the echo-return-loss enhancement (ERLE).
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "g168_models.h"
#include "subband_echo_canceller.h"

namespace ecdemo {

enum class FarEnd { Noise, SpeechLike };

struct Scenario {
  FarEnd farEnd = FarEnd::Noise;
  double seconds = 8.0;
  double farLevel = 0.1;       // RMS of the far-end signal (full scale 1.0)
  double erlDb = 6.0;          // echo return loss of the hybrid
  double nearNoiseDb = -45.0;  // near-end noise RMS relative to the far-end RMS
  uint32_t seed = 1;
};

struct Measurement {
  double erleDb = 0;                // over the last quarter of the run (echo active)
  double secondsTo20dB = -1;        // first 50 ms block with ERLE >= 20 dB, or -1
  std::vector<double> blockErleDb;  // per 50 ms block (NaN where the echo is silent)
};

inline constexpr double kRate = 8000.0;

inline std::vector<double> far_end_signal(FarEnd kind, std::size_t n, double rms, uint32_t seed) {
  std::mt19937 rng(seed);
  std::normal_distribution<double> gauss(0.0, 1.0);
  std::vector<double> x(n, 0.0);
  if (kind == FarEnd::Noise) {
    for (double& v : x) v = gauss(rng);
  } else {
    // Voiced CSS fragments (about 50 ms), a 200 ms burst of coloured noise, a
    // pause of about 100 ms, again and again, each part with its own level.
    std::size_t pos = 0;
    double y1 = 0, y2 = 0;
    int part = 0;
    while (pos < n) {
      const double level = 0.5 + double(rng() % 1000) / 1000.0;
      if (part % 3 == 0) {
        const int16_t* frag = (part / 3) % 2 ? g168::kCssC3 : g168::kCssC1;
        const std::size_t len = (part / 3) % 2 ? std::size(g168::kCssC3) : std::size(g168::kCssC1);
        for (std::size_t r = 0; r < 400 / len + 1 && pos < n; ++r)
          for (std::size_t i = 0; i < len && pos < n; ++i) x[pos++] = level * frag[i] / 4000.0;
      } else if (part % 3 == 1) {
        for (int i = 0; i < 1600 && pos < n; ++i) {  // AR(2) coloured noise
          const double v = gauss(rng) + 1.3 * y1 - 0.6 * y2;
          y2 = y1;
          y1 = v;
          x[pos++] = level * 0.35 * v;
        }
      } else {
        pos += 800;
      }
      ++part;
    }
  }
  double energy = 0;
  for (double v : x) energy += v * v;
  const double scale = rms / std::sqrt(energy / double(n) + 1e-30);
  for (double& v : x) v *= scale;
  return x;
}

// Echo through the model, scaled so that its power is erlDb below the
// far end's (for the far-end signal actually used).
inline std::vector<double> echo_of(const std::vector<double>& far, const g168::EchoPath& path, double erlDb) {
  std::vector<double> e(far.size(), 0.0);
  for (std::size_t n = 0; n < far.size(); ++n) {
    double s = 0;
    for (int k = 0; k < path.length && k <= int(n); ++k) s += path.gain * path.taps[k] * far[n - std::size_t(k)];
    e[n] = s;
  }
  double pf = 0, pe = 0;
  for (std::size_t n = 0; n < far.size(); ++n) {
    pf += far[n] * far[n];
    pe += e[n] * e[n];
  }
  const double scale = std::sqrt(pf / pe * std::pow(10.0, -erlDb / 10.0));
  for (double& v : e) v *= scale;
  return e;
}

// Runs the canceller over the scenario and measures the ERLE from the
// echo-only residual (see ResidualProbe).
inline bool run_scenario(const CancellerConfig& cfg, const g168::EchoPath& path, const Scenario& sc, Measurement* m) {
  SubbandEchoCanceller aec;
  ResidualProbe probe;
  if (!aec.init(cfg) || !probe.init(cfg)) return false;
  const int hop = cfg.frameSize;
  const auto n = static_cast<std::size_t>(sc.seconds * kRate) / std::size_t(hop) * std::size_t(hop);
  const std::vector<double> far = far_end_signal(sc.farEnd, n, sc.farLevel, sc.seed);
  const std::vector<double> echo = echo_of(far, path, sc.erlDb);
  std::mt19937 rng(sc.seed * 7919u + 1u);
  std::normal_distribution<double> gauss(0.0, sc.farLevel * std::pow(10.0, sc.nearNoiseDb / 20.0));
  std::vector<float> f(n), d(n), e(n), out(n), residual(n);
  for (std::size_t i = 0; i < n; ++i) {
    f[i] = static_cast<float>(far[i]);
    e[i] = static_cast<float>(echo[i]);
    d[i] = static_cast<float>(echo[i] + gauss(rng));
  }
  for (std::size_t p = 0; p < n; p += std::size_t(hop)) {
    if (!aec.process(&f[p], &d[p], &out[p])) return false;
    if (!probe.process(&e[p], aec.estimate(), &residual[p])) return false;
  }
  // The bank delays by windowLen - frameSize samples.
  const std::size_t delay = std::size_t(cfg.windowLen - cfg.frameSize);
  const std::size_t block = 400;  // 50 ms
  double peak = 0;
  for (double v : echo) peak = std::max(peak, std::fabs(v));
  double tailEcho = 0, tailResidual = 0;
  m->blockErleDb.clear();
  m->secondsTo20dB = -1;
  for (std::size_t b = 0; b + block + delay <= n; b += block) {
    double pe = 0, pr = 0;
    for (std::size_t i = b; i < b + block; ++i) {
      pe += echo[i] * echo[i];
      pr += double(residual[i + delay]) * residual[i + delay];
    }
    const bool active = pe / double(block) > 1e-4 * peak * peak;
    const double erle = active ? 10.0 * std::log10(pe / (pr + 1e-30)) : NAN;
    m->blockErleDb.push_back(erle);
    if (active && erle >= 20.0 && m->secondsTo20dB < 0) m->secondsTo20dB = double(b) / kRate;
    if (active && b >= n * 3 / 4) {
      tailEcho += pe;
      tailResidual += pr;
    }
  }
  m->erleDb = 10.0 * std::log10(tailEcho / (tailResidual + 1e-30));
  return true;
}

}  // namespace ecdemo
