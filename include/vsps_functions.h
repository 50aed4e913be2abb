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

/* G.729 LP analysis and LSP quantisation: formats and calling order.
 * LP coefficients a[0..order] Q12 (a[0] = 4096); reflection coefficients
 * Q15; LSP Q15 cosines in descending order; LSF radian Q13 (0..pi =
 * 0..25736) or normalised Q15 (0..0.5 of the sampling rate = 0..16384);
 * autocorrelations 32-bit, normalised (r[0] in 2^30..2^31-1), used in their
 * DPF split hi * 65536 + lo * 2 (bit 0 ignored). The LP order is 10 unless a
 * length argument says otherwise. The MA memory of the LSF quantiser and
 * decoder (pSrcDstPrevFreq) is 4 rows of 10 radian Q13 residuals, newest
 * first, each row reset to {2339, 4679, 7018, 9358, 11698, 14037, 16377,
 * 18717, 21056, 23396} (float: the same values / 8192 in radians).
 * Encoder frame: HighPassFilter (scale factor 12) on 80 new samples;
 * AutoCorr_G729 on the 240-sample analysis buffer; LagWindow on r[1..10];
 * LevinsonDurbin; LPCToLSP; LSPQuant (or LSPToLSF + LSFQuant + LSFToLSP);
 * Interpolate of the previous and the current LSP for the first subframe;
 * LSPToLPC per subframe. Decoder: LSFDecode (LSFDecodeErased for an erased
 * frame), LSFToLSP, Interpolate, LSPToLPC; HighPassFilter (scale factor 13)
 * on the output. */

/* Autocorrelation normalised by energy, in the G.729 reference arithmetic
 * (Autocorr) for caller-windowed samples pSrc[0..len-1]:
 * r[0] = 1 + 2 sum y[n]^2 and r[k] = 2 sum_j y[j] y[j+k], k = 1..lenDst-1,
 * where y = pSrc, or, when 1 + 2 sum y^2 would not fit 32 bits (the
 * reference's overflow), y = pSrc divided by 4 (arithmetic shift right by 2,
 * floor) as many times as needed. The start value 1 keeps r[0] positive for
 * a silent frame. Every r[k] is then shifted left by norm_l(r[0]) so that
 * r[0] lies in 2^30..2^31-1, and stored with bit 0 cleared (the DPF value
 * hi * 65536 + lo * 2 the reference carries). *pNorm receives the power of
 * two of the result: pDst[k] = 2 sum x[j] x[j+k] * 2^(*pNorm), up to the
 * truncations (negative when the samples were divided).
 * The white-noise correction of G.729 (r[0] x 1.0001) is applied, as in the
 * fixed-point reference, by the factor 0.9999 folded into the lag window
 * (legacy90vspsLagWindow_G729_32s_I), not here.
 * Checks in order: any pointer null: vspStsNullPtrErr; len < 1 or len >=
 * 2^29: vspStsSizeErr; lenDst < 1 or lenDst > len: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsAutoCorr_NormE_16s32s, (const Vsp16s* pSrc, int len, Vsp32s* pDst, int lenDst, int* pNorm), (pSrc, len, pDst, lenDst, pNorm))

/* The G.729 LP analysis autocorrelation (ITU-T G.729 clause 3.2.1),
 * bit-exact with the reference Autocorr: the 240 samples pSrc (the analysis
 * buffer: 120 past, 80 current and 40 look-ahead samples of the
 * pre-processed speech) are multiplied by the G.729 asymmetric window
 * (mult_r with the Q15 window), then legacy90vspsAutoCorr_NormE_16s32s
 * gives r[0..lenDst-1] (11 for order 10; 13 for the Annex B detector).
 * Checks in order: any pointer null: vspStsNullPtrErr; lenDst < 1 or
 * lenDst > 240: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsAutoCorr_NormE_G729_16s32s, (const Vsp16s* pSrc, Vsp32s* pDst, int lenDst, int* pNorm), (pSrc, pDst, lenDst, pNorm))

/* Writes the byte size of the high-pass filter state, 24, to *pSize.
 * Checks: pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsHighPassFilterSize_G729, (int* pSize), (pSize))

/* Formats a high-pass filter state of 24 bytes (any alignment): y1, y2
 * (Vsp32s, the last two outputs before rounding) and x1, x2 (Vsp16s, the last
 * two inputs) cleared, then the six coefficients pCoeff = {a0, a1, a2, b0, b1,
 * b2} copied (a0 is kept but never used). The G.729 sets are
 * {4096, 7807, -3733, 1899, -3798, 1899} (Q12, 140 Hz pre-processing with the
 * input halved, scale factor 12) and {8192, 15836, -7667, 7699, -15398, 7699}
 * (Q13, 100 Hz post-processing, scale factor 13).
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsHighPassFilterInit_G729, (const Vsp16s* pCoeff, Vsp8u* pState), (pCoeff, pState))

/* Second-order high-pass filter in place (ITU-T G.729 Pre_Process and
 * Post_Process), bit-exact with the G.729 fixed-point reference. Per sample
 * x: acc = a1*y1 + a2*y2 (DPF products of the stored 32-bit outputs, bit 0
 * ignored) + b0*x + b1*x1 + b2*x2, each partial sum a saturating 32-bit
 * L_add/L_mac of doubled products. scaleFactor 12: y = acc << 3 (saturating),
 * output round(y). scaleFactor 13: y = acc << 2 (saturating), output
 * round(y << 1) (the signal doubled, saturating). Then y2 = y1, y1 = y,
 * x2 = x1, x1 = x; the state is written back after the block.
 * Checks in order: any pointer null: vspStsNullPtrErr; len < 1:
 * vspStsSizeErr; scaleFactor other than 12 or 13: vspStsOutOfRangeErr.
 * A failing call touches neither the samples nor the state. */
VSPS_FN(VspStatus, legacy90vspsHighPassFilter_G729_16s_ISfs, (Vsp16s* pSrcDst, int len, int scaleFactor, Vsp8u* pState), (pSrcDst, len, scaleFactor, pState))

/* Lag window in place on r[1..len] (pSrcDst points to r[1]): element k is
 * replaced by the DPF product (Mpy_32) of its DPF split with the G.729 lag
 * window of lag k+1, 0.9999 exp(-0.5 (2 pi 60 k / 8000)^2) in Q31 (lags
 * 11 and 12 from the G.729 Annex B table). The factor 0.9999 is the
 * standard's white-noise correction, expressed relative to r[0]; r[0] itself
 * is never touched. Bit-exact with the G.729 reference Lag_window.
 * Checks in order: pSrcDst null: vspStsNullPtrErr; len < 1:
 * vspStsBadArgErr; len > 12: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsLagWindow_G729_32s_I, (Vsp32s* pSrcDst, int len), (pSrcDst, len))

/* Levinson-Durbin recursion (ITU-T G.729 clause 3.2.2), bit-exact with the
 * G.729 fixed-point reference for normalised input, orders 1..30.
 * pSrcAutoCorr: r[0..order] (32-bit, DPF split); pDstLpc: a[0..order], Q12
 * (a[0] = 4096, a[i] = sat16((a27 + 16384) >> 15) from the internal Q27);
 * pDstRc: the order reflection coefficients, Q15 (high words);
 * pResultResidualEnergy: the final prediction error, high 16 bits of the
 * normalised alpha shifted right by its exponent (the scale of r[0]).
 * Stops with vspStsLPCUnstable (12, a warning) and writes none of the three
 * outputs (the caller keeps its previous filter) when: r[0] < 65536
 * (decision: every negative r[0] included, since the recursion divides by
 * it); the normalised alpha has fallen below 65536 before an order; or a
 * reflection coefficient from the second on has a high word above 32750 in
 * magnitude.
 * Decision (the reference needs r[0] >= 2^30 for its divisions): an r[0] in
 * 65536..2^30-1 is normalised first: every r[k] is shifted left by
 * norm_l(r[0]) with saturation, and the residual energy is shifted back by
 * the same count. Normalised input (the G.729 autocorrelation's) is
 * unchanged by this; the call never traps.
 * Checks in order: any pointer null: vspStsNullPtrErr; order < 1 or > 30:
 * vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsLevinsonDurbin_G729_32s16s, (const Vsp32s* pSrcAutoCorr, int order, Vsp16s* pDstLpc, Vsp16s* pDstRc, Vsp16s* pResultResidualEnergy), (pSrcAutoCorr, order, pDstLpc, pDstRc, pResultResidualEnergy))

/* Single-precision Levinson-Durbin (the steps of the G.729 floating-point
 * annex) with its own stop rule. pSrcAutoCorr: r[0..order]; pDstLpc:
 * a[0..order] (a[0] = 1); pDstRc: order reflection coefficients;
 * pResultResidualEnergy: the final prediction error.
 * k1 = -r[1] / r[0] (no guard), alpha = r[0] + r[1] k1; for i = 2..order:
 * s = sum_{j=0..i-1} r[i-j] a[j]; k = -s / alpha, or 1.0 when |alpha| is
 * below 1.1754944e-38; k is stored to pDstRc[i-1] first, and if |k| >
 * 0.99945098 the recursion stops: the call returns vspStsNoErr with
 * a[0..i-1] holding the order i-1 filter, pDstLpc[i..order], pDstRc[i..] and
 * the residual energy untouched. Otherwise the symmetric in-place update
 * a[j], a[i-j] += k a[i-j], k a[j], a[i] = k, alpha += k s. The residual
 * energy is written only after the full order. The first coefficient k1 is
 * not tested (as rc[0] of the 16-bit recursion). Unlike the 16-bit twin this
 * function never warns and has no upper order bound.
 * Checks in order: any pointer null: vspStsNullPtrErr; order < 1:
 * vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsLevinsonDurbin_G729_32f, (const Vsp32f* pSrcAutoCorr, int order, Vsp32f* pDstLpc, Vsp32f* pDstRc, Vsp32f* pResultResidualEnergy), (pSrcAutoCorr, order, pDstLpc, pDstRc, pResultResidualEnergy))

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

/* LP to LSP in single precision (the floating-point annex's az_lsp): F1, F2
 * from a[0..10] (a[0] not read), Chebyshev evaluation, 60-point float grid, 4
 * bisections by halving, linear interpolation xlow - ylow (xhigh - xlow) /
 * (yhigh - ylow); after each root the rest of the same grid interval is
 * searched with the other polynomial. Decision: equal end values take xlow
 * instead of dividing by zero. Fewer than 10 roots: pSrcPrevLsp is copied.
 * Checks: any pointer null: vspStsNullPtrErr. Otherwise vspStsNoErr. */
VSPS_FN(VspStatus, legacy90vspsLPCToLSP_G729_32f, (const Vsp32f* pSrcLpc, const Vsp32f* pSrcPrevLsp, Vsp32f* pDstLsp), (pSrcLpc, pSrcPrevLsp, pDstLsp))

/* As legacy90vspsLPCToLSP_G729_32f with the Annex A search: 50-point grid,
 * 2 bisections. */
VSPS_FN(VspStatus, legacy90vspsLPCToLSP_G729A_32f, (const Vsp32f* pSrcLpc, const Vsp32f* pSrcPrevLsp, Vsp32f* pDstLsp), (pSrcLpc, pSrcPrevLsp, pDstLsp))

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

/* LSP to LP in single precision (the floating-point annex's lsp_az): F1, F2
 * from the even- and odd-indexed LSP cosines, times (1 + z^-1) and
 * (1 - z^-1), a[i] = 0.5 (F1[i] + F2[i]), a[11-i] = 0.5 (F1[i] - F2[i]),
 * a[0] = 1. Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLSPToLPC_G729_32f, (const Vsp32f* pSrcLsp, Vsp32f* pDstLpc), (pSrcLsp, pDstLpc))

/* LSP (Q15) to radian LSF (Q13), bit-exact with the G.729 reference
 * Lsp_lsf2: for i = 9 down to 0 an index walks down the 64-entry cosine
 * table until table[ind] >= lsp[i] (never below 0; it carries over between
 * coefficients); freq = add(ind << 9, (slope[ind] * (lsp[i] - table[ind]))
 * >> 11) (saturating: lsp = -32768 gives 32767); lsf[i] = (freq * 25736)
 * >> 15. Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLSPToLSF_G729_16s, (const Vsp16s* pSrcLsp, Vsp16s* pDstLsf), (pSrcLsp, pDstLsf))

/* LSP (Q15) to normalised LSF (Q15, 0..16384 for 0..0.5 of the sampling
 * rate), bit-exact with the G.729 reference Lsp_lsf: the same walk (from
 * entry 63) over the 65-entry table; lsf[i] = add(round((lsp[i] -
 * table[ind]) * slope[ind] << 4), ind << 8). Checks: any pointer null:
 * vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLSPToLSF_Norm_G729_16s, (const Vsp16s* pSrcLsp, Vsp16s* pDstLsf), (pSrcLsp, pDstLsf))

/* Radian LSF (Q13) to LSP (Q15), bit-exact with the G.729 reference
 * Lsf_lsp2: freq = (lsf * 20861) >> 15; ind = freq >> 8, offset = freq &
 * 255; lsp = add(table[ind], (slope[ind] * offset) >> 12). The index is
 * clamped to 63 as the reference does (LSF at or above pi, e.g. 25736 gives
 * -32729 and 32767 gives -32749: the offset is still used). Decision: a
 * negative LSF (outside the reference's domain) uses index 0 with its own
 * offset byte. Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLSFToLSP_G729_16s, (const Vsp16s* pSrcLsf, Vsp16s* pDstLsp), (pSrcLsf, pDstLsp))

/* Switched-MA predictive two-stage LSF quantiser (ITU-T G.729 clause 3.2.4,
 * reference Get_wegt + Relspwed), bit-exact with the G.729 fixed-point
 * reference. pSrcLsf: 10 radian LSFs, Q13; pSrcDstPrevFreq: the 4 x 10 MA
 * memory (updated); pDstQLsf: the quantised LSFs, Q13; pDstQuantIndex: the
 * four codes L0 (MA mode), L1 (7 bits), L2, L3 (5 bits each).
 * For each mode (0 then 1) the target is formed from the memory, the first
 * stage chosen by unweighted error, both second-stage halves by weighted
 * error (strictly smaller wins, ties keep the lower index), and the
 * rearranged candidate's weighted error computed; mode 1 is chosen only when
 * its error is strictly smaller. The codes are then decoded exactly as
 * legacy90vspsLSFDecode_G729_16s does (memory update and stability rule) and
 * that status is returned: vspStsNoErr or the warnings 13, 14, 15 (LSF
 * clamped at the low limit 40, the high limit 25681, or both).
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLSFQuant_G729_16s, (const Vsp16s* pSrcLsf, Vsp16s* pSrcDstPrevFreq, Vsp16s* pDstQLsf, Vsp16s* pDstQuantIndex), (pSrcLsf, pSrcDstPrevFreq, pDstQLsf, pDstQuantIndex))

/* LSP quantiser of the G.729 encoder (reference Qua_lsp):
 * legacy90vspsLSPToLSF_G729_16s, the quantiser of
 * legacy90vspsLSFQuant_G729_16s (memory updated), then
 * legacy90vspsLSFToLSP_G729_16s of the quantised LSFs to pDstQLsp (Q15).
 * pDstQuantIndex receives the two bit-stream words (L0 << 7) | L1 and
 * (L2 << 5) | L3. Returns vspStsNoErr (clamping is not reported here).
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLSPQuant_G729_16s, (const Vsp16s* pSrcLsp, Vsp16s* pSrcDstPrevFreq, Vsp16s* pDstQLsp, Vsp16s* pDstQuantIndex), (pSrcLsp, pSrcDstPrevFreq, pDstQLsp, pDstQuantIndex))

/* G.729 Annex E forward LSP quantiser (reference Qua_lspe): the steps of
 * legacy90vspsLSPQuant_G729_16s (LSP to radian LSF, weights, two-mode
 * two-stage search, decoding with the stability rule, LSF to LSP), except
 * that the MA memory pSrcPrevFreq (4 x 10, Q13, newest first) is only read:
 * the frame's rearranged residual (Q13) is written to pDstFreqCur instead,
 * for the caller to push into the memory as its newest row when the frame is
 * coded in forward (LSP) mode, as the Annex E encoder does. pDstQLsp: the
 * quantised LSPs (Q15); pDstQuantIndex: (L0 << 7) | L1 and (L2 << 5) | L3.
 * Pointer order (LSP, memory, quantised LSP, residual, codes) as Annex E's
 * Qua_lspe passes them. Returns vspStsNoErr (clamping is not reported).
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLSPQuant_G729E_16s, (const Vsp16s* pSrcLsp, const Vsp16s* pSrcPrevFreq, Vsp16s* pDstQLsp, Vsp16s* pDstFreqCur, Vsp16s* pDstQuantIndex), (pSrcLsp, pSrcPrevFreq, pDstQLsp, pDstFreqCur, pDstQuantIndex))

/* Single-precision twin of legacy90vspsLSPQuant_G729E_16s (the floating-
 * point annex's qua_lspe): LSF = acos(LSP) in radians; weights 1 or
 * 10 d^2 + 1 (x 1.2 for coefficients 4 and 5); target (lsf - MA prediction)
 * x fg_sum_inv; first stage by unweighted, second-stage halves by weighted
 * squared error (strictly smaller wins from 1e38); rearrangement 0.0012 then
 * 0.0006; mode 1 only when its weighted error is strictly smaller; decoding
 * with the float stability rule (0.005, 0.0392, 3.135); LSP = cos(LSF).
 * pSrcPrevFreq (4 x 10 radians) is only read; pDstFreqCur receives the
 * residual; pDstQuantIndex two int words as the 16-bit twin packs them.
 * Checks: any pointer null: vspStsNullPtrErr. Otherwise vspStsNoErr. */
VSPS_FN(VspStatus, legacy90vspsLSPQuant_G729E_32f, (const Vsp32f* pSrcLsp, const Vsp32f* pSrcPrevFreq, Vsp32f* pDstQLsp, Vsp32f* pDstFreqCur, int* pDstQuantIndex), (pSrcLsp, pSrcPrevFreq, pDstQLsp, pDstFreqCur, pDstQuantIndex))

/* LSF decoder of a good frame (reference Lsp_get_quant), bit-exact with the
 * G.729 fixed-point reference. pQuantIndex: the codes L0 (MA mode 0 or 1),
 * L1 (0..127), L2, L3 (0..31); pSrcDstPrevFreq: the 4 x 10 MA memory
 * (updated); pDstQLsf: 10 radian LSFs, Q13.
 * Residual = stage-1 row L1 + stage-2 rows L2 (low half) and L3 (high half),
 * rearranged to minimum distances 10 then 5; lsf = residual x (1 - sum of
 * the MA coefficients) + MA prediction (memory before its update); the
 * residual becomes the newest memory row; then the stability rule: one pass
 * of adjacent swaps, lsf[0] >= 40, gaps >= 321, lsf[9] <= 25681.
 * Returns vspStsNoErr, or the warnings vspStsLsfLowClamped (13),
 * vspStsLsfHighClamped (14), vspStsLsfBothClamped (15); the outputs are
 * valid in every case.
 * Checks in order: any pointer null: vspStsNullPtrErr; L0 not 0 or 1:
 * vspStsBadIndexErr; decision: L1 outside 0..127 or L2, L3 outside 0..31
 * (codes no bit-stream can carry) also give vspStsBadIndexErr. Nothing is
 * written on failure. */
VSPS_FN(VspStatus, legacy90vspsLSFDecode_G729_16s, (const Vsp16s* pQuantIndex, Vsp16s* pSrcDstPrevFreq, Vsp16s* pDstQLsf), (pQuantIndex, pSrcDstPrevFreq, pDstQLsf))

/* LSF decoder of an erased frame (ITU-T G.729 clause 4.4.1, the erasure
 * branch of Lsp_iqua_cs), bit-exact with the G.729 fixed-point reference.
 * pSrcDstLsf holds the last good LSF vector (radian Q13) and is left as the
 * output unchanged; the residual that would have produced it under MA mode
 * maIndex (the mode of the last good frame) is computed ((lsf - prediction)
 * / (1 - sum of the MA coefficients)) and pushed into pSrcDstPrevFreq as its
 * newest row. No rearrangement, no stability rule.
 * Checks in order: any pointer null: vspStsNullPtrErr; maIndex not 0 or 1:
 * vspStsBadIndexErr. */
VSPS_FN(VspStatus, legacy90vspsLSFDecodeErased_G729_16s, (int maIndex, Vsp16s* pSrcDstPrevFreq, Vsp16s* pSrcDstLsf), (maIndex, pSrcDstPrevFreq, pSrcDstLsf))

/* Single-precision LSF decoder of a good frame (the floating-point annex's
 * lsp_get_quant): the steps of legacy90vspsLSFDecode_G729_16s on radian
 * floats with the float tables; rearrangement distances 0.0012 then 0.0006;
 * stability: one swap pass, lsf[0] >= 0.005, gaps >= 0.0392, lsf[9] <=
 * 3.135. pQuantIndex: four int codes L0..L3 (the width of a bit-stream
 * unpacker's words); pSrcDstPrevFreq: 4 x 10 floats, newest first (updated);
 * pDstQLsf: 10 radian LSFs. Always vspStsNoErr, also when clamped (only the
 * fixed-point decoder reports clamping) and whatever the mode code.
 * Decision: the codes are masked to their widths (L0 & 1, L1 & 127, L2 & 31,
 * L3 & 31) as the bit-stream unpacking of the standard does, so no code can
 * read outside the tables.
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLSFDecode_G729_32f, (const int* pQuantIndex, Vsp32f* pSrcDstPrevFreq, Vsp32f* pDstQLsf), (pQuantIndex, pSrcDstPrevFreq, pDstQLsf))

/* Single-precision LSF decoder of an erased frame: pSrcDstLsf (the last good
 * radian LSFs) is kept; (lsf - sum_k prev[k] fg[k]) * fg_sum_inv of MA mode
 * maIndex is pushed into pSrcDstPrevFreq as the newest row.
 * Checks in order: any pointer null: vspStsNullPtrErr; maIndex not 0 or 1:
 * vspStsBadIndexErr (the mode selects a table: unlike the good-frame float
 * decoder's masked codes it is checked, as for the 16-bit twin). */
VSPS_FN(VspStatus, legacy90vspsLSFDecodeErased_G729_32f, (int maIndex, Vsp32f* pSrcDstPrevFreq, Vsp32f* pSrcDstLsf), (maIndex, pSrcDstPrevFreq, pSrcDstLsf))

/* Mid-point of two vectors as in the G.729 LSP interpolation (Int_qlpc):
 * pDst[i] = (pSrc1[i] >> 1) + (pSrc2[i] >> 1), each halved toward minus
 * infinity before the sum (-1 and -1 give -2). The buffers may coincide.
 * Checks in order: any pointer null: vspStsNullPtrErr; len < 1:
 * vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsInterpolate_G729_16s, (const Vsp16s* pSrc1, const Vsp16s* pSrc2, Vsp16s* pDst, int len), (pSrc1, pSrc2, pDst, len))

/* Weighted sum pDst[i] = sat16((pSrc1[i] * val1 >> scaleFactor) + (pSrc2[i] *
 * val2 >> scaleFactor)): each exact 32-bit product shifted separately
 * (arithmetic shift toward minus infinity, no rounding; a shift of 31 or more
 * gives 0 or -1), the sum saturated to 16 bits.
 * Checks in order: any pointer null: vspStsNullPtrErr; scaleFactor < 0:
 * vspStsOutOfRangeErr; len < 1: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsInterpolateC_G729_16s_Sfs, (const Vsp16s* pSrc1, Vsp16s val1, const Vsp16s* pSrc2, Vsp16s val2, Vsp16s* pDst, int len, int scaleFactor), (pSrc1, val1, pSrc2, val2, pDst, len, scaleFactor))

/* Weighted sum pDst[i] = pSrc1[i] * val1 + pSrc2[i] * val2 in single
 * precision (products first, then the sum).
 * Checks in order: any pointer null: vspStsNullPtrErr; len < 1:
 * vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsInterpolateC_G729_32f, (const Vsp32f* pSrc1, Vsp32f val1, const Vsp32f* pSrc2, Vsp32f val2, Vsp32f* pDst, int len), (pSrc1, val1, pSrc2, val2, pDst, len))

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

/* Single-precision tools of this section (and the G.729 float twins) store
 * every NaN result, in outputs, states and work buffers, as the quiet NaN
 * 0x7FC00000, so that their bytes are identical at every processor level
 * even when different NaNs meet in the inputs. */

/* ---- Sub-band filter bank ---------------------------------------------
 * A weighted overlap-add bank on a real transform of length N = 2^order:
 * analysis windows the last windowLen input samples, folds them to N
 * (time aliasing) and transforms them into N/2+1 complex sub-bands (bins
 * 0..N/2, packed; bins 0 and N/2 have a zero imaginary part); synthesis
 * inverse-transforms N/2+1 bins, extends the block periodically over
 * windowLen samples, windows it with the window read backwards and
 * overlap-adds it. Each call moves one hop of frameSize samples. Use one
 * state for each analysed signal and one for each synthesised signal.
 * With the built-in windows, analysis followed by synthesis gives the input
 * back delayed by windowLen - frameSize samples at unit gain, plus the
 * prototypes' time-aliased copies at multiples of N: a signal-to-error
 * ratio of 16.1 dB for (5, 24, 128) and 24.2 dB for (6, 44, 256), both
 * twins (tested). Their sub-band aliasing at these hops also bounds a
 * per-band echo canceller (about 17-25 dB of echo-return-loss enhancement
 * on the G.168 hybrids); a caller's prototype at hop N/2 reaches 27-40 dB
 * (examples/subband_echo_canceller.c; tools/echo/ on all eight).
 *
 * The real transform: orders 1..13 (N = 2..8192; order 13 gives 4097
 * sub-bands, the sub-band filters' limit); forward unscaled, inverse
 * divided by N; radix-2 complex transform of N/2 points with a packing
 * step, tables built by Init inside the state. Float: single precision.
 * Fixed point: 32-bit data, Q30 twiddles, 64-bit products rounded to
 * nearest, block floating point chosen per call from the sum of the input
 * magnitudes (no overflow is possible); outputs rounded to nearest and
 * saturated (32-bit bins, 16-bit inverse values). Error against an exact
 * DFT (tested for orders 1..13): float forward at most
 * 2^-24*(order+1)*sum|u| per bin component, float inverse at most
 * 2^-24*(order+1)*2*sum|X|/N per sample; fixed forward at most
 * 2^max(0,-s) + 2^-24*sum|u|/2^s units, fixed inverse at most
 * 2^max(0,-s) + 2^-20*(2*sum|X|/N)/2^s units (s the scale factor).
 *
 * Blocks: the state, init and work buffers may have any alignment; every
 * function works from the first 16-byte boundary at or after the pointer
 * (the reported sizes include 16 bytes for this). The state holds pointers
 * into itself: it must not be moved or copied after Init.
 *
 * Sizes (bytes): fixed-point state = tables + 2*roundup16(2*windowLen) +
 * 48 + 16; float state = 8*windowLen + 40 + tables + 16, with tables =
 * roundup16(8*(N/2-1) + 8*(N/4+1) + N) (twiddles of every butterfly stage,
 * packing twiddles, bit-reversal indices); init buffer = 8*(N/4+1) + 16
 * from order 5 on (the quarter-wave cosine table), 0 below; work buffer =
 * roundup16(4*N) + 16 (the transform runs in place in the folded block).
 */

/* Sizes of the fixed-point filter bank's blocks for a transform order and a
 * window length (see the sizes above).
 * Checks in order: order < 1 or windowLen < 1: vspStsBadArgErr; any output
 * pointer null: vspStsNullPtrErr; windowLen not a multiple of 2^order, order
 * above 13 (outside the transform's range), or a state size above INT_MAX:
 * vspStsBadArgErr. Nothing is written on failure. */
VSPS_FN(VspStatus, legacy90vspsSubbandProcessGetSize_16s, (int order, int windowLen, int* stateSize, int* initBufSize, int* workBufSize), (order, windowLen, stateSize, initBufSize, workBufSize))

/* As legacy90vspsSubbandProcessGetSize_16s for the float filter bank. */
VSPS_FN(VspStatus, legacy90vspsSubbandProcessGetSize_32f, (int order, int windowLen, int* stateSize, int* initBufSize, int* workBufSize), (order, windowLen, stateSize, initBufSize, workBufSize))

/* Formats a fixed-point filter-bank state (VspsSubbandProcessState_16s) in
 * the caller's block: copies the window (Q13, windowLen values), builds the
 * transform tables (using initBuffer from order 5 on), stores the sizes and
 * zeroes the delay line. A null window selects the built-in prototype
 * window, accepted only for (order, frameSize, windowLen) = (5, 24, 128) or
 * (6, 44, 256): the float window of legacy90vspsSubbandProcessInit_32f in
 * Q13, each value truncated toward zero (peaks 7627 and 7739).
 * Checks in order: order < 1, frameSize < 1, frameSize > 2^order or
 * windowLen < 1: vspStsBadArgErr; state null: vspStsNullPtrErr; windowLen not
 * a multiple of 2^order: vspStsBadArgErr; null window with another
 * configuration: vspStsBadArgErr; order above 13 (the transform's range, for
 * which no block size exists): vspStsErr with nothing written; a null
 * initBuffer from order 5 on: vspStsErr, returned after the window has been
 * copied into the block (the rest of the block is not written). The init
 * buffer is not checked otherwise and is only needed during this call. */
VSPS_FN(VspStatus, legacy90vspsSubbandProcessInit_16s, (Vsp8u* state, int order, int frameSize, int windowLen, const Vsp16s* window, Vsp8u* initBuffer), (state, order, frameSize, windowLen, window, initBuffer))

/* As legacy90vspsSubbandProcessInit_16s for the float filter bank
 * (VspsSubbandProcessState_32f, window in single precision). The built-in
 * windows are symmetric, peak at the middle (0.9311249 for 128, 0.9447229
 * for 256) and sum to about 27.1875 and 50.3192. */
VSPS_FN(VspStatus, legacy90vspsSubbandProcessInit_32f, (Vsp8u* state, int order, int frameSize, int windowLen, const Vsp32f* window, Vsp8u* initBuffer), (state, order, frameSize, windowLen, window, initBuffer))

/* Analysis of one frame: the delay line d (L = windowLen) moves left by
 * H = frameSize and the H source samples (Q0) are appended; the block is
 * windowed (window read forward) and folded to N:
 *   u[j] = sat16((d[j]*w[j] + 4096) >> 13), then for each further i = j + bN
 *   u[j] = sat16(u[j] + ((d[i]*w[i] + 4096) >> 13))
 * (every product rounded to Q0 and the sum saturated after every term; a
 * full-scale input saturates inside the fold), and transformed:
 * destination[k] = DFT(u)[k] / 2^scaleFactor, k = 0..N/2, rounded to
 * nearest and saturated to 32 bits. scaleFactor is any int (negative values
 * scale up).
 * Checks: source, destination, state or workBuffer null: vspStsNullPtrErr; a
 * state whose header Init did not write (sizes out of range):
 * vspStsErr, before anything is written. The transform itself cannot
 * fail. */
VSPS_FN(VspStatus, legacy90vspsSubbandAnalysis_16s32sc_Sfs, (const Vsp16s* source, Vsp32sc* destination, VspsSubbandProcessState_16s* state, int scaleFactor, Vsp8u* workBuffer), (source, destination, state, scaleFactor, workBuffer))

/* Float analysis of one frame: as legacy90vspsSubbandAnalysis_16s32sc_Sfs
 * with u[j] = d[j]*w[j] + d[j+N]*w[j+N] + ... in single precision, in
 * increasing i, and destination = DFT(u) unscaled. Same checks. */
VSPS_FN(VspStatus, legacy90vspsSubbandAnalysis_32f32fc, (const Vsp32f* source, Vsp32fc* destination, VspsSubbandProcessState_32f* state, Vsp8u* workBuffer), (source, destination, state, workBuffer))

/* Synthesis of one frame: v = IDFT(source)/N/2^scaleFactor (N real values;
 * the imaginary parts of bins 0 and N/2 are not read), rounded to nearest
 * and saturated to 16 bits; the overlap-add line moves left by H and its
 * last H values become 0; for k = 0..L-1
 *   d[k] = sat16(d[k] + ((v[k mod N]*w[L-1-k] + 4096) >> 13))
 * (the window read backwards: the deliberate mirror of the analysis, equal
 * for symmetric windows); destination = d[0..H-1]. The transform runs first,
 * so nothing in the state changes before it. Checks as the analysis. */
VSPS_FN(VspStatus, legacy90vspsSubbandSynthesis_32sc16s_Sfs, (const Vsp32sc* source, Vsp16s* destination, VspsSubbandProcessState_16s* state, int scaleFactor, Vsp8u* workBuffer), (source, destination, state, scaleFactor, workBuffer))

/* Float synthesis of one frame: v = IDFT(source)/N in single precision,
 * d[k] = d[k] + v[k mod N]*w[L-1-k]; destination = d[0..H-1]. Checks as the
 * analysis. */
VSPS_FN(VspStatus, legacy90vspsSubbandSynthesis_32fc32f, (const Vsp32fc* source, Vsp32f* destination, VspsSubbandProcessState_32f* state, Vsp8u* workBuffer), (source, destination, state, workBuffer))

/* ---- Full-band adaptive filters -----------------------------------------
 * reference points at the first sample of the block; the caller keeps the
 * tapLen (or tapLen-1) history samples contiguous in front of it. h[0]
 * weights the newest sample. */

/* Echo estimate and error: for n = 0..len-1, y = sum over k = 0..tapLen-1 of
 * coeffs[k]*reference[n-k] (single precision, increasing k, from 0);
 * error[n] = nearEnd[n] - y. Reads reference[-(tapLen-1) .. len-1].
 * Checks: reference, nearEnd, error or coeffs null: vspStsNullPtrErr; len < 1
 * or tapLen < 1: vspStsBadArgErr. */
VSPS_FN(VspStatus, legacy90vspsFIR_EC_32f, (const Vsp32f* reference, const Vsp32f* nearEnd, Vsp32f* error, int len, const Vsp32f* coeffs, int tapLen), (reference, nearEnd, error, len, coeffs, tapLen))

/* Fixed point, coefficients Q15, samples Q0: y = sat32(y + ((x[n-k]*h[k] +
 * 16384) >> 15)) per tap in increasing k (each product rounded by itself,
 * the sum saturated after every term); error[n] = sat16(nearEnd[n] - y).
 * Checks as legacy90vspsFIR_EC_32f. */
VSPS_FN(VspStatus, legacy90vspsFIR_EC_16s, (const Vsp16s* reference, const Vsp16s* nearEnd, Vsp16s* error, int len, const Vsp16s* coeffs, int tapLen), (reference, nearEnd, error, len, coeffs, tapLen))

/* Least-mean-squares FIR whose update lags one sample (normalise the step
 * yourself: step[n] is used as given). c = *carriedError; for n = 0..len-1:
 * for k = 0..tapLen-1: h[k] = h[k] + c*x[n-1-k], y = y + x[n-k]*h[k] (y from
 * 0, the just-updated h[k]); e = nearEnd[n] - y; error[n] = e; c = e*step[n];
 * all in single precision in this order. Afterwards *carriedError = c (zero
 * it before the first call). Reads reference[-tapLen .. len-1].
 * Checks: any of the six pointers null: vspStsNullPtrErr; len < 1 or
 * tapLen < 1: vspStsBadArgErr. Nothing is written on failure. */
VSPS_FN(VspStatus, legacy90vspsNLMS_EC_32f, (const Vsp32f* reference, const Vsp32f* nearEnd, const Vsp32f* step, Vsp32f* error, int len, Vsp32f* coeffs, int tapLen, Vsp32f* carriedError), (reference, nearEnd, step, error, len, coeffs, tapLen, carriedError))

/* Fixed point (coefficients Q15; step[n] a 32-bit value with c = e*step
 * in Q11 units), in the order of legacy90vspsNLMS_EC_32f:
 *   h[k] = sat16(h[k] + ((x[n-1-k]*c + 4096) >> 13));
 *   y = sat32(y + ((h[k]*x[n-k] + 16384) >> 15));
 *   e = sat16(nearEnd[n] - y); c = (e*step[n] + 1024) >> 11.
 * c starts as the 16-bit *carriedError; inside a call it is not limited to
 * 16 bits, and it is saturated to 16 bits only when written back.
 * Decision: the products x*c and e*step, with their rounding constants,
 * are evaluated in 32-bit two's-complement arithmetic with wrap-around
 * ("in 32-bit arithmetic"): with a large step the carried value can exceed
 * 16 bits and x*c then wraps rather than being taken in 64 bits. Keep
 * |e*step| below 2^31 and |c| below 2^16 (steps below 2^15) when the wrap
 * must never happen. Splitting a block into two calls gives the same
 * result while c stays within 16 bits. Checks as legacy90vspsNLMS_EC_32f. */
VSPS_FN(VspStatus, legacy90vspsNLMS_EC_16s, (const Vsp16s* reference, const Vsp16s* nearEnd, const Vsp32s* step, Vsp16s* error, int len, Vsp16s* coeffs, int tapLen, Vsp16s* carriedError), (reference, nearEnd, step, error, len, coeffs, tapLen, carriedError))

/* ---- Sub-band adaptive filters -------------------------------------------
 * Frames of numSubbands complex values; inputFrames[m] is the reference's
 * analysis frame m frames ago (0 the newest), coeffFrames[m] its
 * coefficients. Entries of the pointer arrays are not checked for null.
 * Limits: numSubbands 1..4097 (vspStsFIRLenErr outside), numSegments 1..255
 * (vspStsRangeErr outside). */

/* Echo estimate per sub-band: output[k] = sum over m of
 * inputFrames[m][k]*coeffFrames[m][k] (plain complex product, no
 * conjugation): re = re + (xr*hr - xi*hi), im = im + (xr*hi + xi*hr) in
 * single precision, increasing m, from 0.
 * Checks in order: any pointer null: vspStsNullPtrErr; numSubbands:
 * vspStsFIRLenErr; numSegments: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsFIRSubband_EC_32fc, (const Vsp32fc* const* inputFrames, const Vsp32fc* const* coeffFrames, Vsp32fc* output, int numSegments, int numSubbands), (inputFrames, coeffFrames, output, numSegments, numSubbands))

/* Integer echo estimate: 64-bit products, the two terms of each product
 * combined with 64-bit saturation, the sums saturated at the 64-bit limits
 * after every addition; then scaled: scaleFactor s > 0 divides by 2^s
 * rounding toward zero (deliberately: s = 1 maps -3 to -1), s < 0 multiplies
 * by 2^-s with saturation; the result is saturated to 32 bits.
 * Checks as legacy90vspsFIRSubband_EC_32fc, then scaleFactor outside
 * -31..31: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsFIRSubband_EC_32sc_Sfs, (const Vsp32sc* const* inputFrames, const Vsp32sc* const* coeffFrames, Vsp32sc* output, int numSegments, int numSubbands, int scaleFactor), (inputFrames, coeffFrames, output, numSegments, numSubbands, scaleFactor))

/* Economical integer echo estimate of sub-bands firstSubband..numSubbands-1
 * (the output below firstSubband is not written): plain 64-bit sums of the
 * 64-bit products with wrap-around and no saturation, an arithmetic right
 * shift by scaleFactor (toward minus infinity), and the low 32 bits stored
 * (deliberately without saturation). firstSubband = numSubbands is a
 * success that writes nothing.
 * Checks in order: any pointer null: vspStsNullPtrErr; numSegments outside
 * 1..255, firstSubband < 0 or firstSubband > numSubbands: vspStsRangeErr;
 * numSubbands outside 1..4097: vspStsFIRLenErr; scaleFactor outside 0..31:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsFIRSubbandLow_EC_32sc_Sfs, (const Vsp32sc* const* inputFrames, const Vsp32sc* const* coeffFrames, int numSegments, Vsp32sc* output, int firstSubband, int numSubbands, int scaleFactor), (inputFrames, coeffFrames, numSegments, output, firstSubband, numSubbands, scaleFactor))

/* Normalised-LMS update, float: for every sub-band k, t = step[k]*E[k] in
 * double precision (tr = mu*er, ti = mu*ei); for every segment m,
 * H_m[k] = (float)((double)H_m[k] + (tr*xr + ti*xi)) and likewise
 * im = ti*xr - tr*xi, with x = inputFrames[m][k] (H += mu E conj(X)).
 * Checks in order: any pointer null: vspStsNullPtrErr; numSubbands:
 * vspStsFIRLenErr; numSegments: vspStsRangeErr; any step[k] < 0 (checked
 * over all sub-bands before any coefficient changes; -0.0 and NaN are not
 * negative): vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsFIRSubbandCoeffUpdate_EC_32fc_I, (const Vsp64f* step, const Vsp32fc* const* inputFrames, const Vsp32fc* errorFrame, Vsp32fc** coeffFrames, int numSegments, int numSubbands), (step, inputFrames, errorFrame, coeffFrames, numSegments, numSubbands))

/* Normalised-LMS update, integer twin of legacy90vspsFIRSubbandCoeffUpdate
 * _EC_32fc_I. step holds numSubbands pairs (mantissa, exponent) of 32-bit
 * values: the step of sub-band k is mantissa_k * 2^-exponent_k (mantissa
 * Q31-style, 0 .. 2^31-1); the coefficients are in Q(scaleFactor), the
 * format legacy90vspsFIRSubband_EC_32sc_Sfs with the same scale factor
 * expects. For every sub-band k:
 *   t = ((mantissa*E[k] + 2^30) >> 31) per component (64-bit);
 *   for every segment m: D = t*conj(X_m[k]) in 64 bits, the two terms of
 *   each component combined with 64-bit saturation; D shifted by
 *   exponent - scaleFactor - 31 bits (right, arithmetic, for a positive
 *   count; left with 64-bit saturation for a negative one);
 *   H_m[k] = sat32(H_m[k] + D).
 * Checks in order: any pointer null: vspStsNullPtrErr; numSubbands outside
 * 1..4097: vspStsFIRLenErr; numSegments outside 1..255: vspStsRangeErr;
 * scaleFactor outside 0..31: vspStsRangeErr; any mantissa < 0 (checked
 * before any change): vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsFIRSubbandCoeffUpdate_EC_32sc_I, (const Vsp32s* step, const Vsp32sc* const* inputFrames, const Vsp32sc* errorFrame, Vsp32sc** coeffFrames, int numSegments, int numSubbands, int scaleFactor), (step, inputFrames, errorFrame, coeffFrames, numSegments, numSubbands, scaleFactor))

/* The update that goes with legacy90vspsFIRSubbandLow_EC_32sc_Sfs: only
 * sub-bands firstSubband..numSubbands-1 are updated, with the arithmetic of
 * legacy90vspsFIRSubbandCoeffUpdate_EC_32sc_I except that the two terms of
 * t*conj(X) are combined in wrapping 64-bit arithmetic (no 64-bit
 * saturation; the final 32-bit saturation stays). t of sub-band k is stored
 * in workFrame[k] (numSubbands complex values; entries below firstSubband
 * are not written). step: numSubbands (mantissa, exponent) pairs.
 * Checks in order: any of the five pointers null: vspStsNullPtrErr;
 * numSegments outside 1..255, firstSubband < 0 or > numSubbands:
 * vspStsRangeErr; numSubbands outside 1..4097: vspStsFIRLenErr; scaleFactor
 * outside 0..31: vspStsRangeErr. firstSubband = numSubbands: success, nothing
 * done. Steps are not range-checked. */
VSPS_FN(VspStatus, legacy90vspsFIRSubbandLowCoeffUpdate_EC_32sc_I, (const Vsp32sc* const* inputFrames, const Vsp32sc* errorFrame, Vsp32sc** coeffFrames, int numSegments, Vsp32sc* workFrame, const Vsp32s* step, int firstSubband, int numSubbands, int scaleFactor), (inputFrames, errorFrame, coeffFrames, numSegments, workFrame, step, firstSubband, numSubbands, scaleFactor))

/* Affine-projection update of order P = projectionOrder (1..16), float.
 * inputFrames holds numSegments + P - 1 frames (0 the newest): the
 * regressor of frame n-p is x_p = (X_p[k], .., X_{p+L-1}[k]), L =
 * numSegments. errorFrames holds P frames: errorFrames[p] is the error of
 * frame n-p (d - x_p^T h; the a-priori errors of the last P frames are the
 * usual approximation). stepData holds numSubbands pairs (mu_k, delta_k):
 * step and regularisation. Per sub-band, in double precision:
 *   A[p][q] = x_p^T conj(x_q) + delta_k [p == q];  solve A g = e (Cholesky);
 *   H_m[k] = (float)((double)H_m[k] + (mu_k / P) * sum_p g_p conj(X_{p+m}[k])).
 * The step is scaled by 1/P. P = 1 is the normalised LMS update
 * mu E conj(X) / (|x|^2 + delta). A sub-band whose matrix is not positive
 * definite (zero input with delta = 0) is left unchanged.
 * Checks in order: any pointer null: vspStsNullPtrErr; numSubbands outside
 * 1..4097: vspStsFIRLenErr; numSegments outside 1..255 or projectionOrder
 * outside 1..16: vspStsRangeErr; any mu_k or delta_k negative or NaN
 * (checked before any change): vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsFIRSubbandAPCoeffUpdate_EC_32fc_I, (const Vsp64f* stepData, const Vsp32fc* const* inputFrames, const Vsp32fc* const* errorFrames, Vsp32fc** coeffFrames, int numSegments, int numSubbands, int projectionOrder), (stepData, inputFrames, errorFrames, coeffFrames, numSegments, numSubbands, projectionOrder))

/* ---- 2100 Hz tone detector (G.165 disabling tone) -----------------------
 * A resonator at 2100 Hz, y = c0 x[n] + c1 x[n-2] - c2 y[n-1] - c3 y[n-2]
 * (8000 Hz: 155, -155, 619, 3786 in Q12 / 0.037804753, -0.037804753,
 * 0.15110244, 0.9243905; 16000 Hz: 79, -79, -5455, 3938 / 0.019259274,
 * -0.019259274, -1.3317118, 0.96148145), smoothed energies Ex (input) and
 * Ey (output) with alpha 0.96 (8000 Hz) or 0.92 (16000 Hz) (Q14 15728,
 * 15073), a tone run, a gap run and a reversal count. Limits: minimum run
 * fs*0.413, maximum fs*0.466, gap limit fs/50 samples (3304, 3728, 160 at
 * 8000 Hz). A reversal is counted when the output energy dips below 0.48 Ex
 * after a tone run strictly between the minimum and the maximum; the call
 * in which the count reaches 2 (or more) reports 1.
 *
 * Decision: every dip of the output energy below 0.48 Ex ends the tone run
 * (it restarts from 0), whether the dip counts as a reversal or not. So a
 * reversal is counted when the tone lasted 413..466 ms since the previous
 * dip, and a detector that meets the tone inside a segment (started late,
 * or the tone resuming after a gap) counts the reversals that follow its
 * first dip. (Resetting the run only on counted reversals would let the
 * run span two segments after an uncounted dip and never report such a
 * tone.) It costs nothing on noisy tones: within a segment the output
 * energy stays above 0.48 Ex wherever the tone is present at all (tested:
 * reported at 12 dB signal-to-noise ratio; at 8 dB the 0.8 presence test
 * fails first).
 * Gaps: a gap of low-level noise longer than fs/50 (once the smoothed
 * energies have fallen to the noise's level) resets the run and the
 * reversal count. Digital silence after a tone is no gap in either twin:
 * the two energies decay together (fixed point: the resonator settles into
 * a limit cycle of a few units while Ex reaches 0; float: both energies stop
 * at subnormal values), so the reversal count survives it, however long,
 * and the tone run keeps counting through it, except in the float twin at
 * 16000 Hz, whose resonator rings longer than Ex decays: its output energy
 * exceeds 10000 Ex and the run restarts (the count is kept). When the tone
 * returns, its onset is a dip and restarts the run. From Init (both energies
 * 0) an all-zero input counts as a gap in the fixed-point twin, while the
 * float twin (output energy not above 0.0008 Ex, or not below Ex) resets the
 * tone run and the gap run and keeps the reversal count. The tone run and
 * the reversal count stop at INT32_MAX (a tone, or digital silence after
 * one, of 2^31 samples or more) rather than wrap. */

/* Bytes of a fixed-point detector state: 72. Checks: size null:
 * vspStsNullPtrErr; rate not 8000 or 16000: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsToneDetectGetStateSize_EC_16s, (int rate, int* size), (rate, size))

/* Bytes of a float detector state: 80. Checks as the fixed-point one. */
VSPS_FN(VspStatus, legacy90vspsToneDetectGetStateSize_EC_32f, (int rate, int* size), (rate, size))

/* Formats a fixed-point detector state (VspsToneDetectState_16s) at any
 * alignment: the rate's coefficients and alpha, zero histories, energies
 * and counters, the three limits. Checks: state null: vspStsNullPtrErr;
 * rate not 8000 or 16000: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsToneDetectInit_EC_16s, (Vsp8u* state, int rate), (state, rate))

/* As legacy90vspsToneDetectInit_EC_16s for the float detector
 * (VspsToneDetectState_32f). */
VSPS_FN(VspStatus, legacy90vspsToneDetectInit_EC_32f, (Vsp8u* state, int rate), (state, rate))

/* Runs the fixed-point detector over len samples (Q0) continuing from the
 * state; *result = 1 when a reversal was counted in this call with the
 * count at 2 or more, else 0. Per sample:
 *   y = sat16((c0*x + c1*x[n-2] - c2*y[n-1] - c3*y[n-2] + 2048) >> 12);
 *   Ex = (x*x*(16384-alpha) + Ex*alpha) >> 14, Ey likewise (64-bit);
 *   Ey > (Ex*13107) >> 14: tone run + 1, gap run = 0;
 *   else: if Ey < (Ex*7864) >> 14 and minimum < tone run < maximum: count
 *   a reversal and reset the tone run; then gap run + 1, and above the
 *   limit the tone run, gap run and count are reset (thresholds formed in
 *   64 bits). Checks: signal, result or state null: vspStsNullPtrErr;
 *   len < 1: vspStsBadArgErr. */
VSPS_FN(VspStatus, legacy90vspsToneDetect_EC_16s, (const Vsp16s* signal, int len, int* result, VspsToneDetectState_16s* state), (signal, len, result, state))

/* The float detector: y = ((c0*x + c1*x[n-2]) - c2*y[n-1]) - c3*y[n-2];
 * Ex = alpha*Ex + (1-alpha)*(x*x), Ey likewise, single precision;
 * Ey > 0.8 Ex and 10000 Ex > Ey: gap run = 0, tone run + 1; else if
 * Ey > 0.0008 Ex and Ex > Ey: the reversal and gap steps of the fixed-point
 * detector (0.48); else gap run = 0 and tone run = 0, the count kept.
 * Checks as legacy90vspsToneDetect_EC_16s. */
VSPS_FN(VspStatus, legacy90vspsToneDetect_EC_32f, (const Vsp32f* signal, int len, int* result, VspsToneDetectState_32f* state), (signal, len, result, state))

/* clang-format on */

#include "vsps/g722.h"
#include "vsps/gsmfr.h"
