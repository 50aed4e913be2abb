#include "tests/conformance/conformance_pairs.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/support/golden.h"
#include "tests/tool/run_tool.h"

namespace conftest {

namespace fs = std::filesystem;

namespace {
std::vector<char> slurp(const std::string& p) {
  std::ifstream f(p, std::ios::binary);
  return {std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
}
}  // namespace

std::string vector_path(const std::string& relative) {
  const std::string root = vt::testvectors_dir();
  if (root.empty()) return "";
  const fs::path p = fs::path(root) / relative;
  return fs::exists(p) ? p.string() : "";
}

std::string run_command(const Pair& p, std::string* out) {
  *out = (tooltest::scratch_dir("conformance_" + p.name) / p.outName).string();
  std::vector<std::string> args;
  for (const std::string& a : p.args) args.push_back(a == "IN" ? vector_path(p.in) : a == "OUT" ? *out : a);
  const tooltest::Result r = tooltest::run(args);
  return r.status == 0 ? "" : "command failed (" + std::to_string(r.status) + "): " + r.err;
}

std::string compare_files(const std::string& gotPath, const std::string& expectedPath, int frameBytes) {
  const std::vector<char> got = slurp(gotPath), want = slurp(expectedPath);
  if (got.size() != want.size())
    return "output has " + std::to_string(got.size()) + " bytes, expected " + std::to_string(want.size());
  for (std::size_t i = 0; i < got.size(); ++i)
    if (got[i] != want[i]) {
      std::size_t bad = 0;
      for (std::size_t k = i; k < got.size(); ++k) bad += got[k] != want[k];
      return "first difference at byte " + std::to_string(i) + " (frame " +
             std::to_string(i / static_cast<std::size_t>(frameBytes)) + "), " + std::to_string(bad) + " bytes differ";
    }
  return "";
}

std::string run_pair(const Pair& p) {
  if (vector_path(p.in).empty() || vector_path(p.expected).empty())
    return "skip: conformance file " + p.in + " or " + p.expected + " not found (../shared/testvectors)";
  std::string out;
  const std::string failed = run_command(p, &out);
  return failed.empty() ? compare_files(out, vector_path(p.expected), p.frameBytes) : failed;
}

}  // namespace conftest
