// The plain scalar model of the Q15 full-band echo-path filters (FIR and
// the LMS whose update lags one sample) on out-of-line operators in the
// style of the ITU basic operators (one saturating step per call, the
// global overflow flag). Benchmarks only.
#pragma once

#include <cstdint>

namespace model::ec {

void fir_16s(const int16_t* reference, const int16_t* nearEnd, int16_t* error, int len, const int16_t* coeffs,
             int tapLen);
void lms_16s(const int16_t* reference, const int16_t* nearEnd, const int32_t* step, int16_t* error, int len,
             int16_t* coeffs, int tapLen, int16_t* carriedError);

}  // namespace model::ec
