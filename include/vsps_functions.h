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

/* ======================================================================
 * Echo-cancellation toolkit
 * ====================================================================== */

/* clang-format on */
