// The ITU G.729 conformance files through the codec layer (main body,
// Annex A, main + Annex B, Annex A + Annex B): every decoder output and
// every encoder bit-stream must equal its reference file bit for bit. One
// test per file; each skips when the conformance files are absent.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/golden.h"
#include "vsps_codecs.h"

namespace {

namespace fs = std::filesystem;

struct Case {
  const char* dir;       // folder under testvectors
  int options;           // VSPS_G729_ANNEX_A, VSPS_G729_DTX
  bool encode;           // input audio -> bit-stream, else bit-stream -> audio
  const char* input;     // file in dir
  const char* expected;  // file in dir
};

constexpr int kA = VSPS_G729_ANNEX_A;
constexpr int kB = VSPS_G729_DTX;
constexpr int kAB = VSPS_G729_ANNEX_A | VSPS_G729_DTX;

// The conformance table: main body 6 encoder + 9 decoder files, Annex A 7 + 10.
const Case kCases[] = {
    {"g729", 0, true, "ALGTHM.IN", "ALGTHM.BIT"}, {"g729", 0, true, "FIXED.IN", "FIXED.BIT"},
    {"g729", 0, true, "LSP.IN", "LSP.BIT"},       {"g729", 0, true, "PITCH.IN", "PITCH.BIT"},
    {"g729", 0, true, "SPEECH.IN", "SPEECH.BIT"}, {"g729", 0, true, "TAME.IN", "TAME.BIT"},

    {"g729a", kA, true, "ALGTHM.IN", "ALGTHM.BIT"}, {"g729a", kA, true, "FIXED.IN", "FIXED.BIT"},
    {"g729a", kA, true, "LSP.IN", "LSP.BIT"},       {"g729a", kA, true, "PITCH.IN", "PITCH.BIT"},
    {"g729a", kA, true, "SPEECH.IN", "SPEECH.BIT"}, {"g729a", kA, true, "TAME.IN", "TAME.BIT"},
    {"g729a", kA, true, "TEST.IN", "TEST.BIT"},

    {"g729", 0, false, "ALGTHM.BIT", "ALGTHM.PST"},    {"g729", 0, false, "ERASURE.BIT", "ERASURE.PST"},
    {"g729", 0, false, "FIXED.BIT", "FIXED.PST"},      {"g729", 0, false, "LSP.BIT", "LSP.PST"},
    {"g729", 0, false, "OVERFLOW.BIT", "OVERFLOW.PST"}, {"g729", 0, false, "PARITY.BIT", "PARITY.PST"},
    {"g729", 0, false, "PITCH.BIT", "PITCH.PST"},      {"g729", 0, false, "SPEECH.BIT", "SPEECH.PST"},
    {"g729", 0, false, "TAME.BIT", "TAME.PST"},

    {"g729a", kA, false, "ALGTHM.BIT", "ALGTHM.PST"},    {"g729a", kA, false, "ERASURE.BIT", "ERASURE.PST"},
    {"g729a", kA, false, "FIXED.BIT", "FIXED.PST"},      {"g729a", kA, false, "LSP.BIT", "LSP.PST"},
    {"g729a", kA, false, "OVERFLOW.BIT", "OVERFLOW.PST"}, {"g729a", kA, false, "PARITY.BIT", "PARITY.PST"},
    {"g729a", kA, false, "PITCH.BIT", "PITCH.PST"},      {"g729a", kA, false, "SPEECH.BIT", "SPEECH.PST"},
    {"g729a", kA, false, "TAME.BIT", "TAME.PST"},        {"g729a", kA, false, "TEST.BIT", "TEST.pst"},

    // Annex B (VAD on) over the main body and over Annex A: 4 encoder and 6 decoder files each.
    {"g729b", kB, true, "tstseq1.bin", "tstseq1.bit"},    {"g729b", kB, true, "tstseq2.bin", "tstseq2.bit"},
    {"g729b", kB, true, "tstseq3.bin", "tstseq3.bit"},    {"g729b", kB, true, "tstseq4.bin", "tstseq4.bit"},
    {"g729b", kAB, true, "tstseq1.bin", "tstseq1a.bit"},  {"g729b", kAB, true, "tstseq2.bin", "tstseq2a.bit"},
    {"g729b", kAB, true, "tstseq3.bin", "tstseq3a.bit"},  {"g729b", kAB, true, "tstseq4.bin", "tstseq4a.bit"},
    {"g729b", kB, false, "tstseq1.bit", "tstseq1.out"},    {"g729b", kB, false, "tstseq2.bit", "tstseq2.out"},
    {"g729b", kB, false, "tstseq3.bit", "tstseq3.out"},    {"g729b", kB, false, "tstseq4.bit", "tstseq4.out"},
    {"g729b", kB, false, "tstseq5.bit", "tstseq5.out"},    {"g729b", kB, false, "tstseq6.bit", "tstseq6.out"},
    {"g729b", kAB, false, "tstseq1a.bit", "tstseq1a.out"}, {"g729b", kAB, false, "tstseq2a.bit", "tstseq2a.out"},
    {"g729b", kAB, false, "tstseq3a.bit", "tstseq3a.out"}, {"g729b", kAB, false, "tstseq4a.bit", "tstseq4a.out"},
    {"g729b", kAB, false, "tstseq5.bit", "tstseq5a.out"},  {"g729b", kAB, false, "tstseq6.bit", "tstseq6a.out"},
};

std::vector<Vsp16s> read_words(const std::string& path) {
  std::ifstream f(path, std::ios::binary);
  const std::vector<unsigned char> b{std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
  std::vector<Vsp16s> w(b.size() / 2);
  for (std::size_t i = 0; i < w.size(); ++i) w[i] = static_cast<Vsp16s>(b[2 * i] | b[2 * i + 1] << 8);
  return w;
}

std::vector<Vsp16s> decode(const std::vector<Vsp16s>& bits, int options) {
  int size = 0;
  EXPECT_EQ(vspscodecG729DecoderGetSize(&size), vspStsNoErr);
  std::vector<unsigned char> mem(static_cast<std::size_t>(size));
  auto* dec = reinterpret_cast<VspsG729Decoder*>(mem.data());
  EXPECT_EQ(vspscodecG729DecoderInit(dec, options), vspStsNoErr);
  std::vector<Vsp16s> out;
  for (std::size_t pos = 0; pos < bits.size();) {
    VspsG729Frame f{};
    int used = 0;
    const VspStatus st = vspscodecG729SerialRead(bits.data() + pos, static_cast<int>(bits.size() - pos), &f, &used);
    if (st != vspStsNoErr) {
      ADD_FAILURE() << "bit-stream frame " << out.size() / 80 << ": status " << st;
      break;
    }
    pos += static_cast<std::size_t>(used);
    Vsp16s pcm[80];
    EXPECT_EQ(vspscodecG729DecoderDecode(dec, &f, pcm), vspStsNoErr);
    out.insert(out.end(), pcm, pcm + 80);
  }
  return out;
}

std::vector<Vsp16s> encode(const std::vector<Vsp16s>& pcm, int options) {
  int size = 0;
  EXPECT_EQ(vspscodecG729EncoderGetSize(&size), vspStsNoErr);
  std::vector<unsigned char> mem(static_cast<std::size_t>(size));
  auto* enc = reinterpret_cast<VspsG729Encoder*>(mem.data());
  EXPECT_EQ(vspscodecG729EncoderInit(enc, options), vspStsNoErr);
  std::vector<Vsp16s> out;
  for (std::size_t pos = 0; pos + 80 <= pcm.size(); pos += 80) {
    VspsG729Frame f{};
    EXPECT_EQ(vspscodecG729EncoderEncode(enc, pcm.data() + pos, &f), vspStsNoErr);
    Vsp16s words[VSPS_G729_SERIAL_MAX_WORDS];
    int n = 0;
    EXPECT_EQ(vspscodecG729SerialWrite(&f, words, &n), vspStsNoErr);
    out.insert(out.end(), words, words + n);
  }
  return out;
}

// Index of the first differing word (or the shorter length), for messages.
std::size_t first_difference(const std::vector<Vsp16s>& a, const std::vector<Vsp16s>& b) {
  std::size_t i = 0;
  while (i < a.size() && i < b.size() && a[i] == b[i]) ++i;
  return i;
}

class G729Conformance : public testing::TestWithParam<Case> {};

TEST_P(G729Conformance, ReproducesTheReferenceFile) {
  const Case& c = GetParam();
  const std::string root = vt::testvectors_dir();
  const std::string dir = root + "/" + c.dir + "/";
  if (root.empty() || !fs::exists(dir + c.input) || !fs::exists(dir + c.expected))
    GTEST_SKIP() << "conformance files not found: " << dir << c.input;
  const std::vector<Vsp16s> in = read_words(dir + c.input);
  const std::vector<Vsp16s> got = c.encode ? encode(in, c.options) : decode(in, c.options);
  const std::vector<Vsp16s> want = read_words(dir + c.expected);
  ASSERT_FALSE(want.empty());
  const std::size_t at = first_difference(got, want);
  EXPECT_TRUE(got == want) << c.dir << "/" << c.input << ": first difference at word " << at << " (frame "
                           << at / (c.encode ? 82 : 80) << "), " << got.size() << " words produced, " << want.size() << " expected";
}

std::string case_name(const testing::TestParamInfo<Case>& info) {
  static const char* const kVariant[] = {"main", "a", "b", "ab"};  // by option bits
  std::string n = std::string(kVariant[info.param.options & 3]) + "_" + (info.param.encode ? "enc_" : "dec_") +
                  info.param.input;
  for (char& ch : n)
    if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
  return n;
}

INSTANTIATE_TEST_SUITE_P(Files, G729Conformance, testing::ValuesIn(kCases), case_name);

}  // namespace
