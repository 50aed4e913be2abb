// The plain scalar model of the G.729 LP analysis and LSP quantisation: the
// reference routines (Pre_Process, Autocorr, Lag_window, Levinson, Az_lsp,
// Qua_lsp, Lsp_iqua_cs, Lsp_Az) written straightforwardly on the out-of-line
// operators of ref_ops.h. Benchmarks only.
#pragma once

#include <cstdint>

namespace model::g729 {

struct PreProcessState {
  int16_t y2_hi = 0, y2_lo = 0, y1_hi = 0, y1_lo = 0, x0 = 0, x1 = 0;
};
void pre_process(PreProcessState& s, int16_t* signal, int lg);

// r_h/r_l: 11 values; returns the norm.
void autocorr(const int16_t* x, int m, int16_t* r_h, int16_t* r_l);
void lag_window(int m, int16_t* r_h, int16_t* r_l);
// Returns false (A untouched) on an unstable filter.
bool levinson(const int16_t* Rh, const int16_t* Rl, int16_t* A, int16_t* rc);
void az_lsp(const int16_t* a, int16_t* lsp, const int16_t* old_lsp);
// Annex A's Az_lsp: the 50-point grid and 2 bisections (annexA), else the main body's.
void az_lsp_grid(const int16_t* a, int16_t* lsp, const int16_t* old_lsp, bool annexA);
// The root search of Az_lsp for the polynomials f1, f2 and an evaluation.
using Chebps = int16_t (*)(int16_t x, const int16_t* f, int n);
void root_search(const int16_t* f1, const int16_t* f2, Chebps chebps, int16_t* lsp, const int16_t* old_lsp);
void root_search_grid(const int16_t* f1, const int16_t* f2, Chebps chebps, int16_t* lsp, const int16_t* old_lsp,
                      const int16_t* grid, int points, int bisections);
void lsp_az(const int16_t* lsp, int16_t* a);

struct QuantState {
  int16_t freq_prev[4][10];
  QuantState();
};
// codes: L0..L3.
void qua_lsp(QuantState& s, const int16_t* lsp, int16_t* lsp_q, int* codes);
// Decoder of a good frame: LSF decode, stability, LSF to LSP.
void lsp_decode(QuantState& s, const int* codes, int16_t* lsp_q);
// Its first part (Lsp_iqua_cs of a good frame): the quantised LSF, radian Q13.
void lsf_decode(QuantState& s, const int* codes, int16_t* lsf_q);
// The erasure branch of Lsp_iqua_cs: the residual of the last good LSF
// under MA mode `mode` pushed into the memory.
void lsf_decode_erased(QuantState& s, int mode, const int16_t* lsf);
// Lsp_lsf: Q15 LSP -> normalised LSF (Q15).
void lsp_lsf(const int16_t* lsp, int16_t* lsf);
// Lsf_lsp2 and Lsp_lsf2: radian Q13 LSF <-> Q15 LSP.
void lsf_lsp2(const int16_t* lsf, int16_t* lsp);
void lsp_lsf2(const int16_t* lsp, int16_t* lsf);

// The floating-point annex's lsp_az (with get_lsp_pol) and levinson, built
// with FLOAT as float (single precision, the library's float twins' type).
void lsp_az_f(const float* lsp, float* a);
float levinson_f(const float* r, float* a, float* rc);

// Chebyshev evaluation of one point: the Q11 form, and the recursion with
// a form's constants (shared with the GSM-AMR model).
int16_t chebps_11(int16_t x, const int16_t* f, int n);
int16_t chebps_form(int16_t x, const int16_t* f, int n, int16_t one, int16_t two, int16_t coef, int16_t last,
                    int16_t shift);

}  // namespace model::g729
