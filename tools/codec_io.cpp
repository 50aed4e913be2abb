#include "tools/codec_io.h"

#include <cerrno>
#include <cstring>

#include "tools/commands.h"
#include "tools/output_file.h"
#include "tools/pcm_io.h"
#include "tools/wav_io.h"
#include "vsps.h"

namespace vsps::tool {

bool is_wav_name(const std::string& path) {
  if (path.size() < 4) return false;
  std::string ext = path.substr(path.size() - 4);
  for (char& c : ext) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  return ext == ".wav";
}

// The octet files of the waveform commands: the readers and writers of
// tools/pcm_io (a directory refused by name, write errors reported).
bool read_bytes(const std::string& path, std::vector<uint8_t>* bytes, FILE* err) {
  return read_octets(path, bytes, err);
}

bool write_bytes(const std::string& path, const std::vector<uint8_t>& bytes, FILE* err) {
  return write_octets(path, bytes, err);
}

bool output_names_no_input(const std::string& out, const std::string& in, FILE* err) {
  std::string error;
  if (output_is_not_an_input(out, {in}, &error)) return true;
  std::fprintf(err, "vsps: %s\n", error.c_str());
  return false;
}

namespace {

bool words_of(const std::string& path, const std::vector<uint8_t>& bytes, std::vector<uint16_t>* words, FILE* err) {
  if (bytes.size() % 2 != 0) {
    std::fprintf(err, "vsps: %s: %zu bytes, an odd count for 16-bit data\n", path.c_str(), bytes.size());
    return false;
  }
  words->resize(bytes.size() / 2);
  for (std::size_t i = 0; i < words->size(); ++i)
    (*words)[i] = static_cast<uint16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
  return true;
}

std::vector<uint8_t> bytes_of(const std::vector<uint16_t>& words) {
  std::vector<uint8_t> bytes(2 * words.size());
  for (std::size_t i = 0; i < words.size(); ++i) {
    bytes[2 * i] = static_cast<uint8_t>(words[i]);
    bytes[2 * i + 1] = static_cast<uint8_t>(words[i] >> 8);
  }
  return bytes;
}

}  // namespace

bool read_pcm(const std::string& path, std::vector<int16_t>* pcm, FILE* err) {
  if (is_wav_name(path)) {
    WavAudio wav;
    if (!load_wav(path, {8000}, "the waveform codecs run at 8000 Hz", &wav, err)) return false;
    *pcm = std::move(wav.samples);
    return true;
  }
  std::vector<uint8_t> bytes;
  std::vector<uint16_t> words;
  if (!read_bytes(path, &bytes, err) || !words_of(path, bytes, &words, err)) return false;
  pcm->assign(words.begin(), words.end());
  return true;
}

bool write_pcm(const std::string& path, const std::vector<int16_t>& pcm, FILE* err) {
  if (is_wav_name(path)) {
    std::string error;
    if (write_wav(path, 8000, pcm, &error)) return true;
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return false;
  }
  return write_bytes(path, bytes_of(std::vector<uint16_t>(pcm.begin(), pcm.end())), err);
}

bool read_codes(const std::string& path, bool words, int maxValue, std::vector<uint8_t>* codes, FILE* err) {
  std::vector<uint8_t> bytes;
  if (!read_bytes(path, &bytes, err)) return false;
  std::vector<uint16_t> w(bytes.begin(), bytes.end());
  if (words && !words_of(path, bytes, &w, err)) return false;
  codes->resize(w.size());
  for (std::size_t i = 0; i < w.size(); ++i) {
    if (w[i] > maxValue) {
      std::fprintf(err, "vsps: %s: %s %zu holds %u, more than %d\n", path.c_str(), words ? "word" : "byte", i,
                   unsigned(w[i]), maxValue);
      return false;
    }
    (*codes)[i] = static_cast<uint8_t>(w[i]);
  }
  return true;
}

bool write_codes(const std::string& path, bool words, const std::vector<uint8_t>& codes, FILE* err) {
  return write_bytes(path, words ? bytes_of(std::vector<uint16_t>(codes.begin(), codes.end())) : codes, err);
}

int parse_law(const std::string* value, bool allowLinear, FILE* err) {
  if (value == nullptr) {
    std::fprintf(err, "vsps: --law is required\n");
    return -1;
  }
  if (*value == "a") return vspPcmALaw;
  if (*value == "u") return vspPcmMuLaw;
  if (allowLinear && *value == "linear") return vspPcmLinear;
  std::fprintf(err, "vsps: --law %s: use a, u%s\n", value->c_str(), allowLinear ? " or linear" : "");
  return -1;
}

bool parse_container(const std::string* value, bool* words, FILE* err) {
  *words = value != nullptr && *value == "words";
  if (value == nullptr || *value == "words" || *value == "bytes") return true;
  std::fprintf(err, "vsps: --container %s: use bytes or words\n", value->c_str());
  return false;
}

}  // namespace vsps::tool
