#include "tools/pcm_io.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "tools/commands.h"
#include "tools/output_file.h"
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
  if (has_suffix(path, ".wav")) {
    std::string error;
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
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) {
    std::fprintf(err, "vsps: %s: is a directory\n", path.c_str());
    return false;
  }
  FILE* f = std::fopen(path.c_str(), "rb");
  if (f == nullptr) {
    std::fprintf(err, "vsps: %s: cannot open (%s)\n", path.c_str(), std::strerror(errno));
    return false;
  }
  uint8_t buf[65536];
  std::size_t n;
  while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) bytes->insert(bytes->end(), buf, buf + n);
  const bool failed = std::ferror(f) != 0;
  std::fclose(f);
  if (failed) std::fprintf(err, "vsps: %s: read error\n", path.c_str());
  return !failed;
}

bool write_octets(const std::string& path, const std::vector<uint8_t>& bytes, FILE* err) {
  std::string error;
  OutputFile f;
  if (f.create(path, &error)) {
    if (!bytes.empty()) std::fwrite(bytes.data(), 1, bytes.size(), f.file());
    if (f.finish(&error)) return true;
  }
  std::fprintf(err, "vsps: %s\n", error.c_str());
  return false;
}

bool output_differs_from_input(const std::string& out, const std::string& in, FILE* err) {
  std::string error;
  if (output_is_not_an_input(out, {in}, &error)) return true;
  std::fprintf(err, "vsps: %s\n", error.c_str());
  return false;
}

}  // namespace vsps::tool
