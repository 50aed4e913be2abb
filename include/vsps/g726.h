/*
 * vsps/g726.h - exports of the G.726 family (included by vsps_functions.h;
 * same entry format, no include guard).
 *
 * G.726 ADPCM at 16, 24, 32 and 40 kbit/s (rate selectors vspRate16000 = 17,
 * vspRate24000 = 22, vspRate32000 = 23, vspRate40000 = 24; 2, 3, 4, 5 bits
 * per code word), bit-exact with the ITU-T G.191 reference module, overload
 * included. Encoder and decoder keep their state in caller-allocated blocks
 * of 104 bytes (any alignment; a block may be copied or moved between
 * calls): Init formats a block in the reset state of G.726 and is also the
 * reset; SetRate changes the rate between blocks and keeps the state, as the
 * reference's variable-rate operation does.
 *
 * Linear PCM follows G.726 Annex A: the encoder takes a 16-bit sample x as
 * the 14-bit uniform sample x >> 2 (arithmetic shift); the linear decoder
 * limits the reconstructed signal to -8192..8191 (block LIMO) and delivers
 * it << 2. A-law or mu-law input: expand the code words with
 * legacy90vspsALawToLin_G711_8u16s / legacy90vspsMuLawToLin_G711_8u16s and
 * encode the result; G.711 expansion >> 2 equals the G.726 EXPAND block for
 * every code word, so this is the log-PCM encoder of G.726.
 */
/* clang-format off */

/* ======================================================================
 * G.726
 * ====================================================================== */

/* Bytes of an encoder state block: 104. Checks: pSize null:
 * vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsEncodeGetStateSize_G726_16s8u, (int* pSize), (pSize))

/* Formats an encoder state block in the reset state of G.726 (predictor
 * coefficients and their signals 0, YU = 544 in Q9, YL = 34816 in Q15,
 * speed control 0) for the rate selector `rate`; also the reset.
 * Checks: pEncState null: vspStsNullPtrErr; rate not 17, 22, 23 or 24:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsEncodeInit_G726_16s8u, (VspsEncoderState_G726_16s* pEncState, int rate), (pEncState, rate))

/* Switches a formatted encoder block to the rate selector `rate` and keeps
 * the rest of its state; the next Encode call continues at the new rate.
 * Checks: pEncState null: vspStsNullPtrErr; rate not 17, 22, 23 or 24:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsEncodeSetRate_G726_16s8u, (VspsEncoderState_G726_16s* pEncState, int rate), (pEncState, rate))

/* Encodes len 16-bit linear samples (Q0; used as the 14-bit x >> 2) into len
 * code words (one per byte, value in the low 2..5 bits; the all-zero word
 * is never produced above 16 kbit/s), continuing from the state block.
 * Per sample: adaptive predictor, difference, adaptive quantiser, inverse
 * quantiser, scale-factor, speed-control, tone/transition and predictor
 * adaptation of G.726 clause 4.2 with the reference's word widths; the
 * reconstructed signal wraps at 16 bits on overload as in the reference.
 * Checks: pSrc, pDst, pEncState null: vspStsNullPtrErr; len < 1:
 * vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsEncode_G726_16s8u, (const Vsp16s* pSrc, Vsp8u* pDst, int len, VspsEncoderState_G726_16s* pEncState), (pSrc, pDst, len, pEncState))

/* Bytes of a decoder state block: 104. Checks: pSize null:
 * vspStsNullPtrErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeGetStateSize_G726_8u16s, (int* pSize), (pSize))

/* Formats a decoder state block in the reset state for the rate selector
 * `rate` and the output law `law` (VspPcmLaw: vspPcmLinear 0, vspPcmALaw 1,
 * vspPcmMuLaw 2); also the reset. The output law is independent of the law
 * the encoder was fed (a stream coded from mu-law may be decoded to A-law).
 * Checks: pDecState null: vspStsNullPtrErr; rate not 17, 22, 23 or 24, or
 * law not 0, 1 or 2: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeInit_G726_8u16s, (VspsDecoderState_G726_16s* pDecState, int rate, int law), (pDecState, rate, law))

/* Switches a formatted decoder block to the rate selector `rate` and keeps
 * the rest of its state (the output law included).
 * Checks: pDecState null: vspStsNullPtrErr; rate not 17, 22, 23 or 24:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsDecodeSetRate_G726_8u16s, (VspsDecoderState_G726_16s* pDecState, int rate), (pDecState, rate))

/* Decodes len code words (one per byte; only the low 2..5 bits are used, as
 * in the reference) into len output values, continuing from the state
 * block. Linear law: 16-bit samples, the reconstructed signal limited to
 * -8192..8191 and shifted left by 2 (Annex A). A-law and mu-law: the code
 * word as transmitted (0..255) in each 16-bit element, after COMPRESS and
 * the synchronous coding adjustment of clause 4.3 (the word moved by one
 * level when a tandem encoder would not reproduce the received code).
 * Checks: pSrc, pDst, pDecState null: vspStsNullPtrErr; len < 1:
 * vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsDecode_G726_8u16s, (const Vsp8u* pSrc, Vsp16s* pDst, int len, VspsDecoderState_G726_16s* pDecState), (pSrc, pDst, len, pDecState))

/* Packs len code words of the rate selector `rate` (the low n bits of each
 * byte, n = 2..5) into (len*n + 7)/8 octets; a trailing partial octet is
 * padded with zero bits. order vspPackRtp (0): RFC 3551, the first word in
 * the least significant bits of the first octet, a straddling word with its
 * low bits in the earlier octet (32 kbit/s words 1, 2, 3, 4 -> 0x21 0x43);
 * vspPackAal2 (1): ITU-T I.366.2 Annex E, the first word in the most
 * significant bits, a straddling word with its high bits in the earlier
 * octet (-> 0x12 0x34).
 * Checks: pSrc, pDst null: vspStsNullPtrErr; len < 1: vspStsSizeErr; rate
 * not 17, 22, 23 or 24, or order not 0 or 1: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsPack_G726_8u, (const Vsp8u* pSrc, Vsp8u* pDst, int len, int rate, int order), (pSrc, pDst, len, rate, order))

/* Unpacks len code words of the rate selector `rate` from (len*n + 7)/8
 * octets packed in `order` (as legacy90vspsPack_G726_8u), one word per
 * byte. Checks: pSrc, pDst null: vspStsNullPtrErr; len < 1: vspStsSizeErr;
 * rate not 17, 22, 23 or 24, or order not 0 or 1: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsUnpack_G726_8u, (const Vsp8u* pSrc, Vsp8u* pDst, int len, int rate, int order), (pSrc, pDst, len, rate, order))

/* clang-format on */
