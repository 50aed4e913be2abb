/*
 * vsps_codecs.h - complete codecs assembled from the vsps primitives.
 *
 * Each codec object lives in memory the caller allocates: ...GetSize gives
 * the bytes, ...Init formats them (any alignment), the frame calls use them.
 * Functions return VspStatus values of vsps.h.
 */
#ifndef VSPS_CODECS_H
#define VSPS_CODECS_H

#include "vsps.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- G.729 (main body, Annex A, Annex B) --------------------------------- */

/* Options of the G.729 encoder and decoder (bit mask). */
enum {
  VSPS_G729_ANNEX_A = 1, /* Annex A (reduced complexity) encoder / decoder */
  VSPS_G729_DTX = 2      /* Annex B: VAD, DTX and comfort noise */
};

/* Frame types of a G.729 frame. */
enum { VSPS_G729_NO_DATA = 0, VSPS_G729_SPEECH = 1, VSPS_G729_SID = 2 };

/* One 10 ms frame as parameters: type, erasure flag, and the parameters in
 * bit-stream order (speech: the 11 words of the standard's table, L0+L1,
 * L2+L3, P1, P0, C1, S1, GA1+GB1, P2, C2, S2, GA2+GB2; SID: MA switch,
 * first-stage index, second-stage index, energy index). */
typedef struct {
  int type;   /* VSPS_G729_SPEECH, VSPS_G729_SID or VSPS_G729_NO_DATA */
  int erased; /* 1: the frame was lost (its parameters are not read) */
  Vsp16s prm[11];
} VspsG729Frame;

typedef struct VspsG729Decoder VspsG729Decoder;
typedef struct VspsG729Encoder VspsG729Encoder;

/* Bytes of a decoder object. pSize null: vspStsNullPtrErr. */
VspStatus vspsG729DecoderGetSize(int* pSize);
/* Formats a decoder (reset state) with options VSPS_G729_ANNEX_A and/or
 * VSPS_G729_DTX. Null: vspStsNullPtrErr; unknown option bits:
 * vspStsRangeErr. */
VspStatus vspsG729DecoderInit(VspsG729Decoder* pDec, int options);
/* Decodes one frame into 80 samples (post-filtered and post-processed).
 * Without VSPS_G729_DTX a SID or no-data frame is decoded as erased.
 * Null: vspStsNullPtrErr; a frame type outside 0..2: vspStsRangeErr. */
VspStatus vspsG729Decode(VspsG729Decoder* pDec, const VspsG729Frame* pFrame, Vsp16s* pPcm);

/* ---- G.729 bit-stream formats ---------------------------------------------- */

/* ITU serial format (test vectors): 16-bit words, sync 0x6B21, bit count,
 * then one word per bit (0x0081 = 1, 0x007F = 0, 0 = erased). Counts 80
 * (speech), 16 or 15 (SID), 0 (no data). */
enum { VSPS_G729_SERIAL_MAX_WORDS = 82 };

/* Reads one frame from pWords (nWords available). *pUsed gets the words
 * consumed. Statuses: vspStsNullPtrErr; vspStsSizeErr when the frame is
 * truncated (fewer words than its count says); vspStsBadArgErr for a bad
 * sync word, a count other than 0, 15, 16 or 80, or a bit word other than
 * 0x007F, 0x0081 or 0. Zero bit words mark an erasure. */
VspStatus vspsG729ReadSerial(const Vsp16s* pWords, int nWords, VspsG729Frame* pFrame, int* pUsed);
/* Writes one frame (speech: 82 words, SID: 18, no data: 2); *pWritten gets
 * the count. Null: vspStsNullPtrErr; bad type: vspStsRangeErr. */
VspStatus vspsG729WriteSerial(const VspsG729Frame* pFrame, Vsp16s* pWords, int* pWritten);

/* RTP payload (RFC 3551): 10 octets per speech frame, 2 per SID frame, 0
 * for no data; bits MSB first in parameter order. */
VspStatus vspsG729ReadRtp(const Vsp8u* pBytes, int nBytes, VspsG729Frame* pFrame);
VspStatus vspsG729WriteRtp(const VspsG729Frame* pFrame, Vsp8u* pBytes, int* pWritten);

#ifdef __cplusplus
}
#endif

#endif /* VSPS_CODECS_H */
