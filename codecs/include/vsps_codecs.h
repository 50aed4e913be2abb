/*
 * vsps_codecs.h - the companion codec layer: whole encoders, decoders and
 * the echo canceller, assembled from the exports of vsps.h only.
 *
 * The library (vsps.h) computes the standards' steps and holds no frame
 * loop, no framing and no input or output. This layer holds exactly those:
 * per codec a driver that runs the frame loop over the library's steps,
 * keeps the codec's state, and reads and writes the codec's bit-stream
 * formats. It computes nothing a standard computes: every signal-processing
 * step is a call into vsps.h.
 *
 * Conventions, shared by every driver:
 *  - Names: vspscodec + codec + object + verb, e.g. vspscodecG726EncoderInit.
 *  - Objects are caller-allocated: ...GetSize writes the byte size, ...Init
 *    formats the memory (any alignment), the working calls use it, the
 *    caller frees it. No allocation, no global state, no I/O.
 *  - Every function returns a VspStatus of vsps.h, with the library's
 *    check order (null pointers, then sizes, then ranges; nothing written
 *    on failure). A status of a library step is passed on unchanged.
 *  - Bit-stream formats live beside their driver (one per format in use:
 *    the standards' test-vector formats and the RTP payload formats).
 *
 * The drivers' declarations follow, one block per codec.
 */
#ifndef VSPS_CODECS_H
#define VSPS_CODECS_H

#include "vsps.h"

#if defined(_WIN32) && !defined(VSPS_CODECS_STATIC)
#if defined(VSPS_CODECS_BUILDING)
#define VSPS_CODECS_API __declspec(dllexport)
#else
#define VSPS_CODECS_API __declspec(dllimport)
#endif
#elif defined(VSPS_CODECS_BUILDING)
#define VSPS_CODECS_API __attribute__((visibility("default")))
#else
#define VSPS_CODECS_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The codec layer's version as "major.minor.patch" (the library's), never
 * null. */
VSPS_CODECS_API const char* vspscodecGetVersion(void);

#ifdef __cplusplus
}
#endif

#endif /* VSPS_CODECS_H */
