#include "tools/wav_io.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "tools/output_file.h"

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

bool read_file(const std::string& path, std::vector<unsigned char>* bytes, std::string* error) {
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) {
    *error = path + ": is a directory; a WAV file is needed";
    return false;
  }
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

constexpr uint16_t kFormatPcm = 1;
constexpr uint16_t kFormatExtensible = 0xFFFE;
// The data length a streaming writer leaves when it cannot seek back: the
// samples run to the end of the file.
constexpr uint32_t kStreamingLength = 0xFFFFFFFF;

// The name of a WAV format tag the tool does not read.
std::string encoding_name(uint16_t tag) {
  struct Name {
    uint16_t tag;
    const char* name;
  };
  static constexpr Name kNames[] = {{2, "Microsoft ADPCM"}, {3, "IEEE float"},     {6, "A-law"},
                                    {7, "mu-law"},          {0x11, "IMA ADPCM"},   {0x14, "G.723 ADPCM"},
                                    {0x31, "GSM 06.10"},    {0x40, "G.721 ADPCM"}, {0x50, "MPEG"},
                                    {0x55, "MPEG layer 3"}, {0x64, "G.726 ADPCM"}, {0x65, "G.722 ADPCM"}};
  char hex[16];
  std::snprintf(hex, sizeof hex, "0x%04X", tag);
  for (const Name& n : kNames)
    if (n.tag == tag) return std::string(n.name) + " (format tag " + hex + ")";
  return std::string("format tag ") + hex;
}

}  // namespace

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
      if (tag != kFormatPcm) return fail(encoding_name(tag) + " samples, not linear PCM; 16-bit PCM required");
      if (bits != 16) return fail(std::to_string(bits) + "-bit samples; 16-bit PCM required");
      if (channels != 1) return fail(std::to_string(channels) + " channels; mono required");
      if (rate == 0 || rate > 1000000) return fail("invalid sampling rate " + std::to_string(rate));
      haveFormat = true;
    } else if (std::memcmp(&b[pos], "data", 4) == 0) {
      if (!haveFormat) return fail("data chunk before the format chunk");
      const std::size_t dataBytes = size == kStreamingLength ? available & ~std::size_t(1) : size;
      if (dataBytes > available)
        return fail("truncated: the header announces " + std::to_string(size) + " bytes of samples, the file holds " +
                    std::to_string(available));
      if (dataBytes % 2 != 0) return fail("truncated: odd number of bytes in 16-bit sample data");
      audio->rate = static_cast<int>(rate);
      audio->samples.resize(dataBytes / 2);
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
  OutputFile f;
  if (!f.create(path, error)) return false;
  std::fwrite(h, 1, sizeof h, f.file());
  std::fwrite(body.data(), 1, body.size(), f.file());
  return f.finish(error);
}

}  // namespace vsps::tool
