/*
 * vsps/speech.h - the list of exports of the shared speech-analysis
 * primitives, used by several codec families.
 *
 * One entry per export, VSPS_FN(return type, name, (parameters), (argument
 * names)); the comment above an entry is its public documentation. Included
 * by vsps_functions.h; see there for the entry format. No include guard.
 */
/* clang-format off */

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
