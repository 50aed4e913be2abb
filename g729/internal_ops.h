// Per-level entry points to the G.729 root search's internal evaluations,
// for the tests that compare the levels bit for bit. Not exported from the
// shared library.
#pragma once

#include <cstdint>

#include "core/level_map.h"

namespace vsps {

struct LspSearchOps {
  // The Chebyshev evaluation of one point; form 0: G.729 Q11, 1: G.729 Q10,
  // 2: GSM-AMR Q10 in Q24.
  int16_t (*chebyshev)(int16_t x, const int16_t* f, int form);
  // The same on n points (n a multiple of 8), the form the search uses at
  // the level (vector at levels 4-6).
  void (*chebyshev_many)(const int16_t* x, int n, const int16_t* f, int form, int16_t* y);
};

// The operations of a level (0..6).
const LspSearchOps& lsp_search_ops(int level);

}  // namespace vsps

VSPS_DECLARE_IN_EVERY_LEVEL(extern const LspSearchOps kLspSearchOps)
