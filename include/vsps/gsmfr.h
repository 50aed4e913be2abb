/*
 * vsps/gsmfr.h - the list of exports of the GSM 06.10 full-rate family.
 *
 * One entry per export, VSPS_FN(return type, name, (parameters), (argument
 * names)); the comment above an entry is its public documentation. Included
 * by vsps_functions.h; see there for the entry format. No include guard.
 */
/* clang-format off */

/* ======================================================================
 * GSM 06.10 full rate
 * ====================================================================== */

/* GSM 06.10 full rate (RPE-LTP, 13 kbit/s): the encoder and decoder steps
 * of one frame (160 samples at 8 kHz) or subframe (40 samples), bit-exact
 * with the standard's fixed-point description.
 *
 * Parameters of a frame (76): LARc[1..8] as transmitted codes (0..63,
 * 0..63, 0..31, 0..31, 0..15, 0..15, 0..7, 0..7), then per subframe the
 * lag Nc (40..120 from the encoder; 0..127 accepted by the decoder), gain
 * index bc (0..3), grid Mc (0..3), coded block maximum xmaxc (0..63) and
 * 13 pulses xMc (0..7). The state of the standard travels in caller
 * arrays (pMem, pLARpp, pHist, pLastLag), all zero at reset except
 * *pLastLag = 40. Every function checks its pointers (vspStsNullPtrErr,
 * in argument order), then its value ranges (vspStsRangeErr), and writes
 * nothing on failure. Sources and destinations may be the same array
 * where both are frames or subframes of the same length.
 *
 * Encoder frame: Preprocess, LPCAnalysis (in place), ShortTermAnalysis,
 * then per subframe LongTermPredictor on the residual and the history,
 * RPEEncode on its output, and the caller appends the reconstructed
 * residual add(excitation, prediction) to its 120-value history.
 * Decoder frame: per subframe RPEDecode and LongTermSynthesis, then
 * ShortTermSynthesis over the four subframes and Postprocess. */

/* Pre-processing (clauses 4.2.1 to 4.2.3) of 160 samples: so = (s >> 3) << 2
 * (the top 13 bits, halved), offset compensation with alpha = 32735/32768
 * (32-bit recursion split into high part and 15-bit low part) and
 * pre-emphasis with beta = 28180/32768. pMem (3 values, in/out): z1 (the
 * last so), L_z2 (the 32-bit compensation memory) and mp (the pre-emphasis
 * memory); zeros at reset. Checks: pSrc, pDst or pMem null:
 * vspStsNullPtrErr; pMem[0] or pMem[2] outside -32768..32767:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsPreprocess_GSMFR_16s, (const Vsp16s* pSrc, Vsp16s* pDst, Vsp32s* pMem), (pSrc, pDst, pMem))

/* LPC analysis (clauses 4.2.4 to 4.2.7) of a pre-processed frame of 160
 * samples: autocorrelation (lags 0..8) with the frame scaled down by
 * 2^scal (scal = 4 - norm(max|s| << 16), when positive, by mult_r) for the
 * sums and scaled back afterwards, so that pSrcDst holds the frame with
 * the rounded-away bits lost (the input of the short-term analysis);
 * reflection coefficients by the Schur recursion (Q15); log-area ratios by
 * the three-segment approximation; quantised codes pDstLARc (8 values,
 * 0..MAC-MIC). Checks: pSrcDst or pDstLARc null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLPCAnalysis_GSMFR_16s_I, (Vsp16s* pSrcDst, Vsp16s* pDstLARc), (pSrcDst, pDstLARc))

/* Short-term analysis filtering (clauses 4.2.8 to 4.2.10) of 160 samples:
 * the codes pSrcLARc (8) are decoded to LARpp, interpolated with the
 * previous frame's pLARpp over samples 0..12, 13..26, 27..39 and used
 * alone over 40..159, converted to reflection coefficients (Q15) and run
 * through the 8-stage analysis lattice with memory pMem (8 values u[0..7],
 * in/out) to give the residual pDst. pLARpp (8, in/out): the previous
 * frame's decoded LARs in, this frame's out. Checks: any pointer null:
 * vspStsNullPtrErr; a code outside its field (LARc[i] > MAC[i] - MIC[i] or
 * negative): vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsShortTermAnalysis_GSMFR_16s, (const Vsp16s* pSrcLARc, const Vsp16s* pSrc, Vsp16s* pDst, Vsp16s* pLARpp, Vsp16s* pMem), (pSrcLARc, pSrc, pDst, pLARpp, pMem))

/* Long-term predictor of one subframe (clauses 4.2.11 and 4.2.12): the lag
 * *pDstLag (40..120) maximising the cross-correlation of the scaled
 * residual pSrc (40) with the reconstructed-residual history pSrcHist (120
 * values dp[-120..-1], oldest first; the first maximum wins and lag 40 is
 * kept when no correlation is positive), the gain index *pDstGain (0..3)
 * from the ratio of correlation to power against the decision levels
 * 0.2, 0.5, 0.8, the prediction pDstPred[k] = mult_r(QLB[bc], dp[k - Nc])
 * (QLB = 0.10, 0.35, 0.65, 1.0) and the residual pDstResidual[k] =
 * sub(pSrc[k], pDstPred[k]) (40 each). Checks: any pointer null:
 * vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsLongTermPredictor_GSMFR_16s, (const Vsp16s* pSrc, const Vsp16s* pSrcHist, Vsp16s* pDstPred, Vsp16s* pDstResidual, Vsp16s* pDstLag, Vsp16s* pDstGain), (pSrc, pSrcHist, pDstPred, pDstResidual, pDstLag, pDstGain))

/* RPE encoding of one subframe (clauses 4.2.13 to 4.2.17): the residual
 * pSrc (40) through the 11-tap weighting filter (Q13, zeros outside the
 * subframe, result saturated), the grid *pDstGrid (0..3, the first of the
 * largest energy) of 13 pulses, the coded block maximum *pDstXmaxc (0..63:
 * exponent in 3 bits, mantissa in 3 bits), the APCM codes pDstPulses (13,
 * 0..7) and the locally decoded excitation pDstExc (40, zeros off the
 * grid), which the encoder adds to its long-term prediction. Checks: any
 * pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsRPEEncode_GSMFR_16s, (const Vsp16s* pSrc, Vsp16s* pDstXmaxc, Vsp16s* pDstGrid, Vsp16s* pDstPulses, Vsp16s* pDstExc), (pSrc, pDstXmaxc, pDstGrid, pDstPulses, pDstExc))

/* RPE decoding of one subframe (clauses 4.2.15 to 4.2.17): exponent and
 * mantissa of xmaxc, APCM inverse quantisation of the 13 codes pSrcPulses
 * (0..7) by mult_r(FAC[mant], (2 xMc - 7) << 12) with a rounded right
 * shift by 6 - exp, and placement on grid `grid` of the 40-sample pDst
 * (zeros elsewhere). Checks: pSrcPulses or pDst null: vspStsNullPtrErr;
 * xmaxc outside 0..63, grid outside 0..3 or a code outside 0..7:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsRPEDecode_GSMFR_16s, (const Vsp16s* pSrcPulses, Vsp16s* pDst, int xmaxc, int grid), (pSrcPulses, pDst, xmaxc, grid))

/* Long-term synthesis filtering of one subframe (clause 4.3.2): the lag Nr
 * is `lag` when it lies in 40..120, else the last valid lag *pLastLag (as
 * a 7-bit field can carry 0..39 and 121..127); pDst[k] = add(pSrcExc[k],
 * mult_r(QLB[gain], drp[k - Nr])) for k = 0..39, with drp[-120..-1] =
 * pHist (oldest first). Afterwards pHist holds the last 120 values of the
 * history extended by pDst, and *pLastLag = Nr (40 at reset). Checks: any
 * pointer null: vspStsNullPtrErr; lag outside 0..127, gain outside 0..3
 * or *pLastLag outside 40..120: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsLongTermSynthesis_GSMFR_16s, (const Vsp16s* pSrcExc, Vsp16s* pHist, Vsp16s* pDst, Vsp16s* pLastLag, int lag, int gain), (pSrcExc, pHist, pDst, pLastLag, lag, gain))

/* Short-term synthesis filtering (clauses 4.3.2 to 4.3.4) of 160 samples:
 * LAR decoding and interpolation as in
 * legacy90vspsShortTermAnalysis_GSMFR_16s (pLARpp, 8, in/out), then the
 * 8-stage synthesis lattice with memory pMem (9 values v[0..8], in/out):
 * per sample sri = pSrc[k], for i = 7..0: sri = sub(sri, mult_r(rrp[i],
 * v[i])), v[i+1] = add(v[i], mult_r(rrp[i], sri)); v[0] = pDst[k] = sri.
 * Checks: any pointer null: vspStsNullPtrErr; a code outside its field:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsShortTermSynthesis_GSMFR_16s, (const Vsp16s* pSrcLARc, const Vsp16s* pSrc, Vsp16s* pDst, Vsp16s* pLARpp, Vsp16s* pMem), (pSrcLARc, pSrc, pDst, pLARpp, pMem))

/* Post-processing (clauses 4.3.5 to 4.3.7) of 160 samples: de-emphasis
 * msr = add(pSrc[k], mult_r(msr, 28180)), upscaling and truncation to 13
 * bits pDst[k] = add(msr, msr) & 0xFFF8. pMem (1 value, in/out): msr, zero
 * at reset. Checks: pSrc, pDst or pMem null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsPostprocess_GSMFR_16s, (const Vsp16s* pSrc, Vsp16s* pDst, Vsp16s* pMem), (pSrc, pDst, pMem))

/* clang-format on */
