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

/* ---- GSM-AMR (AMR-NB, 3GPP TS 26.073) --------------------------------
 * Modes are numbered as in the standard's bit-streams: 0..7 = 4.75, 5.15,
 * 5.90, 6.70, 7.40, 7.95, 10.2, 12.2 kbit/s. Frame types on the receive side
 * are the standard's RX types: 0 speech good, 1 speech degraded, 2 onset,
 * 3 speech bad, 4 SID_FIRST, 5 SID_UPDATE, 6 SID bad, 7 no data. Coded bits
 * are one per byte (0 or 1), in the standard's serial order, up to 244. */

/* Byte size of a GSM-AMR decoder object. */
VSPS_CODECS_API VspStatus vspscodecGsmAmrDecoderGetSize(int* pSize);
/* Formats a decoder object (reset state, homed). */
VSPS_CODECS_API VspStatus vspscodecGsmAmrDecoderInit(void* pDecoder);
/* Decodes one frame into pDstPcm (160 samples, 13-bit values): rxType as
 * above; mode 0..7, or -1 for "the previous frame's mode" (no-data frames);
 * pBits the 244 serial bit positions (SID frames: the 35 SID bits first).
 * Decoder homing: a frame equal to the mode's homing frame resets the
 * decoder; a second one in a row outputs 160 samples of 0x0008.
 * Checks: pointers null: vspStsNullPtrErr; rxType outside 0..7 or mode
 * outside -1..7: vspStsRangeErr; an object not formatted by Init:
 * vspStsBadArgErr. */
VSPS_CODECS_API VspStatus vspscodecGsmAmrDecode(void* pDecoder, int rxType, int mode, const Vsp8u* pBits,
                                                Vsp16s* pDstPcm);

/* Reads one frame of the standard's serial format (250 16-bit words:
 * type, 244 bit words, mode, 4 zero words). Type words 0..3 are the
 * transmit types (speech, SID_FIRST, SID_UPDATE, no data) and map to RX 0,
 * 4, 5, 7; 4..7 (degraded, bad, SID bad, onset) map to RX 1, 3, 6, 2.
 * *pMode = the mode word, -1 for no-data frames (their mode word is -1).
 * Checks: pointers null: vspStsNullPtrErr; type word outside 0..7 or mode
 * word outside 0..7 (outside no-data frames): vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecGsmAmrSerialRead(const Vsp16s* pWords, int* pRxType, int* pMode, Vsp8u* pBits);

/* Size in bytes (ToC byte included) of an RFC 4867 storage-format frame
 * from its ToC byte: 13, 14, 16, 18, 20, 21, 27, 32 for modes 0..7, 6 for
 * SID, 1 for no data. Checks: pBytes null: vspStsNullPtrErr; a frame type
 * 9..14: vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecGsmAmrStorageFrameSize(Vsp8u toc, int* pBytes);

/* Reads one storage-format frame (ToC byte and payload) into the serial
 * order: speech bits reordered by the TS 26.101 importance tables, SID
 * frames' 35 bits, SID type bit (0 SID_FIRST, 1 SID_UPDATE) and 3-bit mode.
 * Q = 0 marks a bad frame (speech bad / SID bad). *pMode = -1 for no data.
 * Checks: pointers null: vspStsNullPtrErr; a frame type 9..14:
 * vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecGsmAmrStorageRead(const Vsp8u* pFrame, int* pRxType, int* pMode, Vsp8u* pBits);

/* Writes one storage-format frame (ToC byte with Q = 1, then the payload)
 * from a transmitted frame: txType 0 speech, 1 SID_FIRST, 2 SID_UPDATE,
 * 3 no data (the standard's TX types); mode 0..7 (speech: the frame's mode;
 * SID: the requested mode written into the SID payload; ignored for no
 * data); pBits in the serial order. *pBytes = the bytes written (at most
 * 32). Checks: pointers null: vspStsNullPtrErr; txType outside 0..3 or mode
 * outside 0..7: vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecGsmAmrStorageWrite(int txType, int mode, const Vsp8u* pBits, Vsp8u* pFrame,
                                                      int* pBytes);

#ifdef __cplusplus
}
#endif

#endif /* VSPS_CODECS_H */
