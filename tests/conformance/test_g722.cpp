// G.722: the Appendix II digital test sequences (sub-band coders with the
// QMF bypassed, 2 encoder and 9 decoder checks) through the driver's
// sub-band configuration, and the speech files (whole codec, modes 1 to 3)
// through "vsps g722".
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "tests/conformance/conformance_pairs.h"
#include "tests/tool/run_tool.h"
#include "vsps_codecs.h"

namespace {

using Words = std::vector<uint16_t>;

Words read_words(const std::string& path) {
  std::ifstream f(path, std::ios::binary);
  const std::vector<char> b{std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
  Words w(b.size() / 2);
  for (std::size_t i = 0; i < w.size(); ++i)
    w[i] = static_cast<uint16_t>(static_cast<uint8_t>(b[2 * i]) | (static_cast<uint8_t>(b[2 * i + 1]) << 8));
  return w;
}

// Index and count of the differing words, "" when equal.
std::string diff(const Words& got, const Words& want) {
  if (got.size() != want.size()) return std::to_string(got.size()) + " words, expected " + std::to_string(want.size());
  std::size_t bad = 0, first = 0;
  for (std::size_t i = 0; i < got.size(); ++i)
    if (got[i] != want[i] && bad++ == 0) first = i;
  return bad == 0 ? "" : std::to_string(bad) + " words differ, first at " + std::to_string(first);
}

template <class T>
std::vector<uint64_t> object(VspStatus (*size_fn)(int*)) {
  int size = 0;
  size_fn(&size);
  return std::vector<uint64_t>((static_cast<std::size_t>(size) + 7) / 8);
}

// Encoder check: input words carry a 15-bit sample in bits 15..1 (fed to
// both bands) or the reset flag in bit 0; output words the octet in bits
// 15..8, or 0x0001 for a reset.
Words encode_sequence(const Words& in) {
  auto mem = object<VspscodecG722Encoder>(vspscodecG722EncoderGetSize);
  auto* enc = reinterpret_cast<VspscodecG722Encoder*>(mem.data());
  EXPECT_EQ(vspscodecG722EncoderInit(enc), vspStsNoErr);
  Words out;
  for (uint16_t w : in) {
    if (w & 1) {
      EXPECT_EQ(vspscodecG722EncoderInit(enc), vspStsNoErr);
      out.push_back(1);
      continue;
    }
    const auto x = static_cast<Vsp16s>(static_cast<int16_t>(w) >> 1);
    Vsp8u octet = 0;
    EXPECT_EQ(vspscodecG722EncoderEncodeBands(enc, &x, &x, 1, &octet), vspStsNoErr);
    out.push_back(static_cast<uint16_t>(octet << 8));
  }
  return out;
}

// Decoder check: the lower band in `mode` and the higher band, output words
// with the 15-bit sample in bits 15..1, or 0x0001 for a reset.
void decode_sequence(const Words& in, int mode, Words* low, Words* high) {
  auto mem = object<VspscodecG722Decoder>(vspscodecG722DecoderGetSize);
  auto* dec = reinterpret_cast<VspscodecG722Decoder*>(mem.data());
  EXPECT_EQ(vspscodecG722DecoderInit(dec, mode), vspStsNoErr);
  for (uint16_t w : in) {
    if (w & 1) {
      EXPECT_EQ(vspscodecG722DecoderInit(dec, mode), vspStsNoErr);
      low->push_back(1);
      high->push_back(1);
      continue;
    }
    const auto octet = static_cast<Vsp8u>(w >> 8);
    Vsp16s rl = 0, rh = 0;
    EXPECT_EQ(vspscodecG722DecoderDecodeBands(dec, &octet, 1, &rl, &rh), vspStsNoErr);
    low->push_back(static_cast<uint16_t>(rl * 2));
    high->push_back(static_cast<uint16_t>(rh * 2));
  }
}

struct Sequence {
  const char* name;
  const char* input;
  const char* expected;  // encoder output, or lower band "%" with the mode appended
  const char* higher;    // decoder: higher-band output
};

const Sequence kEncoder[] = {{"T1C1", "g722/bt1c1.xmt", "g722/bt2r1.cod", nullptr},
                             {"T1C2", "g722/bt1c2.xmt", "g722/bt2r2.cod", nullptr}};
const Sequence kDecoder[] = {{"T2R1", "g722/bt2r1.cod", "g722/bt3l1.rc", "g722/bt3h1.rc0"},
                             {"T2R2", "g722/bt2r2.cod", "g722/bt3l2.rc", "g722/bt3h2.rc0"},
                             {"T1D3", "g722/bt1d3.cod", "g722/bt3l3.rc", "g722/bt3h3.rc0"}};

#define SKIP_WITHOUT(rel) \
  if (conftest::vector_path(rel).empty()) GTEST_SKIP() << "G.722 conformance file " << (rel) << " not found"

TEST(G722AppendixII, EncoderSequences) {
  for (const Sequence& s : kEncoder) {
    SKIP_WITHOUT(s.input);
    EXPECT_EQ(diff(encode_sequence(read_words(conftest::vector_path(s.input))),
                   read_words(conftest::vector_path(s.expected))),
              "")
        << s.name;
  }
}

TEST(G722AppendixII, DecoderSequencesInModes1To3) {
  for (const Sequence& s : kDecoder) {
    SKIP_WITHOUT(s.input);
    for (int mode = 1; mode <= 3; ++mode) {
      Words low, high;
      decode_sequence(read_words(conftest::vector_path(s.input)), mode, &low, &high);
      const std::string lowFile = std::string(s.expected) + std::to_string(mode);
      EXPECT_EQ(diff(low, read_words(conftest::vector_path(lowFile))), "") << s.name << " " << lowFile;
      if (mode == 1)
        EXPECT_EQ(diff(high, read_words(conftest::vector_path(s.higher))), "") << s.name << " " << s.higher;
    }
  }
}

// The speech files: codspw.cod holds one octet per 16-bit word (low byte).
TEST(G722Speech, EncodeAndDecodeInEveryMode) {
  SKIP_WITHOUT("g722/inpsp.bin");
  std::string coded;
  ASSERT_EQ(
      conftest::run_command({"g722_enc", {"g722", "encode", "IN", "OUT"}, "g722/inpsp.bin", "", "sp.g722", 1}, &coded),
      "");
  const Words words = read_words(conftest::vector_path("g722/codspw.cod"));
  std::ifstream f(coded, std::ios::binary);
  const std::vector<char> octets{std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
  Words asWords(octets.size());
  for (std::size_t i = 0; i < octets.size(); ++i) asWords[i] = static_cast<uint8_t>(octets[i]);
  EXPECT_EQ(diff(asWords, words), "") << "inpsp.bin -> codspw.cod";
  std::vector<unsigned char> reference(words.size());
  for (std::size_t i = 0; i < words.size(); ++i) reference[i] = static_cast<unsigned char>(words[i]);
  const std::string refOctets = (tooltest::scratch_dir("g722_speech") / "codspw.g722").string();
  tooltest::write_bytes(refOctets, reference);
  for (int mode = 1; mode <= 3; ++mode) {
    const std::string m = std::to_string(mode), expected = "g722/outsp" + m + ".bin";
    std::string pcm;
    ASSERT_EQ(conftest::run_command(
                  {"g722_dec" + m, {"g722", "decode", "--mode", m, refOctets, "OUT"}, "", "", "o.pcm", 2}, &pcm),
              "");
    EXPECT_EQ(conftest::compare_files(pcm, conftest::vector_path(expected), 2), "") << "codspw.cod -> " << expected;
  }
}

}  // namespace
