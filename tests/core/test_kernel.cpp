// The fixed-point kernel: internal operations at every level (golden cases
// and properties), the basic operators' corner cases.
#include <gtest/gtest.h>

#include <random>

#include "core/basic_ops.h"
#include "core/internal_access.h"
#include "tests/support/golden.h"
#include "tests/support/levels.h"

namespace {

namespace bop = vsps::VSPS_NS::bop;

TEST(Kernel, GoldenInternalOperationsAtEveryLevel) {
  const vt::GoldenFile f = vt::read_golden(vt::test_data_dir() + "/golden/core/internal-kernel.txt");
  int normalise = 0, energy = 0;
  for (int level : vt::supported_levels()) {
    const vsps::KernelOps& ops = vsps::kernel_ops(level);
    for (const vt::GoldenCase& gc : f.cases) {
      SCOPED_TRACE(gc.id + " at " + vt::level_name(level));
      if (gc.id.rfind("normalise-32/", 0) == 0) {
        EXPECT_EQ(ops.normalise32(static_cast<int32_t>(gc.arg_int("x"))), vt::parse_int(gc.out("n")->values[0]));
        normalise += level == 0;
      } else if (gc.id.rfind("energy-64/", 0) == 0) {
        std::vector<Vsp16s> src;
        if (const vt::GoldenArray* a = gc.in("src"))
          for (const std::string& t : a->values) src.push_back(static_cast<Vsp16s>(vt::parse_int(t)));
        EXPECT_EQ(ops.energy64(src.data(), static_cast<int>(gc.arg_int("len"))),
                  vt::parse_int(gc.out("energy")->values[0]));
        energy += level == 0;
      } else {
        ADD_FAILURE() << "unknown operation";
      }
    }
  }
  EXPECT_GT(normalise, 50);
  EXPECT_GT(energy, 50);
}

TEST(Kernel, EnergyAgreesAcrossLevelsOnEveryLength) {
  std::mt19937 rng(11);
  std::vector<Vsp16s> src(300);
  for (auto& v : src) v = static_cast<Vsp16s>(rng() % 2 ? -32768 : static_cast<int16_t>(rng()));
  for (int len = 0; len <= 300; ++len) {
    int64_t exact = 0;
    for (int n = 0; n < len; ++n) exact += int64_t(src[static_cast<std::size_t>(n)]) * src[static_cast<std::size_t>(n)];
    for (int level : vt::supported_levels())
      ASSERT_EQ(vsps::kernel_ops(level).energy64(src.data(), len), exact) << len << " at " << vt::level_name(level);
  }
}

TEST(Kernel, CopyChecksAndChunks) {
  std::vector<Vsp16s> src(100), dst(100, 7);
  for (std::size_t k = 0; k < src.size(); ++k) src[k] = static_cast<Vsp16s>(k * 3 - 50);
  for (int level : vt::supported_levels()) {
    const auto& ops = vsps::kernel_ops(level);
    for (auto copy : {ops.copy16, ops.copy16_long, ops.copy16_long_small_chunks}) {
      std::fill(dst.begin(), dst.end(), 7);
      EXPECT_EQ(copy(nullptr, dst.data(), 5), vspStsNullPtrErr);
      EXPECT_EQ(copy(src.data(), nullptr, 0), vspStsNullPtrErr);
      EXPECT_EQ(copy(src.data(), dst.data(), 0), vspStsSizeErr);
      EXPECT_EQ(copy(src.data(), dst.data(), -1), vspStsSizeErr);
      EXPECT_EQ(dst[0], 7);
      // 99 elements: the small-chunk copy goes through 15 chunks.
      EXPECT_EQ(copy(src.data(), dst.data(), 99), vspStsNoErr);
      EXPECT_TRUE(std::equal(src.begin(), src.begin() + 99, dst.begin()));
      EXPECT_EQ(dst[99], 7);
    }
  }
}

TEST(Kernel, BasicOperatorCorners) {
  EXPECT_EQ(bop::L_mult(-32768, -32768), INT32_MAX);
  EXPECT_EQ(bop::mult(-32768, -32768), 32767);
  EXPECT_EQ(bop::L_mac(0, -32768, -32768), INT32_MAX);
  EXPECT_EQ(bop::L_msu(0, -32768, -32768), -0x7FFFFFFF);
  EXPECT_EQ(bop::shr(-1, 1), -1);
  EXPECT_EQ(bop::shr(-32768, 15), -1);
  EXPECT_EQ(bop::shr(5, -2), 20);
  EXPECT_EQ(bop::shl(1, 15), 32767);
  EXPECT_EQ(bop::shl(-1, 15), -32768);
  EXPECT_EQ(bop::shl(0, 40), 0);
  EXPECT_EQ(bop::shl(1, 16), 32767);
  EXPECT_EQ(bop::L_shr(-1, 40), -1);
  EXPECT_EQ(bop::L_shr(5, -1), 10);
  EXPECT_EQ(bop::L_shl(0x40000000, 1), INT32_MAX);
  EXPECT_EQ(bop::L_shl(-0x40000000, 1), INT32_MIN);
  EXPECT_EQ(bop::L_shr_r(3, 1), 2);
  EXPECT_EQ(bop::L_shr_r(-3, 1), -1);
  EXPECT_EQ(bop::L_shr_r(12345, 32), 0);
  EXPECT_EQ(bop::shr_r(-1, 16), 0);
  EXPECT_EQ(bop::shr_r(3, 1), 2);
  EXPECT_EQ(bop::norm_l(0), 0);
  EXPECT_EQ(bop::norm_l(-1), 31);
  EXPECT_EQ(bop::norm_l(INT32_MAX), 0);
  EXPECT_EQ(bop::norm_l(1), 30);
  EXPECT_EQ(bop::norm_l(INT32_MIN), 0);
  EXPECT_EQ(bop::norm_s(0), 0);
  EXPECT_EQ(bop::norm_s(-1), 15);
  EXPECT_EQ(bop::norm_s(1), 14);
  EXPECT_EQ(bop::norm_s(-32768), 0);
  EXPECT_EQ(bop::div_s(1, 3), 10922);
  EXPECT_EQ(bop::div_s(16383, 16384), 32766);
  EXPECT_EQ(bop::div_s(0x3FFF, 0x7FFF), 16383);
  EXPECT_EQ(bop::div_s(5, 5), 32767);
  EXPECT_EQ(bop::round(INT32_MAX), 32767);
  EXPECT_EQ(bop::round(-0x8000), 0);
  EXPECT_EQ(bop::round(-0x8001), -1);
  EXPECT_EQ(bop::extract_l(0x00018000), -32768);
  EXPECT_EQ(bop::abs_s(-32768), 32767);
  EXPECT_EQ(bop::negate(-32768), 32767);
}

TEST(Kernel, OverflowFlagFollowsTheOperatorSet) {
  bool ovf = false;
  bop::add_ovf(32767, 1, ovf);
  EXPECT_TRUE(ovf);
  bop::add_ovf(1, 1, ovf);  // the 16-bit saturator clears it
  EXPECT_FALSE(ovf);
  bop::L_add_ovf(INT32_MAX, 1, ovf);
  EXPECT_TRUE(ovf);
  bop::L_add_ovf(1, 1, ovf);  // 32-bit operators never clear it
  EXPECT_TRUE(ovf);
}

}  // namespace
