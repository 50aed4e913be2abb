// Eight echo-canceller scenarios at 8000 Hz from the built-in speech-like
// signal through the G.168 hybrid models, and their measurements, the same
// for every canceller (ours through the codec layer, the peers in the
// benchmarks): single talk at four noise levels, two double-talk files
// (a second talker at two levels), an echo-path change and the 2100 Hz
// disabling tone with phase reversals.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "tools/echo/g168_models.h"
#include "tools/speech_signal.h"

namespace ecscen {

inline constexpr int kRate = 8000;
inline constexpr double kSeconds = 12.0;
inline constexpr double kErlDb = 6.0;  // echo return loss of every hybrid

enum class Kind { SingleTalk, DoubleTalk, PathChange, Tone };

struct Scenario {
  std::string name;
  Kind kind = Kind::SingleTalk;
  std::vector<int16_t> far, near;  // the canceller's inputs
  std::vector<double> echo;        // echo component of near (for the limit)
  std::vector<double> talk;        // near-end talker component (double talk)
  double limitDb = 0;              // ERLE the noise allows: (echo + noise) / noise
  std::size_t changeAt = 0;        // sample of the path change or of the tone's start
  std::size_t toneEnd = 0;         // first sample after the tone
};

inline std::vector<double> convolve(const std::vector<double>& x, const g168::EchoPath& p, double scale,
                                    std::size_t from, std::size_t to) {
  std::vector<double> y(x.size(), 0.0);
  for (std::size_t n = from; n < to; ++n) {
    double s = 0;
    for (int k = 0; k < p.length && k <= int(n); ++k) s += p.taps[k] * x[n - std::size_t(k)];
    y[n] = s * p.gain * scale;
  }
  return y;
}

// Scale of a model that gives kErlDb on white input (the models' own
// energy); the same scale for every signal, so the echo level follows the
// far end.
inline double erl_scale(const g168::EchoPath& p) {
  double e = 0;
  for (int k = 0; k < p.length; ++k) e += double(p.taps[k]) * p.taps[k] * p.gain * p.gain;
  return std::sqrt(std::pow(10.0, -kErlDb / 10.0) / e);
}

inline double power(const std::vector<double>& v) {
  double s = 0;
  for (double x : v) s += x * x;
  return s / double(v.size());
}

inline std::vector<double> to_double(const std::vector<int16_t>& v) { return {v.begin(), v.end()}; }

// One scenario: far end, echo through `path` (from changeAt through
// `second`), near-end talk, noise at echoToNoiseDb below the echo.
inline Scenario build(const std::string& name, Kind kind, int path, int second, double echoToNoiseDb, double talkDb) {
  Scenario s;
  s.name = name;
  s.kind = kind;
  const auto n = static_cast<std::size_t>(kSeconds * kRate);
  std::vector<double> far = to_double(vsps::signals::speech_like(kSeconds, kRate, 1));
  far.resize(n, 0.0);
  if (kind == Kind::Tone) {  // 2100 Hz with reversals every 450 ms from 4 s to 7.5 s, then 0.5 s of silence
    s.changeAt = 4 * kRate;
    s.toneEnd = 7 * kRate + kRate / 2;
    const std::vector<int16_t> tone = vsps::signals::tone_with_reversals(3.5, kRate, 2100.0, 6000.0, 450.0);
    for (std::size_t i = s.changeAt; i < s.toneEnd + kRate / 2; ++i)
      far[i] = i < s.toneEnd ? double(tone[i - s.changeAt]) : 0.0;
  }
  const g168::EchoPath& a = g168::kEchoPaths[path];
  s.echo = convolve(far, a, erl_scale(a), 0, n);
  if (kind == Kind::PathChange) {
    s.changeAt = 6 * kRate;
    const g168::EchoPath& b = g168::kEchoPaths[second];
    const std::vector<double> e2 = convolve(far, b, erl_scale(b), 0, n);
    for (std::size_t i = s.changeAt; i < n; ++i) s.echo[i] = e2[i];
  }
  s.talk.assign(n, 0.0);
  if (kind == Kind::DoubleTalk) {  // a second talker from 4 s to 8 s at talkDb relative to the far end
    std::vector<double> t = to_double(vsps::signals::speech_like(4.0, kRate, 97));
    const double g = std::sqrt(power(far) / power(t)) * std::pow(10.0, talkDb / 20.0);
    for (std::size_t i = 0; i < t.size(); ++i) s.talk[4 * kRate + i] = t[i] * g;
  }
  const double noiseRms = std::sqrt(power(s.echo)) * std::pow(10.0, -echoToNoiseDb / 20.0);
  std::mt19937 rng(12345u + static_cast<uint32_t>(path));
  std::normal_distribution<double> gauss(0.0, noiseRms);
  s.limitDb = 10.0 * std::log10((power(s.echo) + noiseRms * noiseRms) / (noiseRms * noiseRms));
  for (std::size_t i = 0; i < n; ++i) {
    s.far.push_back(static_cast<int16_t>(std::lround(std::clamp(far[i], -32768.0, 32767.0))));
    const double v = s.echo[i] + s.talk[i] + gauss(rng);
    s.near.push_back(static_cast<int16_t>(std::lround(std::clamp(v, -32768.0, 32767.0))));
  }
  return s;
}

inline std::vector<Scenario> all_scenarios() {
  return {build("single talk, noise -45 dB", Kind::SingleTalk, 0, 0, 45.0, 0),
          build("single talk, noise -27 dB", Kind::SingleTalk, 1, 0, 27.0, 0),
          build("single talk, noise -25 dB", Kind::SingleTalk, 3, 0, 25.0, 0),
          build("single talk, noise -15 dB", Kind::SingleTalk, 5, 0, 15.0, 0),
          build("double talk, talker 0 dB", Kind::DoubleTalk, 0, 0, 40.0, 0.0),
          build("double talk, talker -6 dB", Kind::DoubleTalk, 2, 0, 40.0, -6.0),
          build("echo-path change D2 -> D6", Kind::PathChange, 0, 4, 40.0, 0),
          build("2100 Hz tone with reversals", Kind::Tone, 0, 0, 40.0, 0)};
}

struct Metrics {
  double erleDb = NAN;       // last 3 s, far end active, no near-end talk
  double convergeS = NAN;    // first 100 ms block at min(20, limit - 3) dB ERLE
  double reconvergeS = NAN;  // after the path change, the same
  double talkSnrDb = NAN;    // segmental SNR of the near-end talker in the output
  int divergentBlocks = 0;   // 0.5 s blocks with the far end active and output louder than input
};

// out[i + delay] is the canceller's output for near[i].
inline Metrics measure(const Scenario& s, const std::vector<int16_t>& out, std::size_t delay) {
  Metrics m;
  const std::size_t n = s.near.size();
  auto o = [&](std::size_t i) { return i + delay < out.size() ? double(out[i + delay]) : 0.0; };
  auto farActive = [&](std::size_t b, std::size_t len) {
    double p = 0;
    for (std::size_t i = b; i < b + len; ++i) p += double(s.far[i]) * s.far[i];
    return p / double(len) > 100.0 * 100.0;  // -50 dBFS
  };
  auto talking = [&](std::size_t b, std::size_t len) {
    for (std::size_t i = b; i < b + len; ++i)
      if (s.talk[i] != 0.0) return true;
    return false;
  };
  auto inTone = [&](std::size_t b, std::size_t len) {
    return s.kind == Kind::Tone && b + len > s.changeAt && b < s.toneEnd + kRate;
  };
  const double target = std::min(20.0, s.limitDb - 3.0);
  const std::size_t small = kRate / 10;
  for (std::size_t b = 0; b + small <= n; b += small) {
    if (!farActive(b, small) || talking(b, small) || inTone(b, small)) continue;
    double pd = 0, po = 0;
    for (std::size_t i = b; i < b + small; ++i) {
      pd += double(s.near[i]) * s.near[i];
      po += o(i) * o(i);
    }
    const double erle = 10 * std::log10(pd / (po + 1e-9));
    if (erle >= target && std::isnan(m.convergeS)) m.convergeS = double(b) / kRate;
    if (s.kind == Kind::PathChange && b >= s.changeAt && erle >= target && std::isnan(m.reconvergeS))
      m.reconvergeS = double(b - s.changeAt) / kRate;
  }
  double pd = 0, po = 0;
  for (std::size_t b = n - 3 * kRate; b + small <= n; b += small) {
    if (!farActive(b, small) || talking(b, small)) continue;
    for (std::size_t i = b; i < b + small; ++i) {
      pd += double(s.near[i]) * s.near[i];
      po += o(i) * o(i);
    }
  }
  m.erleDb = 10 * std::log10(pd / (po + 1e-9));
  const std::size_t half = kRate / 2;
  for (std::size_t b = 0; b + half <= n; b += half) {
    if (!farActive(b, half) || inTone(b, half)) continue;
    double bd = 0, bo = 0;
    for (std::size_t i = b; i < b + half; ++i) {
      bd += double(s.near[i]) * s.near[i];
      bo += o(i) * o(i);
    }
    if (bo > bd) ++m.divergentBlocks;
  }
  if (s.kind == Kind::DoubleTalk) {
    const std::size_t seg = kRate / 50;  // 20 ms
    double sum = 0;
    int count = 0;
    for (std::size_t b = 0; b + seg <= n; b += seg) {
      double ps = 0, pe = 0;
      for (std::size_t i = b; i < b + seg; ++i) {
        ps += s.talk[i] * s.talk[i];
        pe += (o(i) - s.talk[i]) * (o(i) - s.talk[i]);
      }
      if (ps / double(seg) < 300.0 * 300.0) continue;  // talker active
      sum += std::clamp(10 * std::log10(ps / (pe + 1e-9)), -10.0, 40.0);
      ++count;
    }
    m.talkSnrDb = count ? sum / count : NAN;
  }
  return m;
}

}  // namespace ecscen
