// A short fuzz run inside the ordinary suite: random byte strings and the
// golden cases (as seeds) through the fuzz driver. The libFuzzer target
// (tests/fuzz) runs the same driver for longer.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "tests/support/fuzz_driver.h"
#include "tests/support/golden_runner.h"

namespace {

TEST(FuzzSmoke, RandomInputs) {
  std::mt19937 rng(2026);
  std::vector<uint8_t> bytes;
  int failures = 0;
  for (int k = 0; k < 4000 && failures < 10; ++k) {
    bytes.resize(rng() % 512);
    for (auto& b : bytes) b = static_cast<uint8_t>(rng());
    vt::ByteReader in(bytes.data(), bytes.size());
    const std::string broken = vt::fuzz_one(in);
    if (!broken.empty()) {
      ADD_FAILURE() << broken;
      ++failures;
    }
  }
}

// The same driver on hostile contents (full-scale values, see Adversarial):
// every successful call must give the same bytes at level 0 and at the
// highest level, at the fuzz hooks' random sizes (every vector block
// remainder).
TEST(FuzzSmoke, AdversarialInputs) {
  int failures = 0;
  for (uint32_t k = 0; k < 6000 && failures < 10; ++k) {
    vt::Adversarial in(k);
    const std::string broken = vt::fuzz_one(in);
    if (!broken.empty()) {
      ADD_FAILURE() << broken;
      ++failures;
    }
  }
}

// The valid call of every contract, written as a seed (the corpus's seed
// for exports without golden files), passes the driver and decodes back to
// a call that passes too.
TEST(FuzzSmoke, ValidCallSeedsReplay) {
  const auto& targets = vt::fuzz_targets();
  for (std::size_t k = 0; k < targets.size(); ++k) {
    vt::SeedWriter writer(targets[k]->valid(), static_cast<int64_t>(k));
    EXPECT_EQ(vt::fuzz_one(writer), "") << targets[k]->name;
    vt::ByteReader reader(writer.bytes().data(), writer.bytes().size());
    EXPECT_EQ(vt::fuzz_one(reader), "") << targets[k]->name << " replayed";
  }
}

// Every golden case turned into a seed decodes back to a call the driver
// accepts (the seed writer and the byte reader agree).
TEST(FuzzSmoke, GoldenSeedsReplay) {
  const auto& targets = vt::fuzz_targets();
  int seeds = 0;
  const std::filesystem::path root = std::filesystem::path(vt::test_data_dir()) / "golden";
  for (const auto& e : std::filesystem::recursive_directory_iterator(root)) {
    const std::string stem = e.path().stem().string();
    if (stem.rfind("legacy90vsps", 0) != 0) continue;
    auto it = std::find_if(targets.begin(), targets.end(), [&](auto* c) { return c->name == stem; });
    if (it == targets.end()) continue;
    const vt::GoldenFile file = vt::read_golden(e.path().string());
    const vt::ExportInfo* fn = vt::find_export(stem);
    vt::SeqContext seq;
    for (std::size_t k = 0; k < file.cases.size(); k += 7) {
      const vt::GoldenCase& gc = file.cases[k];
      if (!gc.seq.empty()) continue;  // state carried across cases: not a single input
      try {
        vt::Call ref = vt::bind_golden_case(*fn, gc, vt::find_golden_adapter(stem), seq);
        vt::SeedWriter writer(ref, it - targets.begin());
        EXPECT_EQ(vt::fuzz_one(writer), "") << stem << " case " << gc.id;
        vt::ByteReader reader(writer.bytes().data(), writer.bytes().size());
        EXPECT_EQ(vt::fuzz_one(reader), "") << stem << " case " << gc.id << " replayed";
        ++seeds;
      } catch (const std::exception& ex) {
        ADD_FAILURE() << stem << " case " << gc.id << ": " << ex.what();
      }
    }
  }
  EXPECT_GT(seeds, 0);
}

}  // namespace
