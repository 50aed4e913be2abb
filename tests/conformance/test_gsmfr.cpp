// GSM 06.10 full rate: the ETSI linear test sequences (encoder Seq01-04,
// decoder Seq01-05) and the random-parameter decoder set, through
// "vsps gsmfr"; the 33-octet format round trip decodes to the same samples.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "tests/conformance/conformance_pairs.h"

namespace {

using conftest::Pair;

// Encoder Seq01-04 (.inp -> .cod), decoder Seq01-05 (.cod -> .out), and
// the random-parameter decoder set.
std::vector<Pair> pairs() {
  std::vector<Pair> v;
  for (int n = 1; n <= 5; ++n) {
    const std::string seq = "Seq0" + std::to_string(n), path = "gsmfr/" + seq;
    if (n <= 4)
      v.push_back({"encode_" + seq, {"gsmfr", "encode", "IN", "OUT"}, path + ".inp", path + ".cod", "out.cod", 152});
    v.push_back({"decode_" + seq, {"gsmfr", "decode", "IN", "OUT"}, path + ".cod", path + ".out", "out.pcm", 320});
  }
  v.push_back({"decode_rand300",
               {"gsmfr", "decode", "IN", "OUT"},
               "gsmfr/extra/rand300.cod",
               "gsmfr/extra/rand300.out",
               "out.pcm",
               320});
  return v;
}

class GsmfrConformance : public testing::TestWithParam<Pair> {};

TEST_P(GsmfrConformance, BitExact) {
  const std::string r = conftest::run_pair(GetParam());
  if (r.rfind("skip: ", 0) == 0) GTEST_SKIP() << r.substr(6);
  EXPECT_EQ(r, "");
}

INSTANTIATE_TEST_SUITE_P(Etsi, GsmfrConformance, testing::ValuesIn(pairs()),
                         [](const testing::TestParamInfo<Pair>& i) { return i.param.name; });

// The 33-octet format: Seq01 encoded to .gsm begins with the frame the
// format description gives (D760A2E1 77503E68 ...: signature 0xD, then
// LARc[1] = 29 ...) and decodes to Seq01.out.
TEST(GsmfrPacked, Seq01RoundTrip) {
  if (conftest::vector_path("gsmfr/Seq01.inp").empty() || conftest::vector_path("gsmfr/Seq01.out").empty())
    GTEST_SKIP() << "GSM 06.10 conformance files not found (../shared/testvectors)";
  std::string gsm;
  ASSERT_EQ(
      conftest::run_command({"pack", {"gsmfr", "encode", "IN", "OUT"}, "gsmfr/Seq01.inp", "", "out.gsm", 33}, &gsm),
      "");
  std::ifstream f(gsm, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
  ASSERT_EQ(bytes.size(), 584u * 33);
  const unsigned char head[8] = {0xD7, 0x60, 0xA2, 0xE1, 0x77, 0x50, 0x3E, 0x68};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(static_cast<unsigned char>(bytes[i]), head[i]) << "byte " << i;
  std::string pcm;
  ASSERT_EQ(conftest::run_command({"unpack", {"gsmfr", "decode", gsm, "OUT"}, "", "", "out.pcm", 320}, &pcm), "");
  EXPECT_EQ(conftest::compare_files(pcm, conftest::vector_path("gsmfr/Seq01.out"), 320), "");
}

}  // namespace
