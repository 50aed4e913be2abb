// The tool's demonstrations: each runs one family's calling order on a
// signal and prints a short report; false on a library error.
#pragma once

#include <cstdint>
#include <cstdio>
#include <vector>

namespace vsps::tool {

// G.729 encoder front end and decoder LSP path (8 kHz, 10 ms frames).
// Prints per-frame LSP words when `listFrames` is set.
bool demo_g729(const std::vector<int16_t>& pcm, bool listFrames, FILE* out);
// GSM-AMR analysis and LSP quantisation at 12.2 and 4.75 kbit/s (20 ms frames).
bool demo_gsmamr(const std::vector<int16_t>& pcm, FILE* out);
// Sub-band echo canceller on a G.168 hybrid model with a speech-like far end.
bool demo_echo_canceller(FILE* out);
// 2100 Hz tone detector on a tone with phase reversals and on speech.
bool demo_tone_detector(const std::vector<int16_t>& speech, FILE* out);
// The detector over a signal at `rate`; prints the times of detections.
bool detect_tone(const std::vector<int16_t>& pcm, int rate, FILE* out);

}  // namespace vsps::tool
