// 16-bit PCM WAV files for the tool: reading with precise errors, writing.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vsps::tool {

struct WavAudio {
  int rate = 0;                  // samples per second
  std::vector<int16_t> samples;  // mono, full scale 32767
};

// Reads a mono 16-bit linear PCM WAV file (plain or extensible format
// header; a data length of 0xFFFFFFFF, left by streaming writers, means up
// to the end of the file). Returns false with a one-line reason in *error
// for a directory, a file that cannot be opened, is not RIFF/WAVE, is
// compressed or float (the encoding named), has another sample width, more
// than one channel, or is truncated.
bool read_wav(const std::string& path, WavAudio* audio, std::string* error);

// Writes a mono 16-bit PCM WAV file; false with a reason in *error.
bool write_wav(const std::string& path, int rate, const std::vector<int16_t>& samples, std::string* error);

}  // namespace vsps::tool
