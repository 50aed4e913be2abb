// Sample and octet files of the codec commands: 16-bit PCM as a mono WAV
// file (name ending in .wav, rate checked) or raw little-endian words, and
// plain octet files. Each reader prints its one-line reason on `err`.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace vsps::tool {

bool has_suffix(const std::string& path, const char* suffix);

// 16-bit samples at `rate` Hz from a .wav (mono, that rate) or raw file (an
// odd byte count is refused).
bool read_pcm(const std::string& path, int rate, std::vector<int16_t>* samples, FILE* err);
bool write_pcm(const std::string& path, int rate, const std::vector<int16_t>& samples, FILE* err);

bool read_octets(const std::string& path, std::vector<uint8_t>* bytes, FILE* err);
bool write_octets(const std::string& path, const std::vector<uint8_t>& bytes, FILE* err);

// False (with the reason on err) when `out` names the input file.
bool output_differs_from_input(const std::string& out, const std::string& in, FILE* err);

}  // namespace vsps::tool
