// libFuzzer target over every export's contract (see
// tests/support/fuzz_driver.h for the properties checked).
//
//   VSPS_FUZZ_WRITE_SEEDS=<dir> ./vsps_fuzz   writes the golden cases and every
//                                             contract's valid call as a seed corpus and exits
//   ./vsps_fuzz -max_total_time=60 <corpus>    fuzzes
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/support/fuzz_driver.h"
#include "tests/support/golden_runner.h"

namespace {

int write_seeds(const std::filesystem::path& dir) {
  std::filesystem::create_directories(dir);
  const auto& targets = vt::fuzz_targets();
  int written = 0;
  const std::filesystem::path root = std::filesystem::path(vt::test_data_dir()) / "golden";
  for (const auto& e : std::filesystem::recursive_directory_iterator(root)) {
    const std::string stem = e.path().stem().string();
    auto it = std::find_if(targets.begin(), targets.end(), [&](auto* c) { return c->name == stem; });
    if (it == targets.end()) continue;
    const vt::GoldenFile file = vt::read_golden(e.path().string());
    vt::SeqContext seq;
    for (const vt::GoldenCase& gc : file.cases) {
      if (!gc.seq.empty()) continue;
      try {
        vt::SeedWriter writer(vt::bind_golden_case(*vt::find_export(stem), gc, vt::find_golden_adapter(stem), seq),
                              it - targets.begin());
        vt::fuzz_one(writer);
        std::ofstream(dir / (stem + "-" + gc.id), std::ios::binary)
            .write(reinterpret_cast<const char*>(writer.bytes().data()),
                   static_cast<std::streamsize>(writer.bytes().size()));
        ++written;
      } catch (const std::exception&) {
        // cases the generic binding cannot express are left out of the corpus
      }
    }
  }
  // The valid call of every contract: a seed for each export, golden file
  // or not.
  for (std::size_t k = 0; k < targets.size(); ++k) {
    vt::SeedWriter writer(targets[k]->valid(), static_cast<int64_t>(k));
    vt::fuzz_one(writer);
    std::ofstream(dir / (targets[k]->name + "-valid"), std::ios::binary)
        .write(reinterpret_cast<const char*>(writer.bytes().data()),
               static_cast<std::streamsize>(writer.bytes().size()));
    ++written;
  }
  std::printf("%d seeds written to %s\n", written, dir.string().c_str());
  return 0;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  legacy90vspscInit();
  if (const char* dir = std::getenv("VSPS_FUZZ_WRITE_SEEDS")) std::exit(write_seeds(dir));
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vt::ByteReader in(data, size);
  const std::string broken = vt::fuzz_one(in);
  if (!broken.empty()) {
    std::fprintf(stderr, "property broken: %s\n", broken.c_str());
    std::abort();
  }
  return 0;
}
