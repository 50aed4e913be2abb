// G.711 through the codec driver on the STL's check files: the 65536-sample
// sweep compressed with both laws, expanded back, and the code files
// expanded, each equal to the STL's output word for word.
#include <gtest/gtest.h>

#include "tests/codecs/itu_files.h"
#include "vsps_codecs.h"

namespace {

std::vector<uint16_t> compress(int law, const std::vector<uint16_t>& pcm) {
  const std::vector<Vsp16s> x(pcm.begin(), pcm.end());
  std::vector<Vsp8u> codes(x.size());
  EXPECT_EQ(vspscodecG711Encode(law, x.data(), static_cast<int>(x.size()), codes.data()), vspStsNoErr);
  return {codes.begin(), codes.end()};
}

std::vector<uint16_t> expand(int law, const std::vector<uint16_t>& words) {
  const std::vector<Vsp8u> codes(words.begin(), words.end());
  std::vector<Vsp16s> y(codes.size());
  EXPECT_EQ(vspscodecG711Decode(law, codes.data(), static_cast<int>(codes.size()), y.data()), vspStsNoErr);
  return {y.begin(), y.end()};
}

TEST(G711Conformance, SweepFilesOfTheStl) {
  const std::string dir = itu::folder("g711");
  if (dir.empty()) GTEST_SKIP() << "G.711 check files not found (../shared/testvectors/g711)";
  const auto src = itu::read_words(dir + "/sweep.src");
  ASSERT_EQ(src.size(), 65536u);
  int matched = 0;
  for (const auto& [law, tag] : {std::pair{vspPcmALaw, 'a'}, std::pair{vspPcmMuLaw, 'u'}}) {
    const std::string base = dir + "/sweep-r." + tag;
    const auto codes = compress(law, src);
    EXPECT_EQ(codes, itu::read_words(base)) << "compress, law " << tag;
    EXPECT_EQ(expand(law, codes), itu::read_words(base + "-" + tag)) << "compress + expand, law " << tag;
    EXPECT_EQ(expand(law, itu::read_words(base)), itu::read_words(dir + "/sweep-r.re" + tag)) << "expand, law " << tag;
    matched += 3;
  }
  RecordProperty("pairs", matched);
}

}  // namespace
