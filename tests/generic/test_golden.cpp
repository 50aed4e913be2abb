// Every golden-vector file of the test data, bit for bit (or within the
// tolerance a case states) at every supported level.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/golden_runner.h"

namespace {

std::vector<std::string> golden_files() {
  std::vector<std::string> files;
  const std::filesystem::path root = std::filesystem::path(vt::test_data_dir()) / "golden";
  if (!std::filesystem::is_directory(root)) return files;
  for (const auto& e : std::filesystem::recursive_directory_iterator(root))
    if (e.is_regular_file() && e.path().extension() == ".txt" &&
        e.path().filename().string().rfind("legacy90vsps", 0) == 0)
      files.push_back(e.path().string());
  std::sort(files.begin(), files.end());
  return files;
}

std::string file_test_name(const testing::TestParamInfo<std::string>& info) {
  const std::filesystem::path p(info.param);
  return p.parent_path().filename().string() + "_" + p.stem().string();
}

class GoldenFiles : public testing::TestWithParam<std::string> {};

TEST_P(GoldenFiles, PassAtEveryLevel) {
  const vt::GoldenReport r = vt::run_golden_file(GetParam());
  EXPECT_GT(r.cases, 0);
  std::size_t shown = 0;
  for (const std::string& f : r.failures)
    if (shown++ < 20) ADD_FAILURE() << f;
  if (r.failures.size() > 20) ADD_FAILURE() << "... " << r.failures.size() << " failures in all";
  RecordProperty("cases", r.cases);
  RecordProperty("levels", r.levels);
}

INSTANTIATE_TEST_SUITE_P(All, GoldenFiles, testing::ValuesIn(golden_files()), file_test_name);

}  // namespace
