// Rate switching between blocks (16-24-32-40-32-24 kbit/s, 160 samples a
// block) on one encoder and one decoder state: SetRate keeps the 24 fields
// of the state and changes only the code-word length, and the decoder's
// state stays equal to the encoder's (G.726 keeps both sides in step) at
// every switch, at every level.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "g726/state_layout.h"
#include "tests/support/levels.h"
#include "vsps.h"

namespace {

using vsps::g726::State;

State fields(const std::vector<uint8_t>& block) {
  State s;
  std::memcpy(&s, block.data(), sizeof s);
  return s;
}

bool same_fields(const State& a, const State& b) { return std::memcmp(&a, &b, 4 * vsps::g726::kReferenceFields) == 0; }

TEST(G726RateSwitch, KeepsTheStateAndTheDecoderInStep) {
  constexpr int kBlock = 160;
  const int rates[6] = {vspRate16000, vspRate24000, vspRate32000, vspRate40000, vspRate32000, vspRate24000};
  std::vector<Vsp16s> x(6 * kBlock);
  for (std::size_t n = 0; n < x.size(); ++n)  // a chirp with a loud middle part (overload at 16 kbit/s)
    x[n] = static_cast<Vsp16s>((n > 300 && n < 500 ? 30000.0 : 6000.0) * std::sin(0.002 * double(n * n) / 8.0));
  for (int level : vt::supported_levels()) {
    vt::ScopedLevel forced(level);
    std::vector<uint8_t> enc(104), dec(104);
    auto* es = reinterpret_cast<VspsEncoderState_G726_16s*>(enc.data());
    auto* ds = reinterpret_cast<VspsDecoderState_G726_16s*>(dec.data());
    ASSERT_EQ(legacy90vspsEncodeInit_G726_16s8u(es, rates[0]), vspStsNoErr);
    ASSERT_EQ(legacy90vspsDecodeInit_G726_8u16s(ds, rates[0], vspPcmLinear), vspStsNoErr);
    std::vector<Vsp8u> codes(kBlock);
    std::vector<Vsp16s> y(kBlock);
    for (int b = 0; b < 6; ++b) {
      const State before = fields(enc);
      ASSERT_EQ(legacy90vspsEncodeSetRate_G726_16s8u(es, rates[b]), vspStsNoErr);
      ASSERT_EQ(legacy90vspsDecodeSetRate_G726_8u16s(ds, rates[b]), vspStsNoErr);
      EXPECT_TRUE(same_fields(before, fields(enc))) << "block " << b;
      EXPECT_EQ(fields(enc).bits, 2 + (b == 0 ? 0 : b == 1 || b == 5 ? 1 : b == 3 ? 3 : 2));
      ASSERT_EQ(legacy90vspsEncode_G726_16s8u(x.data() + b * kBlock, codes.data(), kBlock, es), vspStsNoErr);
      for (Vsp8u c : codes) ASSERT_LT(c, 1 << fields(enc).bits);
      ASSERT_EQ(legacy90vspsDecode_G726_8u16s(codes.data(), y.data(), kBlock, ds), vspStsNoErr);
      EXPECT_TRUE(same_fields(fields(enc), fields(dec))) << "block " << b << " at level " << level;
    }
  }
}

}  // namespace
