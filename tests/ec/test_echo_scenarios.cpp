// The codec layer's echo canceller on the eight G.168 scenarios of
// tools/echo/g168_scenarios.h: steady-state ERLE against the limit the
// noise sets, convergence and re-convergence, the near-end talker in
// double talk, no divergent block, the disabling tone, and the near end
// passed intact while the far end is silent.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "tools/echo/g168_scenarios.h"
#include "vsps_codecs.h"

namespace {

// Runs the canceller (64 ms tail) over a scenario; output aligned by the
// canceller's delay (see ecscen::measure).
std::vector<int16_t> cancel(const std::vector<int16_t>& far, const std::vector<int16_t>& near, int flags) {
  int size = 0;
  EXPECT_EQ(vspscodecEchoCancellerGetSize(8000, 64, &size), vspStsNoErr);
  std::vector<Vsp8u> mem(static_cast<std::size_t>(size));
  EXPECT_EQ(vspscodecEchoCancellerInit(mem.data(), 8000, 64, flags), vspStsNoErr);
  auto* ec = reinterpret_cast<VspscodecEchoCanceller*>(mem.data());
  const auto hop = static_cast<std::size_t>(vspscodecEchoCancellerFrameSize(8000));
  std::vector<int16_t> out(near.size() / hop * hop);
  for (std::size_t p = 0; p + hop <= near.size(); p += hop)
    EXPECT_EQ(vspscodecEchoCancellerProcess(ec, &far[p], &near[p], &out[p], nullptr), vspStsNoErr);
  return out;
}

TEST(EchoScenarios, EveryScenarioMeetsItsTargets) {
  const auto delay = static_cast<std::size_t>(vspscodecEchoCancellerDelay(8000));
  for (const ecscen::Scenario& s : ecscen::all_scenarios()) {
    const ecscen::Metrics m = ecscen::measure(s, cancel(s.far, s.near, 0), delay);
    std::printf(
        "  %-30s ERLE %5.1f dB (limit %4.1f), converged %.1f s, re-converged %.1f s, talker SNR %5.1f dB, "
        "divergent blocks %d\n",
        s.name.c_str(), m.erleDb, s.limitDb, m.convergeS, m.reconvergeS, m.talkSnrDb, m.divergentBlocks);
    EXPECT_EQ(m.divergentBlocks, 0) << s.name;
    EXPECT_LE(m.convergeS, 1.0) << s.name;
    // Within 3 dB of what the noise allows, or 30 dB where it allows more.
    if (s.kind == ecscen::Kind::SingleTalk) EXPECT_GE(m.erleDb, std::min(s.limitDb - 3.0, 30.0)) << s.name;
    if (s.kind == ecscen::Kind::DoubleTalk) EXPECT_GE(m.talkSnrDb, 18.0) << s.name;
    if (s.kind == ecscen::Kind::PathChange) EXPECT_LE(m.reconvergeS, 1.5) << s.name;
  }
}

// While the 2100 Hz tone with reversals holds the canceller off, the near
// end passes unchanged: its power in the second half of the tone equals
// the output's within 1 dB (a cancelling filter would remove it).
TEST(EchoScenarios, DisablingToneStopsCancellation) {
  const auto delay = static_cast<std::size_t>(vspscodecEchoCancellerDelay(8000));
  const ecscen::Scenario s = ecscen::all_scenarios()[7];
  const std::vector<int16_t> out = cancel(s.far, s.near, 0);
  double pd = 0, po = 0;
  for (std::size_t i = (s.changeAt + s.toneEnd) / 2; i < s.toneEnd; ++i) {
    pd += double(s.near[i]) * s.near[i];
    po += double(out[i + delay]) * out[i + delay];
  }
  EXPECT_NEAR(10 * std::log10(po / pd), 0.0, 1.0);
}

// Far end silent: the bank and the noise filter pass near-end speech with
// at least 35 dB signal-to-error ratio.
TEST(EchoScenarios, NearEndPassesWhenFarEndIsSilent) {
  const auto delay = static_cast<std::size_t>(vspscodecEchoCancellerDelay(8000));
  const std::vector<int16_t> talk = vsps::signals::speech_like(4.0, 8000, 97);
  const std::vector<int16_t> silence(talk.size(), 0);
  for (int flags : {0, VSPSCODEC_EC_NO_NLP}) {
    const std::vector<int16_t> out = cancel(silence, talk, flags);
    double ps = 0, pe = 0;
    for (std::size_t i = 0; i + delay < out.size(); ++i) {
      ps += double(talk[i]) * talk[i];
      pe += (double(out[i + delay]) - talk[i]) * (double(out[i + delay]) - talk[i]);
    }
    EXPECT_GE(10 * std::log10(ps / pe), 35.0) << "flags " << flags;
  }
}

}  // namespace
