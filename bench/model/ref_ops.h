// The plain scalar model's basic operators: the ITU-T basic-operator set as
// a user would compile it from the textbook arithmetic, one saturating
// operation per (out-of-line) function call and a global overflow flag. Used
// only by the benchmarks, as the baseline the library is compared with.
#pragma once

#include <cstdint>

namespace model {

extern int Overflow;  // set by saturating operators, as the reference does

int16_t add(int16_t a, int16_t b);
int16_t sub(int16_t a, int16_t b);
int16_t abs_s(int16_t a);
int16_t negate(int16_t a);
int16_t mult(int16_t a, int16_t b);
int16_t mult_r(int16_t a, int16_t b);
int16_t shl(int16_t a, int16_t n);
int16_t shr(int16_t a, int16_t n);
int16_t extract_h(int32_t L);
int16_t extract_l(int32_t L);
int16_t round_l(int32_t L);  // the reference's round()
int16_t norm_s(int16_t a);
int16_t norm_l(int32_t L);
int16_t div_s(int16_t num, int16_t den);
int32_t L_mult(int16_t a, int16_t b);
int32_t L_add(int32_t A, int32_t B);
int32_t L_sub(int32_t A, int32_t B);
int32_t L_mac(int32_t A, int16_t a, int16_t b);
int32_t L_msu(int32_t A, int16_t a, int16_t b);
int32_t L_shl(int32_t A, int16_t n);
int32_t L_shr(int32_t A, int16_t n);
int32_t L_shr_r(int32_t A, int16_t n);
int32_t L_abs(int32_t A);
int32_t L_negate(int32_t A);
int32_t L_deposit_h(int16_t a);
int32_t L_deposit_l(int16_t a);

// 32-bit double-precision helpers (oper_32b).
void L_Extract(int32_t L, int16_t* hi, int16_t* lo);
int32_t L_Comp(int16_t hi, int16_t lo);
int32_t Mpy_32(int16_t hi1, int16_t lo1, int16_t hi2, int16_t lo2);
int32_t Mpy_32_16(int16_t hi, int16_t lo, int16_t n);
int32_t Div_32(int32_t L_num, int16_t denom_hi, int16_t denom_lo);

}  // namespace model
