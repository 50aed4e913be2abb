// LSP quantiser and decoder of GSM-AMR: the rate rules (mode 25 as mode 3,
// the index ranges), bad frames, and the index-masking decision.
#include <gtest/gtest.h>

#include <vector>

#include "tests/gsmamr/amr_test_util.h"
#include "tests/support/levels.h"

namespace {

struct Quantised {
  VspStatus status;
  std::vector<int16_t> qLsp, idx, pastRq;
  bool operator==(const Quantised&) const = default;
};

Quantised quantise(const std::vector<int16_t>& lsp, std::vector<int16_t> pastRq, int mode) {
  Quantised q{vspStsNoErr, std::vector<int16_t>(20, 0x5A5A), std::vector<int16_t>(5, 0x5A5A), {}};
  q.status = legacy90vspsLSPQuant_GSMAMR_16s(lsp.data(), pastRq.data(), q.qLsp.data(), q.idx.data(), mode);
  q.pastRq = pastRq;
  return q;
}

struct DecoderState {
  std::vector<int16_t> pastRq = std::vector<int16_t>(10, 0);
  std::vector<int16_t> pastLsfQ{amrt::kResetPastLsfQ.begin(), amrt::kResetPastLsfQ.end()};
  std::vector<int16_t> lsp{amrt::kResetLsp.begin(), amrt::kResetLsp.end()};
  std::vector<int16_t> subframes = std::vector<int16_t>(40, 0);
  bool operator==(const DecoderState&) const = default;
};

VspStatus decode(DecoderState& s, const std::vector<int16_t>& idx, int16_t bfi, int mode) {
  return legacy90vspsQuantLSPDecode_GSMAMR_16s(idx.data(), s.pastRq.data(), s.pastLsfQ.data(), s.lsp.data(),
                                               s.subframes.data(), bfi, mode);
}

std::vector<int16_t> random_past_rq(std::mt19937& rng) {
  std::vector<int16_t> v(10);
  for (auto& x : v) x = static_cast<int16_t>(static_cast<int>(rng() % 3001) - 1500);
  return v;
}

// Mode 25 takes the full-table 3-split path of mode 3 in the quantiser and in
// the decoder, good and bad frames alike.
TEST(AmrRates, DtxModeIsMode3) {
  std::mt19937 rng(25);
  vt::for_each_level([&](int level) {
    for (int trial = 0; trial < 100; ++trial) {
      const auto lsp = amrt::random_lsp_pair(rng);
      const auto pastRq = random_past_rq(rng);
      const Quantised q3 = quantise(lsp, pastRq, vspRate5900);
      ASSERT_EQ(quantise(lsp, pastRq, vspRateDTX), q3) << "level " << level << " trial " << trial;
      DecoderState d3, d25;
      d3.pastRq = d25.pastRq = pastRq;
      const int16_t bfi = trial % 3 == 0 ? 1 : 0;
      ASSERT_EQ(decode(d3, q3.idx, bfi, vspRate5900), vspStsNoErr);
      ASSERT_EQ(decode(d25, q3.idx, bfi, vspRateDTX), vspStsNoErr);
      ASSERT_EQ(d3, d25) << "level " << level << " trial " << trial;
    }
  });
}

// Indices lie in their tables' ranges (the even-row search of 4.75 and 5.15
// kbit/s transmits 0..255); only the first index differs between the full
// 3-split tables and 7.95 kbit/s.
TEST(AmrRates, IndexRangesPerMode) {
  struct Range {
    int mode;
    std::vector<int> limits;
  };
  const Range ranges[] = {{0, {256, 256, 128}},  {1, {256, 256, 128}},  {3, {256, 512, 512}},
                          {6, {256, 512, 512}},  {7, {256, 512, 512}},  {8, {512, 512, 512}},
                          {11, {256, 512, 512}}, {25, {256, 512, 512}}, {12, {128, 256, 512, 256, 64}}};
  std::mt19937 rng(5);
  for (const Range& r : ranges) {
    std::vector<int> highest(r.limits.size(), 0);
    for (int trial = 0; trial < 300; ++trial) {
      const Quantised q = quantise(amrt::random_lsp_pair(rng), random_past_rq(rng), r.mode);
      ASSERT_EQ(q.status, vspStsNoErr);
      for (std::size_t k = 0; k < r.limits.size(); ++k) {
        ASSERT_GE(q.idx[k], 0);
        ASSERT_LT(q.idx[k], r.limits[k]) << "mode " << r.mode << " index " << k;
        highest[k] = std::max<int>(highest[k], q.idx[k]);
      }
      for (std::size_t k = r.limits.size(); k < 5; ++k) ASSERT_EQ(q.idx[k], 0x5A5A) << "mode " << r.mode;
      for (std::size_t k = r.mode == 12 ? 20 : 10; k < 20; ++k) ASSERT_EQ(q.qLsp[k], 0x5A5A);
    }
    // The full tables are searched: dico2_lsf_3 beyond its even-row half
    // in the full-table modes, mr795_1_lsf beyond dico1_lsf_3's size.
    if (r.limits[1] == 512) EXPECT_GE(highest[1], 256) << "mode " << r.mode;
    if (r.limits[0] == 512) EXPECT_GE(highest[0], 256) << "mode " << r.mode;
  }
}

// A bad frame ignores pIdx; at 12.2 kbit/s both vectors of the frame are the
// same concealed vector, so subframes 2 and 4 agree.
TEST(AmrDecoder, BadFrameIgnoresIndicesAndRepeatsAt122) {
  std::mt19937 rng(9);
  vt::for_each_level([&](int level) {
    for (int mode : amrt::kValidModes) {
      DecoderState a, b;
      a.pastRq = b.pastRq = random_past_rq(rng);
      ASSERT_EQ(decode(a, {0, 0, 0, 0, 0}, 1, mode), vspStsNoErr);
      ASSERT_EQ(decode(b, {511, -7, 32767, -32768, 63}, 1, mode), vspStsNoErr);
      EXPECT_EQ(a, b) << "level " << level << " mode " << mode;
      if (mode == vspRate12200)
        EXPECT_TRUE(std::equal(a.subframes.begin() + 10, a.subframes.begin() + 20, a.subframes.begin() + 30));
      EXPECT_TRUE(std::equal(a.lsp.begin(), a.lsp.end(), a.subframes.begin() + 30));
    }
  });
}

// Decision: indices outside their tables are masked to the table's width.
TEST(AmrDecoder, OutOfRangeIndicesAreMasked) {
  struct Case {
    int mode;
    std::vector<int16_t> wild, masked;
  };
  const Case cases[] = {
      {vspRate4750, {256 + 3, 256 + 4, 128 + 5}, {3, 4, 5}},
      {vspRate5150, {-1, -2, -3}, {255, 254, 125}},
      {vspRate5900, {256 + 3, 512 + 4, 1024 + 5}, {3, 4, 5}},
      {vspRate7950, {512 + 3, -512 + 4, 512 + 5}, {3, 4, 5}},
      {vspRate12200, {128 + 1, 256 + 2, 512 + 7, 256 + 4, 64 + 5}, {1, 2, 7, 4, 5}},
  };
  vt::for_each_level([&](int level) {
    for (const Case& c : cases) {
      DecoderState a, b;
      ASSERT_EQ(decode(a, c.wild, 0, c.mode), vspStsNoErr);
      ASSERT_EQ(decode(b, c.masked, 0, c.mode), vspStsNoErr);
      EXPECT_EQ(a, b) << "level " << level << " mode " << c.mode;
    }
  });
}

// The decoder's bad-frame state update: a good frame after a concealed one
// decodes the same LSPs from the same indices whatever the concealment
// history, once a second good frame has refreshed past_rq.
TEST(AmrDecoder, PastRqResynchronisesAfterOneGoodFrame) {
  std::mt19937 rng(12);
  for (int mode : amrt::kValidModes) {
    const auto lsp = amrt::random_lsp_pair(rng);
    const Quantised q1 = quantise(lsp, std::vector<int16_t>(10, 0), mode);
    const Quantised q2 = quantise(amrt::random_lsp_pair(rng), q1.pastRq, mode);
    DecoderState clean, hit;
    ASSERT_EQ(decode(hit, q1.idx, 1, mode), vspStsNoErr);  // concealed
    ASSERT_EQ(decode(hit, q1.idx, 0, mode), vspStsNoErr);  // refreshes past_rq
    ASSERT_EQ(decode(clean, q1.idx, 0, mode), vspStsNoErr);
    EXPECT_EQ(hit.pastRq, clean.pastRq) << "mode " << mode;
    ASSERT_EQ(decode(hit, q2.idx, 0, mode), vspStsNoErr);
    ASSERT_EQ(decode(clean, q2.idx, 0, mode), vspStsNoErr);
    EXPECT_EQ(hit.lsp, clean.lsp) << "mode " << mode;
    const auto last = q2.qLsp.begin() + (mode == vspRate12200 ? 10 : 0);
    EXPECT_EQ(std::vector<int16_t>(last, last + 10), clean.lsp) << "mode " << mode;
  }
}

}  // namespace
