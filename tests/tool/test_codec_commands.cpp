// The g711 and g726 commands: ITU files through the commands, and the errors
// of unusable inputs (odd byte counts, truncated packed frames, WAV files of
// another rate or channel count).
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "tests/codecs/itu_files.h"
#include "tests/tool/run_tool.h"

namespace {

namespace fs = std::filesystem;
using tooltest::run;

bool contains(const std::string& s, const std::string& part) { return s.find(part) != std::string::npos; }

TEST(ToolG726, EncodesAndDecodesTheItuFilesInWordContainers) {
  const std::string dir = itu::folder("g726");
  if (dir.empty()) GTEST_SKIP() << "G.726 test sequences not found";
  const fs::path out = tooltest::scratch_dir("g726-itu");
  tooltest::Result r = run({"g726", "encode", "--rate", "40", "--law", "u", "--container", "words", dir + "/ovr.m",
                            (out / "rv40fm.i").string()});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(itu::read_bytes((out / "rv40fm.i").string()), itu::read_bytes(dir + "/rv40fm.i"));
  // mu-law codes decoded to A-law: the CRC of the ITU output file.
  r = run({"g726", "decode", "--rate", "16", "--law", "a", "--container", "words", dir + "/rn16fm.i",
           (out / "rn16fc.o").string()});
  ASSERT_EQ(r.status, 0) << r.err;
  const auto crcs = itu::read_crc_list(dir + "/ts-crcs");
  EXPECT_EQ(itu::crc32_le_words(itu::read_words((out / "rn16fc.o").string())), crcs.at("rn16fc.o"));
  // Packed output (AAL2) of the first 1024 samples, A-law one code per byte.
  const auto nrm = itu::read_words(dir + "/nrm.a");
  tooltest::write_bytes(out / "nrm1024.a", std::vector<unsigned char>(nrm.begin(), nrm.begin() + 1024));
  r = run({"g726", "encode", "--rate", "24", "--law", "a", "--format", "aal2", (out / "nrm1024.a").string(),
           (out / "x.aal2").string()});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(itu::read_bytes((out / "x.aal2").string()), itu::read_bytes(dir + "/packing/rn24fa_1024.aal2"));
}

TEST(ToolG711, CompressesTheStlSweep) {
  const std::string dir = itu::folder("g711");
  if (dir.empty()) GTEST_SKIP() << "G.711 check files not found";
  const fs::path out = tooltest::scratch_dir("g711-sweep");
  tooltest::Result r = run({"g711", "encode", "--law", "a", dir + "/sweep.src", (out / "a.bytes").string()});
  ASSERT_EQ(r.status, 0) << r.err;
  const auto words = itu::read_words(dir + "/sweep-r.a");
  EXPECT_EQ(itu::read_bytes((out / "a.bytes").string()), std::vector<uint8_t>(words.begin(), words.end()));
  r = run({"g711", "decode", "--law", "u", "--container", "words", dir + "/sweep-r.u", (out / "u.pcm").string()});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(itu::read_bytes((out / "u.pcm").string()), itu::read_bytes(dir + "/sweep-r.reu"));
}

TEST(ToolCodecs, RefuseUnusableInputs) {
  const fs::path dir = tooltest::scratch_dir("codec-errors");
  tooltest::write_bytes(dir / "odd.pcm", {1, 2, 3});
  tooltest::write_bytes(dir / "four.bytes", {1, 2, 3, 4});
  tooltest::write_bytes(dir / "stereo.wav", tooltest::wav_bytes(1, 2, 8000, 16, 400, 400));
  tooltest::write_wav_file(dir / "wide.wav", 16000, std::vector<int16_t>(160, 0));
  struct Case {
    std::vector<std::string> args;
    const char* message;
  };
  const std::string o = (dir / "out").string();
  const Case cases[] = {
      {{"g711", "encode", "--law", "a", (dir / "odd.pcm").string(), o}, "odd count for 16-bit data"},
      {{"g726", "encode", "--rate", "32", "--law", "linear", (dir / "odd.pcm").string(), o}, "odd count"},
      {{"g726", "decode", "--rate", "16", "--law", "u", "--container", "words", (dir / "odd.pcm").string(), o},
       "odd count"},
      {{"g726", "decode", "--rate", "24", "--law", "a", "--format", "rtp", (dir / "four.bytes").string(), o},
       "truncated frame"},
      {{"g726", "decode", "--rate", "40", "--law", "a", "--format", "aal2", (dir / "four.bytes").string(), o},
       "truncated frame"},
      {{"g726", "encode", "--rate", "24", "--law", "u", "--format", "rtp", (dir / "four.bytes").string(), o},
       "truncated last frame"},
      {{"g726", "encode", "--rate", "32", "--law", "a", (dir / "wide.wav").string(), o}, "sampling rate 16000 Hz"},
      {{"g711", "encode", "--law", "u", (dir / "stereo.wav").string(), o}, "channel"},
      {{"g726", "decode", "--rate", "32", "--law", "a", "--container", "words", (dir / "four.bytes").string(), o},
       "word 0 holds 513, more than 15"},
      {{"g726", "decode", "--rate", "16", "--law", "a", (dir / "four.bytes").string(), o},
       "byte 3 holds 4, more than 3"},
  };
  for (const Case& c : cases) {
    const tooltest::Result r = run(c.args);
    EXPECT_EQ(r.status, 1) << c.args[0] << " " << c.args[1] << ": " << r.err;
    EXPECT_TRUE(contains(r.err, c.message)) << r.err;
  }
  for (const std::vector<std::string>& args :
       {std::vector<std::string>{"g726", "encode", "--rate", "20", "--law", "a", "x", "y"},
        {"g726", "encode", "--rate", "32", "--law", "b", "x", "y"},
        {"g711", "encode", "--law", "linear", "x", "y"},
        {"g726", "decode", "--rate", "32", "--law", "a", "--format", "rtp", "--container", "words", "x", "y"}})
    EXPECT_EQ(run(args).status, 2) << args[1] << " " << args[3];
}

TEST(ToolG726, LinearWavRoundTrip) {
  const fs::path dir = tooltest::scratch_dir("g726-linear");
  std::vector<int16_t> tone(800);
  for (std::size_t n = 0; n < tone.size(); ++n) tone[n] = static_cast<int16_t>(8000 * std::sin(0.3 * double(n)));
  tooltest::write_wav_file(dir / "in.wav", 8000, tone);
  tooltest::Result r = run({"g726", "encode", "--rate", "32", "--law", "linear", "--format", "rtp",
                            (dir / "in.wav").string(), (dir / "c.rtp").string()});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(fs::file_size(dir / "c.rtp"), 400u);
  r = run({"g726", "decode", "--rate", "32", "--law", "linear", "--format", "rtp", (dir / "c.rtp").string(),
           (dir / "out.wav").string()});
  ASSERT_EQ(r.status, 0) << r.err;
  int rate = 0;
  const std::vector<int16_t> back = tooltest::read_wav_file(dir / "out.wav", &rate);
  EXPECT_EQ(rate, 8000);
  ASSERT_EQ(back.size(), tone.size());
  // 32 kbit/s ADPCM follows a 382 Hz sine closely once adapted (> 20 dB).
  double signal = 0, noise = 0;
  for (std::size_t n = 200; n < tone.size(); ++n) {
    signal += double(tone[n]) * tone[n];
    noise += (double(back[n]) - tone[n]) * (double(back[n]) - tone[n]);
  }
  EXPECT_GT(10 * std::log10(signal / noise), 20.0);
}

}  // namespace
