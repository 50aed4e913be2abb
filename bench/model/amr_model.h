// The plain scalar model of the GSM-AMR LP analysis and LSP quantisation
// (TS 26.073 Autocorr, Lag_window, Levinson, Az_lsp, Q_plsf_3, Q_plsf_5) on
// the out-of-line operators of ref_ops.h. Benchmarks only.
#pragma once

#include <cstdint>

namespace model::amr {

// One analysis window: r_h/r_l[0..10] after the lag window.
void autocorr_lag(const int16_t* x, const int16_t* window, int16_t* r_h, int16_t* r_l);
// Returns false (A untouched) on an unstable filter.
bool levinson(const int16_t* Rh, const int16_t* Rl, int16_t* A);
void az_lsp(const int16_t* a, int16_t* lsp, const int16_t* old_lsp);
// Q_plsf_3 (mode != 12.2; reduced: 4.75 / 5.15 tables; mr795: 7.95 tables).
void q_plsf_3(int16_t* past_rq, const int16_t* lsp, int16_t* lsp_q, int16_t* indice, bool reduced, bool mr795);
// Q_plsf_5 (12.2): lsp holds the two vectors.
void q_plsf_5(int16_t* past_rq, const int16_t* lsp, int16_t* lsp_q, int16_t* indice);

}  // namespace model::amr
