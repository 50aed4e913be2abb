// Sub-band echo canceller demo: for each G.168 Annex D hybrid model, the
// canceller converges on white noise and on a speech-like far-end signal
// with near-end noise; prints the ERLE after convergence and the time to
// reach 20 dB, first with its own prototype at hop N/2, then with the
// toolkit's built-in (6, 44, 256) configuration for comparison. Runs
// without arguments; exits with 1 if any steady-state ERLE of the first
// configuration is below 25 dB.
#include <cstdio>

#include "echo_scenario.h"

// One table of results; false when a steady-state ERLE is below minDb.
static bool report(const ecdemo::CancellerConfig& cfg, const char* title, double minDb) {
  std::printf("%s: %d sub-bands, hop %d, window %d, %d taps per sub-band, mu %.2f\n", title, (1 << cfg.order) / 2 + 1,
              cfg.frameSize, cfg.windowLen, cfg.segments, cfg.mu);
  std::printf("model  far end      ERLE (dB)  time to 20 dB (s)\n");
  bool ok = true;
  for (const g168::EchoPath& path : g168::kEchoPaths) {
    for (ecdemo::FarEnd kind : {ecdemo::FarEnd::Noise, ecdemo::FarEnd::SpeechLike}) {
      ecdemo::Scenario sc;
      sc.farEnd = kind;
      ecdemo::Measurement m;
      if (!ecdemo::run_scenario(cfg, path, sc, &m)) {
        std::printf("%s: library error\n", path.name);
        return false;
      }
      std::printf("%-6s %-12s %9.1f  %17.2f\n", path.name, kind == ecdemo::FarEnd::Noise ? "noise" : "speech-like",
                  m.erleDb, m.secondsTo20dB);
      if (m.erleDb < minDb) ok = false;
    }
  }
  return ok;
}

int main() {
  const bool ok = report(ecdemo::CancellerConfig{}, "designed prototype", 25.0);
  std::printf("\n");
  report(ecdemo::builtin_config(), "built-in window (6, 44, 256), for comparison", 0.0);
  return ok ? 0 : 1;
}
