// Builders of the real transform's tables, compiled once for all levels.
#pragma once

#include <cstdint>

namespace vsps::ec {

// Fill the tables of order `order` (ec/subband_layout.h: table_layout) from
// the quarter-wave cosines of N = 2^order (N/4+1 values, quarter_cosines).
// Single-precision twiddles, and Q30 twiddles of the fixed-point twin.
void build_rfft_tables_32f(uint8_t* dst, int order, const double* quarterCos);
void build_rfft_tables_q30(uint8_t* dst, int order, const double* quarterCos);

}  // namespace vsps::ec
