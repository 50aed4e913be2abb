/*
 * vsps/gsmamr.h - the list of exports of the GSM-AMR family.
 *
 * One entry per export, VSPS_FN(return type, name, (parameters), (argument
 * names)); the comment above an entry is its public documentation. Included
 * by vsps_functions.h; see there for the entry format. No include guard.
 */
/* clang-format off */

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
 * GSM-AMR decoder steps (TS 26.073 Decoder_amr, Post_Filter)
 * ====================================================================== */

/* Common to the decoder steps: `mode` is the frame's speech rate as a
 * VspSpeechBitRate value (0, 1, 3, 6, 7, 8, 11 or 12; 25 only where said),
 * otherwise vspStsRangeErr. pState is the decoder's state block (any
 * alignment) of legacy90vspsDecoderStateSize_GSMAMR bytes, formatted by
 * legacy90vspsDecoderInit_GSMAMR. Parameters pSrcPrm / pSrcDstPrm are the
 * frame's parameters in transmission order as TS 26.073 Bits2prm gives them
 * (17, 19, 19, 19, 19, 23, 39, 57 for the eight rates); values wider than
 * their bit field are masked to the field where they index a table. LP
 * filters are 4 x 11 Q12 coefficients (a[0] = 4096), one set per subframe.
 * A caller's frame: FrameStart; if it reports a speech frame, for each of
 * the four subframes DecodeExcitation then DecoderSynthesis; FrameEnd;
 * otherwise ComfortNoise. Then legacy90vspsPostFilter_GSMAMR_16s and the
 * post-processing high-pass (legacy90vspsHighPassFilter_G729_16s_ISfs with
 * the 100 Hz set, the same filter as TS 26.073 Post_Process), and the output
 * masked to 13 bits (& 0xFFF8). Arithmetic: bit-exact with TS 26.073. */

/* Writes the byte size of the decoder state block to *pSize.
 * Checks: pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDecoderStateSize_GSMAMR, (int* pSize), (pSize))

/* Formats a decoder state block: the full decoder reset (Decoder_amr_reset
 * of a speech mode, with the code-gain predictor, the comfort-noise decoder
 * in its DTX state, the LSF and LSP memories). Also the decoder homing reset.
 * Checks: pState null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDecoderInit_GSMAMR, (Vsp8u* pState), (pState))

/* Start of a received frame: the DTX receive state machine (rx_dtx_handler)
 * from rxType (TS 26.073 RX types: 0 speech good, 1 speech degraded, 2 onset,
 * 3 speech bad, 4 SID_FIRST, 5 SID_UPDATE, 6 SID bad, 7 no data) writes the
 * new state to *pDtxState (0 speech, 1 comfort noise, 2 comfort noise muted).
 * For a comfort-noise state nothing else is done (the caller continues with
 * legacy90vspsComfortNoise_GSMAMR_16s). For speech: bad-frame flags and the
 * concealment state 0..6, random parameters written into pSrcDstPrm for
 * lost (7) and onset (2) frames (build_CN_param), LSF decoding with
 * concealment and the four interpolated LP filters into pDstLpc (44).
 * Checks: any pointer null: vspStsNullPtrErr; rxType outside 0..7 or mode
 * (25 refused): vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecoderFrameStart_GSMAMR_16s, (Vsp16s* pSrcDstPrm, int rxType, Vsp8u* pState, Vsp16s* pDstLpc, int* pDtxState, int mode), (pSrcDstPrm, rxType, pState, pDstLpc, pDtxState, mode))

/* Excitation of subframe subfr (0..3) of a speech frame: lag decoding (1/3
 * or 1/6 resolution, relative in the odd subframes and at 4.75/5.15 kbit/s
 * also in subframe 2) with bad-frame concealment, adaptive vector
 * (Pred_lt_3or6), fixed codebook with pitch sharpening, gains (joint tables,
 * scalar at 7.95/12.2 kbit/s, MA code-gain prediction) or their concealment
 * (ec_gain), background-noise limits, code-gain averaging, phase dispersion
 * and excitation control. pDstExc (40) is the synthesis input: the enhanced
 * excitation, with the pitch emphasis and its gain control (agc2) when the
 * doubled sharpening exceeds 0.5. The adaptive-codebook memory in pState
 * gets the total excitation.
 * Checks: any pointer null: vspStsNullPtrErr; subfr outside 0..3 or mode
 * (25 refused): vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeExcitation_GSMAMR_16s, (const Vsp16s* pSrcPrm, Vsp8u* pState, Vsp16s* pDstExc, int subfr, int mode), (pSrcPrm, pState, pDstExc, subfr, mode))

/* Synthesis of one subframe through 1/A(z) (pSrcLpc: 11 Q12) from pSrcExc
 * (40) into pDstSynth (40) with the memory in pState. If any operation of
 * the filter saturates, the whole excitation memory and the subframe's
 * enhanced excitation are divided by 4 and the subframe is synthesised again
 * from that enhanced excitation (TS 26.073 overflow handling). Then the
 * excitation memory advances by one subframe.
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDecoderSynthesis_GSMAMR_16s, (const Vsp16s* pSrcLpc, const Vsp16s* pSrcExc, Vsp8u* pState, Vsp16s* pDstSynth), (pSrcLpc, pSrcExc, pState, pDstSynth))

/* End of a speech frame from its synthesis pSrcSynth (160): background-noise
 * detector (Bgn_scd), the comfort-noise decoder's LSF and energy history,
 * the LSF average, the bad-frame flags of the next frame.
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDecoderFrameEnd_GSMAMR_16s, (const Vsp16s* pSrcSynth, Vsp8u* pState), (pSrcSynth, pState))

/* Comfort-noise frame (TS 26.073 dtx_dec, after the partial decoder reset
 * of comfort-noise frames), for a frame legacy90vspsDecoderFrameStart_GSMAMR_16s
 * reported as comfort noise (state 1 or 2). pSrcSid holds the 5 SID
 * parameters (LSF init index, three LSF indices, energy index), read only
 * when the frame is a good SID_UPDATE. Backward analysis of the decoded
 * speech after the hangover, interpolation between SID updates, LSF
 * variability, random excitation (10 pulses a subframe) scaled to the
 * interpolated energy, synthesis into pDstSynth (160); pDstLpc (44) gets the
 * interpolated filter four times (for the post-filter). mode is the speech
 * rate of the frame (for the level adjustment).
 * Checks: any pointer null: vspStsNullPtrErr; mode (25 refused):
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsComfortNoise_GSMAMR_16s, (const Vsp16s* pSrcSid, Vsp8u* pState, Vsp16s* pDstLpc, Vsp16s* pDstSynth, int mode), (pSrcSid, pState, pDstLpc, pDstSynth, mode))

/* Decoder homing frame test (TS 26.073 decoder_homing_frame_test and its
 * _first variant): *pResult = 1 when the parameters equal those of the
 * mode's decoder homing frame, all of them (firstSubframe = 0) or those up
 * to the first subframe's (firstSubframe != 0), else 0.
 * Checks: any pointer null: vspStsNullPtrErr; mode (25 refused):
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsHomingFrameTest_GSMAMR_16s, (const Vsp16s* pSrcPrm, int firstSubframe, int* pResult, int mode), (pSrcPrm, firstSubframe, pResult, mode))

/* Writes the byte size of the post-filter state to *pSize.
 * Checks: pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsPostFilterStateSize_GSMAMR, (int* pSize), (pSize))

/* Formats a post-filter state (any alignment): memories zero, AGC gain 1.0.
 * Checks: pState null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsPostFilterInit_GSMAMR, (Vsp8u* pState), (pState))

/* Post-filter of a decoded frame in place (160 samples), TS 26.073
 * Post_Filter: per subframe with the decoded filter pSrcLpc (4 x 11 Q12)
 * the residual through A(z/g3), tilt compensation from the first two
 * correlations of the impulse response of A(z/g3)/A(z/g4) (factor 0.8),
 * synthesis through 1/A(z/g4), adaptive gain control to the input energy
 * (factor 0.9); g3/g4 = 0.7/0.75 at 10.2 and 12.2 kbit/s, else 0.55/0.7
 * (powers in the standard's tables). Mode 25 is accepted and uses the
 * factors of the lower rates.
 * Checks: any pointer null: vspStsNullPtrErr; mode: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsPostFilter_GSMAMR_16s, (const Vsp16s* pSrcLpc, Vsp16s* pSrcDstSpeech, Vsp8u* pState, int mode), (pSrcLpc, pSrcDstSpeech, pState, mode))

/* ======================================================================
 * GSM-AMR encoder: frame flow, weighting, open-loop and closed-loop pitch
 * (TS 26.073 cod_amr and below)
 * ====================================================================== */

/* Common to these steps: `mode` is the frame's speech rate (0, 1, 3, 6, 7,
 * 8, 11 or 12; 25 refused) else vspStsRangeErr; filters are 11 Q12
 * coefficients (a[0] = 4096); the memories the frame loop owns (past
 * excitation, weighted speech, filter memories, lag state) are caller
 * arrays. Subframe signals are 40 samples. A caller's frame: pre-processing
 * (legacy90vspsHighPassFilter_G729_16s_ISfs with the 140 Hz set, scale 12,
 * on the input masked to 13 bits), LP analysis and quantisation with the
 * LP-analysis exports, InterpolateLPC, ToneStabCheck, two WeightedSpeech
 * calls and OpenLoopPitch, then per subframe SubframePreProc,
 * AdaptiveCodebookSearch, PitchGain, the fixed codebook and gain
 * quantisers, ToneStabUpdate and SubframePostProc. Bit-exact with
 * TS 26.073. The tone-stabiliser state is 8 words: count, then the last
 * seven pitch gains >> 3 (all zero at reset). */

/* LP filters of the four subframes (Int_lpc_1to3, Int_lpc_1and3): LSP
 * interpolation (floor shifts, saturating adds) and LSP to LP per subframe
 * into pDstLpc (44). pSrcPrevLsp: the previous frame's LSP (10, Q15).
 * pSrcLsp: this frame's LSP (10), at 12.2 kbit/s the mid-frame vector then
 * the end-of-frame vector (20). Subframes: 3/4 old + 1/4 new, 1/2 + 1/2,
 * 1/4 old + 3/4 new, new; 12.2: (old + mid)/2, mid, (mid + new)/2, new.
 * Checks: any pointer null: vspStsNullPtrErr; mode: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsInterpolateLPC_GSMAMR_16s, (const Vsp16s* pSrcPrevLsp, const Vsp16s* pSrcLsp, Vsp16s* pDstLpc, int mode), (pSrcPrevLsp, pSrcLsp, pDstLpc, mode))

/* Weighted speech of a half frame (pre_big): pSrcSpeech holds 10 samples of
 * history then the 80 samples; per 40-sample subframe k (filter pSrcLpc +
 * 11k, the unquantised filters of two subframes) the residual through
 * A(z/g1) (g1 = 0.94^i, 0.9^i at 10.2 and 12.2 kbit/s) and the synthesis
 * through 1/A(z/g2) (g2 = 0.6^i) with the memory pMemW (10, in/out, zero at
 * reset) into pDstWsp (80).
 * Checks: any pointer null: vspStsNullPtrErr; mode: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsWeightedSpeech_GSMAMR_16s, (const Vsp16s* pSrcSpeech, const Vsp16s* pSrcLpc, Vsp16s* pDstWsp, Vsp16s* pMemW, int mode), (pSrcSpeech, pSrcLpc, pDstWsp, pMemW, mode))

/* Open-loop pitch lag (Pitch_ol; Pitch_ol_wgh at 10.2 kbit/s) of half
 * frame `half` (0 or 1), or of the whole frame at 4.75 and 5.15 kbit/s
 * (one call a frame, `half` then only names ol_gain_flg). pSrcWsp: the
 * weighted-speech buffer, 143 samples of history then the frame's 160.
 * Correlations of lags 20..143 (18..143 at 12.2) on the signal scaled by
 * its energy, best lag of the three sections 143..80, 79..40, 39..20
 * normalised by the energy, the shorter section preferred above 0.85 of
 * the longer. 10.2 kbit/s: one search with the lag weighting and the
 * median of the last five lags; pSrcDstState (10 words, in/out) = old
 * median lag (reset 40), adaptive weight (0), weighting flag (0), five past
 * lags (40 each), the two open-loop gain flags (0) — the other rates only
 * clear the gain flags. *pDstLag the lag. pDstVad (9, 32-bit): the
 * section maxima and energies (max1, e1, max2, e2, max3, e3; 10.2: the
 * correlation and energy at the lag in the first pair, the rest 0), the
 * chosen pair (correlation, energy: the input of VAD option 2's LTP flag)
 * and hp_max (the complex-signal input of VAD option 1).
 * Checks: any pointer null: vspStsNullPtrErr; mode, half outside 0..1, or
 * at 10.2 kbit/s with the weighting flag set a median lag outside
 * 16..143: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsOpenLoopPitch_GSMAMR_16s, (const Vsp16s* pSrcWsp, Vsp16s* pSrcDstState, Vsp32s* pDstVad, Vsp16s* pDstLag, int half, int mode), (pSrcWsp, pSrcDstState, pDstVad, pDstLag, half, mode))

/* Tone stabiliser, per speech frame (check_lsp): counts frames whose
 * unquantised LSPs pSrcLsp (10, Q15) have a narrow gap (lsp[3..8] below
 * 1500 apart, or lsp[1..3] below 600/800/1100 by lsp[1]); *pFlag = 1 once
 * the count reaches 12 (held there), else 0. pSrcDstToneState: 8 words.
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsToneStabCheck_GSMAMR_16s, (const Vsp16s* pSrcLsp, Vsp16s* pSrcDstToneState, int* pFlag), (pSrcLsp, pSrcDstToneState, pFlag))

/* Tone stabiliser, per subframe (update_gp_clipping): the pitch gain
 * (Q14) >> 3 joins the last seven.
 * Checks: pSrcDstToneState null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsToneStabUpdate_GSMAMR_16s, (Vsp16s gain, Vsp16s* pSrcDstToneState), (gain, pSrcDstToneState))

/* Subframe pre-processing (subframePreProc): with the unquantised filter
 * pSrcLpc and the quantised pSrcQLpc, pDstImp = impulse response of
 * A(z/g1) / (Aq(z) A(z/g2)) (Q12), pDstRes = the LP residual of the speech
 * through Aq(z), pDstTarget = the residual through 1/Aq(z) (memory
 * pSrcMemErr, 10), A(z/g1) and 1/A(z/g2) (memory pSrcMemW0, 10): the
 * target of the adaptive-codebook search. pSrcSpeech: 10 samples of history
 * then the subframe's 40. The memories are read only.
 * Checks: any pointer null: vspStsNullPtrErr; mode: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsSubframePreProc_GSMAMR_16s, (const Vsp16s* pSrcLpc, const Vsp16s* pSrcQLpc, const Vsp16s* pSrcSpeech, const Vsp16s* pSrcMemErr, const Vsp16s* pSrcMemW0, Vsp16s* pDstImp, Vsp16s* pDstRes, Vsp16s* pDstTarget, int mode), (pSrcLpc, pSrcQLpc, pSrcSpeech, pSrcMemErr, pSrcMemW0, pDstImp, pDstRes, pDstTarget, mode))

/* Closed-loop fractional pitch search (Pitch_fr) of subframe subfr.
 * pSrcDstExc: 154 samples of past total excitation, then the subframe's LP
 * residual (40); the residual is replaced by the adaptive-codebook vector.
 * Range: subframes 0 and 2 (2 only above 5.15 kbit/s) around the open-loop
 * lag pSrcOpenLoopLag[0] / [1] (absolute), the others around the previous
 * subframe's lag *pSrcDstPrevLag (relative; reset 0). Normalised
 * correlation of the target pSrcTarget with the past excitation filtered
 * by pSrcImp (Q12), best integer lag (ties to the larger), then the
 * fraction in 1/3 (1/6 at 12.2 kbit/s) by interpolating the correlation,
 * where the rate allows it. pDstLag = T0, fraction, transmitted lag index;
 * *pSrcDstPrevLag = T0; pDstFltAdapt = the adaptive vector filtered by the
 * impulse response.
 * Checks: any pointer null: vspStsNullPtrErr; mode or subfr outside 0..3:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsAdaptiveCodebookSearch_GSMAMR_16s, (const Vsp16s* pSrcTarget, const Vsp16s* pSrcImp, Vsp16s* pSrcDstExc, const Vsp16s* pSrcOpenLoopLag, Vsp16s* pSrcDstPrevLag, Vsp16s* pDstLag, Vsp16s* pDstFltAdapt, int subfr, int mode), (pSrcTarget, pSrcImp, pSrcDstExc, pSrcOpenLoopLag, pSrcDstPrevLag, pDstLag, pDstFltAdapt, subfr, mode))

/* Adaptive-codebook vector of a known lag (Pred_lt_3or6, Convolve): the 40
 * samples after the 154 of history in pSrcDstExc are overwritten with the
 * interpolated past excitation of lag pSrcLag[0] and fraction pSrcLag[1]
 * (thirds, sixths at 12.2 kbit/s; the search gives 144 - 1/3 and 17 + 1/2
 * at the ends of the ranges); pDstFltAdapt = that vector filtered by
 * pSrcImp (Q12).
 * Checks: any pointer null: vspStsNullPtrErr; mode, a lag outside 19..144
 * (17..143 at 12.2) or a fraction outside -1..1 (-2..3): vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsAdaptiveVector_GSMAMR_16s, (Vsp16s* pSrcDstExc, const Vsp16s* pSrcImp, const Vsp16s* pSrcLag, Vsp16s* pDstFltAdapt, int mode), (pSrcDstExc, pSrcImp, pSrcLag, pDstFltAdapt, mode))

/* Pitch gain (G_pitch) of the target pSrcTarget and the filtered adaptive
 * vector pSrcFltAdapt: <x,y>/<y,y> in Q14, capped at 1.2 (12.2 kbit/s:
 * multiple of 4), 0 when the normalised <x,y> is below 4. Limits: 4.75 and
 * 5.15 kbit/s cap 0.85; with lspFlag set (ToneStabCheck), a gain above 0.95
 * and the tone state pSrcToneState showing a high mean gain, the limit 0.95
 * (other rates: the gain is set to 0.95). 12.2 kbit/s: scalar quantisation
 * with the gain table, entries above the limit excluded. Then pDstTarget2
 * = target - gain y and pSrcDstRes -= gain * pSrcAdapt (the adaptive
 * vector). pDstGain = gain (Q14), limit (32767 = none), pitch-gain index
 * (12.2 only, else 0); pDstCoeff = <y,y> mantissa and exponent, <x,y>
 * mantissa and exponent (the gain quantisers' inputs).
 * Checks: any pointer null: vspStsNullPtrErr; mode: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsPitchGain_GSMAMR_16s, (const Vsp16s* pSrcTarget, const Vsp16s* pSrcFltAdapt, const Vsp16s* pSrcAdapt, const Vsp16s* pSrcToneState, Vsp16s* pSrcDstRes, Vsp16s* pDstTarget2, Vsp16s* pDstGain, Vsp16s* pDstCoeff, int lspFlag, int mode), (pSrcTarget, pSrcFltAdapt, pSrcAdapt, pSrcToneState, pSrcDstRes, pDstTarget2, pDstGain, pDstCoeff, lspFlag, mode))

/* Subframe post-processing (subframePostProc) with the quantised gains
 * pSrcGain (pitch Q14, code Q1): pSrcDstExc (40, the adaptive vector in)
 * becomes the total excitation gp v + gc c (code Q13, Q12 at 12.2 kbit/s),
 * pDstSynth its synthesis through 1/Aq(z) (memory pMemSyn, updated),
 * pMemErr = speech - synthesis over the last 10 samples (pSrcSpeech: the
 * subframe's 40), pMemW0 = target - gp y1 - gc y2 over the last 10 (y1 =
 * pSrcFltAdapt, y2 = pSrcFltCode, Q12; Q10 at 12.2), *pDstSharp = the
 * pitch gain capped at 0.8 (the next subframe's pitch sharpening).
 * Checks: any pointer null: vspStsNullPtrErr; mode: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsSubframePostProc_GSMAMR_16s, (const Vsp16s* pSrcSpeech, const Vsp16s* pSrcQLpc, const Vsp16s* pSrcTarget, const Vsp16s* pSrcCode, const Vsp16s* pSrcFltAdapt, const Vsp16s* pSrcFltCode, const Vsp16s* pSrcGain, Vsp16s* pSrcDstExc, Vsp16s* pMemSyn, Vsp16s* pMemErr, Vsp16s* pMemW0, Vsp16s* pDstSynth, Vsp16s* pDstSharp, int mode), (pSrcSpeech, pSrcQLpc, pSrcTarget, pSrcCode, pSrcFltAdapt, pSrcFltCode, pSrcGain, pSrcDstExc, pMemSyn, pMemErr, pMemW0, pDstSynth, pDstSharp, mode))

/* ======================================================================
 * GSM-AMR encoder: VAD option 1, VAD option 2 and the DTX encoder
 * ====================================================================== */

/* Common to these steps: they run only when the encoder codes with DTX, in
 * the order of a TS 26.073 encoder frame: the VAD decision of the frame
 * (VAD1: legacy90vspsVAD1_GSMAMR_16s; VAD2: legacy90vspsVAD2_GSMAMR_16s on
 * each half frame, the frame's flag the OR of the two), then
 * legacy90vspsDTXTxHandler_GSMAMR; after the LP analysis
 * legacy90vspsDTXBuffer_GSMAMR_16s (every frame); in comfort-noise frames
 * legacy90vspsDTXEncode_GSMAMR_16s; after the open-loop pitch search the
 * VAD's hook (legacy90vspsVAD1PitchUpdate_GSMAMR_32s or
 * legacy90vspsVAD2LTPFlag_GSMAMR_32s), whose flags the next frame's decision
 * uses. Speech samples are the pre-processed signal (13-bit input after the
 * high-pass and the division by 2). `mode` is the requested speech rate as a
 * VspSpeechBitRate value (0, 1, 3, 6, 7, 8, 11, 12), otherwise
 * vspStsRangeErr. State blocks have any alignment; a corrupted block gives
 * wrong but bounded results. Arithmetic: bit-exact with TS 26.073. */

/* Writes the byte size of the VAD option 1 state block to *pSize.
 * Checks: pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsVAD1StateSize_GSMAMR, (int* pSize), (pSize))

/* Formats a VAD option 1 state block (TS 26.073 vad1_reset): background
 * estimates, old and averaged levels 150, filter-bank memories 0, the flag
 * registers 0, best_corr_hp = corr_hp_fast = 13106 (0.4, Q15).
 * Checks: pState null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsVAD1Init_GSMAMR, (Vsp8u* pState), (pState))

/* VAD option 1 decision of a frame (TS 26.073 vad1). pSrc: 200 samples, the
 * frame being coded followed by the 40-sample look-ahead (the encoder's
 * old_speech[120..319]; pSrc[40..199] are the 160 newest samples). Frame
 * power over pSrc[0..159] (below 343040 the pitch register's bit 0x4000 is
 * cleared, below 15000 the complex-low register's and the frame counts as
 * low power), 9-band filter bank over pSrc[40..199], levels, SNR sum against the
 * background estimate, adaptive threshold, complex-signal detection, noise
 * estimate update, burst/hangover. *pDstVad = 1 speech, 0 noise.
 * The tone, pitch and complex-signal flags it reads are those the previous
 * frame's legacy90vspsVAD1PitchUpdate_GSMAMR_32s left.
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsVAD1_GSMAMR_16s, (const Vsp16s* pSrc, Vsp8u* pState, int* pDstVad), (pSrc, pState, pDstVad))

/* ---- The open-loop record of the VAD hooks ----
 * The open-loop values the two VAD hooks read: per open-loop search (per
 * half frame; 4.75 and 5.15 kbit/s one search on the whole frame) a record
 * of 9 32-bit words, as legacy90vspsOpenLoopPitch_GSMAMR_16s writes it to
 * its pDstVad: the maximum correlation and the energy at that lag of the
 * three lag sections (max1, e1, max2, e2, max3, e3; 10.2 kbit/s: the
 * weighted search's correlation t0 and energy t1 at its lag in the first
 * pair), the pair of the chosen lag (max, energy), hp_max (the
 * complex-signal measure, Q15 in the low half). pSrcOpenLoop holds the
 * record of the first search then that of the second (18 words; 9 at 4.75
 * and 5.15 kbit/s). Correlations and energies are those of the search's
 * scaled signal (Lag_max's `max` and `t0` before Inv_sqrt). */

/* The VAD option 1 hooks of the open-loop pitch search (TS 26.073
 * vad_tone_detection_update, vad_tone_detection, vad_complex_detection_update
 * and vad_pitch_detection), called once after the frame's open-loop search:
 * per search one shift of the tone register (two, and bit 0x2000 set, at
 * 4.75/5.15 kbit/s), bit 0x4000 set when a section (10.2 kbit/s: the one
 * pair) has max > 0.65 * round(energy); best_corr_hp = the hp_max of the
 * last record; the pitch register from the continuity of the lags pSrcLag
 * (2: the open-loop lags of the two half frames; 4.75 and 5.15 kbit/s the
 * frame's lag twice).
 * Checks: any pointer null: vspStsNullPtrErr; mode: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsVAD1PitchUpdate_GSMAMR_32s, (const Vsp32s* pSrcOpenLoop, const Vsp16s* pSrcLag, Vsp8u* pState, int mode), (pSrcOpenLoop, pSrcLag, pState, mode))

/* Writes the byte size of the VAD option 2 state block to *pSize.
 * Checks: pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsVAD2StateSize_GSMAMR, (int* pSize), (pSize))

/* Formats a VAD option 2 state block (TS 26.073 vad2_reset: every word 0,
 * frame counter 0, LTP flag 0).
 * Checks: pState null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsVAD2Init_GSMAMR, (Vsp8u* pState), (pState))

/* VAD option 2 decision of one half frame (TS 26.073 vad2), pSrc: 80
 * samples (call it on samples 0..79 and then 80..159 of the newest frame;
 * the frame's flag is the OR of the two). Block normalisation,
 * pre-emphasis (-0.8), 128-point real FFT, 16 channel energies (Q state
 * switching between the two scalings), voice metric, SNR estimate,
 * decision with burst/hangover, long-term spectrum and noise update (which
 * the LTP flag of legacy90vspsVAD2LTPFlag_GSMAMR_32s can hold off).
 * *pDstVad = 1 speech, 0 noise.
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsVAD2_GSMAMR_16s, (const Vsp16s* pSrc, Vsp8u* pState, int* pDstVad), (pSrc, pState, pDstVad))

/* The VAD option 2 hook of the open-loop pitch search (TS 26.073
 * LTP_flag_update), called once after the frame's search with its records
 * pSrcOpenLoop (see above; the chosen pair of each is read): L_Rmax and
 * L_R0 = the saturating sums of the chosen correlations and energies, and
 * LTP_flag = L_Rmax > L_R0 * thr with thr = 0.55 (4.75, 5.15), 0.6 (10.2),
 * 0.65 (others), Q15, for the next frame's noise update.
 * Checks: any pointer null: vspStsNullPtrErr; mode: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsVAD2LTPFlag_GSMAMR_32s, (const Vsp32s* pSrcOpenLoop, Vsp8u* pState, int mode), (pSrcOpenLoop, pState, mode))

/* Writes the byte size of the DTX encoder state block to *pSize.
 * Checks: pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDTXEncStateSize_GSMAMR, (int* pSize), (pSize))

/* Formats a DTX encoder state block (TS 26.073 dtx_enc_reset): LSP history
 * = the initial LSP vector in all 8 rows, energy history 0, SID indices 0,
 * hangover count 7, elapsed-frames count 32767.
 * Checks: pState null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDTXEncInit_GSMAMR, (Vsp8u* pState), (pState))

/* Transmit DTX handler (TS 26.073 tx_dtx_handler), after the frame's VAD
 * decision vad (0 or 1): *pDstUsedMode = mode, or 25 (vspRateDTX) when the
 * frame is coded as comfort noise (after the 7-frame speech hangover, which
 * is skipped when fewer than 30 frames have passed since the last SID
 * analysis); *pDstComputeSid = 1 when the SID parameters are to be
 * recomputed (the hangover has run out), else 0.
 * Checks: any pointer null: vspStsNullPtrErr; vad not 0 or 1, or mode:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDTXTxHandler_GSMAMR, (int vad, Vsp8u* pState, int* pDstUsedMode, int* pDstComputeSid, int mode), (vad, pState, pDstUsedMode, pDstComputeSid, mode))

/* History of the DTX encoder (TS 26.073 dtx_buffer), every frame: the
 * frame's unquantised LSP pSrcLsp (10, Q15; at 12.2 kbit/s the end-of-frame
 * vector) and the log2 energy of the 160 newest samples pSrcSpeech
 * (log_en = (Log2(sum x^2) in Q10 - 8521) / 2) into an 8-frame ring.
 * Checks: any pointer null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDTXBuffer_GSMAMR_16s, (const Vsp16s* pSrcLsp, const Vsp16s* pSrcSpeech, Vsp8u* pState), (pSrcLsp, pSrcSpeech, pState))

/* SID parameters of a comfort-noise frame (TS 26.073 dtx_enc), in every
 * frame legacy90vspsDTXTxHandler_GSMAMR coded as 25. When computeSid is 1
 * (or no energy index was computed yet): the mean LSP and mean log energy
 * of the 8-frame history, the energy index (6 bits), the LSFs (minimum
 * distance 205) quantised with the SID path of the 3-split quantiser (the
 * row of the initial-residual table nearest in plain squared error is the
 * prediction, then the full 3-split tables), and the code-gain predictor
 * memories pSrcDstPastQuaEn (8: the four past quantised energies of the
 * modes below 12.2 kbit/s, Q10 log2, then the four of 12.2 kbit/s, Q10
 * 20log10) all set from the energy index. Otherwise the previous SID
 * parameters are repeated and pSrcDstPastQuaEn is untouched.
 * pDstPrm (5): initial-residual row (3 bits), the three LSF indices (8, 9,
 * 9 bits), energy index (6 bits).
 * Checks: any pointer null: vspStsNullPtrErr; computeSid not 0 or 1:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDTXEncode_GSMAMR_16s, (int computeSid, Vsp16s* pSrcDstPastQuaEn, Vsp16s* pDstPrm, Vsp8u* pState), (computeSid, pSrcDstPastQuaEn, pDstPrm, pState))

/* ======================================================================
 * GSM-AMR encoder: algebraic codebooks and gain quantisers
 * ====================================================================== */

/* Common to these encoder steps: `mode` is the frame's speech rate as a
 * VspSpeechBitRate value (0, 1, 3, 6, 7, 8, 11 or 12; 25 refused),
 * otherwise vspStsRangeErr; subframe is 0..3. Vectors are one subframe (40).
 * Arithmetic: bit-exact with TS 26.073. */

/* Algebraic (fixed) codebook search with its index coding, one call per
 * subframe (TS 26.073 cbsearch: code_2i40_9bits at 4.75/5.15, code_2i40_11bits
 * at 5.9, code_3i40_14bits at 6.7, code_4i40_17bits at 7.4/7.95,
 * code_8i40_31bits at 10.2, code_10i40_35bits at 12.2 kbit/s).
 * Inputs: pTarget2 the codebook target xn2 (Q0), pImp the impulse response
 * h1 of the weighted synthesis filter (Q12, unsharpened; not modified),
 * pLtpResidual the LP residual after the adaptive contribution (res2, read
 * at 10.2 and 12.2 kbit/s only, for the sign pre-selection; must not be
 * null), T0 the integer pitch lag and sharpGain the sharpening gain (Q14):
 * the previous subframe's quantised pitch gain capped at 0.8 (13017) for
 * 4.75..10.2 kbit/s, this subframe's quantised pitch gain at 12.2 kbit/s.
 * When T0 < 40 the impulse response (for the search) and then the code
 * vector get the pitch contribution x[i] += x[i-T0] * 2 sharpGain.
 * Search: backward-filtered target (cor_h_x), signs from it (4.75..7.95;
 * with positions excluded per track at 6.7, 7.4, 7.95) or from the target
 * and residual mix (set_sign12k2 at 10.2, 12.2), the sign-weighted
 * correlation matrix of h1 normalised to 0.99 (cor_h), and the mode's pulse
 * search (nested track loops at 4.75..7.95, the depth-first pair search
 * of 8 or 10 pulses at 10.2, 12.2).
 * Outputs: pDstCode (40) the code vector with sharpening (Q13, pulses
 * 8191/-8192; 12.2 kbit/s Q12, pulses +-4096 that add), pDstFiltCode (40)
 * y2 = the unsharpened pulses through the sharpened h1 (Q12; Q10 at 12.2),
 * pDstIndex the codebook parameters in transmission order: {positions,
 * signs} (2 words) at 4.75..7.95, 7 words at 10.2 (4 signs, 3 compressed
 * position words), 10 words at 12.2 (5 sign+Gray position words, 5 Gray
 * position words); the words after them up to 10 are left untouched.
 * Checks in order: any pointer null: vspStsNullPtrErr; T0 outside 17..144,
 * subframe outside 0..3, mode: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsFixedCodebookSearch_GSMAMR_16s, (const Vsp16s* pTarget2, const Vsp16s* pImp, const Vsp16s* pLtpResidual, Vsp16s T0, Vsp16s sharpGain, int subframe, Vsp16s* pDstCode, Vsp16s* pDstFiltCode, Vsp16s* pDstIndex, int mode), (pTarget2, pImp, pLtpResidual, T0, sharpGain, subframe, pDstCode, pDstFiltCode, pDstIndex, mode))

/* Scalar pitch-gain quantisation (TS 26.073 q_gain_pitch) of 12.2 and
 * 7.95 kbit/s: the entry of qua_gain_pitch (16 values, Q14) nearest to
 * gainPitch among entry 0 and the entries <= gpLimit (first minimum).
 * *pDstGain = the entry (at 12.2 kbit/s with its two low bits cleared),
 * *pDstIndex = its index.
 * Checks in order: any pointer null: vspStsNullPtrErr; mode not 8 or 12:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsQuantPitchGain_GSMAMR_16s, (Vsp16s gainPitch, Vsp16s gpLimit, Vsp16s* pDstGain, Vsp16s* pDstIndex, int mode), (gainPitch, gpLimit, pDstGain, pDstIndex, mode))

/* Writes the byte size of the gain quantiser's state block to *pSize.
 * Checks: pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsGainQuantStateSize_GSMAMR, (int* pSize), (pSize))

/* Formats a gain quantiser state block (any alignment), the block's part of
 * TS 26.073 gainQuant_reset: the 4.75 kbit/s second code-gain predictor
 * (past quantised energies -14336 and -2381, Q10) and even-subframe memory,
 * and the 7.95 kbit/s gain adaptation (onset, previous alpha and code gain,
 * LTP gain history) zero. The block holds what passes from one subframe to
 * the next inside the quantiser; the code-gain predictor itself is the
 * caller's array (see legacy90vspsGainQuant_GSMAMR_16s), because the
 * comfort-noise encoder (legacy90vspsDTXEncode_GSMAMR_16s) sets it too.
 * Checks: pState null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsGainQuantInit_GSMAMR, (Vsp8u* pState), (pState))

/* Gain quantisation of one subframe (TS 26.073 gainQuant) with the MA
 * prediction of the code gain (gc_pred) and its update.
 * Inputs: pTarget xn (target of the adaptive search), pTarget2 xn2,
 * pFiltAdapt y1 (filtered adaptive vector, Q0), pFiltCode y2 (filtered code,
 * as legacy90vspsFixedCodebookSearch_GSMAMR_16s gives it), pCode the code
 * vector (with sharpening), pResidual the subframe's LP residual (res, as
 * the subframe pre-processing gives it, before the adaptive contribution is
 * removed) and pAdapt the adaptive vector (both read at 7.95 kbit/s only,
 * for the LTP coding gain of the gain adaptation), pCoeff the pitch-gain correlations
 * {<y1,y1> mantissa, exponent, <xn,y1> mantissa, exponent} of G_pitch,
 * gainPitch (Q14: the quantised gain at 12.2 kbit/s, else the unquantised
 * gain after limiting), gpLimit (Q14, 32767 = none).
 * pSrcDstPastQuaEn (8, in/out) is the code-gain MA predictor: the four past
 * quantised energies of the rates below 12.2 kbit/s (Q10, 20 log10 domain)
 * then the four of 12.2 kbit/s (Q10, log2 domain), newest first; reset
 * values -14336 x 4 and -2381 x 4 (the same array the comfort-noise encoder
 * legacy90vspsDTXEncode_GSMAMR_16s sets).
 * 12.2 kbit/s: code gain from <xn2,y2>/<y2,y2>, scalar quantisation against
 * the predicted gain (qua_gain_code, 32 entries). 7.95: pitch-gain
 * quantisation with three candidates, joint search of candidate and code
 * gain, then the code gain re-chosen with the adaptive criterion (gain
 * adaptation from the LTP coding gain). 5.15, 5.9: joint table of 64 rows;
 * 6.7, 7.4, 10.2: 128 rows. 4.75: even subframes store their energies and
 * return the unquantised gains (the caller's provisional update), odd
 * subframes search the 256-row table for both subframes jointly.
 * Outputs: pDstGains (4) = {gain_pit Q14, gain_code Q1} of this subframe
 * and, at 4.75 kbit/s odd subframes, the even subframe's quantised pair in
 * [2], [3] (else [2], [3] repeat [0], [1]); pDstIndex (2) = the gain
 * parameters of the subframe: 12.2 {code index, -1}, 7.95 {pitch index,
 * code index}, 4.75 even {-1, -1}, 4.75 odd {joint index of both
 * subframes, -1}, others {joint index, -1}. pSrcDstPastQuaEn (every
 * subframe but the 4.75 kbit/s even ones) and pState are updated.
 * Checks in order: any pointer null: vspStsNullPtrErr; subframe outside
 * 0..3, mode: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsGainQuant_GSMAMR_16s, (const Vsp16s* pTarget, const Vsp16s* pTarget2, const Vsp16s* pFiltAdapt, const Vsp16s* pFiltCode, const Vsp16s* pCode, const Vsp16s* pResidual, const Vsp16s* pAdapt, const Vsp16s* pCoeff, Vsp16s gainPitch, Vsp16s gpLimit, Vsp16s* pSrcDstPastQuaEn, Vsp8u* pState, Vsp16s* pDstGains, Vsp16s* pDstIndex, int subframe, int mode), (pTarget, pTarget2, pFiltAdapt, pFiltCode, pCode, pResidual, pAdapt, pCoeff, gainPitch, gpLimit, pSrcDstPastQuaEn, pState, pDstGains, pDstIndex, subframe, mode))
