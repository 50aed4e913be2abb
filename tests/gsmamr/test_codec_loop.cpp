// Multi-frame GSM-AMR encoder/decoder loop per rate over real 8 kHz speech
// (the G.729 conformance inputs): autocorrelation, Levinson-Durbin, LP to
// LSP, LSP quantisation, then decoding with a pattern of bad frames. The
// decoder must reproduce the encoder's quantised LSPs on every good frame
// whose predictor memory is in step (the first frame and every good frame
// after a good one), and every level must produce the same stream.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "tests/gsmamr/amr_test_util.h"
#include "tests/support/golden.h"
#include "tests/support/levels.h"

namespace {

constexpr int kFrame = 160;

std::vector<int16_t> read_pcm(const std::filesystem::path& path) {
  std::ifstream f(path, std::ios::binary);
  std::vector<char> bytes((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
  std::vector<int16_t> pcm(bytes.size() / 2);
  for (std::size_t i = 0; i < pcm.size(); ++i)
    pcm[i] = static_cast<int16_t>(static_cast<uint8_t>(bytes[2 * i]) | (static_cast<uint8_t>(bytes[2 * i + 1]) << 8));
  return pcm;
}

bool bad_frame(std::size_t n) { return n % 11 == 5 || (n % 53 >= 30 && n % 53 < 33); }

struct LoopResult {
  std::vector<int16_t> stream;  // indices and decoded LSPs of every frame
  int frames = 0, checkedFrames = 0, badFrames = 0, unstable = 0;
};

LoopResult run_loop(const std::vector<int16_t>& pcm, int mode) {
  const bool mr122 = mode == vspRate12200;
  const int vectors = mr122 ? 2 : 1;
  LoopResult res;
  // Encoder state (TS 26.073 reset).
  std::vector<int16_t> speech(320, 0);
  std::vector<int16_t> lpc(11, 0);
  lpc[0] = 4096;
  std::vector<int16_t> prevLsp(amrt::kResetLsp.begin(), amrt::kResetLsp.end());
  std::vector<int16_t> pastRqEnc(10, 0);
  // Decoder state (TS 26.073 reset).
  std::vector<int16_t> pastRqDec(10, 0);
  std::vector<int16_t> pastLsfQ(amrt::kResetPastLsfQ.begin(), amrt::kResetPastLsfQ.end());
  std::vector<int16_t> decLsp(amrt::kResetLsp.begin(), amrt::kResetLsp.end());
  bool inStep = true;

  for (std::size_t n = 0; (n + 1) * kFrame <= pcm.size(); ++n) {
    std::copy(speech.begin() + kFrame, speech.end(), speech.begin());
    std::copy(pcm.begin() + static_cast<std::ptrdiff_t>(n * kFrame),
              pcm.begin() + static_cast<std::ptrdiff_t>((n + 1) * kFrame), speech.begin() + kFrame);
    // Encoder: 12.2 analyses the 240 samples without look-ahead.
    Vsp32s r[22];
    EXPECT_EQ(legacy90vspsAutoCorr_GSMAMR_16s32s(speech.data() + (mr122 ? 40 : 80), r, mode), vspStsNoErr);
    std::vector<int16_t> lsp(20);
    for (int v = 0; v < vectors; ++v) {
      // On status 12 lpc keeps the last good filter, as the standard's encoder does.
      const VspStatus st = legacy90vspsLevinsonDurbin_GSMAMR_32s16s(r + 11 * v, lpc.data());
      EXPECT_TRUE(st == vspStsNoErr || st == vspStsLPCUnstable);
      res.unstable += st == vspStsLPCUnstable;
      EXPECT_EQ(legacy90vspsLPCToLSP_GSMAMR_16s(lpc.data(), prevLsp.data(), lsp.data() + 10 * v), vspStsNoErr);
      std::copy(lsp.begin() + 10 * v, lsp.begin() + 10 * v + 10, prevLsp.begin());
    }
    std::vector<int16_t> qLsp(20, 0), idx(5, 0);
    EXPECT_EQ(legacy90vspsLSPQuant_GSMAMR_16s(lsp.data(), pastRqEnc.data(), qLsp.data(), idx.data(), mode),
              vspStsNoErr);

    // Decoder.
    const int16_t bfi = bad_frame(n) ? 1 : 0;
    const std::vector<int16_t> oldLsp = decLsp;
    std::vector<int16_t> sub(40);
    EXPECT_EQ(legacy90vspsQuantLSPDecode_GSMAMR_16s(idx.data(), pastRqDec.data(), pastLsfQ.data(), decLsp.data(),
                                                    sub.data(), bfi, mode),
              vspStsNoErr);
    res.badFrames += bfi;
    if (bfi == 0 && inStep) {
      ++res.checkedFrames;
      EXPECT_TRUE(std::equal(decLsp.begin(), decLsp.end(), qLsp.begin() + 10 * (vectors - 1)))
          << "mode " << mode << " frame " << n;
      if (mr122) EXPECT_TRUE(std::equal(sub.begin() + 10, sub.begin() + 20, qLsp.begin())) << "frame " << n;
      EXPECT_EQ(pastRqDec, pastRqEnc) << "mode " << mode << " frame " << n;
    }
    inStep = bfi == 0;
    // Decoded subframe LSPs are decreasing (LSFs at least 205 apart), the
    // last one is the new previous LSP, and the first subframe of the 3-split
    // rates is the exported interpolation.
    for (int s = 0; s < 4; ++s)
      for (int i = 0; i < 9; ++i) EXPECT_GT(sub[10 * s + i], sub[10 * s + i + 1]) << "frame " << n << " sf " << s;
    EXPECT_TRUE(std::equal(decLsp.begin(), decLsp.end(), sub.begin() + 30));
    if (!mr122) {
      std::vector<int16_t> first(10);
      EXPECT_EQ(legacy90vspsInterpolate_GSMAMR_16s(decLsp.data(), oldLsp.data(), first.data(), 10), vspStsNoErr);
      EXPECT_TRUE(std::equal(first.begin(), first.end(), sub.begin())) << "frame " << n;
    }
    res.stream.insert(res.stream.end(), idx.begin(), idx.end());
    res.stream.insert(res.stream.end(), sub.begin(), sub.end());
    ++res.frames;
  }
  return res;
}

TEST(AmrCodecLoop, EncoderAndDecoderAgreePerMode) {
  const std::string dir = vt::testvectors_dir();
  if (dir.empty() || !std::filesystem::is_directory(dir + "/g729"))
    GTEST_SKIP() << "conformance files not found (set VSPS_TESTVECTORS to the folder holding g729/*.IN)";
  std::vector<std::filesystem::path> files;
  for (const auto& e : std::filesystem::directory_iterator(dir + "/g729"))
    if (e.path().extension() == ".IN") files.push_back(e.path());
  std::sort(files.begin(), files.end());
  ASSERT_FALSE(files.empty()) << "no .IN speech files in " << dir << "/g729";
  for (int mode : amrt::kValidModes) {
    int frames = 0, checked = 0;
    for (const auto& file : files) {
      const auto pcm = read_pcm(file);
      LoopResult reference;
      vt::for_each_level([&](int level) {
        LoopResult res = run_loop(pcm, mode);
        if (level == 0) {
          reference = std::move(res);
          return;
        }
        EXPECT_TRUE(res.stream == reference.stream) << file.filename() << " mode " << mode << " level " << level;
      });
      frames += reference.frames;
      checked += reference.checkedFrames;
      EXPECT_GT(reference.badFrames, 0);
    }
    EXPECT_GT(checked, frames / 2) << "mode " << mode;
    std::printf("[ mode %2d ] %d frames, %d good frames checked\n", mode, frames, checked);
    if (HasFailure()) break;
  }
}

}  // namespace
