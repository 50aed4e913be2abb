#include "tests/support/golden.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vt {

const std::string* GoldenCase::arg(const std::string& name) const {
  for (const auto& [n, v] : args)
    if (n == name) return &v;
  return nullptr;
}

int64_t GoldenCase::arg_int(const std::string& name) const {
  const std::string* v = arg(name);
  if (v == nullptr) throw std::runtime_error("case " + id + ": no arg " + name);
  return parse_int(*v);
}

bool GoldenCase::arg_is_null(const std::string& name) const {
  const std::string* v = arg(name);
  return v != nullptr && *v == "null";
}

const GoldenArray* GoldenCase::in(const std::string& name) const {
  for (const GoldenArray& a : ins)
    if (a.name == name) return &a;
  return nullptr;
}

const GoldenArray* GoldenCase::out(const std::string& name) const {
  for (const GoldenArray& a : outs)
    if (a.name == name) return &a;
  return nullptr;
}

int64_t parse_int(const std::string& token) {
  std::size_t used = 0;
  const long long v = std::stoll(token, &used, 10);
  if (used != token.size()) throw std::runtime_error("bad integer '" + token + "'");
  return v;
}

double parse_double(const std::string& token) {
  char* end = nullptr;
  const double v = std::strtod(token.c_str(), &end);
  if (end == token.c_str() || *end != '\0') throw std::runtime_error("bad number '" + token + "'");
  return v;
}

float parse_float(const std::string& token) {
  char* end = nullptr;
  const float v = std::strtof(token.c_str(), &end);
  if (end == token.c_str() || *end != '\0') throw std::runtime_error("bad number '" + token + "'");
  return v;
}

GoldenFile read_golden(const std::string& path) {
  std::ifstream in(path);
  if (!in) throw std::runtime_error("cannot open " + path);
  GoldenFile file;
  file.path = path;
  GoldenCase current;
  bool inCase = false;
  std::string line;
  int lineNo = 0;
  auto fail = [&](const std::string& what) {
    throw std::runtime_error(path + ":" + std::to_string(lineNo) + ": " + what);
  };
  while (std::getline(in, line)) {
    ++lineNo;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty()) continue;
    if (line[0] == '#') {
      (inCase ? current.comments : file.header).push_back(line);
      continue;
    }
    std::istringstream tokens(line);
    std::string key;
    tokens >> key;
    if (key == "case") {
      if (inCase) fail("case inside a case");
      current = GoldenCase{};
      tokens >> current.id;
      current.line = lineNo;
      inCase = true;
    } else if (!inCase) {
      fail("'" + key + "' outside a case");
    } else if (key == "end") {
      file.cases.push_back(std::move(current));
      inCase = false;
    } else if (key == "seq") {
      tokens >> current.seq;
    } else if (key == "arg") {
      std::string name, value;
      tokens >> name >> value;
      current.args.emplace_back(name, value);
    } else if (key == "in" || key == "out") {
      GoldenArray a;
      std::size_t n = 0;
      tokens >> a.name >> n;
      a.values.reserve(n);
      std::string v;
      while (tokens >> v) a.values.push_back(v);
      if (a.values.size() != n)
        fail("array " + a.name + " has " + std::to_string(a.values.size()) + " values, not " + std::to_string(n));
      (key == "in" ? current.ins : current.outs).push_back(std::move(a));
    } else if (key == "status") {
      std::string v;
      tokens >> v;
      current.status = static_cast<int>(parse_int(v));
    } else if (key == "tol") {
      std::string a, r;
      tokens >> a >> r;
      current.tol = std::make_pair(parse_double(a), parse_double(r));
    } else {
      fail("unknown line '" + key + "'");
    }
  }
  if (inCase) fail("file ends inside case " + current.id);
  return file;
}

std::string test_data_dir() { return VSPS_TEST_DATA_DIR; }

std::string testvectors_dir() {
  if (const char* env = std::getenv("VSPS_TESTVECTORS"); env != nullptr && *env != '\0')
    return std::filesystem::is_directory(env) ? env : "";
  const std::string fallback = VSPS_DEFAULT_TESTVECTORS_DIR;
  return std::filesystem::is_directory(fallback) ? fallback : "";
}

}  // namespace vt
