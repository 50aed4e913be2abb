/*
 * vsps/g729.h - the list of exports of the G.729 family.
 *
 * One entry per export, VSPS_FN(return type, name, (parameters), (argument
 * names)); the comment above an entry is its public documentation. Included
 * by vsps_functions.h; see there for the entry format. No include guard.
 */
/* clang-format off */

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
 * Pointer order: the library's own, that of legacy90vspsLSPQuant_G729_16s
 * (LSP, memory, quantised LSP, codes) with the residual inserted before the
 * codes; the Annex E reference's Qua_lspe takes them in another order (LSP,
 * quantised LSP, codes, memory, residual). Returns vspStsNoErr (clamping is
 * not reported). Checks: any pointer null, in argument order:
 * vspStsNullPtrErr. */
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
 * Pointer order: the 16-bit twin's (the library's own, not the floating-
 * point reference's). Checks: any pointer null, in argument order:
 * vspStsNullPtrErr. Otherwise vspStsNoErr (clamping is not reported). */
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
 * G.729 codec steps (pitch, codebooks, gains, decoder, post-filters)
 * ====================================================================== */

/* Common to these steps: subframes of 40 samples, LP order 10, LP
 * coefficients Q12 (a[0] = 4096), excitation and speech Q0, pitch gains
 * Q14, code gains Q1, code vectors Q13. Excitation buffers that the
 * adaptive codebook reads are passed from their start: 154 past samples
 * (PIT_MAX + L_INTERPOL) followed by the 40 of the subframe. Arithmetic:
 * bit-exact with the ITU-T G.729 (and Annex A) fixed-point reference. Pitch
 * lags are integer lags 19..144: index 0 of subframe 0 decodes to 19 1/3,
 * index 31 of subframe 1 next to the top to 144 - 1/3 (vspStsRangeErr
 * outside). */

/* Parity bit of the 8-bit pitch index of subframe 0 (Parity_Pitch): 1 +
 * the number of set bits among bits 2..7, modulo 2. The decoder compares it
 * with the received bit; a difference conceals the lag of subframe 0.
 * Checks in order: pDstParity null: vspStsNullPtrErr; index outside 0..255:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsPitchParity_G729_16s, (Vsp16s index, Vsp16s* pDstParity), (index, pDstParity))

/* Pitch-lag decoder with erasure concealment (Dec_lag3 and the old_T0
 * rule of clause 4.4.1). Not erased: subframe 0 decodes the 8-bit index
 * (index < 197: T0 = (index + 2) / 3 + 19, frac = index - 3 T0 + 58; else
 * T0 = index - 112, frac 0); subframe 1 decodes the 5-bit index relative
 * to T0_min = max(T0 - 5, 20) (134 when T0_min + 9 > 143) of the T0 passed
 * in *pSrcDstT0 (the lag of subframe 0); *pSrcDstOldT0 becomes T0.
 * Erased (a bad frame, or for subframe 0 also a parity error): T0 =
 * *pSrcDstOldT0, frac 0, and *pSrcDstOldT0 = min(old + 1, 143). The caller
 * starts old_T0 at 60.
 * Checks in order: pointers null: vspStsNullPtrErr; subframe not 0 or 1,
 * index outside 0..255 (subframe 0) or 0..31 (subframe 1), old T0 outside
 * 19..144, or (subframe 1, not erased) the input T0 outside 19..144:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecodePitchLag_G729_16s, (Vsp16s index, int subframe, int erased, Vsp16s* pSrcDstOldT0, Vsp16s* pSrcDstT0, Vsp16s* pDstFrac), (index, subframe, erased, pSrcDstOldT0, pSrcDstT0, pDstFrac))

/* Adaptive-codebook vector of 1/3 resolution (Pred_lt_3, clause 3.7.1):
 * pSrcDstExc[154 + j] = interpolation of the excitation at delay
 * T0 - frac/3 with the 31-tap filter inter_3l, j = 0..39, written in place;
 * for T0 < 40 the vector reads its own first samples (the standard's
 * recursion). frac is -1, 0 or 1.
 * Checks in order: pSrcDstExc null: vspStsNullPtrErr; T0 outside 19..144
 * or frac outside -1..1: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeAdaptiveVector_G729_16s_I, (Vsp16s T0, Vsp16s frac, Vsp16s* pSrcDstExc), (T0, frac, pSrcDstExc))

/* Algebraic code vector (Decod_ACELP, clause 4.1.4) of the 13-bit position
 * index and 4-bit sign index: four pulses of +8191 / -8192 (Q13) on the
 * tracks 5k, 5k+1, 5k+2 and 5k+3 or 5k+4; 40 samples, zero elsewhere.
 * Checks in order: pDstCode null: vspStsNullPtrErr; index outside 0..8191 or
 * signs outside 0..15: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeFixedCodebook_G729_16s, (Vsp16s index, Vsp16s signs, Vsp16s* pDstCode), (index, signs, pDstCode))

/* Pitch sharpening (clause 3.8) of a 40-sample vector in place:
 * x[i] += mult(x[i - T0], 2 sharp) for i = T0..39 in ascending order (so a
 * sharpened sample feeds a later one when T0 < 20), sharp = prevGainPitch
 * clamped to 3277..13017 (0.2..0.8, Q14). Serves the code vector (encoder
 * and decoder) and the encoder's impulse response. Nothing changes for
 * T0 >= 40.
 * Checks in order: pSrcDst null: vspStsNullPtrErr; T0 outside 19..144:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsPitchSharpening_G729_16s_I, (Vsp16s* pSrcDst, Vsp16s T0, Vsp16s prevGainPitch), (pSrcDst, T0, prevGainPitch))

/* The G.729 reference's random generator: len successive values of
 * seed = extract_l(L_add(L_shr(L_mult(seed, 31821), 1), 13849)) into pDst;
 * the last is left in *pSrcDstSeed. The decoder draws the code indices of
 * erased frames from it (seed 21845 at start; index = value & 0x1fff, then
 * signs = next value & 15), Annex B its comfort noise.
 * Checks in order: pointers null: vspStsNullPtrErr; len < 1: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsRandom_G729_16s, (Vsp16s* pSrcDstSeed, Vsp16s* pDst, int len), (pSrcDstSeed, pDst, len))

/* Gain decoding (Dec_gain, clause 4.1.5) with its MA prediction memory
 * pSrcDstPastQuaEn (4 words, Q10, reset -14336 each). pSrcDstGains holds
 * {gain_pit Q14, gain_code Q1}. Good frame: the 7-bit index selects the two
 * codebook rows, the fixed gain is predicted from the energy of pCode (the
 * sharpened code vector, Q13) and the memory, and the memory is updated.
 * Erased: the previous gains are attenuated (gain_pit * 0.9 capped at 0.9,
 * gain_code * 0.98) and the memory gets its mean minus 4 dB (floored at
 * -14 dB); index and pCode are not read. The decoder starts with gains 0.
 * Checks in order: pointers null: vspStsNullPtrErr; index outside 0..127 on
 * a good frame: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeGain_G729_16s, (int index, int erased, const Vsp16s* pCode, Vsp16s* pSrcDstPastQuaEn, Vsp16s* pSrcDstGains), (index, erased, pCode, pSrcDstPastQuaEn, pSrcDstGains))

/* Total excitation (clause 3.10): exc[i] = round(L_shl(exc[i] gainPitch +
 * code[i] gainCode, 1)) with exc the adaptive vector in place (Q0), gainPitch
 * Q14, code Q13, gainCode Q1.
 * Checks in order: pointers null: vspStsNullPtrErr; len < 1: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsBuildExcitation_G729_16s_I, (const Vsp16s* pCode, Vsp16s gainPitch, Vsp16s gainCode, Vsp16s* pSrcDstExc, int len), (pCode, gainPitch, gainCode, pSrcDstExc, len))

/* Decoder synthesis of a subframe with overflow rescaling (clause 4.1.6):
 * the last 40 samples of pSrcDstExc (excLen words) go through 1/A(z)
 * (pLpc Q12, memory pSrcDstMem = the 10 previous outputs). If an operator
 * saturates, the whole excitation buffer is shifted right by 2, the filter
 * is run again from the same memory and vspStsOverflow (a warning) is
 * returned; the memory then holds the last 10 outputs. The caller passes
 * its excitation history up to the end of the subframe.
 * Checks in order: pointers null: vspStsNullPtrErr; excLen < 40:
 * vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeSynthesis_G729_16s, (const Vsp16s* pLpc, Vsp16s* pSrcDstExc, int excLen, Vsp16s* pDstSyn, Vsp16s* pSrcDstMem), (pLpc, pSrcDstExc, excLen, pDstSyn, pSrcDstMem))

/* Size in bytes of the main-body post-filter state (its residual history,
 * short-term filter memory, synthesis history and AGC gain): the standard
 * keeps these across subframes and they are of no use to the caller.
 * Checks: pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsPostFilterGetStateSize_G729, (int* pSize), (pSize))

/* Formats a main-body post-filter state (histories 0, AGC gain 1.0). Any
 * alignment. Checks: pState null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsPostFilterInit_G729, (Vsp8u* pState), (pState))

/* Main-body post-filter of one subframe (clause 4.2): residual through
 * A(z/0.55), long-term filter of 1/8 resolution around T0 (the integer
 * lag of subframe 0 of the frame, for both subframes), short-term
 * 1/A(z/0.70) with gain normalisation, tilt compensation and AGC.
 * pSrc = 40 synthesised samples, pLpc = the subframe's decoded A(z), vad 1
 * (speech) or 0 (Annex B noise frame: no long-term filter). *pDstVoicing
 * receives the chosen long-term delay (0 when off); the main decoder treats
 * a frame as voiced for concealment when a subframe's value is nonzero.
 * Checks in order: pointers null: vspStsNullPtrErr; T0 outside 19..143 or
 * vad not 0 or 1: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsPostFilter_G729_16s, (const Vsp16s* pLpc, const Vsp16s* pSrc, Vsp16s* pDst, Vsp16s T0, int vad, Vsp16s* pDstVoicing, Vsp8u* pState), (pLpc, pSrc, pDst, T0, vad, pDstVoicing, pState))

/* Size in bytes of the Annex A post-filter state (residual histories,
 * filter and pre-emphasis memories, synthesis history, AGC gain).
 * Checks: pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsPostFilterGetStateSize_G729A, (int* pSize), (pSize))

/* Formats an Annex A post-filter state (histories 0, AGC gain 1.0 in Q12).
 * Any alignment. Checks: pState null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsPostFilterInit_G729A, (Vsp8u* pState), (pState))

/* Annex A post-filter of one subframe (clause A.4.2): residual through
 * A(z/0.55), integer-delay harmonic filter searched over T0-3..T0+3 (T0 the
 * subframe's own decoded lag), tilt pre-emphasis from the response of
 * A(z/0.55)/A(z/0.70), 1/A(z/0.70) and AGC. vad 0 (Annex B noise frame)
 * skips the harmonic filter.
 * Checks in order: pointers null: vspStsNullPtrErr; T0 outside 19..144 or
 * vad not 0 or 1: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsPostFilter_G729A_16s, (const Vsp16s* pLpc, const Vsp16s* pSrc, Vsp16s* pDst, Vsp16s T0, int vad, Vsp8u* pState), (pLpc, pSrc, pDst, T0, vad, pState))

/* Adaptive weighting factors of the main-body encoder (clause 3.3,
 * perc_var) for both subframes: pDstGamma = {gamma1 sf0, gamma2 sf0, gamma1
 * sf1, gamma2 sf1} (Q15) from the first two reflection coefficients pRc
 * (Q15) and the normalised LSFs (Q15, legacy90vspsLSPToLSF_Norm_G729_16s) of
 * the interpolated (pLsfInt) and current (pLsfNew) LSP. pSrcDstMem = {smooth
 * flag, the two previous log-area ratios (Q11)}, a caller array reset to
 * {1, 0, 0}: the standard's state is three words, kept by the caller like
 * the other codec memories.
 * Checks in order: pointers null: vspStsNullPtrErr; smooth flag not 0 or 1:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsWeightingGamma_G729_16s, (const Vsp16s* pRc, const Vsp16s* pLsfInt, const Vsp16s* pLsfNew, Vsp16s* pSrcDstMem, Vsp16s* pDstGamma), (pRc, pLsfInt, pLsfNew, pSrcDstMem, pDstGamma))

/* Weighted LP filter A(z/gamma) (Weight_Az): pDst[i] = round(pLpc[i]
 * gamma^i), the powers of gamma (Q15) by repeated rounding; 11 Q12 words.
 * Checks: pointers null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsWeightLPC_G729_16s, (const Vsp16s* pLpc, Vsp16s gamma, Vsp16s* pDst), (pLpc, gamma, pDst))

/* Annex A weighting (clause A.3.3): pDstAp = A(z/0.75) of the quantised
 * filter, and pDstAp1 = the same times (1 - 0.7 z^-1), truncated to 11 words
 * (Ap1[0] = 4096, Ap1[i] = Ap[i] - mult(Ap[i-1], 22938)): the all-pole
 * filter of the weighted speech for the open-loop pitch.
 * Checks: pointers null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsWeightLPC_G729A_16s, (const Vsp16s* pLpc, Vsp16s* pDstAp, Vsp16s* pDstAp1), (pLpc, pDstAp, pDstAp1))

/* Open-loop pitch lag of the main body (clause 3.4, Pitch_ol) on the
 * weighted speech pSrc: 143 past samples then the 80 of the frame. The
 * signal is scaled by 8, 1 or 1/8 from its energy; the best normalised
 * correlation of each of the ranges 80..143, 40..79, 20..39 (ties to the
 * smaller lag) is kept, a shorter lag winning when its value exceeds 0.85
 * times the longer one's.
 * Checks: pointers null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsOpenLoopPitch_G729_16s, (const Vsp16s* pSrc, Vsp16s* pDstLag), (pSrc, pDstLag))

/* Annex A open-loop pitch lag (Pitch_ol_fast): correlations on every second
 * sample, three ranges searched from the smallest lag (the third on even
 * lags, then the two neighbours of its winner), a bonus for multiples of a
 * shorter lag. Same input layout as the main-body step.
 * Checks: pointers null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsOpenLoopPitch_G729A_16s, (const Vsp16s* pSrc, Vsp16s* pDstLag), (pSrc, pDstLag))

/* Closed-loop fractional pitch of the main body (clause 3.7, Pitch_fr3).
 * pExc = 154 past excitation samples followed by the LP residual of the
 * subframe (which the short lags read); pTarget = the target xn, pImp =
 * the impulse response h (Q12), both 40. The search range comes from
 * refLag: subframe 0 its open-loop lag (T_op - 3 .. T_op + 3 within
 * 20..143), subframe 1 the integer lag of subframe 0 (T - 5 .. T + 4 within
 * 20..143). Normalised correlations, integer maximum (ties to the larger
 * lag), then 1/3 fractions by interpolation (none in subframe 0 above 84).
 * T0 may leave the range by one when the fraction wraps.
 * Checks in order: pointers null: vspStsNullPtrErr; subframe not 0 or 1 or
 * refLag outside 19..144: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsClosedLoopPitch_G729_16s, (const Vsp16s* pExc, const Vsp16s* pTarget, const Vsp16s* pImp, Vsp16s refLag, int subframe, Vsp16s* pDstT0, Vsp16s* pDstFrac), (pExc, pTarget, pImp, refLag, subframe, pDstT0, pDstFrac))

/* Annex A closed-loop pitch (Pitch_fr3_fast): integer lag maximising the
 * correlation of the backward-filtered target with the past excitation,
 * then the fractions 0, -1, +1 around it (not in subframe 0 above 84),
 * each tested on the interpolated vector. The winning adaptive-codebook
 * vector is left in pSrcDstExc[154..193] (over the residual there). Same
 * ranges and checks as the main-body step. */
VSPS_FN(VspStatus, legacy90vspsClosedLoopPitch_G729A_16s_I, (Vsp16s* pSrcDstExc, const Vsp16s* pTarget, const Vsp16s* pImp, Vsp16s refLag, int subframe, Vsp16s* pDstT0, Vsp16s* pDstFrac), (pSrcDstExc, pTarget, pImp, refLag, subframe, pDstT0, pDstFrac))

/* Pitch index (Enc_lag3): subframe 0: 3 T0 - 58 + frac for T0 <= 85, else
 * T0 + 112 (8 bits); subframe 1: 3 (T0 - T0_min) + 2 + frac (5 bits), T0_min
 * from refLag (the integer lag of subframe 0) as in the closed-loop search.
 * Checks in order: pDstIndex null: vspStsNullPtrErr; subframe not 0 or 1,
 * frac outside -1..1, T0 outside 19..144, or (subframe 1) refLag outside
 * 19..144: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsEncodePitchLag_G729_16s, (Vsp16s T0, Vsp16s frac, Vsp16s refLag, int subframe, Vsp16s* pDstIndex), (T0, frac, refLag, subframe, pDstIndex))

/* Pitch gain (clause 3.7.3, G_pitch) of the filtered adaptive vector
 * pFiltAdapt (y1) against the target: <x,y>/<y,y> in Q14, bounded to 0..1.2,
 * and to 0.95 when taming is nonzero (legacy90vspsTamingTest_G729_32s).
 * pDstCoeff = {<y,y> mantissa, 15 - its exponent, <x,y> mantissa, 15 - its
 * exponent (-15 when <x,y> <= 0)} for the gain quantiser; pDstTarget2 = the
 * target minus the gain times y1 (the codebook target).
 * Checks: pointers null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsPitchGain_G729_16s, (const Vsp16s* pTarget, const Vsp16s* pFiltAdapt, int taming, Vsp16s* pDstGain, Vsp16s* pDstCoeff, Vsp16s* pDstTarget2), (pTarget, pFiltAdapt, taming, pDstGain, pDstCoeff, pDstTarget2))

/* Taming test (test_err): *pDstFlag = 1 when the excitation-error estimate
 * pExcErr (4 Vsp32s, Q14, a caller array reset to 0x4000 each) of the zones
 * the lag T0 + frac/3 reaches exceeds 60000, else 0.
 * Checks in order: pointers null: vspStsNullPtrErr; T0 outside 19..144,
 * frac outside -1..1, or the lag 144 1/3 (T0 144 with frac 1):
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsTamingTest_G729_32s, (Vsp16s T0, Vsp16s frac, const Vsp32s* pExcErr, int* pDstFlag), (T0, frac, pExcErr, pDstFlag))

/* Taming update (update_exc_err) after a subframe with the quantised pitch
 * gain and integer lag T0: the worst error over the zones T0 reaches (two
 * steps of the newest when T0 < 40), propagated through the gain, becomes
 * the newest of the four entries.
 * Checks in order: pointer null: vspStsNullPtrErr; T0 outside 19..144:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsTamingUpdate_G729_32s_I, (Vsp16s gainPitch, Vsp16s T0, Vsp32s* pSrcDstExcErr), (gainPitch, T0, pSrcDstExcErr))

/* Main-body algebraic codebook search (clause 3.8, D4i40_17): the impulse
 * response pImp is sharpened with prevGainPitch (the previous subframe's
 * quantised pitch gain, clamped to 0.2..0.8) when T0 < 40, then the
 * focused depth-first search over the four tracks with the threshold 0.4
 * and a budget of 75 triples plus the carry-over *pSrcDstExtra (set to 30
 * in subframe 0; the budget left is written back for subframe 1). Outputs:
 * the sharpened code vector (Q13), the filtered code vector y2 (Q12, not
 * sharpened) and pDstIndex = {13-bit positions, 4-bit signs}.
 * Checks in order: pointers null: vspStsNullPtrErr; T0 outside 19..144 or
 * subframe not 0 or 1: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsFixedCodebookSearch_G729_16s, (const Vsp16s* pTarget2, const Vsp16s* pImp, Vsp16s T0, Vsp16s prevGainPitch, int subframe, Vsp16s* pSrcDstExtra, Vsp16s* pDstCode, Vsp16s* pDstFiltCode, Vsp16s* pDstIndex), (pTarget2, pImp, T0, prevGainPitch, subframe, pSrcDstExtra, pDstCode, pDstFiltCode, pDstIndex))

/* Annex A algebraic codebook search (clause A.3.8, D4i40_17_fast): the
 * depth-first tree search over pulse pairs (320 combinations, no budget),
 * with the same sharpening and outputs as the main-body search.
 * Checks in order: pointers null: vspStsNullPtrErr; T0 outside 19..144:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsFixedCodebookSearch_G729A_16s, (const Vsp16s* pTarget2, const Vsp16s* pImp, Vsp16s T0, Vsp16s prevGainPitch, Vsp16s* pDstCode, Vsp16s* pDstFiltCode, Vsp16s* pDstIndex), (pTarget2, pImp, T0, prevGainPitch, pDstCode, pDstFiltCode, pDstIndex))

/* Gain quantisation (clause 3.9, Qua_gain): from the sharpened code vector
 * (Q13), the target, y1 and y2 and the pitch-gain coefficients of
 * legacy90vspsPitchGain_G729_16s, the optimum gains, the pre-selection of 4
 * + 8 candidates of the two conjugate codebooks and the weighted-error
 * search (with taming: pitch gains >= 0.9999 skipped, the optimum clipped to
 * 0.94). pDstGains = {gain_pit Q14, gain_code Q1}, *pDstIndex = GA << 4 |
 * GB; the MA memory pSrcDstPastQuaEn (4 words Q10) is updated. Decision: a
 * non-positive determinant of y1, y2 (the reference divides by it
 * unguarded) is replaced by the smallest normalised one.
 * Checks in order: pointers null: vspStsNullPtrErr; an exponent word of
 * pCoeff (pCoeff[1], pCoeff[3]) outside -64..64: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsGainQuant_G729_16s, (const Vsp16s* pCode, const Vsp16s* pTarget, const Vsp16s* pFiltAdapt, const Vsp16s* pFiltCode, const Vsp16s* pCoeff, int taming, Vsp16s* pSrcDstPastQuaEn, Vsp16s* pDstGains, Vsp16s* pDstIndex), (pCode, pTarget, pFiltAdapt, pFiltCode, pCoeff, taming, pSrcDstPastQuaEn, pDstGains, pDstIndex))

/* Main-body encoder memory update after a subframe (clause 3.10): the
 * excitation pExc (40) through 1/A(z) with pSrcDstMemSyn (updated),
 * pDstMemErr = the last 10 of speech minus synthesis (pSpeech = the 40
 * pre-processed samples), pDstMemW0 = the last 10 of the target minus
 * y1 gain_pit minus y2 gain_code (the weighted error).
 * Checks: pointers null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsEncoderMemoryUpdate_G729_16s, (const Vsp16s* pLpc, const Vsp16s* pExc, const Vsp16s* pSpeech, const Vsp16s* pTarget, const Vsp16s* pFiltAdapt, const Vsp16s* pFiltCode, Vsp16s gainPitch, Vsp16s gainCode, Vsp16s* pSrcDstMemSyn, Vsp16s* pDstMemErr, Vsp16s* pDstMemW0), (pLpc, pExc, pSpeech, pTarget, pFiltAdapt, pFiltCode, gainPitch, gainCode, pSrcDstMemSyn, pDstMemErr, pDstMemW0))

/* Annex A encoder memory update: pDstMemW0 (10) = the last 10 of the
 * target minus y1 gain_pit minus y2 gain_code.
 * Checks: pointers null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsEncoderMemoryUpdate_G729A_16s, (const Vsp16s* pTarget, const Vsp16s* pFiltAdapt, const Vsp16s* pFiltCode, Vsp16s gainPitch, Vsp16s gainCode, Vsp16s* pDstMemW0), (pTarget, pFiltAdapt, pFiltCode, gainPitch, gainCode, pDstMemW0))

/* ======================================================================
 * G.729 Annex B: comfort noise
 * ====================================================================== */

/* SID LSF decoding (clause B.4.2, sid_lsfq_decode): pIndex = {MA switch
 * (0..1), first-stage index (0..31), second-stage index (0..15)}. The
 * residual of the SID sub-codebooks (one rearrangement pass, gap 10) is
 * composed with the noise MA predictor (set 0, or 0.6 set 0 + 0.4 set 1)
 * and the caller's LSF MA memory pSrcDstPrevFreq (the speech coder's, 4 x
 * 10, updated), stabilised, and converted to the LSP pDstLsp (Q15).
 * Checks in order: pointers null: vspStsNullPtrErr; an index outside its
 * range: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeSID_G729B_16s, (const Vsp16s* pIndex, Vsp16s* pSrcDstPrevFreq, Vsp16s* pDstLsp), (pIndex, pSrcDstPrevFreq, pDstLsp))

/* SID energy quantisation (Qua_Sidgain): the mean of nb (1 or 2) frame
 * energies pEner[i] 2^pShEner[i] (the encoder's), or for nb = 0 the
 * decoder's saved excitation energy pEner[0] << pShEner[0], scaled, to the
 * 5-bit index *pDstIndex and the quantised energy in dB *pDstEnergyQ.
 * Checks in order: pointers null: vspStsNullPtrErr; nb outside 0..2, or a
 * used pShEner value outside -64..64: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsQuantSidEnergy_G729B_16s, (const Vsp16s* pEner, const Vsp16s* pShEner, int nb, Vsp16s* pDstEnergyQ, Vsp16s* pDstIndex), (pEner, pShEner, nb, pDstEnergyQ, pDstIndex))

/* The comfort-noise gain (Q3 table) of a 5-bit SID energy index.
 * Checks in order: pDstGain null: vspStsNullPtrErr; index outside 0..31:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeSidGain_G729B_16s, (Vsp16s index, Vsp16s* pDstGain), (index, pDstGain))

/* Comfort-noise excitation of one frame (Calc_exc_rand): the gain
 * *pSrcDstCurGain becomes sidGain when `first` is nonzero (the previous
 * frame was speech), else 7/8 of itself plus 1/8 of sidGain; then per
 * subframe a random adaptive vector (lag 40..103, fraction), Gaussian noise
 * and four random pulses whose amplitude makes the energy match the gain,
 * from the generator *pSrcDstSeed (11111 at reset and after every speech
 * frame). pSrcDstExc = 154 past samples, then the 80 written. The encoder
 * passes its taming memory pSrcDstExcErr (4 Vsp32s) to be updated as the
 * standard's encoder does; the decoder passes null.
 * Checks: pSrcDstCurGain, pSrcDstSeed or pSrcDstExc null:
 * vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsComfortNoiseExcitation_G729B_16s, (Vsp16s sidGain, int first, Vsp16s* pSrcDstCurGain, Vsp16s* pSrcDstSeed, Vsp16s* pSrcDstExc, Vsp32s* pSrcDstExcErr), (sidGain, first, pSrcDstCurGain, pSrcDstSeed, pSrcDstExc, pSrcDstExcErr))

/* Energy of a decoded frame's excitation (80 samples), normalised: mantissa
 * *pDstEnergy and shift *pDstShift (16 - normalisation), which the Annex B
 * decoder keeps after every good frame for a lost first SID frame.
 * Checks: pointers null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsExcitationEnergy_G729B_16s, (const Vsp16s* pExc, Vsp16s* pDstEnergy, Vsp16s* pDstShift), (pExc, pDstEnergy, pDstShift))

/* Size in bytes of the Annex B voice-activity detector's state (running
 * background means, minimum tracking, counters, the last two decisions):
 * the standard keeps about 40 words that a caller has no use for.
 * Checks: pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsVADGetStateSize_G729B, (int* pSize), (pSize))

/* Formats a detector state (reset: means 0, minimum 32767, last decisions
 * voice). Any alignment. Checks: pState null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsVADInit_G729B, (Vsp8u* pState), (pState))

/* Voice-activity decision of one frame (clause B.3). pAutoCorr = r[0..12]
 * of the frame (legacy90vspsAutoCorr_NormE_G729_16s32s with 13 values,
 * then legacy90vspsLagWindow_G729_32s_I on r[1..12]), norm = that call's
 * *pNorm, rc = the second reflection coefficient of the frame's Levinson
 * (Q15), pLsf = the normalised LSFs (Q15) of the frame's unquantised LSP,
 * pSpeech = the 240-sample analysis buffer (its zero crossings over
 * samples 120..200). *pDstVad = 1 voice, 0 noise. The frame counter starts
 * at 1 with the first call after Init.
 * Checks in order: pointers null: vspStsNullPtrErr; norm outside -64..64:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsVAD_G729B_16s, (const Vsp32s* pAutoCorr, int norm, Vsp16s rc, const Vsp16s* pLsf, const Vsp16s* pSpeech, int* pDstVad, Vsp8u* pState), (pAutoCorr, norm, rc, pLsf, pSpeech, pDstVad, pState))

/* Size in bytes of the Annex B encoder's DTX state (autocorrelation
 * history, SID energies and filter, comfort-noise gain and generator, the
 * last VAD decisions). Checks: pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDTXGetStateSize_G729B, (int* pSize), (pSize))

/* Formats a DTX state (reset). Any alignment.
 * Checks: pState null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDTXInit_G729B, (Vsp8u* pState), (pState))

/* Per-frame DTX bookkeeping (Update_cng), on every frame after the VAD:
 * pAutoCorr = r[0..10] of the frame before the lag window, norm its
 * exponent (as for the VAD), vad the frame's decision.
 * Checks in order: pointers null: vspStsNullPtrErr; norm outside -64..64 or
 * vad not 0 or 1: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDTXUpdate_G729B, (const Vsp32s* pAutoCorr, int norm, int vad, Vsp8u* pState), (pAutoCorr, norm, vad, pState))

/* Comfort-noise coder of a non-speech frame (Cod_cng): energy and filter of
 * the last two frames, SID or no-transmission decision, SID quantisation
 * (LSF with the caller's MA memory pSrcDstPrevFreq, energy), the
 * comfort-noise excitation written to pSrcDstExc[154..233] (154 past
 * samples before it; taming memory pSrcDstExcErr updated), the
 * interpolated filter of both subframes pDstLpcQ (22 words) from
 * pSrcDstLspOldQ (replaced by the SID LSP). pSrcDstLpcMem (11) and
 * pSrcDstRcMem (10) are the encoder's last successful Levinson output,
 * shared with its LP analysis as in the standard (an unstable recursion
 * here returns that filter; a stable one replaces it). annexA selects the
 * Annex A LP-to-LSP search. pDstPrm = {type (0 no transmission, 2 SID), MA
 * switch, first-stage index, second-stage index, energy index}.
 * Checks: pointers null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDTXEncode_G729B_16s, (int annexA, Vsp16s* pSrcDstPrevFreq, Vsp16s* pSrcDstLpcMem, Vsp16s* pSrcDstRcMem, Vsp16s* pSrcDstLspOldQ, Vsp16s* pSrcDstExc, Vsp32s* pSrcDstExcErr, Vsp16s* pDstLpcQ, Vsp16s* pDstPrm, Vsp8u* pState), (annexA, pSrcDstPrevFreq, pSrcDstLpcMem, pSrcDstRcMem, pSrcDstLspOldQ, pSrcDstExc, pSrcDstExcErr, pDstLpcQ, pDstPrm, pState))

/* Main-body encoder memory update of one non-speech subframe: the
 * comfort-noise excitation pExc through 1/A^(z) (pLpcQ; pSrcDstMemSyn), the
 * error pSpeech - synthesis through A(z/g1) (pAp1, history pSrcDstMemErr)
 * and 1/A(z/g2) (pAp2, memory pSrcDstMemW0); all memories updated.
 * Checks: pointers null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsNoiseMemoryUpdate_G729B_16s, (const Vsp16s* pLpcQ, const Vsp16s* pAp1, const Vsp16s* pAp2, const Vsp16s* pSpeech, const Vsp16s* pExc, Vsp16s* pSrcDstMemSyn, Vsp16s* pSrcDstMemErr, Vsp16s* pSrcDstMemW0), (pLpcQ, pAp1, pAp2, pSpeech, pExc, pSrcDstMemSyn, pSrcDstMemErr, pSrcDstMemW0))

/* Annex A encoder memory update of one non-speech subframe: the residual of
 * pSpeech (10 past samples, then 40) through A^(z) (pLpcQ); its weighted
 * version through the Annex A open-loop filter gives pDstWsp (40, memory
 * pSrcDstMemW); residual minus pExc through 1/A^(z/0.75) updates
 * pSrcDstMemW0. Checks: pointers null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsNoiseMemoryUpdate_G729AB_16s, (const Vsp16s* pLpcQ, const Vsp16s* pSpeech, const Vsp16s* pExc, Vsp16s* pDstWsp, Vsp16s* pSrcDstMemW, Vsp16s* pSrcDstMemW0), (pLpcQ, pSpeech, pExc, pDstWsp, pSrcDstMemW, pSrcDstMemW0))
