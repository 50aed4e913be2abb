/*
 * vsps_functions.h - the list of exported functions, included by vsps.h.
 *
 * This file is the one list of the library's exports. Each entry is
 *     VSPS_FN(return type, name, (parameters), (argument names))
 * for a primitive routed through the processor dispatch (seven variants), or
 *     VSPS_SERVICE(return type, name, (parameters), (argument names))
 * for a library service exported directly. The includer defines both macros;
 * from this list come the declarations of vsps.h, the per-level variant
 * declarations, the exported dispatch stubs and their tables, the Windows
 * export definition file and the tests' table of symbols. Adding a function
 * means adding its entry here and its implementation in its family folder.
 *
 * Parameter names are part of the contract: the tests bind test-vector
 * arrays to arguments by these names.
 *
 * No include guard: this file is meant to be included more than once.
 */
/* clang-format off */

/* ======================================================================
 * Library services
 * ====================================================================== */

/* Chooses the processor level from the processor's features (restricted by
 * VSPS_CPU_MASK when set). Returns vspStsNoErr, or the warnings
 * vspStsForeignCpu (the vendor differs from the one the library is tuned
 * for; a level was chosen all the same) or vspStsNoCpuFeatures (processor
 * identification unavailable; the generic level was chosen). Optional: the
 * first call of any primitive runs it. Call it once before starting threads. */
VSPS_SERVICE(VspStatus, legacy90vspscInit, (void), ())

/* The version record of the level in use; never null, never written. */
VSPS_FN(const VspLibraryVersion*, legacy90vspscGetLibVersion, (void), ())

/* The library is single-threaded: writes 1 to *pNumThr and returns 1 (not
 * vspStsNoErr). A null pointer gives vspStsNullPtrErr. */
VSPS_SERVICE(VspStatus, legacy90vspscGetNumThreads, (int* pNumThr), (pNumThr))

/* Ignores its argument, changes nothing and returns 1. */
VSPS_SERVICE(VspStatus, legacy90vspscSetNumThreads, (int numThr), (numThr))

/* ======================================================================
 * Fixed-point kernel
 * ====================================================================== */

/* Replaces each of the len elements x (any 32-bit value) by 2^30/sqrt(x),
 * bit-exact with the G.729 reference Inv_sqrt (table of 49 values with
 * linear interpolation); x <= 0 gives 0x3FFFFFFF.
 * Examples: 1 -> 1073709056, 65536 -> 4194176, 2147483647 -> 23170.
 * Checks: pSrcDst null: vspStsNullPtrErr; len < 1: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsInvSqrt_32s_I, (Vsp32s* pSrcDst, int len), (pSrcDst, len))

/* ======================================================================
 * Shared speech-analysis primitives
 * ====================================================================== */

/* Partial (causal) convolution: for n = 0..len-1,
 *   pDst[n] = (sum over k = 0..n of pSrc1[k]*pSrc2[n-k]) >> scaleFactor,
 * accumulated in 32-bit two's-complement arithmetic with wrap-around; the
 * low 16 bits are stored without saturation (a sum of 40000 with scale
 * factor 0 stores -25536). The shift is arithmetic (toward minus infinity).
 * Checks in order: any pointer null: vspStsNullPtrErr; scaleFactor < 0:
 * vspStsBadArgErr; len < 1: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsConvPartial_16s_Sfs, (const Vsp16s* pSrc1, const Vsp16s* pSrc2, Vsp16s* pDst, int len, int scaleFactor), (pSrc1, pSrc2, pDst, len, scaleFactor))

/* ======================================================================
 * G.729 LP analysis and LSP quantisation
 * ====================================================================== */

/* LP coefficients to line spectral pairs (ITU-T G.729 clause 3.2.3 Az_lsp),
 * bit-exact with the G.729 fixed-point reference. pSrcLpc: a[0..10], Q12
 * (a[0] is not read); pSrcPrevLsp: 10 LSPs (Q15), the fallback;
 * pDstLsp: 10 LSPs, Q15 cosines in descending order.
 * The sum and difference polynomials F1, F2 are formed in Q11; if a
 * coefficient saturates they are formed again in Q10 and evaluated in that
 * form. Their roots are searched alternately along a 60-point cosine grid
 * from +1 to -1, each sign change refined by 4 bisections and a linear
 * interpolation. When fewer than 10 roots are found, pDstLsp receives a copy
 * of pSrcPrevLsp and the call still succeeds. pDstLsp may be the same array
 * as pSrcPrevLsp.
 * Checks: any pointer null: vspStsNullPtrErr. Otherwise vspStsNoErr. */
VSPS_FN(VspStatus, legacy90vspsLPCToLSP_G729_16s, (const Vsp16s* pSrcLpc, const Vsp16s* pSrcPrevLsp, Vsp16s* pDstLsp), (pSrcLpc, pSrcPrevLsp, pDstLsp))

/* As legacy90vspsLPCToLSP_G729_16s with the G.729 Annex A search: a 50-point
 * grid and 2 bisections. Decision: the Annex A evaluation of the polynomials
 * is the same as the main body's (the Q11 form with the Q10 fallback on a
 * coefficient overflow); the G.729 Release 2 reference arithmetic has one
 * evaluator for both, and the grid and the bisection count are the only
 * differences. */
VSPS_FN(VspStatus, legacy90vspsLPCToLSP_G729A_16s, (const Vsp16s* pSrcLpc, const Vsp16s* pSrcPrevLsp, Vsp16s* pDstLsp), (pSrcLpc, pSrcPrevLsp, pDstLsp))

/* Line spectral pairs to LP coefficients (ITU-T G.729 clause 3.2.6 Lsp_Az),
 * bit-exact with the G.729 fixed-point reference. pSrcLsp: 10 LSPs, Q15;
 * pDstLpc: a[0..10], Q12, a[0] = 4096.
 * F1 is built from lsp[0], lsp[2], .., lsp[8] and F2 from lsp[1], .., lsp[9]
 * (factors 1 - 2q z^-1 + z^-2, 32-bit Q24 coefficients, DPF products,
 * saturating), F1 is multiplied by (1 + z^-1) and F2 by (1 - z^-1);
 * a[i] = (F1[i] + F2[i]) and a[11-i] = (F1[i] - F2[i]), i = 1..5, each
 * shifted right by 13 with rounding, the low 16 bits kept (no saturation, as
 * in the reference). Any 16-bit input is accepted (unordered LSPs give an
 * unstable filter, not an error).
 * Checks: any pointer null: vspStsNullPtrErr. Otherwise vspStsNoErr. */
VSPS_FN(VspStatus, legacy90vspsLSPToLPC_G729_16s, (const Vsp16s* pSrcLsp, Vsp16s* pDstLpc), (pSrcLsp, pDstLpc))

/* ======================================================================
 * GSM-AMR LP analysis and LSP quantisation
 * ====================================================================== */

/* Common to the GSM-AMR functions: LP order 10; LP coefficients Q12 with
 * a[0] = 4096; LSPs are Q15 cosines (decreasing); LSFs are normalised Q15
 * (16384 = 4 kHz). The rate argument `mode` is a VspSpeechBitRate value and
 * must be one of 0, 1, 3, 6, 7, 8, 11, 12, 25, otherwise vspStsRangeErr
 * (-7) with nothing written. Mode 25 (SID frames) takes the ordinary
 * full-table 3-split path of modes 3..11 everywhere (same tables, same
 * prediction factors); the TS 26.073 comfort-noise LSF path is not part of
 * these functions. Arithmetic: bit-exact with TS 26.073. */

/* Windowed autocorrelation with lag window (TS 26.073 Autocorr, Lag_window)
 * of the 240-sample analysis buffer pSrc. Modes other than 12.2 kbit/s: one
 * analysis with the window_200_40 window, 11 values into pDst. 12.2 kbit/s:
 * two analyses of the same buffer, window_160_80 into pDst[0..10], then
 * window_232_8 into pDst[11..21] (the caller passes the 12.2 buffer, which
 * in the standard's encoder starts 40 samples earlier).
 * Per analysis: y = mult_r(x, w); while sum(y^2) >= 2^30 (the reference's
 * saturating sum of 2*y^2), y >>= 2; r[0] = 2*sum(y^2) + 1 shifted left by
 * norm so that it is normalised; r[1..10] = 2*sum(y[j]*y[j+i]) << norm,
 * multiplied by the lag window in hi/lo form.
 * Decision: r[0] is stored as the full 32-bit value; the reference keeps it
 * as a hi/lo pair, which clears bit 0 when norm is 0 (loud frames). The
 * Levinson-Durbin recursion reads r[0] in hi/lo form, so its results do not
 * depend on that bit. An all-zero buffer gives r[0] = 0x40000000, r[i] = 0.
 * Checks: pSrc or pDst null: vspStsNullPtrErr; mode: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsAutoCorr_GSMAMR_16s32s, (const Vsp16s* pSrc, Vsp32s* pDst, int mode), (pSrc, pDst, mode))

/* Levinson-Durbin recursion of order 10 (TS 26.073 Levinson) on the
 * normalised, lag-windowed autocorrelation pSrcAutoCorr[0..10], in the
 * reference's double-precision (hi/lo) arithmetic; pDstLpc[0..10] in Q12,
 * pDstLpc[0] = 4096, each coefficient rounded with saturation from its Q27
 * value. The reference's memory of the last good filter is the caller's:
 * pDstLpc is written only on success.
 * Returns vspStsLPCUnstable (12, a warning) with pDstLpc untouched when
 * |r[0]| < 65536 (before anything else), when the normalised prediction error
 * used as divisor at orders 2..10 has magnitude below 65536 (it is then 0,
 * which needs |r[1]| of about r[0] or more), or when a reflection coefficient
 * of orders 2..10 has a high word above 32750 in magnitude (order 1 is not
 * tested, as in the reference).
 * Decision: the reference's division is defined only for a normalised
 * divisor (r[0] high word >= 16383); it aborts otherwise. Here the recursion
 * still runs on such inputs (65536 <= |r[0]| < 0x3FFF0000, or a negative
 * r[0]) with the kernel's guarded division (the 1/den approximation gives
 * 32767 when its numerator exceeds the divisor's high word and 0 for a
 * non-positive divisor) and the stop rules above decide: the result is
 * deterministic and identical at every level but carries no meaning. A
 * numerator above the divisor (|r[1]| > r[0]) likewise gives a meaningless
 * quotient; such inputs end with status 12 through the divisor or the
 * stability test.
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLevinsonDurbin_GSMAMR_32s16s, (const Vsp32s* pSrcAutoCorr, Vsp16s* pDstLpc), (pSrcAutoCorr, pDstLpc))

/* LP to LSP (TS 26.073 Az_lsp): the roots of the sum and difference
 * polynomials of pSrcLpc (11, Q12), formed in Q10 (f[0] = 1024, sums scaled
 * by 1/4), found on the root search shared with legacy90vspsLPCToLSP_G729_16s
 * (60-interval grid from +1 toward -1, 4 bisections, linear interpolation,
 * the two polynomials alternating) and evaluated with the TS 26.073 Chebyshev
 * recursion (Q24 internal precision, one bit more than the G.729 Q10
 * fallback, so the two differ on rare inputs). pDstLsp: 10 Q15 LSPs,
 * decreasing. When fewer than 10 roots are found, pSrcPrevLsp is copied to
 * pDstLsp and the status is still vspStsNoErr. The buffers may overlap.
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLPCToLSP_GSMAMR_16s, (const Vsp16s* pSrcLpc, const Vsp16s* pSrcPrevLsp, Vsp16s* pDstLsp), (pSrcLpc, pSrcPrevLsp, pDstLsp))

/* LSP to LP (TS 26.073 Lsp_Az): the same routine as
 * legacy90vspsLSPToLPC_G729_16s, to which it forwards (same arguments, checks
 * and results): pDstLpc (11, Q12, a[0] = 4096) from pSrcLsp (10, Q15).
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLSPToLPC_GSMAMR_16s, (const Vsp16s* pSrcLsp, Vsp16s* pDstLpc), (pSrcLsp, pDstLpc))

/* LSF to LSP (TS 26.073 Lsf_lsp), ten values: ind = lsf >> 8, lsp =
 * cos[ind] + (((lsf & 255) * slope[ind]) >> 8) over the 64-interval cosine
 * table (slope[i] = cos[i+1] - cos[i]).
 * Decisions: an LSF of 16384 or more uses ind = 63 (16384 gives -32729; the
 * reference reads past its table there). A negative LSF stops the call with
 * vspStsLSFRangeErr (-12): the values before it are already written, the rest
 * of pDstLsp is untouched.
 * Checks: any pointer null: vspStsNullPtrErr; then -12 as above. */
VSPS_FN(VspStatus, legacy90vspsLSFToLSP_GSMAMR_16s, (const Vsp16s* pSrcLsf, Vsp16s* pDstLsp), (pSrcLsf, pDstLsp))

/* LSP quantisation with first-order MA prediction (TS 26.073 Q_plsf_3 and
 * Q_plsf_5). pPastRq (10, in/out) is the encoder's past quantised residual
 * (zero at reset).
 * Modes other than 12.2 kbit/s: pSrcLsp 10 values; Lsp_lsf, Lsf_wt weights,
 * prediction mean3 + mult(past_rq, pred_fac3), three weighted sub-vector
 * searches (coefficients 0-2, 3-5, 6-9; strict "<", the first minimum wins):
 * modes 0 and 1: dico1_lsf_3, the even rows of dico2_lsf_3 (index transmitted
 * = row / 2, 0..255), mr515_3_lsf; mode 8: mr795_1_lsf, dico2_lsf_3,
 * dico3_lsf_3; modes 3, 6, 7, 11, 25: dico1_lsf_3, dico2_lsf_3, dico3_lsf_3.
 * pDstIdx gets 3 indices, pPastRq the quantised residual, pDstQLsp the
 * quantised LSFs reordered (minimum distance 205) and converted to LSP.
 * 12.2 kbit/s: pSrcLsp holds the LSPs of subframes 2 and 4 (20 values); one
 * prediction mean5 + mult(past_rq, 21299) for both; five joint searches over
 * the coefficient pairs (0-1, ..., 8-9) of both vectors with dico1..dico5_lsf_5,
 * the third with both signs (index = 2 * row + sign, a negative sign negates
 * the row with saturation); pDstIdx 5 indices, pDstQLsp 20 values, pPastRq
 * the second vector's quantised residual.
 * pDstQLsp, pDstIdx and pPastRq are written only on success.
 * Checks: any pointer null: vspStsNullPtrErr; mode: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsLSPQuant_GSMAMR_16s, (const Vsp16s* pSrcLsp, Vsp16s* pPastRq, Vsp16s* pDstQLsp, Vsp16s* pDstIdx, int mode), (pSrcLsp, pPastRq, pDstQLsp, pDstIdx, mode))

/* LSF decoding with bad-frame concealment (TS 26.073 D_plsf_3, D_plsf_5)
 * and the subframe LSPs (the LSP half of Int_lpc_1to3 / Int_lpc_1and3).
 * State (caller-owned, in/out): pPastRq (10, zero at reset), pPastLsfQ (10,
 * the last decoded LSF vector; at reset the 12.2 kbit/s mean vector 1384,
 * 2077, 3420, 5108, 6742, 8122, 9863, 11092, 12714, 13701 for every mode,
 * as the standard's decoder reset sets it), pLsp (10: the previous frame's
 * LSP in, this frame's last LSP out; at reset the standard's initial LSP
 * 30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000).
 * Good frame (bfi = 0): pIdx holds 3 indices (5 at 12.2 kbit/s) as
 * legacy90vspsLSPQuant_GSMAMR_16s writes them; lsf = codevectors + mean +
 * mult(past_rq, factor); past_rq = the codevectors (the second vector's at
 * 12.2). Bad frame (bfi != 0, pIdx ignored but must not be null):
 * lsf = mult(past_lsf_q, 29491) + mult(mean3, 3277) (12.2 kbit/s:
 * 31128 and 1639 with mean5, both vectors the same); past_rq = lsf minus the
 * prediction from the old past_rq with the mode's factors. Then the LSFs are
 * reordered (minimum distance 205), pPastLsfQ = the (last) reordered vector,
 * and the LSPs formed.
 * pDstLspSubfr (40) gets the four subframe LSP vectors: 3-split modes
 * old - (old >> 2) + (new >> 2), (old >> 1) + (new >> 1),
 * new - (new >> 2) + (old >> 2), new; 12.2 kbit/s (mid = the subframe-2
 * vector): (mid >> 1) + (old >> 1), mid, (mid >> 1) + (new >> 1), new
 * (saturating adds, floor shifts).
 * Decision: indices outside their table are masked to the table's index
 * width (first: & 255, & 511 at 7.95 kbit/s; second: & 255 at 4.75 and
 * 5.15 kbit/s, else & 511; third: & 127 at 4.75 and 5.15 kbit/s, else & 511;
 * 12.2 kbit/s: & 127, & 255, & 511, & 255, & 63), so that any index reads
 * inside the tables; valid indices are unchanged by the mask.
 * Checks: any of the five pointers null: vspStsNullPtrErr; mode:
 * vspStsRangeErr; nothing is written on failure. */
VSPS_FN(VspStatus, legacy90vspsQuantLSPDecode_GSMAMR_16s, (const Vsp16s* pIdx, Vsp16s* pPastRq, Vsp16s* pPastLsfQ, Vsp16s* pLsp, Vsp16s* pDstLspSubfr, Vsp16s bfi, int mode), (pIdx, pPastRq, pPastLsfQ, pLsp, pDstLspSubfr, bfi, mode))

/* First-subframe LSP interpolation (TS 26.073 Int_lpc_1to3): pDst[i] =
 * pSrcPrev[i] - (pSrcPrev[i] >> 2) + (pSrcCur[i] >> 2), floor shifts,
 * saturating add/sub, i = 0..len-1. pDst may equal either source.
 * Checks: any pointer null: vspStsNullPtrErr; len < 1: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsInterpolate_GSMAMR_16s, (const Vsp16s* pSrcCur, const Vsp16s* pSrcPrev, Vsp16s* pDst, int len), (pSrcCur, pSrcPrev, pDst, len))

/* Pre-emphasis 1 - gamma z^-1 (TS 26.073 preemphasis): pDst[n] =
 * sub(x[n], mult(gamma, x[n-1])) with gamma Q15 (any value), x[-1] = *pMem;
 * afterwards *pMem = the last input sample. pDst may equal pSrc.
 * Checks: pSrc, pDst or pMem null: vspStsNullPtrErr; len < 1:
 * vspStsSizeErr; nothing is written on failure. */
VSPS_FN(VspStatus, legacy90vspsPreemphasize_GSMAMR_16s, (Vsp16s gamma, const Vsp16s* pSrc, Vsp16s* pDst, int len, Vsp16s* pMem), (gamma, pSrc, pDst, len, pMem))

/* ======================================================================
 * Echo-cancellation toolkit
 * ====================================================================== */

/* clang-format on */
