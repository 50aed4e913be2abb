#include "tools/wav_io.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace vsps::tool {

namespace {

uint32_t le32(const unsigned char* p) {
  return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
}
uint16_t le16(const unsigned char* p) { return static_cast<uint16_t>(p[0] | p[1] << 8); }
void put32(unsigned char* p, uint32_t v) {
  for (int i = 0; i < 4; ++i) p[i] = static_cast<unsigned char>(v >> (8 * i));
}
void put16(unsigned char* p, uint16_t v) {
  p[0] = static_cast<unsigned char>(v);
  p[1] = static_cast<unsigned char>(v >> 8);
}

constexpr uint16_t kFormatPcm = 1;
constexpr uint16_t kFormatExtensible = 0xFFFE;

}  // namespace

bool read_file(const std::string& path, std::vector<unsigned char>* bytes, std::string* error) {
  FILE* f = std::fopen(path.c_str(), "rb");
  if (f == nullptr) {
    *error = path + ": cannot open (" + std::strerror(errno) + ")";
    return false;
  }
  unsigned char buf[65536];
  std::size_t n;
  while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) bytes->insert(bytes->end(), buf, buf + n);
  const bool failed = std::ferror(f) != 0;
  std::fclose(f);
  if (failed) *error = path + ": read error";
  return !failed;
}

bool write_file(const std::string& path, const unsigned char* head, std::size_t headBytes,
                const std::vector<unsigned char>& body, std::string* error) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (f == nullptr) {
    *error = path + ": cannot create (" + std::strerror(errno) + ")";
    return false;
  }
  const bool ok =
      std::fwrite(head, 1, headBytes, f) == headBytes && std::fwrite(body.data(), 1, body.size(), f) == body.size();
  if (std::fclose(f) != 0 || !ok) {
    *error = path + ": write error";
    return false;
  }
  return true;
}

bool read_wav(const std::string& path, WavAudio* audio, std::string* error) {
  std::vector<unsigned char> b;
  if (!read_file(path, &b, error)) return false;
  auto fail = [&](const std::string& why) {
    *error = path + ": " + why;
    return false;
  };
  if (b.size() < 12 || std::memcmp(b.data(), "RIFF", 4) != 0 || std::memcmp(b.data() + 8, "WAVE", 4) != 0)
    return fail("not a WAV file (no RIFF/WAVE header)");
  bool haveFormat = false;
  uint16_t channels = 0, bits = 0;
  uint32_t rate = 0;
  std::size_t pos = 12;
  while (pos + 8 <= b.size()) {
    const uint32_t size = le32(&b[pos + 4]);
    const std::size_t body = pos + 8;
    const std::size_t available = b.size() - body;
    if (std::memcmp(&b[pos], "fmt ", 4) == 0) {
      if (size < 16 || available < 16) return fail("truncated format chunk");
      uint16_t tag = le16(&b[body]);
      channels = le16(&b[body + 2]);
      rate = le32(&b[body + 4]);
      bits = le16(&b[body + 14]);
      if (tag == kFormatExtensible && size >= 26 && available >= 26) tag = le16(&b[body + 24]);  // sub-format GUID
      if (tag != kFormatPcm) return fail("encoding " + std::to_string(tag) + " is not linear PCM; 16-bit PCM required");
      if (bits != 16) return fail(std::to_string(bits) + "-bit samples; 16-bit PCM required");
      if (channels != 1) return fail(std::to_string(channels) + " channels; mono required");
      if (rate == 0 || rate > 1000000) return fail("invalid sampling rate " + std::to_string(rate));
      haveFormat = true;
    } else if (std::memcmp(&b[pos], "data", 4) == 0) {
      if (!haveFormat) return fail("data chunk before the format chunk");
      if (size > available)
        return fail("truncated: the header announces " + std::to_string(size) + " bytes of samples, the file holds " +
                    std::to_string(available));
      if (size % 2 != 0) return fail("truncated: odd number of bytes in 16-bit sample data");
      audio->rate = static_cast<int>(rate);
      audio->samples.resize(size / 2);
      for (std::size_t i = 0; i < audio->samples.size(); ++i)
        audio->samples[i] = static_cast<int16_t>(le16(&b[body + 2 * i]));
      return true;
    }
    if (size > available) break;
    pos = body + size + (size & 1);  // chunks are padded to even sizes
  }
  return fail(haveFormat ? "truncated: no data chunk" : "truncated: no format chunk");
}

bool write_wav(const std::string& path, int rate, const std::vector<int16_t>& samples, std::string* error) {
  const auto dataBytes = static_cast<uint32_t>(samples.size() * 2);
  unsigned char h[44];
  std::memcpy(h, "RIFF", 4);
  put32(h + 4, 36 + dataBytes);
  std::memcpy(h + 8, "WAVEfmt ", 8);
  put32(h + 16, 16);
  put16(h + 20, kFormatPcm);
  put16(h + 22, 1);
  put32(h + 24, static_cast<uint32_t>(rate));
  put32(h + 28, static_cast<uint32_t>(rate) * 2);
  put16(h + 32, 2);
  put16(h + 34, 16);
  std::memcpy(h + 36, "data", 4);
  put32(h + 40, dataBytes);
  std::vector<unsigned char> body(samples.size() * 2);
  for (std::size_t i = 0; i < samples.size(); ++i) put16(&body[2 * i], static_cast<uint16_t>(samples[i]));
  return write_file(path, h, sizeof h, body, error);
}

}  // namespace vsps::tool
