// Conformance pairs run through the vsps codec commands: the command's
// output file must equal the reference file byte for byte. Tests skip (with
// the reason) when the conformance folder is absent.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace conftest {

struct Pair {
  std::string name;               // test name
  std::vector<std::string> args;  // command words; "IN" and "OUT" are replaced
  std::string in, expected;       // paths below the conformance folder
  std::string outName;            // output file name (its suffix selects the format)
  int frameBytes;                 // for the message: frame of the first difference
};
inline void PrintTo(const Pair& p, std::ostream* os) { *os << p.name; }

// Absolute path of a conformance file, or "" when it is absent.
std::string vector_path(const std::string& relative);

// Runs the pair's command; "" on success (output path in *out), else why not.
std::string run_command(const Pair& p, std::string* out);

// "" when the two files are equal, else where they first differ.
std::string compare_files(const std::string& got, const std::string& expected, int frameBytes);

// Runs one pair: "" when the output equals the expected file, "skip: ..."
// when the files are absent, else the difference.
std::string run_pair(const Pair& p);

}  // namespace conftest
