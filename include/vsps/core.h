/*
 * vsps/core.h - the list of exports of the library services and the
 * fixed-point kernel.
 *
 * One entry per export, VSPS_FN(return type, name, (parameters), (argument
 * names)); the comment above an entry is its public documentation. Included
 * by vsps_functions.h; see there for the entry format. No include guard.
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
