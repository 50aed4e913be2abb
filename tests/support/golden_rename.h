// Golden files named after a reference step use the reference's names for
// their arrays and scalars (s, so, LARc, ...). An adapter built here binds
// each of those names to a parameter of the export, the input and the
// expected output of one parameter possibly carrying two names (LARpp_prev
// in, LARpp out), and ignores the diagnostic outputs the export does not
// produce (the reference's intermediate values).
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/golden_runner.h"

namespace vt {

struct GoldenName {
  std::string golden;  // name in the file
  std::string param;   // parameter of the export
};

// `names`: golden name -> parameter (a scalar "arg" bound to a pointer
// parameter becomes a one-element array); `ignored`: outputs without a
// parameter; `fixed`: scalar parameters the files leave implicit (the
// length of a one-call case).
GoldenAdapter renaming_adapter(std::vector<GoldenName> names, std::vector<std::string> ignored = {},
                               std::vector<std::pair<std::string, int64_t>> fixed = {});

}  // namespace vt
