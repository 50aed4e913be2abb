// The G.729 LP front end over the ITU conformance files, with library calls
// only: the encoder's LSP indices must equal the L0..L3 fields of the
// conformance bit-streams frame for frame, and the decoder's LSF decoding
// (with erasures) must reproduce the encoder's quantised LSPs and, where the
// per-frame reference dumps are present, the decoder's A(z). Skips when the
// conformance files are absent.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/g729/g729_bitstream.h"
#include "tests/g729/g729_test_util.h"
#include "tests/support/golden.h"
#include "tests/support/levels.h"

namespace {

using g729t::V16;
namespace fs = std::filesystem;

const char* const kEncoderFiles[] = {"ALGTHM", "FIXED", "LSP", "PITCH", "SPEECH", "TAME"};
const char* const kDecoderFiles[] = {"ALGTHM", "ERASURE", "FIXED",  "LSP", "OVERFLOW",
                                     "PARITY", "PITCH",   "SPEECH", "TAME"};

std::string vectors(const std::string& name) {
  const std::string dir = vt::testvectors_dir();
  return dir.empty() ? "" : dir + "/g729/" + name;
}

// The encoder's LP analysis and LSP quantisation (G.729 main body).
class EncoderFrontEnd {
 public:
  EncoderFrontEnd()
      : state_(24), speech_(240, 0), lpc_{4096, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, mem_(g729t::reset_memory()) {
    const V16 coeff = {4096, 7807, -3733, 1899, -3798, 1899};
    legacy90vspsHighPassFilterInit_G729(coeff.data(), state_.data());
    lspOld_ = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
  }
  // One frame of 80 new samples; returns {word0, word1} and the LSPs.
  void frame(const int16_t* pcm, int out[2], V16& lsp, V16& lspq) {
    std::copy(pcm, pcm + 80, speech_.begin() + 160);
    ASSERT_EQ(legacy90vspsHighPassFilter_G729_16s_ISfs(speech_.data() + 160, 80, 12, state_.data()), vspStsNoErr);
    std::vector<Vsp32s> r(11);
    int norm = 0;
    ASSERT_EQ(legacy90vspsAutoCorr_NormE_G729_16s32s(speech_.data(), r.data(), 11, &norm), vspStsNoErr);
    ASSERT_EQ(legacy90vspsLagWindow_G729_32s_I(r.data() + 1, 10), vspStsNoErr);
    V16 rc(10);
    Vsp16s energy = 0;
    const VspStatus st = legacy90vspsLevinsonDurbin_G729_32s16s(r.data(), 10, lpc_.data(), rc.data(), &energy);
    ASSERT_TRUE(st == vspStsNoErr || st == vspStsLPCUnstable);  // 12: keep the previous filter
    lsp.assign(10, 0);
    ASSERT_EQ(legacy90vspsLPCToLSP_G729_16s(lpc_.data(), lspOld_.data(), lsp.data()), vspStsNoErr);
    lspq.assign(10, 0);
    V16 words(2);
    ASSERT_EQ(legacy90vspsLSPQuant_G729_16s(lsp.data(), mem_.data(), lspq.data(), words.data()), vspStsNoErr);
    out[0] = words[0];
    out[1] = words[1];
    lspOld_ = lsp;
    std::copy(speech_.begin() + 80, speech_.end(), speech_.begin());
  }

 private:
  std::vector<Vsp8u> state_;
  V16 speech_;
  V16 lpc_;
  V16 lspOld_;
  V16 mem_;
};

// The decoder's LSP decoding with erasure concealment (G.729 D_lsp).
class LspDecoder {
 public:
  LspDecoder() : mem_(g729t::reset_memory()), lastLsf_(g729t::kLsfReset) {}
  V16 frame(const g729t::BitFrame& fr) {
    V16 lsf(10);
    if (!fr.erased) {
      const V16 codes = {static_cast<Vsp16s>(fr.prm[0] >> 7 & 1), static_cast<Vsp16s>(fr.prm[0] & 127),
                         static_cast<Vsp16s>(fr.prm[1] >> 5 & 31), static_cast<Vsp16s>(fr.prm[1] & 31)};
      const VspStatus st = legacy90vspsLSFDecode_G729_16s(codes.data(), mem_.data(), lsf.data());
      EXPECT_TRUE(st >= vspStsNoErr && st <= vspStsLsfBothClamped && st != 1) << st;
      lastLsf_ = lsf;
      lastMode_ = codes[0];
    } else {
      EXPECT_EQ(legacy90vspsLSFDecodeErased_G729_16s(lastMode_, mem_.data(), lastLsf_.data()), vspStsNoErr);
      lsf = lastLsf_;
    }
    V16 lsp(10);
    EXPECT_EQ(legacy90vspsLSFToLSP_G729_16s(lsf.data(), lsp.data()), vspStsNoErr);
    return lsp;
  }

 private:
  V16 mem_;
  V16 lastLsf_;
  int lastMode_ = 0;
};

// "<E|D> frame sf key values" lines of a per-frame reference dump.
std::vector<std::vector<int>> dump_lines(const std::string& path, char side, const std::string& key, int sf) {
  std::vector<std::vector<int>> out;
  std::ifstream f(path);
  std::string line;
  while (std::getline(f, line)) {
    std::istringstream is(line);
    char s;
    int frame, sub;
    std::string k;
    if (!(is >> s >> frame >> sub >> k) || s != side || k != key || sub != sf) continue;
    std::vector<int> v{frame};
    for (int x; is >> x;) v.push_back(x);
    out.push_back(v);
  }
  return out;
}

TEST(G729Conformance, EncoderLspIndicesMatchTheBitStreams) {
  if (vectors("").empty() || !fs::exists(vectors("SPEECH.IN"))) GTEST_SKIP() << "G.729 conformance files not found";
  int total = 0;
  for (const char* name : kEncoderFiles) {
    const std::vector<int16_t> pcm = g729t::read_words(vectors(std::string(name) + ".IN"));
    const std::vector<g729t::BitFrame> bits = g729t::read_bitstream(vectors(std::string(name) + ".BIT"));
    const std::size_t frames = std::min(pcm.size() / 80, bits.size());
    ASSERT_GT(frames, 0u) << name;
    EncoderFrontEnd enc;
    std::size_t match = 0;
    for (std::size_t n = 0; n < frames; ++n) {
      int words[2];
      V16 lsp, lspq;
      enc.frame(pcm.data() + 80 * n, words, lsp, lspq);
      if (words[0] == bits[n].prm[0] && words[1] == bits[n].prm[1])
        ++match;
      else if (frames - match < 5)
        ADD_FAILURE() << name << " frame " << n;
    }
    EXPECT_EQ(match, frames) << name;
    RecordProperty(name, static_cast<int>(match));
    std::cout << "[ info ] " << name << ": " << match << " of " << frames << " frames match\n";
    total += static_cast<int>(match);
  }
  RecordProperty("frames", total);
}

TEST(G729Conformance, DecoderLspsMatchTheEncoder) {
  if (vectors("").empty() || !fs::exists(vectors("SPEECH.IN"))) GTEST_SKIP() << "G.729 conformance files not found";
  for (const char* name : kEncoderFiles) {
    const std::vector<int16_t> pcm = g729t::read_words(vectors(std::string(name) + ".IN"));
    const std::vector<g729t::BitFrame> bits = g729t::read_bitstream(vectors(std::string(name) + ".BIT"));
    const std::size_t frames = std::min(pcm.size() / 80, bits.size());
    EncoderFrontEnd enc;
    LspDecoder dec;
    std::size_t match = 0;
    for (std::size_t n = 0; n < frames; ++n) {
      int words[2];
      V16 lsp, lspq;
      enc.frame(pcm.data() + 80 * n, words, lsp, lspq);
      if (dec.frame(bits[n]) == lspq) ++match;
    }
    EXPECT_EQ(match, frames) << name;
    std::cout << "[ info ] " << name << ": decoder equals encoder in " << match << " of " << frames << " frames\n";
  }
}

// Decoder-only files too (erasures): LSPToLPC of the decoded LSP equals the
// reference decoder's A(z) of the second subframe.
TEST(G729Conformance, DecoderFilterMatchesTheReferenceDumps) {
  const std::string dumps = vt::testvectors_dir().empty() ? "" : vt::testvectors_dir() + "/../golden/g729-frames";
  if (vectors("").empty() || !fs::is_directory(dumps)) GTEST_SKIP() << "G.729 conformance files or dumps not found";
  for (const char* name : kDecoderFiles) {
    const std::string dump = dumps + "/g729_" + name + ".txt";
    if (!fs::exists(dump)) continue;
    const std::vector<g729t::BitFrame> bits = g729t::read_bitstream(vectors(std::string(name) + ".BIT"));
    const auto az = dump_lines(dump, 'D', "Az", 1);
    ASSERT_FALSE(az.empty()) << name;
    LspDecoder dec;
    std::size_t next = 0, match = 0, erased = 0;
    for (std::size_t n = 0; n < bits.size() && next < az.size(); ++n) {
      const V16 a = g729t::lpc_of(dec.frame(bits[n]));
      if (az[next][0] != static_cast<int>(n)) continue;
      const V16 want(az[next].begin() + 1, az[next].end());
      ++next;
      if (a == want) {
        ++match;
        erased += bits[n].erased;
      } else if (next - match < 5) {
        ADD_FAILURE() << name << " frame " << n;
      }
    }
    EXPECT_EQ(match, next) << name;
    std::cout << "[ info ] " << name << ": " << match << " of " << next << " dumped frames (" << erased
              << " erased) match\n";
  }
}

}  // namespace
