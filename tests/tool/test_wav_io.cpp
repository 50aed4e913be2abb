// The tool's WAV reader: what it accepts and the reason it gives otherwise.
#include <gtest/gtest.h>

#include "tests/tool/run_tool.h"
#include "tools/wav_io.h"

namespace {

using tooltest::wav_bytes;

struct BadFile {
  const char* name;
  std::vector<unsigned char> bytes;
  const char* reason;  // expected part of the message
};

TEST(WavReader, RefusesWhatItCannotRead) {
  std::vector<unsigned char> notRiff = wav_bytes(1, 1, 8000, 16, 8, 8);
  notRiff[0] = 'X';
  std::vector<unsigned char> headerOnly = wav_bytes(1, 1, 8000, 16, 0, 0);
  headerOnly.resize(30);  // cut inside the format chunk
  std::vector<unsigned char> noData = wav_bytes(1, 1, 8000, 16, 0, 0);
  noData.resize(36);  // format chunk, then nothing
  const BadFile cases[] = {
      {"not_riff", notRiff, "not a WAV file"},
      {"float", wav_bytes(3, 1, 8000, 32, 16, 16), "IEEE float (format tag 0x0003) samples, not linear PCM"},
      {"alaw", wav_bytes(6, 1, 8000, 8, 16, 16), "A-law"},
      {"mulaw", wav_bytes(7, 1, 8000, 8, 16, 16), "mu-law"},
      {"g726", wav_bytes(0x64, 1, 8000, 4, 16, 16), "G.726 ADPCM"},
      {"unknown_tag", wav_bytes(0x1234, 1, 8000, 16, 16, 16), "format tag 0x1234"},
      {"eight_bit", wav_bytes(1, 1, 8000, 8, 16, 16), "8-bit samples"},
      {"stereo", wav_bytes(1, 2, 8000, 16, 16, 16), "2 channels; mono required"},
      {"truncated_data", wav_bytes(1, 1, 8000, 16, 1000, 500), "truncated: the header announces 1000 bytes"},
      {"odd_data", wav_bytes(1, 1, 8000, 16, 7, 7), "odd number of bytes"},
      {"truncated_format", headerOnly, "truncated"},
      {"no_data_chunk", noData, "no data chunk"},
      {"empty", {}, "not a WAV file"},
  };
  const auto dir = tooltest::scratch_dir("wav_bad");
  for (const BadFile& c : cases) {
    const auto path = dir / (std::string(c.name) + ".wav");
    tooltest::write_bytes(path, c.bytes);
    vsps::tool::WavAudio wav;
    std::string error;
    EXPECT_FALSE(vsps::tool::read_wav(path.string(), &wav, &error)) << c.name;
    EXPECT_NE(error.find(c.reason), std::string::npos) << c.name << ": " << error;
    EXPECT_NE(error.find(path.string()), std::string::npos) << c.name << ": the message names the file";
  }
  vsps::tool::WavAudio wav;
  std::string error;
  EXPECT_FALSE(vsps::tool::read_wav((dir / "missing.wav").string(), &wav, &error));
  EXPECT_NE(error.find("cannot open"), std::string::npos) << error;
}

TEST(WavReader, ReadsWhatItWrote) {
  const auto dir = tooltest::scratch_dir("wav_roundtrip");
  const std::vector<int16_t> samples = {0, 1, -1, 32767, -32768, 1234, -4321};
  tooltest::write_wav_file(dir / "a.wav", 16000, samples);
  int rate = 0;
  EXPECT_EQ(tooltest::read_wav_file(dir / "a.wav", &rate), samples);
  EXPECT_EQ(rate, 16000);
}

TEST(WavReader, StreamingDataLengthReadsToTheEndOfTheFile) {
  // 0xFFFFFFFF: a writer that could not seek back; 7 bytes follow (3 samples
  // and a stray byte).
  const auto dir = tooltest::scratch_dir("wav_stream");
  tooltest::write_bytes(dir / "s.wav", wav_bytes(1, 1, 8000, 16, 0xFFFFFFFF, 7));
  int rate = 0;
  EXPECT_EQ(tooltest::read_wav_file(dir / "s.wav", &rate).size(), 3u);
  EXPECT_EQ(rate, 8000);
}

TEST(WavReader, SkipsOtherChunksAndReadsExtensibleHeaders) {
  // A LIST chunk of odd size (padded to even) before the data, and the
  // extensible format header with the PCM sub-format.
  static const unsigned char kFile[] = {
      'R', 'I', 'F', 'F', 0, 0, 0, 0, 'W', 'A', 'V', 'E', 'f', 'm', 't', ' ', 40, 0, 0, 0,
      // format: extensible, 1 channel, 8000 Hz, 16000 B/s, align 2, 16 bits, extension 22 bytes:
      // 16 valid bits, channel mask 4, sub-format GUID starting with 1 (PCM)
      0xFE, 0xFF, 1, 0, 0x40, 0x1F, 0, 0, 0x80, 0x3E, 0, 0, 2, 0, 16, 0, 22, 0, 16, 0, 4, 0, 0, 0, 1, 0, 0, 0, 0, 0,
      0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71, 'L', 'I', 'S', 'T', 3, 0, 0, 0, 'a', 'b', 'c',
      0,  // odd size, one pad byte
      'd', 'a', 't', 'a', 4, 0, 0, 0, 0x34, 0x12, 0xFF, 0xFF};
  const std::vector<unsigned char> b(kFile, kFile + sizeof kFile);
  const auto dir = tooltest::scratch_dir("wav_ext");
  tooltest::write_bytes(dir / "ext.wav", b);
  int rate = 0;
  EXPECT_EQ(tooltest::read_wav_file(dir / "ext.wav", &rate), (std::vector<int16_t>{0x1234, -1}));
  EXPECT_EQ(rate, 8000);
}

}  // namespace
