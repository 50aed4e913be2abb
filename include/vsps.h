/**
 * \file vsps.h
 * \brief Speech-coding primitives: the public interface.
 *
 * The library holds the numerical building blocks of ITU-T and 3GPP speech
 * codecs (G.729 family, GSM-AMR) and an echo-cancellation toolkit. The caller
 * runs the codec's frame loop and calls one primitive per analysis,
 * quantisation or filtering step, passing its own buffers and state blocks.
 *
 * Conventions shared by every export
 * ----------------------------------
 *  - Every function returns a VspStatus: 0 success, negative error, positive
 *    warning (the outputs are valid unless the function's notes say that a
 *    warning leaves them untouched).
 *  - Arguments are checked in a fixed order and the first failure is
 *    reported: null pointers first (vspStsNullPtrErr, in argument order),
 *    then lengths and counts (vspStsSizeErr or the function's own code),
 *    then value ranges. A call that fails has written nothing.
 *  - _Sfs functions scale their integer result by 2^-scaleFactor with an
 *    arithmetic (floor) shift unless the function's notes state rounding or
 *    saturation. _I functions work in place.
 *  - No function allocates, keeps global state (beyond the processor level
 *    chosen once per process) or calls back. Calls on distinct state blocks
 *    and buffers may run concurrently.
 *  - Sizes are element counts, except the byte counts reported by
 *    ...GetSize / ...GetStateSize functions.
 *  - Fixed-point formats: Qn means value * 2^n. The Q format of every
 *    argument is stated in the function's notes.
 *
 * Processor levels: each primitive exists in seven variants (generic x86-64,
 * SSE3, SSSE3, SSSE3+MOVBE, SSE4.1, AVX, AVX2) that give identical bits. The
 * level is chosen by legacy90vspscInit, which the first call of any primitive
 * runs on its own. The environment variable VSPS_CPU_MASK (hexadecimal)
 * restricts the processor features considered, e.g. VSPS_CPU_MASK=0 forces
 * the generic level.
 *
 * The function declarations, each with its notes, are in vsps_functions.h,
 * which this header includes; that file is the library's list of exports.
 * Include only this header.
 */
#ifndef VSPS_H
#define VSPS_H

#include <stdint.h>

/* ---- Linkage and calling convention ------------------------------------ */
/* Windows: define VSPS_STATIC when linking the static library; otherwise the
 * declarations import from the DLL. VSPS_BUILDING is set while building. */
/** \def VSPS_CALL
 * The calling convention of every export: __cdecl on Windows, the platform's
 * default elsewhere. */
/** \def VSPS_API
 * The linkage of every export: imported from the DLL on Windows unless
 * VSPS_STATIC is defined (static library), exported while the library is
 * built (VSPS_BUILDING), nothing otherwise. */
#if defined(_WIN32) || defined(__CYGWIN__)
#define VSPS_CALL __cdecl
#if defined(VSPS_BUILDING)
#define VSPS_API __declspec(dllexport)
#elif defined(VSPS_STATIC)
#define VSPS_API
#else
#define VSPS_API __declspec(dllimport)
#endif
#else
#define VSPS_CALL
#if defined(VSPS_BUILDING) && defined(__GNUC__)
#define VSPS_API __attribute__((visibility("default")))
#else
#define VSPS_API
#endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Element types ------------------------------------------------------ */
typedef uint8_t Vsp8u;   /**< unsigned 8-bit: code words, bytes, state blocks */
typedef int16_t Vsp16s;  /**< signed 16-bit: fixed-point samples, parameters */
typedef int32_t Vsp32s;  /**< signed 32-bit: accumulators, energies */
typedef uint32_t Vsp32u; /**< unsigned 32-bit: packed code words */
typedef float Vsp32f;    /**< IEEE-754 single precision */
typedef double Vsp64f;   /**< IEEE-754 double precision */
/** A complex single-precision value, real part first. */
typedef struct Vsp32fc {
  Vsp32f re; /**< real part */
  Vsp32f im; /**< imaginary part */
} Vsp32fc;
/** A complex 32-bit integer value, real part first. */
typedef struct Vsp32sc {
  Vsp32s re; /**< real part */
  Vsp32s im; /**< imaginary part */
} Vsp32sc;

/* ---- Status codes -------------------------------------------------------- */
/** The result of every function: 0 success, negative error (nothing was
 * written), positive warning (see VspStatusCode). */
typedef int32_t VspStatus;

/** The status values: errors are negative, warnings positive. A function
 * reports the first failing check; its notes list the codes it can return. */
enum VspStatusCode {
  vspStsNoErr = 0, /**< success */
  /* errors */
  vspStsErr = -2,            /**< an internal set-up step failed */
  vspStsBadArgErr = -5,      /**< an argument value the operation refuses */
  vspStsSizeErr = -6,        /**< a length, order or count out of its limits */
  vspStsRangeErr = -7,       /**< a value outside its permitted set or range */
  vspStsNullPtrErr = -8,     /**< a pointer argument is null */
  vspStsBadIndexErr = -11,   /**< a received index or switch outside its table */
  vspStsLSFRangeErr = -12,   /**< an input LSF is negative */
  vspStsOutOfRangeErr = -13, /**< an integer control argument outside its range */
  vspStsFIRLenErr = -119,    /**< a sub-band filter length outside 1..4097 */
  /* warnings */
  vspStsLPCUnstable = 12,    /**< Levinson-Durbin stopped; outputs not written */
  vspStsLsfLowClamped = 13,  /**< decoded LSF clamped at the low limit */
  vspStsLsfHighClamped = 14, /**< decoded LSF clamped at the high limit */
  vspStsLsfBothClamped = 15, /**< decoded LSF clamped at both limits */
  vspStsOverflow = 16,       /**< an operator saturated (reference Overflow flag); outputs are valid */
  vspStsForeignCpu = 20,     /**< processor vendor differs from the tuned one */
  vspStsNoCpuFeatures = 36   /**< processor identification unavailable */
};

/* ---- Version record ------------------------------------------------------ */
/** The version record of a processor level, returned by
 * legacy90vspscGetLibVersion; static, never written by the caller. */
typedef struct VspLibraryVersion {
  int32_t major;         /**< major version: 9 */
  int32_t minor;         /**< minor version: 0 */
  int32_t majorBuild;    /**< major build number: 0 */
  int32_t build;         /**< build number: -1 */
  char targetCpu[4];     /**< level code, zero-padded: "mx" .. "l9" */
  const char* Name;      /**< library and level name, e.g. "vspSC AVX2 (l9)" */
  const char* Version;   /**< version string: "9.0 Legacy (r48491) (-)" */
  const char* BuildDate; /**< build date: "Oct 15 2015" */
} VspLibraryVersion;

/* ---- Rate selector of the GSM-AMR and G.726 primitives -------------------- */
/** One enumeration of bit rates, sorted by rate: the `mode` argument of the
 * GSM-AMR functions and the `rate` argument of the G.726 functions. Each
 * function accepts its own subset; any other value gives vspStsRangeErr. */
typedef enum VspSpeechBitRate {
  vspRate4750 = 0,   /**< 4.75 kbit/s */
  vspRate5150 = 1,   /**< 5.15 kbit/s */
  vspRate5900 = 3,   /**< 5.90 kbit/s */
  vspRate6700 = 6,   /**< 6.70 kbit/s */
  vspRate7400 = 7,   /**< 7.40 kbit/s */
  vspRate7950 = 8,   /**< 7.95 kbit/s */
  vspRate10200 = 11, /**< 10.2 kbit/s */
  vspRate12200 = 12, /**< 12.2 kbit/s */
  vspRate16000 = 17, /**< 16 kbit/s (G.726, 2-bit code words) */
  vspRate24000 = 22, /**< 24 kbit/s (G.726, 3-bit code words) */
  vspRate32000 = 23, /**< 32 kbit/s (G.726, 4-bit code words) */
  vspRate40000 = 24, /**< 40 kbit/s (G.726, 5-bit code words) */
  vspRateDTX = 25    /**< comfort-noise (SID) frames */
} VspSpeechBitRate;

/* ---- Waveform-codec selectors ------------------------------------------- */
/** The PCM law on the outside of a waveform codec (the `law` argument of
 * legacy90vspsDecodeInit_G726_8u16s); any other value gives vspStsRangeErr. */
typedef enum VspPcmLaw {
  vspPcmLinear = 0, /**< 16-bit uniform PCM (G.726 Annex A: 14 bits used) */
  vspPcmALaw = 1,   /**< G.711 A-law code words as transmitted */
  vspPcmMuLaw = 2   /**< G.711 mu-law code words as transmitted */
} VspPcmLaw;

/** The order of G.726 code words in octets (the `order` argument of
 * legacy90vspsPack_G726_8u and legacy90vspsUnpack_G726_8u). */
typedef enum VspCodePacking {
  vspPackRtp = 0, /**< RFC 3551: first code word in the least significant bits */
  vspPackAal2 = 1 /**< ITU-T I.366.2: first code word in the most significant bits */
} VspCodePacking;

/* ---- State blocks -------------------------------------------------------- */
/* Opaque: the caller allocates the number of bytes the tool's GetSize /
 * GetStateSize function reports and the tool's Init formats it. Blocks are
 * accepted at any alignment. */
/** State of a fixed-point sub-band filter bank (one analysed or synthesised
 * signal); formatted by legacy90vspsSubbandProcessInit_16s, not movable. */
typedef struct VspsSubbandProcessState_16s VspsSubbandProcessState_16s;
/** State of a float sub-band filter bank (one analysed or synthesised
 * signal); formatted by legacy90vspsSubbandProcessInit_32f, not movable. */
typedef struct VspsSubbandProcessState_32f VspsSubbandProcessState_32f;
/** State of a fixed-point 2100 Hz tone detector (72 bytes); formatted by
 * legacy90vspsToneDetectInit_EC_16s. */
typedef struct VspsToneDetectState_16s VspsToneDetectState_16s;
/** State of a float 2100 Hz tone detector (80 bytes); formatted by
 * legacy90vspsToneDetectInit_EC_32f. */
typedef struct VspsToneDetectState_32f VspsToneDetectState_32f;
/** State of a G.726 ADPCM encoder (rate and 24 reference fields, 104
 * bytes); formatted by legacy90vspsEncodeInit_G726_16s8u, movable. */
typedef struct VspsEncoderState_G726_16s VspsEncoderState_G726_16s;
/** State of a G.726 ADPCM decoder (rate, output law and 24 reference
 * fields, 104 bytes); formatted by legacy90vspsDecodeInit_G726_8u16s,
 * movable. */
typedef struct VspsDecoderState_G726_16s VspsDecoderState_G726_16s;
/** State of a G.722 encoder (QMF delay line and both sub-band ADPCM
 * states); formatted by legacy90vspsEncodeInit_G722_16s8u. */
typedef struct VspsEncoderState_G722_16s VspsEncoderState_G722_16s;
/** State of a G.722 decoder; formatted by legacy90vspsDecodeInit_G722_8u16s. */
typedef struct VspsDecoderState_G722_16s VspsDecoderState_G722_16s;

/* ---- Functions ----------------------------------------------------------- */
#define VSPS_SERVICE(ret, name, params, args) VSPS_API ret VSPS_CALL name params;
#define VSPS_FN(ret, name, params, args) VSPS_API ret VSPS_CALL name params;
#include "vsps_functions.h"
#undef VSPS_SERVICE
#undef VSPS_FN

#ifdef __cplusplus
}
#endif

#endif /* VSPS_H */
