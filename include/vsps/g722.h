/*
 * vsps/g722.h - the list of exports of the G.722 family.
 *
 * One entry per export, VSPS_FN(return type, name, (parameters), (argument
 * names)); the comment above an entry is its public documentation. Included
 * by vsps_functions.h; see there for the entry format. No include guard.
 */
/* clang-format off */

/* ======================================================================
 * G.722 sub-band ADPCM
 * ====================================================================== */

/* G.722 sub-band ADPCM (64, 56 and 48 kbit/s) at 16 kHz, bit-exact with the
 * Recommendation's fixed-point reference: the quadrature mirror filters,
 * the lower-band (6-bit) and higher-band (2-bit) ADPCM coders as separate
 * steps over caller-held state arrays, and the whole codec over blocks with
 * state blocks.
 *
 * Sub-band state array (26 Vsp16s, in/out) in this order: a1 a2 (pole
 * coefficients, Q14), b1..b6 (zero coefficients, Q14), det (scale factor),
 * d0..d6 (quantised differences, d0 newest), nb (log scale factor, Q11
 * log2), p0..p2 (partially reconstructed signal), r0..r2 (reconstructed
 * signal), s (signal estimate), sp (pole part), sz (zero part). Reset: all
 * zero except det = 32 (lower band) or 8 (higher band). nb must lie in
 * 0..18432 (lower) or 0..22528 (higher); it indexes the antilog table.
 * QMF delay line (24 Vsp16s, in/out): D[0] newest; D[0], D[1] hold the last
 * pair written, D[2..23] the 22 samples the next call uses. Reset: zeros.
 * Octet: ih in bits 7..6, il in bits 5..0. Every function checks pointers
 * (vspStsNullPtrErr, argument order), then lengths (vspStsSizeErr), then
 * values (vspStsRangeErr), and writes nothing on failure. */

/* Transmit QMF: len input samples (16 kHz, even count) in pairs (older,
 * newer) into len/2 lower- and len/2 higher-band samples (8 kHz):
 * A = sum C[2i] D[2i], B = sum C[2i+1] D[2i+1] with C = 2 h (Q13, 24
 * taps), exact products and saturating sums; xl = limit(L_add(A,B) doubled
 * >> 16), xh = limit(L_sub(A,B) doubled >> 16), limit to -16384..16383.
 * Checks: a pointer null: vspStsNullPtrErr; len < 2 or odd: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsQMFAnalysis_G722_16s, (const Vsp16s* pSrc, Vsp16s* pDstLow, Vsp16s* pDstHigh, int len, Vsp16s* pDelay), (pSrc, pDstLow, pDstHigh, len, pDelay))

/* Receive QMF: len lower- and higher-band samples into 2 len output samples
 * in time order: D[1] = add(rl, rh), D[0] = sub(rl, rh), the sums as in
 * analysis, y = extract_h(L_shl(A, 4)) then extract_h(L_shl(B, 4))
 * (saturating). Checks: a pointer null: vspStsNullPtrErr; len < 1:
 * vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsQMFSynthesis_G722_16s, (const Vsp16s* pSrcLow, const Vsp16s* pSrcHigh, Vsp16s* pDst, int len, Vsp16s* pDelay), (pSrcLow, pSrcHigh, pDst, len, pDelay))

/* Lower-band encoder: len sub-band samples into 6-bit codes (0..63, one per
 * Vsp16s): difference from the estimate, quantised against 30 levels scaled
 * by det (one's-complement magnitude), then the 4-bit inverse quantiser,
 * log scale factor (leakage 32512/32768, limit 18432), scale factor and the
 * predictor update (sign-sign zero update, pole update with stability
 * limits). pDst may equal pSrc. Checks: a pointer null: vspStsNullPtrErr;
 * len < 1: vspStsSizeErr; nb of pState outside 0..18432: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsEncodeLowband_G722_16s, (const Vsp16s* pSrc, Vsp16s* pDst, int len, Vsp16s* pState), (pSrc, pDst, len, pState))

/* Higher-band encoder: len sub-band samples into 2-bit codes (0..3): one
 * decision level (564 << 3 scaled by det), the 2-bit inverse quantiser,
 * log scale factor (limit 22528), scale factor and the predictor update.
 * Checks: a pointer null: vspStsNullPtrErr; len < 1: vspStsSizeErr; nb of
 * pState outside 0..22528: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsEncodeHighband_G722_16s, (const Vsp16s* pSrc, Vsp16s* pDst, int len, Vsp16s* pState), (pSrc, pDst, len, pState))

/* Lower-band decoder: len 6-bit codes into sub-band samples, mode 1 (64
 * kbit/s: all 6 bits), 2 (56: the top 5) or 3 (48: the top 4) for the
 * output limit(add(s, mult(det, +-oq << 3))); the adaptation always uses
 * the top 4 bits, so the state does not depend on the mode. Checks: a
 * pointer null: vspStsNullPtrErr; len < 1: vspStsSizeErr; mode outside
 * 1..3, nb outside 0..18432 or a code outside 0..63: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeLowband_G722_16s, (const Vsp16s* pSrc, Vsp16s* pDst, int len, Vsp16s* pState, int mode), (pSrc, pDst, len, pState, mode))

/* Higher-band decoder: len 2-bit codes into sub-band samples limit(add(s,
 * dq)), then the encoder's update. Checks: a pointer null:
 * vspStsNullPtrErr; len < 1: vspStsSizeErr; nb outside 0..22528 or a code
 * outside 0..3: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeHighband_G722_16s, (const Vsp16s* pSrc, Vsp16s* pDst, int len, Vsp16s* pState), (pSrc, pDst, len, pState))

/* Bytes of an encoder state block (VspsEncoderState_G722_16s). Checks:
 * pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsEncodeGetStateSize_G722_16s8u, (int* pSize), (pSize))

/* Formats an encoder state block in the reset state (QMF delay line zero,
 * both bands reset); also the reset. Checks: null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsEncodeInit_G722_16s8u, (VspsEncoderState_G722_16s* pState), (pState))

/* Encodes len samples (16 kHz, even count) into len/2 octets: transmit QMF,
 * then both sub-band encoders. Checks: a pointer null: vspStsNullPtrErr;
 * len < 2 or odd: vspStsSizeErr; a state block whose log scale factors are
 * out of range (not formatted by Init): vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsEncode_G722_16s8u, (const Vsp16s* pSrc, Vsp8u* pDst, int len, VspsEncoderState_G722_16s* pState), (pSrc, pDst, len, pState))

/* Bytes of a decoder state block (VspsDecoderState_G722_16s). Checks:
 * pSize null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeGetStateSize_G722_8u16s, (int* pSize), (pSize))

/* Formats a decoder state block in the reset state; also the reset.
 * Checks: null: vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeInit_G722_8u16s, (VspsDecoderState_G722_16s* pState), (pState))

/* Decodes len octets into 2 len samples (16 kHz) in mode 1, 2 or 3 (64, 56,
 * 48 kbit/s; in modes 2 and 3 the 1 or 2 auxiliary bits of each octet are
 * ignored); the mode may change from call to call. Checks: a pointer null:
 * vspStsNullPtrErr; len < 1: vspStsSizeErr; mode outside 1..3 or a state
 * block out of range: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecode_G722_8u16s, (const Vsp8u* pSrc, Vsp16s* pDst, int len, VspsDecoderState_G722_16s* pState, int mode), (pSrc, pDst, len, pState, mode))

/* clang-format on */
