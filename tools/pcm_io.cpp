#include "tools/pcm_io.h"

#include <cstring>

#include "tools/commands.h"
#include "tools/wav_io.h"

namespace vsps::tool {

bool has_suffix(const std::string& path, const char* suffix) {
  const std::size_t n = std::strlen(suffix);
  return path.size() >= n && path.compare(path.size() - n, n, suffix) == 0;
}

bool read_pcm(const std::string& path, int rate, std::vector<int16_t>* samples, FILE* err) {
  if (has_suffix(path, ".wav")) {
    WavAudio wav;
    const std::string needs = "this codec needs " + std::to_string(rate) + " Hz";
    if (!load_wav(path, {rate}, needs.c_str(), &wav, err)) return false;
    *samples = std::move(wav.samples);
    return true;
  }
  std::vector<uint8_t> bytes;
  if (!read_octets(path, &bytes, err)) return false;
  if (bytes.size() % 2 != 0) {
    std::fprintf(err, "vsps: %s: odd number of bytes (%zu) for 16-bit samples\n", path.c_str(), bytes.size());
    return false;
  }
  samples->resize(bytes.size() / 2);
  for (std::size_t i = 0; i < samples->size(); ++i)
    (*samples)[i] = static_cast<int16_t>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
  return true;
}

bool write_pcm(const std::string& path, int rate, const std::vector<int16_t>& samples, FILE* err) {
  std::string error;
  if (has_suffix(path, ".wav")) {
    if (write_wav(path, rate, samples, &error)) return true;
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return false;
  }
  std::vector<uint8_t> bytes(samples.size() * 2);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    bytes[2 * i] = static_cast<uint8_t>(samples[i] & 0xFF);
    bytes[2 * i + 1] = static_cast<uint8_t>((samples[i] >> 8) & 0xFF);
  }
  return write_octets(path, bytes, err);
}

bool read_octets(const std::string& path, std::vector<uint8_t>* bytes, FILE* err) {
  std::string error;
  if (read_file(path, bytes, &error)) return true;
  std::fprintf(err, "vsps: %s\n", error.c_str());
  return false;
}

bool write_octets(const std::string& path, const std::vector<uint8_t>& bytes, FILE* err) {
  std::string error;
  if (write_file(path, nullptr, 0, bytes, &error)) return true;
  std::fprintf(err, "vsps: %s\n", error.c_str());
  return false;
}

}  // namespace vsps::tool
