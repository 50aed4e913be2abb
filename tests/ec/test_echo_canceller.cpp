// The sub-band echo canceller of tools/echo/ (analysis, per-band adaptive
// filter, normalised LMS update, synthesis) on the eight G.168 hybrid
// echo-path models: steady-state ERLE and time to 20 dB.
#include <gtest/gtest.h>

#include <cstdio>

#include "tools/echo/echo_scenario.h"

namespace {

struct Case {
  int model;
  ecdemo::FarEnd farEnd;
};

class EchoCanceller : public testing::TestWithParam<Case> {};

TEST_P(EchoCanceller, ConvergesOnG168Model) {
  const g168::EchoPath& path = g168::kEchoPaths[GetParam().model];
  ecdemo::Scenario sc;
  sc.farEnd = GetParam().farEnd;
  ecdemo::Measurement m;
  ASSERT_TRUE(ecdemo::run_scenario(ecdemo::CancellerConfig{}, path, sc, &m));
  std::printf("  %s %s: ERLE %.1f dB, 20 dB after %.2f s\n", path.name,
              sc.farEnd == ecdemo::FarEnd::Noise ? "noise" : "speech-like", m.erleDb, m.secondsTo20dB);
  RecordProperty("erle_db", std::to_string(m.erleDb));
  RecordProperty("seconds_to_20db", std::to_string(m.secondsTo20dB));
  EXPECT_GE(m.erleDb, 25.0);
  EXPECT_GE(m.secondsTo20dB, 0.0);
  EXPECT_LE(m.secondsTo20dB, 1.0);
}

std::vector<Case> cases() {
  std::vector<Case> v;
  for (int k = 0; k < 8; ++k)
    for (ecdemo::FarEnd f : {ecdemo::FarEnd::Noise, ecdemo::FarEnd::SpeechLike}) v.push_back({k, f});
  return v;
}

std::string case_name(const testing::TestParamInfo<Case>& info) {
  return std::string(g168::kEchoPaths[info.param.model].name) +
         (info.param.farEnd == ecdemo::FarEnd::Noise ? "_noise" : "_speech");
}

INSTANTIATE_TEST_SUITE_P(G168, EchoCanceller, testing::ValuesIn(cases()), case_name);

// The built-in (6, 44, 256) bank decimates closer to its band spacing: its
// sub-band aliasing bounds the per-band canceller near 17-25 dB.
TEST(EchoCancellerBuiltinWindow, ReachesItsAliasingFloor) {
  for (const g168::EchoPath& path : g168::kEchoPaths) {
    ecdemo::Scenario sc;
    ecdemo::Measurement m;
    ASSERT_TRUE(ecdemo::run_scenario(ecdemo::builtin_config(), path, sc, &m));
    EXPECT_GE(m.erleDb, 16.0) << path.name;
    EXPECT_LE(m.erleDb, 27.0) << path.name << ": above the floor the aliasing allows";
  }
}

// No adaptation: the output keeps the echo (ERLE about 0 dB), so the
// measurement can fail.
TEST(EchoCancellerMeasurement, WithoutAdaptationThereIsNoEnhancement) {
  ecdemo::CancellerConfig cfg;
  cfg.mu = 0.0;
  ecdemo::Scenario sc;
  sc.seconds = 2.0;
  ecdemo::Measurement m;
  ASSERT_TRUE(ecdemo::run_scenario(cfg, g168::kEchoPaths[0], sc, &m));
  EXPECT_LT(m.erleDb, 3.0);
  EXPECT_LT(m.secondsTo20dB, 0.0);
}

}  // namespace
