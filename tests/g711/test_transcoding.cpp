// Direct A-law <-> mu-law transcoding against the reference maps of the
// golden files: for every code word, the other law's compression (all 65536
// inputs) of this law's expansion (all 256 words), at every level.
#include <gtest/gtest.h>

#include "tests/support/golden.h"
#include "tests/support/levels.h"
#include "vsps.h"

namespace {

std::vector<int64_t> golden_map(const std::string& file, const char* array) {
  const vt::GoldenFile f = vt::read_golden(vt::test_data_dir() + "/golden/g711/" + file);
  std::vector<int64_t> v;
  for (const std::string& t : f.cases.at(0).outs.at(0).values) v.push_back(vt::parse_int(t));
  EXPECT_EQ(f.cases.at(0).outs.at(0).name, array);
  return v;
}

TEST(G711Transcoding, IsTheOtherLawsCompressionOfTheExpansion) {
  const auto alawExpand = golden_map("legacy90vspsALawToLin_G711_8u16s.txt", "pDst");
  const auto ulawExpand = golden_map("legacy90vspsMuLawToLin_G711_8u16s.txt", "pDst");
  const auto alawCompress = golden_map("legacy90vspsLinToALaw_G711_16s8u.txt", "pDst");  // inputs -32768..32767
  const auto ulawCompress = golden_map("legacy90vspsLinToMuLaw_G711_16s8u.txt", "pDst");
  ASSERT_EQ(alawExpand.size(), 256u);
  ASSERT_EQ(ulawCompress.size(), 65536u);
  std::vector<Vsp8u> all(256), toMu(256), toA(256);
  for (int c = 0; c < 256; ++c) all[static_cast<std::size_t>(c)] = static_cast<Vsp8u>(c);
  for (int level : vt::supported_levels()) {
    vt::ScopedLevel forced(level);
    ASSERT_EQ(legacy90vspsALawToMuLaw_G711_8u(all.data(), toMu.data(), 256), vspStsNoErr);
    ASSERT_EQ(legacy90vspsMuLawToALaw_G711_8u(all.data(), toA.data(), 256), vspStsNoErr);
    for (std::size_t c = 0; c < 256; ++c) {
      EXPECT_EQ(toMu[c], ulawCompress[static_cast<std::size_t>(alawExpand[c] + 32768)]) << "A-law " << c;
      EXPECT_EQ(toA[c], alawCompress[static_cast<std::size_t>(ulawExpand[c] + 32768)]) << "mu-law " << c;
    }
  }
}

}  // namespace
