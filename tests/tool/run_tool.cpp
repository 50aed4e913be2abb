#include "tests/tool/run_tool.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <random>
#include <string>

#include "tools/commands.h"
#include "tools/wav_io.h"

namespace tooltest {

namespace {
std::string slurp(FILE* f) {
  std::string s;
  std::rewind(f);
  char buf[4096];
  std::size_t n;
  while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) s.append(buf, n);
  std::fclose(f);
  return s;
}
void put(std::vector<unsigned char>& b, uint32_t v, int bytes) {
  for (int i = 0; i < bytes; ++i) b.push_back(static_cast<unsigned char>(v >> (8 * i)));
}
}  // namespace

Result run(const std::vector<std::string>& args, const char* outPath) {
  std::vector<const char*> argv = {"vsps"};
  for (const std::string& a : args) argv.push_back(a.c_str());
  FILE* out = outPath ? std::fopen(outPath, "w") : std::tmpfile();
  FILE* err = std::tmpfile();
  Result r;
  r.status = vsps::tool::run_tool(static_cast<int>(argv.size()), argv.data(), out, err);
  if (outPath)
    std::fclose(out);
  else
    r.out = slurp(out);
  r.err = slurp(err);
  return r;
}

// One folder per test and process: two test runs at once (two build trees,
// ctest -j) never share or wipe each other's files.
std::filesystem::path scratch_dir(const std::string& name) {
  static const std::string run = std::to_string(std::random_device{}());
  const std::filesystem::path dir = std::filesystem::temp_directory_path() / ("vsps-tool-test-" + name + "-" + run);
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  return dir;
}

std::vector<unsigned char> wav_bytes(int formatTag, int channels, int rate, int bits, uint32_t dataBytesAnnounced,
                                     std::size_t dataBytesPresent) {
  std::vector<unsigned char> b = {'R', 'I', 'F', 'F'};
  put(b, 36 + dataBytesAnnounced, 4);
  for (char c : std::string("WAVEfmt ")) b.push_back(static_cast<unsigned char>(c));
  put(b, 16, 4);
  put(b, static_cast<uint32_t>(formatTag), 2);
  put(b, static_cast<uint32_t>(channels), 2);
  put(b, static_cast<uint32_t>(rate), 4);
  put(b, static_cast<uint32_t>(rate * channels * bits / 8), 4);
  put(b, static_cast<uint32_t>(channels * bits / 8), 2);
  put(b, static_cast<uint32_t>(bits), 2);
  for (char c : std::string("data")) b.push_back(static_cast<unsigned char>(c));
  put(b, dataBytesAnnounced, 4);
  for (std::size_t i = 0; i < dataBytesPresent; ++i) b.push_back(static_cast<unsigned char>(i * 7));
  return b;
}

void write_bytes(const std::filesystem::path& path, const std::vector<unsigned char>& bytes) {
  std::ofstream f(path, std::ios::binary);
  f.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void write_wav_file(const std::filesystem::path& path, int rate, const std::vector<int16_t>& samples) {
  std::string error;
  ASSERT_TRUE(vsps::tool::write_wav(path.string(), rate, samples, &error)) << error;
}

std::vector<int16_t> read_wav_file(const std::filesystem::path& path, int* rate) {
  vsps::tool::WavAudio wav;
  std::string error;
  EXPECT_TRUE(vsps::tool::read_wav(path.string(), &wav, &error)) << error;
  *rate = wav.rate;
  return wav.samples;
}

}  // namespace tooltest
