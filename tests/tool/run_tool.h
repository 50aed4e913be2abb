// Running the vsps tool in process, and files for it, in the tool tests.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tooltest {

struct Result {
  int status = -1;
  std::string out, err;
};

// Runs "vsps args..."; the standard output goes to a temporary file, or to
// the file outPath names (opened for writing; its text is not read back).
Result run(const std::vector<std::string>& args, const char* outPath = nullptr);

// A fresh folder for one test's files.
std::filesystem::path scratch_dir(const std::string& name);

// Raw bytes of a WAV header and its body, for malformed files.
std::vector<unsigned char> wav_bytes(int formatTag, int channels, int rate, int bits, uint32_t dataBytesAnnounced,
                                     std::size_t dataBytesPresent);
void write_bytes(const std::filesystem::path& path, const std::vector<unsigned char>& bytes);
// A well-formed mono 16-bit file.
void write_wav_file(const std::filesystem::path& path, int rate, const std::vector<int16_t>& samples);
std::vector<int16_t> read_wav_file(const std::filesystem::path& path, int* rate);

}  // namespace tooltest
