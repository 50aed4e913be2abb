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
