// File input and output of the waveform-codec commands (g711, g726): 16-bit
// PCM as raw little-endian samples or, for names ending in .wav, an 8000 Hz
// mono WAV file; code-word streams as one value per byte or, with the
// container "words", per 16-bit little-endian word (the ITU files' layout).
// Every failure is explained on `err` as one line.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace vsps::tool {

bool is_wav_name(const std::string& path);

// 16-bit PCM input: raw (an odd byte count is refused) or WAV (8000 Hz).
bool read_pcm(const std::string& path, std::vector<int16_t>* pcm, FILE* err);
bool write_pcm(const std::string& path, const std::vector<int16_t>& pcm, FILE* err);

// Code-word streams; `words` selects 16-bit containers. Values above
// `maxValue` are refused (e.g. a 5 in a 16 kbit/s G.726 stream).
bool read_codes(const std::string& path, bool words, int maxValue, std::vector<uint8_t>* codes, FILE* err);
bool write_codes(const std::string& path, bool words, const std::vector<uint8_t>& codes, FILE* err);

// False with the reason on err when OUT names the input (the same file).
bool output_names_no_input(const std::string& out, const std::string& in, FILE* err);

// Raw bytes in and out (every write error reported).
bool read_bytes(const std::string& path, std::vector<uint8_t>* bytes, FILE* err);
bool write_bytes(const std::string& path, const std::vector<uint8_t>& bytes, FILE* err);

// "--law a|u|linear" -> VspPcmLaw (linear only when allowed); -1 with a message.
int parse_law(const std::string* value, bool allowLinear, FILE* err);
// "--container bytes|words" -> *words; false (with a message) on another value.
bool parse_container(const std::string* value, bool* words, FILE* err);

}  // namespace vsps::tool
