/*
 * vsps/g711.h - exports of the G.711 family (included by vsps_functions.h;
 * same entry format, no include guard).
 *
 * Code words are 8-bit values as transmitted on the line: A-law with the
 * even bits inverted (0xD5 = smallest positive level, 0x55 smallest
 * negative, 0xAA / 0x2A full scale), mu-law with all bits inverted (0xFF =
 * +0, 0x7F = -0, 0x80 / 0x00 full scale). The arithmetic is that of the
 * ITU-T G.191 g711 module (alaw_compress, alaw_expand, ulaw_compress,
 * ulaw_expand), which the G.726 and G.722 reference tools use for their
 * law-coded files.
 */
/* clang-format off */

/* ======================================================================
 * G.711
 * ====================================================================== */

/* A-law compression of len 16-bit linear samples (Q0; the top 12 bits of the
 * magnitude are used, A-law being a 13-bit law). The magnitude of a negative
 * sample is taken as -x - 1 (one's complement), so the decision thresholds
 * mirror around -1/2: 0 -> 0xD5, -1 -> 0x55, 15 -> 0xD5, 16 -> 0xD4,
 * -16 -> 0x55, -17 -> 0x54, 32767 -> 0xAA, -32768 -> 0x2A.
 * Checks: pSrc, pDst null: vspStsNullPtrErr; len < 1: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsLinToALaw_G711_16s8u, (const Vsp16s* pSrc, Vsp8u* pDst, int len), (pSrc, pDst, len))

/* mu-law compression of len 16-bit linear samples (Q0): the magnitude in
 * 14-bit units ((x >> 2), or ((-x - 1) >> 2) for negative x) plus the bias
 * 33, clipped to 8191, segment and 4-bit step, all bits inverted.
 * 0 -> 0xFF, -1 -> 0x7F, 32767 -> 0x80, -32768 -> 0x00.
 * Checks: pSrc, pDst null: vspStsNullPtrErr; len < 1: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsLinToMuLaw_G711_16s8u, (const Vsp16s* pSrc, Vsp8u* pDst, int len), (pSrc, pDst, len))

/* A-law expansion of len code words to 16-bit linear samples (Q0): the
 * mid-point of each decision interval, -32256..32256, never 0 (0xD5 -> 8,
 * 0x55 -> -8). Checks: pSrc, pDst null: vspStsNullPtrErr; len < 1:
 * vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsALawToLin_G711_8u16s, (const Vsp8u* pSrc, Vsp16s* pDst, int len), (pSrc, pDst, len))

/* mu-law expansion of len code words to 16-bit linear samples (Q0),
 * -32124..32124; 0xFF and 0x7F both give 0. Checks: pSrc, pDst null:
 * vspStsNullPtrErr; len < 1: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsMuLawToLin_G711_8u16s, (const Vsp8u* pSrc, Vsp16s* pDst, int len), (pSrc, pDst, len))

/* Direct A-law -> mu-law transcoding of len code words: each A-law word is
 * expanded (legacy90vspsALawToLin_G711_8u16s) and the linear value
 * compressed with mu-law (legacy90vspsLinToMuLaw_G711_16s8u), i.e. the
 * mu-law interval that holds the A-law reconstruction level. Checks: pSrc,
 * pDst null: vspStsNullPtrErr; len < 1: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsALawToMuLaw_G711_8u, (const Vsp8u* pSrc, Vsp8u* pDst, int len), (pSrc, pDst, len))

/* Direct mu-law -> A-law transcoding of len code words: mu-law expansion
 * followed by A-law compression, as legacy90vspsALawToMuLaw_G711_8u.
 * Checks: pSrc, pDst null: vspStsNullPtrErr; len < 1: vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsMuLawToALaw_G711_8u, (const Vsp8u* pSrc, Vsp8u* pDst, int len), (pSrc, pDst, len))

/* clang-format on */
