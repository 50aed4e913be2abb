// Reader of the golden-vector files: one token list per line, cases between
// "case <id>" and "end" (see tests/data/golden/FORMAT.md).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vt {

struct GoldenArray {
  std::string name;
  std::vector<std::string> values;  // tokens, parsed by the element type that uses them
};

struct GoldenCase {
  std::string id;
  std::string seq;                                        // empty when the case stands alone
  int line = 0;                                           // line of "case" in the file, for messages
  std::vector<std::pair<std::string, std::string>> args;  // "arg name value"
  std::vector<GoldenArray> ins;
  std::vector<GoldenArray> outs;
  std::optional<int> status;
  std::optional<std::pair<double, double>> tol;  // abs, rel
  std::vector<std::string> comments;

  const std::string* arg(const std::string& name) const;
  int64_t arg_int(const std::string& name) const;  // throws when absent
  bool arg_is_null(const std::string& name) const;
  const GoldenArray* in(const std::string& name) const;
  const GoldenArray* out(const std::string& name) const;
};

struct GoldenFile {
  std::string path;
  std::vector<std::string> header;  // comment lines before the first case
  std::vector<GoldenCase> cases;
};

// Throws std::runtime_error on a malformed file.
GoldenFile read_golden(const std::string& path);

// Token parsers: decimal integers; floats as C99 hex-floats or decimal.
int64_t parse_int(const std::string& token);
double parse_double(const std::string& token);
float parse_float(const std::string& token);

// Folder of the project's test data (tests/data).
std::string test_data_dir();
// Folder of the standards' conformance files, or "" when absent
// (VSPS_TESTVECTORS, else ../shared/testvectors beside the checkout).
std::string testvectors_dir();

}  // namespace vt
