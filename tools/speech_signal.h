// Built-in test signals for the vsps tool, the benchmarks and the tests: a
// deterministic speech-like signal (voiced vowels with moving formants and
// intonation, fricatives, pauses) and simple tones, 16-bit at any rate.
#pragma once

#include <cstdint>
#include <vector>

namespace vsps::signals {

// Speech-like signal: `seconds` of it at `rate` Hz, peak about -6 dBFS.
// The same seed gives the same samples on every machine.
std::vector<int16_t> speech_like(double seconds, int rate = 8000, uint32_t seed = 1);

// A sine of `hz` at `amplitude` (full scale 32767) with its phase reversed
// (180 degrees) every `reversalMs` milliseconds (0: never).
std::vector<int16_t> tone_with_reversals(double seconds, int rate, double hz, double amplitude, double reversalMs);

// White noise, uniform, with the given peak.
std::vector<int16_t> white_noise(double seconds, int rate, double peak, uint32_t seed = 7);

}  // namespace vsps::signals
