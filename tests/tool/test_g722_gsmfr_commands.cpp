// The g722 and gsmfr commands' file handling: formats chosen by the file
// name, and a clear message for every unusable input.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/tool/run_tool.h"
#include "tools/speech_signal.h"

namespace {

namespace fs = std::filesystem;
using tooltest::run;

std::vector<unsigned char> slurp(const fs::path& p) {
  std::ifstream f(p, std::ios::binary);
  return {std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
}

struct ErrorCase {
  std::vector<std::string> args;
  int status;
  const char* message;
};

void expect_errors(const std::vector<ErrorCase>& cases) {
  for (const ErrorCase& c : cases) {
    const tooltest::Result r = run(c.args);
    std::string line;
    for (const std::string& a : c.args) line += a + " ";
    EXPECT_EQ(r.status, c.status) << line;
    EXPECT_NE(r.err.find(c.message), std::string::npos) << line << "\n" << r.err;
  }
}

TEST(ToolGsmfr, WavAndRawInputGiveTheSameFramesInBothCodedFormats) {
  const fs::path dir = tooltest::scratch_dir("gsmfr_formats");
  const std::vector<int16_t> pcm = vsps::signals::speech_like(0.5, 8000, 3);  // 25 frames
  tooltest::write_wav_file(dir / "in.wav", 8000, pcm);
  std::vector<unsigned char> raw;
  for (int16_t s : pcm) {
    raw.push_back(static_cast<unsigned char>(s & 0xFF));
    raw.push_back(static_cast<unsigned char>((s >> 8) & 0xFF));
  }
  tooltest::write_bytes(dir / "in.pcm", raw);
  auto p = [&](const char* name) { return (dir / name).string(); };
  for (const auto& args : std::vector<std::vector<std::string>>{{"encode", p("in.wav"), p("a.gsm")},
                                                                {"encode", p("in.pcm"), p("b.cod")},
                                                                {"decode", p("a.gsm"), p("a.wav")},
                                                                {"decode", p("b.cod"), p("b.pcm")}}) {
    std::vector<std::string> cmd = {"gsmfr"};
    cmd.insert(cmd.end(), args.begin(), args.end());
    const tooltest::Result r = run(cmd);
    ASSERT_EQ(r.status, 0) << r.err;
  }
  const auto gsm = slurp(dir / "a.gsm");
  ASSERT_EQ(gsm.size(), 25u * 33);
  for (std::size_t f = 0; f < 25; ++f) EXPECT_EQ(gsm[33 * f] >> 4, 0xD) << "frame " << f;
  EXPECT_EQ(slurp(dir / "b.cod").size(), 25u * 152);
  int rate = 0;
  const std::vector<int16_t> a = tooltest::read_wav_file(dir / "a.wav", &rate);
  EXPECT_EQ(rate, 8000);
  const auto b = slurp(dir / "b.pcm");
  ASSERT_EQ(b.size(), a.size() * 2);
  for (std::size_t i = 0; i < a.size(); ++i)
    ASSERT_EQ(static_cast<int16_t>(b[2 * i] | (b[2 * i + 1] << 8)), a[i]) << "sample " << i;
}

TEST(ToolGsmfr, UnusableInputsAreRefusedWithTheReason) {
  const fs::path dir = tooltest::scratch_dir("gsmfr_errors");
  tooltest::write_wav_file(dir / "wide.wav", 16000, std::vector<int16_t>(320, 0));
  tooltest::write_bytes(dir / "stereo.wav", tooltest::wav_bytes(1, 2, 8000, 16, 640, 640));
  tooltest::write_bytes(dir / "partial.pcm", std::vector<unsigned char>(2 * 200, 0));
  tooltest::write_bytes(dir / "odd.pcm", std::vector<unsigned char>(321, 0));
  std::vector<unsigned char> frame(33, 0);
  frame[0] = 0xD0;
  tooltest::write_bytes(dir / "short.gsm", std::vector<unsigned char>(frame.begin(), frame.begin() + 32));
  frame[0] = 0xC0;
  tooltest::write_bytes(dir / "sig.gsm", frame);
  tooltest::write_bytes(dir / "odd.cod", std::vector<unsigned char>(151, 0));
  std::vector<unsigned char> cod(152, 0);
  cod[0] = 64;  // LARc[1] has 6 bits
  tooltest::write_bytes(dir / "range.cod", cod);
  auto p = [&](const char* name) { return (dir / name).string(); };
  expect_errors({
      {{"gsmfr", "encode", p("wide.wav"), p("o.gsm")}, 1, "sampling rate 16000 Hz; this codec needs 8000 Hz"},
      {{"gsmfr", "encode", p("stereo.wav"), p("o.gsm")}, 1, "2 channels; mono required"},
      {{"gsmfr", "encode", p("partial.pcm"), p("o.gsm")}, 1, "truncated last frame: 40 samples left over"},
      {{"gsmfr", "encode", p("odd.pcm"), p("o.cod")}, 1, "odd number of bytes (321)"},
      {{"gsmfr", "encode", p("partial.pcm"), p("o.bin")}, 2, "must end in .gsm"},
      {{"gsmfr", "decode", p("short.gsm"), p("o.pcm")}, 1, "truncated last frame: 32 bytes left over"},
      {{"gsmfr", "decode", p("sig.gsm"), p("o.pcm")}, 1, "frame 0: invalid GSM frame signature 0xC"},
      {{"gsmfr", "decode", p("odd.cod"), p("o.pcm")}, 1, "odd number of bytes (151)"},
      {{"gsmfr", "decode", p("range.cod"), p("o.pcm")}, 1, "frame 0: a parameter word lies outside its field"},
      {{"gsmfr", "decode", p("none.gsm"), p("o.pcm")}, 1, "cannot open"},
      {{"gsmfr", "transcode", p("sig.gsm"), p("o.pcm")}, 2, "gsmfr needs encode|decode IN OUT"},
  });
}

TEST(ToolG722, WavInAndOutKeepTheSampleCountAtEveryMode) {
  const fs::path dir = tooltest::scratch_dir("g722_wav");
  const std::vector<int16_t> pcm = vsps::signals::speech_like(0.25, 16000, 5);
  tooltest::write_wav_file(dir / "in.wav", 16000, pcm);
  ASSERT_EQ(run({"g722", "encode", (dir / "in.wav").string(), (dir / "c.g722").string()}).status, 0);
  EXPECT_EQ(slurp(dir / "c.g722").size(), pcm.size() / 2);
  for (const char* mode : {"1", "2", "3"}) {
    const fs::path out = dir / (std::string("out") + mode + ".wav");
    const tooltest::Result r = run({"g722", "decode", "--mode", mode, (dir / "c.g722").string(), out.string()});
    ASSERT_EQ(r.status, 0) << r.err;
    int rate = 0;
    EXPECT_EQ(tooltest::read_wav_file(out, &rate).size(), pcm.size());
    EXPECT_EQ(rate, 16000);
  }
}

TEST(ToolG722, UnusableInputsAreRefusedWithTheReason) {
  const fs::path dir = tooltest::scratch_dir("g722_errors");
  tooltest::write_wav_file(dir / "narrow.wav", 8000, std::vector<int16_t>(160, 0));
  tooltest::write_bytes(dir / "three.pcm", std::vector<unsigned char>(6, 0));
  tooltest::write_bytes(dir / "odd.pcm", std::vector<unsigned char>(7, 0));
  tooltest::write_bytes(dir / "c.g722", std::vector<unsigned char>(10, 0x5A));
  auto p = [&](const char* name) { return (dir / name).string(); };
  expect_errors({
      {{"g722", "encode", p("narrow.wav"), p("o.g722")}, 1, "sampling rate 8000 Hz; this codec needs 16000 Hz"},
      {{"g722", "encode", p("three.pcm"), p("o.g722")}, 1, "truncated last frame: 3 samples"},
      {{"g722", "encode", p("odd.pcm"), p("o.g722")}, 1, "odd number of bytes (7)"},
      {{"g722", "decode", "--mode", "4", p("c.g722"), p("o.pcm")}, 2, "--mode takes 1 (64 kbit/s), 2 (56) or 3 (48)"},
      {{"g722", "encode", "--mode", "2", p("three.pcm"), p("o.g722")}, 2, "--mode applies to g722 decode"},
      {{"g722", "decode", p("c.g722")}, 2, "g722 needs encode IN OUT or decode [--mode 1|2|3] IN OUT"},
  });
}

}  // namespace
