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

/* ======================================================================
 * GSM-AMR LP analysis and LSP quantisation
 * ====================================================================== */

/* ======================================================================
 * Echo-cancellation toolkit
 * ====================================================================== */

/* clang-format on */
