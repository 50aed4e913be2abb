// The G.726 state block: the 24 fields the reference keeps between samples
// (ITU-T G.726 clause 4 names; standards order of the reference module), in
// their reference representations, plus the code-word length and, in the
// decoder, the output law. Shared by the encoder and the decoder; the
// caller's block is read and written with memcpy, so any alignment works.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vsps::g726 {

struct State {
  int32_t sr[2];  // SR(k-1), SR(k-2): 11-bit float format (sign, 4-bit exponent, 6-bit mantissa)
  int32_t a[2];   // A1, A2: pole coefficients, 16-bit TC pattern, Q14
  int32_t b[6];   // B1..B6: zero coefficients, 16-bit TC pattern, Q14
  int32_t dq[6];  // DQ(k-1)..DQ(k-6): 11-bit float format
  int32_t dms;    // DMS: short-term mean of F(I), 12 bits, Q9
  int32_t dml;    // DML: long-term mean of F(I), 14 bits, Q11
  int32_t ap;     // AP: speed control, 10 bits, Q8
  int32_t yu;     // YU: fast scale factor, 13 bits, Q9 (544..5120)
  int32_t td;     // TD: tone detected, 1 bit
  int32_t pk[2];  // PK(k-1), PK(k-2): sign of DQ + SEZ, 1 bit each
  int32_t yl;     // YL: slow scale factor, 19 bits, Q15
  int32_t bits;   // n: bits per code word, 2..5 (16..40 kbit/s)
  int32_t law;    // decoder output law (VspPcmLaw); 0 in an encoder block
};

inline constexpr int kStateBytes = 104;
inline constexpr int kReferenceFields = 24;  // sr .. yl, in this order
static_assert(sizeof(State) == kStateBytes);
static_assert(offsetof(State, yl) == 4 * (kReferenceFields - 1));

}  // namespace vsps::g726
