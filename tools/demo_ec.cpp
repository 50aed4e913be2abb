// Echo-cancellation toolkit: the sub-band canceller of the examples on a
// G.168 hybrid model, and the 2100 Hz tone detector.
#include <vector>

#include "echo_scenario.h"
#include "tools/demo.h"
#include "tools/speech_signal.h"
#include "vsps.h"

namespace vsps::tool {

bool demo_echo_canceller(FILE* out) {
  const ecdemo::CancellerConfig cfg;
  ecdemo::Scenario scenario;
  scenario.farEnd = ecdemo::FarEnd::SpeechLike;
  const g168::EchoPath& path = g168::kEchoPaths[3];
  ecdemo::Measurement m;
  if (!ecdemo::run_scenario(cfg, path, scenario, &m)) return false;
  std::fprintf(out,
               "Sub-band echo canceller: %d sub-bands, %d taps each, G.168 model %s, speech-like far end: "
               "ERLE %.1f dB after convergence, 20 dB reached after %.2f s\n",
               (1 << cfg.order) / 2 + 1, cfg.segments, path.name, m.erleDb, m.secondsTo20dB);
  return true;
}

bool detect_tone(const std::vector<int16_t>& pcm, int rate, FILE* out) {
  int size = 0;
  if (legacy90vspsToneDetectGetStateSize_EC_16s(rate, &size) != vspStsNoErr) return false;
  std::vector<Vsp8u> state(static_cast<std::size_t>(size));
  if (legacy90vspsToneDetectInit_EC_16s(state.data(), rate) != vspStsNoErr) return false;
  auto* st = reinterpret_cast<VspsToneDetectState_16s*>(state.data());
  const int block = rate / 50;  // 20 ms
  int detections = 0;
  for (std::size_t n = 0; n + static_cast<std::size_t>(block) <= pcm.size(); n += static_cast<std::size_t>(block)) {
    int result = 0;
    if (legacy90vspsToneDetect_EC_16s(pcm.data() + n, block, &result, st) != vspStsNoErr) return false;
    if (result) {
      std::fprintf(out, "  2100 Hz tone with phase reversals detected at %.2f s\n",
                   static_cast<double>(n + static_cast<std::size_t>(block)) / rate);
      ++detections;
    }
  }
  if (detections == 0) std::fprintf(out, "  no 2100 Hz tone with phase reversals\n");
  return true;
}

bool demo_tone_detector(const std::vector<int16_t>& speech, FILE* out) {
  std::fprintf(out, "Tone detector, 2100 Hz at -12 dBFS with a phase reversal every 450 ms, 8 kHz:\n");
  if (!detect_tone(signals::tone_with_reversals(2.5, 8000, 2100, 8200, 450), 8000, out)) return false;
  std::fprintf(out, "Tone detector, the same tone without reversals:\n");
  if (!detect_tone(signals::tone_with_reversals(2.5, 8000, 2100, 8200, 0), 8000, out)) return false;
  std::fprintf(out, "Tone detector, speech-like signal:\n");
  return detect_tone(speech, 8000, out);
}

}  // namespace vsps::tool
