// The 2100 Hz tone detector on synthesised signals: tones with phase
// reversals every 450 ms (detected in the call with the second counted
// reversal), every 400 ms and steady (never), gaps of noise and of digital
// silence, at both rates, both twins and block lengths from 1 sample to
// seconds; and the reading chosen for the tone-run reset.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "ec/subband_layout.h"
#include "ec/tone_layout.h"
#include "tests/ec/tone_signals.h"
#include "vsps.h"

namespace {

// Runs a detector over x in blocks of `block` samples; returns the sample
// index ranges [start, end) of the calls that reported the tone.
struct Detection {
  std::vector<std::pair<std::size_t, std::size_t>> calls;
  bool any() const { return !calls.empty(); }
};

struct Counters {
  int32_t toneRun, gapRun, reversals;
};

// Runs a detector (state at `misalign` bytes into its block) over x in
// blocks of `block` samples: the calls that reported the tone go to *d, the
// counters left in the state are returned.
Counters run_state(bool fixedPoint, int rate, const std::vector<double>& x, std::size_t block, Detection* d,
                   std::size_t misalign = 0) {
  std::vector<uint8_t> state((fixedPoint ? 72 : 80) + misalign);
  Vsp8u* s = state.data() + misalign;
  EXPECT_EQ(fixedPoint ? legacy90vspsToneDetectInit_EC_16s(s, rate) : legacy90vspsToneDetectInit_EC_32f(s, rate), 0);
  std::vector<Vsp16s> x16(x.size());
  std::vector<Vsp32f> x32(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) {
    x16[i] = static_cast<Vsp16s>(std::lround(std::clamp(x[i], -1.0, 32767.0 / 32768.0) * 32768.0));
    x32[i] = static_cast<Vsp32f>(x[i]);
  }
  for (std::size_t p = 0; p < x.size(); p += block) {
    const int len = static_cast<int>(std::min(block, x.size() - p));
    int result = -1;
    const int st =
        fixedPoint
            ? legacy90vspsToneDetect_EC_16s(&x16[p], len, &result, reinterpret_cast<VspsToneDetectState_16s*>(s))
            : legacy90vspsToneDetect_EC_32f(&x32[p], len, &result, reinterpret_cast<VspsToneDetectState_32f*>(s));
    EXPECT_EQ(st, 0);
    EXPECT_TRUE(result == 0 || result == 1);
    if (result == 1) d->calls.push_back({p, p + std::size_t(len)});
  }
  if (fixedPoint) {
    vsps::ec::ToneState16s t;
    std::memcpy(&t, vsps::ec::align16(s), sizeof t);
    return {t.toneRun, t.gapRun, t.reversals};
  }
  vsps::ec::ToneState32f t;
  std::memcpy(&t, vsps::ec::align16(s), sizeof t);
  return {t.toneRun, t.gapRun, t.reversals};
}

Detection run_detector(bool fixedPoint, int rate, const std::vector<double>& x, std::size_t block,
                       std::size_t misalign = 0) {
  Detection d;
  run_state(fixedPoint, rate, x, block, &d, misalign);
  return d;
}

struct Twin {
  bool fixedPoint;
  int rate;
};

class ToneDetector : public testing::TestWithParam<Twin> {};

const std::size_t kBlocks[] = {1, 13, 160, 1000, 8000, 1u << 30};

TEST_P(ToneDetector, ReversalsEvery450msDetectedWithTheSecondCountedReversal) {
  const Twin su = GetParam();
  ect::ToneSignal sig;
  sig.rate = su.rate;
  const std::vector<double> x = ect::tone_signal(sig);
  // The first counted reversal is at 450 ms (the run from the tone's start),
  // the second at 900 ms; the dip follows each reversal within a few ms.
  const auto second = static_cast<std::size_t>(0.9 * su.rate);
  const auto slack = static_cast<std::size_t>(0.03 * su.rate);
  for (std::size_t block : kBlocks) {
    const Detection d = run_detector(su.fixedPoint, su.rate, x, block);
    ASSERT_TRUE(d.any()) << "block " << block;
    EXPECT_LE(d.calls[0].first, second + slack) << "block " << block;
    EXPECT_GT(d.calls[0].second, second) << "block " << block;
    if (block == 1) EXPECT_LT(d.calls[0].first, second + slack);
    // Every later reversal (1.35 s, 1.8 s) is counted again: one report each.
    EXPECT_LE(d.calls.size(), 3u) << "block " << block;
  }
}

TEST_P(ToneDetector, ReversalsEvery400msAreNeverCounted) {
  const Twin su = GetParam();
  ect::ToneSignal sig;
  sig.rate = su.rate;
  sig.firstReversal = 0.4;
  sig.period = 0.4;
  sig.seconds = 3.0;
  for (std::size_t block : kBlocks)
    EXPECT_FALSE(run_detector(su.fixedPoint, su.rate, ect::tone_signal(sig), block).any());
}

TEST_P(ToneDetector, SteadyToneIsNeverReported) {
  const Twin su = GetParam();
  ect::ToneSignal sig;
  sig.rate = su.rate;
  sig.period = 0;
  sig.seconds = 3.0;
  for (std::size_t block : {std::size_t(1), std::size_t(160), std::size_t(1) << 30})
    EXPECT_FALSE(run_detector(su.fixedPoint, su.rate, ect::tone_signal(sig), block).any());
}

TEST_P(ToneDetector, OtherFrequencyIsNeverReported) {
  const Twin su = GetParam();
  ect::ToneSignal sig;
  sig.rate = su.rate;
  sig.freq = 1700.0;
  EXPECT_FALSE(run_detector(su.fixedPoint, su.rate, ect::tone_signal(sig), 160).any());
}

// A 100 ms gap of low-level noise after the first counted reversal resets
// the count: the tone resumes at 0.9 s and the report needs two reversals
// counted after the gap (1.35 and 1.8 s) instead of coming at 0.9 s.
TEST_P(ToneDetector, NoiseGapLongerThan20msResetsTheCount) {
  const Twin su = GetParam();
  ect::ToneSignal sig;
  sig.rate = su.rate;
  sig.seconds = 2.5;
  sig.gapStart = 0.8;
  sig.gapLength = 0.1;
  sig.gapNoise = 0.005;
  const Detection d = run_detector(su.fixedPoint, su.rate, ect::tone_signal(sig), 80);
  ASSERT_TRUE(d.any());
  EXPECT_GE(d.calls[0].first, static_cast<std::size_t>(1.75 * su.rate));
  EXPECT_LE(d.calls[0].first, static_cast<std::size_t>(1.85 * su.rate));
  sig.gapStart = -1;
  const Detection ref = run_detector(su.fixedPoint, su.rate, ect::tone_signal(sig), 80);
  ASSERT_TRUE(ref.any());
  EXPECT_LT(ref.calls[0].first, static_cast<std::size_t>(0.95 * su.rate));
}

// Digital silence after a tone is no gap in either twin: both smoothed
// energies decay together (fixed point: the resonator settles into a small
// limit cycle while Ex reaches 0; float: both stop at subnormal values), so
// the reversal count survives the silence, however long. The tone run
// keeps counting through it, except in the float twin at 16000 Hz, whose
// resonator rings longer than its input energy decays (alpha 0.92): the
// output energy then exceeds 10000 Ex and the run restarts. When the tone
// returns, its onset is a dip. With 200 ms of silence ending at the 900 ms
// reversal, the count of 1 survives; the onset dip ends a run of about
// 440 ms (silence included) and is counted as the second reversal, so the
// tone is reported at 0.9 s, as without the silence (float at 16000 Hz:
// its run restarted in the silence, the report comes at 1.35 s). The same
// gap filled with low-level noise resets the count: the report waits for
// 1.8 s.
TEST_P(ToneDetector, DigitalSilenceIsNoGap) {
  const Twin su = GetParam();
  ect::ToneSignal sig;
  sig.rate = su.rate;
  sig.seconds = 0.9;  // up to the end of the silence
  sig.gapStart = 0.7;
  sig.gapLength = 0.2;
  const bool runRestarts = !su.fixedPoint && su.rate == 16000;
  Detection d;
  const auto end = run_state(su.fixedPoint, su.rate, ect::tone_signal(sig), 40, &d);
  EXPECT_EQ(end.reversals, 1);
  EXPECT_EQ(end.gapRun, 0);
  if (runRestarts)
    EXPECT_LT(end.toneRun, 0.1 * su.rate);
  else
    EXPECT_GT(end.toneRun, 0.4 * su.rate);  // since the reversal counted after 0.45 s
  sig.seconds = 2.2;
  const Detection silent = run_detector(su.fixedPoint, su.rate, ect::tone_signal(sig), 40);
  ASSERT_TRUE(silent.any());
  const double at = double(silent.calls[0].first) / su.rate;
  if (runRestarts) {
    EXPECT_GE(at, 1.3);
    EXPECT_LE(at, 1.4);
  } else {
    EXPECT_GE(at, 0.85);
    EXPECT_LE(at, 0.95);
  }
  sig.gapNoise = 0.003;
  const Detection noisy = run_detector(su.fixedPoint, su.rate, ect::tone_signal(sig), 40);
  ASSERT_TRUE(noisy.any());
  EXPECT_GE(noisy.calls[0].first, static_cast<std::size_t>(1.75 * su.rate));
}

// The chosen reading: every dip below 0.48 ends the tone run, counted or
// not. A detector meeting the tone inside a segment (started late, or the
// tone resuming after a gap) measures the segments from its first dip on:
// first reversal at 200 ms ends a short run (not counted, run reset), the
// ones at 650 and 1100 ms are counted, the report comes at 1100 ms. (Were
// the run reset only by counted reversals, it would span 650 ms at the
// second reversal and the tone would never be reported.)
TEST_P(ToneDetector, MetInsideASegmentCountsFromItsFirstDip) {
  const Twin su = GetParam();
  ect::ToneSignal sig;
  sig.rate = su.rate;
  sig.firstReversal = 0.2;
  sig.seconds = 1.5;
  Detection d;
  sig.seconds = 0.3;  // just after the first dip: the run restarted there
  const auto afterDip = run_state(su.fixedPoint, su.rate, ect::tone_signal(sig), 40, &d);
  EXPECT_EQ(afterDip.reversals, 0);
  EXPECT_LT(afterDip.toneRun, 0.11 * su.rate);
  sig.seconds = 1.5;
  d = run_detector(su.fixedPoint, su.rate, ect::tone_signal(sig), 160);
  ASSERT_TRUE(d.any());
  EXPECT_GE(d.calls[0].second, static_cast<std::size_t>(1.1 * su.rate));
  EXPECT_LE(d.calls[0].first, static_cast<std::size_t>(1.13 * su.rate));
}

// The tone resuming inside a segment after a 100 ms noise gap (from 0.7 s,
// reversals at 0.9, 1.35, 1.8 s): the dip at 0.9 s restarts the run, the
// report comes with the reversal at 1.8 s.
TEST_P(ToneDetector, ToneResumingInsideASegmentAfterAGap) {
  const Twin su = GetParam();
  ect::ToneSignal sig;
  sig.rate = su.rate;
  sig.seconds = 2.2;
  sig.gapStart = 0.6;
  sig.gapLength = 0.1;
  sig.gapNoise = 0.005;
  const Detection d = run_detector(su.fixedPoint, su.rate, ect::tone_signal(sig), 100);
  ASSERT_TRUE(d.any());
  EXPECT_GE(d.calls[0].first, static_cast<std::size_t>(1.75 * su.rate));
  EXPECT_LE(d.calls[0].first, static_cast<std::size_t>(1.83 * su.rate));
}

// Resetting the run on every dip costs nothing on noisy tones: within a
// segment the output energy does not fall below 0.48 of the input's while
// it stays above 0.8 often enough for the tone to be present. At 12 dB
// signal-to-noise ratio every one of 20 noise draws is reported at the
// 900 ms reversal; at 8 dB the tone is no longer present (the 0.8 test
// fails and gaps reset the detector) and nothing is reported.
TEST_P(ToneDetector, NoisyTones) {
  const Twin su = GetParam();
  for (uint32_t seed = 1; seed <= 20; ++seed) {
    ect::ToneSignal sig;
    sig.rate = su.rate;
    sig.seed = seed;
    sig.amplitude = 0.3;
    sig.noise = 0.3 / std::sqrt(2.0) * std::pow(10.0, -12.0 / 20.0);
    const Detection d = run_detector(su.fixedPoint, su.rate, ect::tone_signal(sig), 160);
    ASSERT_TRUE(d.any()) << "seed " << seed;
    EXPECT_LT(d.calls[0].first, static_cast<std::size_t>(0.95 * su.rate)) << "seed " << seed;
    sig.noise = 0.3 / std::sqrt(2.0) * std::pow(10.0, -8.0 / 20.0);
    EXPECT_FALSE(run_detector(su.fixedPoint, su.rate, ect::tone_signal(sig), 160).any()) << "seed " << seed;
  }
}

INSTANTIATE_TEST_SUITE_P(Twins, ToneDetector,
                         testing::Values(Twin{true, 8000}, Twin{true, 16000}, Twin{false, 8000}, Twin{false, 16000}),
                         [](const testing::TestParamInfo<Twin>& i) {
                           return std::string(i.param.fixedPoint ? "Fixed" : "Float") + std::to_string(i.param.rate);
                         });

TEST(ToneDetectorState, SizesAndAnyAlignment) {
  int size = 0;
  EXPECT_EQ(legacy90vspsToneDetectGetStateSize_EC_16s(8000, &size), 0);
  EXPECT_EQ(size, 72);
  EXPECT_EQ(legacy90vspsToneDetectGetStateSize_EC_32f(16000, &size), 0);
  EXPECT_EQ(size, 80);
  ect::ToneSignal sig;
  const std::vector<double> x = ect::tone_signal(sig);
  for (bool fixedPoint : {true, false}) {
    const Detection ref = run_detector(fixedPoint, 8000, x, 160, 0);
    for (std::size_t mis = 1; mis < 16; ++mis) {
      const Detection d = run_detector(fixedPoint, 8000, x, 160, mis);
      EXPECT_EQ(d.calls, ref.calls) << "misalignment " << mis;
    }
  }
}

TEST(ToneDetectorState, InitSetsTheLimitsOfTheRate) {
  std::vector<uint8_t> block(72 + 5);
  ASSERT_EQ(legacy90vspsToneDetectInit_EC_16s(block.data() + 5, 16000), 0);
  vsps::ec::ToneState16s s;
  std::memcpy(&s, vsps::ec::align16(block.data() + 5), sizeof s);
  EXPECT_EQ(s.minRun, 6608);
  EXPECT_EQ(s.maxRun, 7456);
  EXPECT_EQ(s.gapLimit, 320);
  EXPECT_EQ(s.alpha, 15073);
  EXPECT_EQ(s.coeffs[2], -5455);
}

// The tone run counts on through a tone (or digital silence after one)
// however long, and the reversal count through any number of reversals:
// both stop at INT32_MAX instead of overflowing. The counters are set near
// the limit in a running state (white box): a tone run past INT32_MAX, then
// a counted reversal with the count at INT32_MAX, still reported.
TEST(ToneDetectorState, CountersStopAtInt32Max) {
  ect::ToneSignal sig;
  sig.seconds = 0.4;
  sig.firstReversal = 0.25;
  const std::vector<double> x = ect::tone_signal(sig);
  for (bool fixedPoint : {true, false}) {
    std::vector<uint8_t> block(80);
    Vsp8u* s = block.data();
    ASSERT_EQ(fixedPoint ? legacy90vspsToneDetectInit_EC_16s(s, 8000) : legacy90vspsToneDetectInit_EC_32f(s, 8000), 0);
    std::vector<Vsp16s> x16(x.size());
    std::vector<Vsp32f> x32(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
      x16[i] = static_cast<Vsp16s>(std::lround(x[i] * 32767.0));
      x32[i] = static_cast<Vsp32f>(x[i]);
    }
    auto run = [&](std::size_t from, std::size_t to) {
      int result = -1;
      const int len = static_cast<int>(to - from);
      EXPECT_EQ(
          fixedPoint
              ? legacy90vspsToneDetect_EC_16s(&x16[from], len, &result, reinterpret_cast<VspsToneDetectState_16s*>(s))
              : legacy90vspsToneDetect_EC_32f(&x32[from], len, &result, reinterpret_cast<VspsToneDetectState_32f*>(s)),
          0);
      return result;
    };
    // Offsets of the tone run and the reversal count (tone_layout.h).
    const std::size_t toneRun = fixedPoint ? 24 : 36, reversals = fixedPoint ? 44 : 56;
    auto poke = [&](std::size_t offset, int32_t v) { std::memcpy(vsps::ec::align16(s) + offset, &v, sizeof v); };
    auto peek = [&](std::size_t offset) {
      int32_t v;
      std::memcpy(&v, vsps::ec::align16(s) + offset, sizeof v);
      return v;
    };
    run(0, 800);  // 100 ms of tone
    poke(toneRun, INT32_MAX - 10);
    run(800, 1000);
    EXPECT_EQ(peek(toneRun), INT32_MAX) << fixedPoint;
    poke(toneRun, 2500);  // about 3500 at the reversal (250 ms): between the limits, it counts
    poke(reversals, INT32_MAX);
    EXPECT_EQ(run(1000, 2400), 1) << fixedPoint;
    EXPECT_EQ(peek(reversals), INT32_MAX) << fixedPoint;
  }
}

}  // namespace
