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

/* Byte size of a GSM-AMR encoder object. */
VSPS_CODECS_API VspStatus vspscodecGsmAmrEncoderGetSize(int* pSize);
/* Formats an encoder object (reset state): dtx 0 or 1 (discontinuous
 * transmission), vad 1 or 2 (the voice activity detector used with DTX).
 * Checks: pEncoder null: vspStsNullPtrErr; dtx or vad outside their values:
 * vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecGsmAmrEncoderInit(void* pEncoder, int dtx, int vad);
/* Encodes one frame of 160 samples (the 3 low bits are ignored) in mode
 * 0..7 (may change every frame): *pTxType = 0 speech, 1 SID_FIRST,
 * 2 SID_UPDATE, 3 no data (the standard's TX types; only 0 without DTX);
 * pBits (244) the coded bits in the serial order (speech: the mode's bits;
 * otherwise the 35 SID bits), the rest 0. A frame of 160 samples of 0x0008
 * (encoder homing frame) is coded, then the encoder is reset.
 * Checks: pointers null: vspStsNullPtrErr; mode outside 0..7:
 * vspStsRangeErr; an object not formatted by Init: vspStsBadArgErr. */
VSPS_CODECS_API VspStatus vspscodecGsmAmrEncode(void* pEncoder, int mode, const Vsp16s* pSrcPcm, int* pTxType,
                                                Vsp8u* pBits);
/* Writes one frame of the standard's serial format (250 16-bit words):
 * txType (0..3), the 244 bit words, the mode word (the requested mode 0..7;
 * -1 for no-data frames), 4 zero words.
 * Checks: pointers null: vspStsNullPtrErr; txType outside 0..3 or mode
 * outside 0..7: vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecGsmAmrSerialWrite(int txType, int mode, const Vsp8u* pBits, Vsp16s* pWords);

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

/* ---- Echo canceller (codecs/echo/) -----------------------------------------
 * A sub-band line/acoustic echo canceller at 8000 or 16000 Hz: a filter
 * bank of 33 (65 at 16000 Hz) sub-bands with a root-Nyquist prototype
 * (4 ms hop), one adaptive filter per sub-band covering the tail, the
 * library's step-size controllers, Geigel double-talk protection, the noise
 * filter (residual-echo suppression with comfort noise) and the 2100 Hz
 * tone detector, which holds adaptation and suppression off while a tone
 * with phase reversals is present (until 250 ms of low level on both
 * ends). Per call one hop of vspscodecEchoCancellerFrameSize() samples;
 * the output lags the near end by vspscodecEchoCancellerDelay() samples.
 * The canceller is the memory passed to Init (cast to VspscodecEchoCanceller*);
 * it holds pointers into itself: never move or copy it after Init.
 */
typedef struct VspscodecEchoCanceller VspscodecEchoCanceller;

/* Flags of Init. */
#define VSPSCODEC_EC_NO_NLP 1 /* no noise filter: the linear residual */

/* Per-hop diagnostics (all optional to read). */
typedef struct VspscodecEchoDiagnostics {
  int doubleTalk;   /* 1 while near-end talk is declared (adaptation held) */
  int toneDisabled; /* 1 while the 2100 Hz disabling tone holds the canceller */
  int converged;    /* 1 once the filter has removed 10 dB of echo */
  float leak;       /* estimated share of the echo estimate left in the residual */
} VspscodecEchoDiagnostics;

/* Hop length in samples: 32 at 8000 Hz, 64 at 16000 Hz (0 for other rates). */
VSPS_CODECS_API int vspscodecEchoCancellerFrameSize(int rate);
/* Output delay behind the near end in samples (0 for other rates). */
VSPS_CODECS_API int vspscodecEchoCancellerDelay(int rate);

/* Bytes of a canceller for the rate and tail length (1..128 ms at 8000 Hz,
 * 1..64 ms at 16000 Hz). Checks: size null: vspStsNullPtrErr; rate not
 * 8000 or 16000: vspStsRangeErr; tailMs outside its range: vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecEchoCancellerGetSize(int rate, int tailMs, int* size);

/* Formats a canceller in memory of GetSize bytes (any alignment). Checks:
 * memory null: vspStsNullPtrErr; rate and tailMs as GetSize; flags other
 * than 0 or VSPSCODEC_EC_NO_NLP: vspStsBadArgErr. A library status of the
 * bank's Init is passed on. */
VSPS_CODECS_API VspStatus vspscodecEchoCancellerInit(Vsp8u* memory, int rate, int tailMs, int flags);

/* One hop: farEnd (the signal sent into the echo path) and nearEnd (the
 * signal coming back), frameSize samples each, Q0; out receives frameSize
 * samples of the near end with the echo removed. diag may be null. Checks:
 * canceller, farEnd, nearEnd or out null: vspStsNullPtrErr. */
VSPS_CODECS_API VspStatus vspscodecEchoCancellerProcess(VspscodecEchoCanceller* canceller, const Vsp16s* farEnd,
                                                        const Vsp16s* nearEnd, Vsp16s* out,
                                                        VspscodecEchoDiagnostics* diag);

/* ---- G.711 --------------------------------------------------------------- */
/* Compresses n 16-bit linear samples into n G.711 code words (law
 * vspPcmALaw or vspPcmMuLaw, words as transmitted). Checks: pcm, codes null
 * vspStsNullPtrErr; n < 1 vspStsSizeErr; another law vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecG711Encode(int law, const Vsp16s* pcm, int n, Vsp8u* codes);
/* Expands n G.711 code words into n 16-bit linear samples; checks as
 * vspscodecG711Encode. */
VSPS_CODECS_API VspStatus vspscodecG711Decode(int law, const Vsp8u* codes, int n, Vsp16s* pcm);

/* ---- G.726 --------------------------------------------------------------- */
/* How G.726 code words are carried in bytes. */
typedef enum VspscodecG726Format {
  vspscodecG726Unpacked = 0, /* one code word per byte, in the low bits */
  vspscodecG726Rtp = 1,      /* packed, RFC 3551 order (first word in the low bits) */
  vspscodecG726Aal2 = 2      /* packed, ITU-T I.366.2 order (first word in the high bits) */
} VspscodecG726Format;

typedef struct VspscodecG726Encoder VspscodecG726Encoder; /* opaque encoder object */
typedef struct VspscodecG726Decoder VspscodecG726Decoder; /* opaque decoder object */

/* Bytes of an encoder object (written to *size). */
VSPS_CODECS_API VspStatus vspscodecG726EncoderGetSize(int* size);
/* Formats an encoder: kbps 16, 24, 32 or 40; law of the input (vspPcmLinear:
 * 16-bit samples, G.726 Annex A; vspPcmALaw / vspPcmMuLaw: G.711 code words,
 * expanded with G.711 before the ADPCM, which is the G.726 log-PCM input);
 * the output format. Also the reset. Checks: enc null vspStsNullPtrErr;
 * kbps, law or format outside their sets vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecG726EncoderInit(VspscodecG726Encoder* enc, int kbps, int law, int format);
/* Changes the rate (16, 24, 32, 40) for the following blocks and keeps the
 * codec state. */
VSPS_CODECS_API VspStatus vspscodecG726EncoderSetRate(VspscodecG726Encoder* enc, int kbps);
/* Bytes that n samples encode to in the encoder's format (n unpacked,
 * (n*bits + 7)/8 packed), written to *bytes. */
VSPS_CODECS_API VspStatus vspscodecG726EncoderOutputBytes(const VspscodecG726Encoder* enc, int n, int* bytes);
/* Encodes n samples (const Vsp16s* for the linear law, const Vsp8u* code
 * words for A-law and mu-law) into vspscodecG726EncoderOutputBytes bytes. In
 * a packed format a block whose code words do not fill whole octets ends
 * with zero padding: give blocks of a multiple of 8 samples except the
 * last. Checks: enc, samples, out null vspStsNullPtrErr; n < 1
 * vspStsSizeErr. */
VSPS_CODECS_API VspStatus vspscodecG726EncoderEncode(VspscodecG726Encoder* enc, const void* samples, int n, Vsp8u* out);

/* Bytes of a decoder object (written to *size). */
VSPS_CODECS_API VspStatus vspscodecG726DecoderGetSize(int* size);
/* Formats a decoder: kbps 16, 24, 32 or 40; output law (vspPcmLinear: 16-bit
 * samples, Annex A limiting; vspPcmALaw / vspPcmMuLaw: G.711 code words after
 * the synchronous coding adjustment); the input format. Also the reset.
 * Checks as vspscodecG726EncoderInit. */
VSPS_CODECS_API VspStatus vspscodecG726DecoderInit(VspscodecG726Decoder* dec, int kbps, int law, int format);
/* Changes the rate for the following blocks and keeps the codec state. */
VSPS_CODECS_API VspStatus vspscodecG726DecoderSetRate(VspscodecG726Decoder* dec, int kbps);
/* Bytes that hold n code words in the decoder's format, written to *bytes. */
VSPS_CODECS_API VspStatus vspscodecG726DecoderInputBytes(const VspscodecG726Decoder* dec, int n, int* bytes);
/* Decodes n code words from vspscodecG726DecoderInputBytes bytes into n
 * output samples (Vsp16s* for the linear law, Vsp8u* code words for A-law
 * and mu-law). Checks: dec, in, samples null vspStsNullPtrErr; n < 1
 * vspStsSizeErr. */
VSPS_CODECS_API VspStatus vspscodecG726DecoderDecode(VspscodecG726Decoder* dec, const Vsp8u* in, int n, void* samples);

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
VSPS_CODECS_API VspStatus vspscodecG729DecoderGetSize(int* pSize);
/* Formats a decoder (reset state) with options VSPS_G729_ANNEX_A and/or
 * VSPS_G729_DTX. Null: vspStsNullPtrErr; unknown option bits:
 * vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecG729DecoderInit(VspsG729Decoder* pDec, int options);
/* Decodes one frame into 80 samples (post-filtered and post-processed).
 * Without VSPS_G729_DTX a SID or no-data frame is decoded as erased.
 * Null: vspStsNullPtrErr; a frame type outside 0..2: vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecG729DecoderDecode(VspsG729Decoder* pDec, const VspsG729Frame* pFrame, Vsp16s* pPcm);

/* Bytes of an encoder object. pSize null: vspStsNullPtrErr. */
VSPS_CODECS_API VspStatus vspscodecG729EncoderGetSize(int* pSize);
/* Formats an encoder (reset state) with options VSPS_G729_ANNEX_A and/or
 * VSPS_G729_DTX. Null: vspStsNullPtrErr; unknown option bits:
 * vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecG729EncoderInit(VspsG729Encoder* pEnc, int options);
/* Encodes 80 samples (16-bit PCM, 8 kHz) into one frame of parameters.
 * Null: vspStsNullPtrErr. */
VSPS_CODECS_API VspStatus vspscodecG729EncoderEncode(VspsG729Encoder* pEnc, const Vsp16s* pPcm, VspsG729Frame* pFrame);

/* ---- G.729 bit-stream formats ---------------------------------------------- */

/* ITU serial format (test vectors): 16-bit words, sync 0x6B21, bit count,
 * then one word per bit (0x0081 = 1, 0x007F = 0, 0 = erased). Counts 80
 * (speech), 16 or 15 (SID), 0 (no data). */
enum { VSPS_G729_SERIAL_MAX_WORDS = 82 };

/* Reads one frame from pWords (nWords available). *pUsed gets the words
 * consumed. Zero bit words and a sync word other than 0x6B21 mark the frame
 * erased (the ITU decoders' rule; the Annex B test files contain such a
 * frame). Statuses: vspStsNullPtrErr; vspStsSizeErr when the frame is
 * truncated (fewer words than its count says); vspStsBadArgErr for a count
 * other than 0, 15, 16 or 80, or a bit word other than 0x007F, 0x0081 or 0. */
VSPS_CODECS_API VspStatus vspscodecG729SerialRead(const Vsp16s* pWords, int nWords, VspsG729Frame* pFrame, int* pUsed);
/* Writes one frame (speech: 82 words, SID: 18, no data: 2); *pWritten gets
 * the count. Null: vspStsNullPtrErr; bad type: vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecG729SerialWrite(const VspsG729Frame* pFrame, Vsp16s* pWords, int* pWritten);

/* RTP payload (RFC 3551): 10 octets per speech frame, 2 per SID frame, 0
 * for no data; bits MSB first in parameter order. */
VSPS_CODECS_API VspStatus vspscodecG729RtpRead(const Vsp8u* pBytes, int nBytes, VspsG729Frame* pFrame);
VSPS_CODECS_API VspStatus vspscodecG729RtpWrite(const VspsG729Frame* pFrame, Vsp8u* pBytes, int* pWritten);

/* ---- G.722 --------------------------------------------------------------- */
typedef struct VspscodecG722Encoder VspscodecG722Encoder; /* opaque encoder object */
typedef struct VspscodecG722Decoder VspscodecG722Decoder; /* opaque decoder object */

/* Bytes of an encoder object (written to *size). */
VSPS_CODECS_API VspStatus vspscodecG722EncoderGetSize(int* size);
/* Formats an encoder in the reset state (also the reset). Errors: null:
 * vspStsNullPtrErr. */
VSPS_CODECS_API VspStatus vspscodecG722EncoderInit(VspscodecG722Encoder* enc);
/* Encodes n samples at 16 kHz (n even) into n/2 octets (ih << 6 | il: the
 * 64 kbit/s stream). Statuses of legacy90vspsEncode_G722_16s8u. */
VSPS_CODECS_API VspStatus vspscodecG722EncoderEncode(VspscodecG722Encoder* enc, const Vsp16s* pcm, int n,
                                                     Vsp8u* octets);

/* Bytes of a decoder object (written to *size). */
VSPS_CODECS_API VspStatus vspscodecG722DecoderGetSize(int* size);
/* Formats a decoder for mode 1, 2 or 3 (64, 56, 48 kbit/s: the octets'
 * 0, 1 or 2 low bits are auxiliary data and ignored). Errors: null:
 * vspStsNullPtrErr; another mode: vspStsRangeErr. */
VSPS_CODECS_API VspStatus vspscodecG722DecoderInit(VspscodecG722Decoder* dec, int mode);
/* Decodes n octets into 2 n samples at 16 kHz. Statuses of
 * legacy90vspsDecode_G722_8u16s. */
VSPS_CODECS_API VspStatus vspscodecG722DecoderDecode(VspscodecG722Decoder* dec, const Vsp8u* octets, int n,
                                                     Vsp16s* pcm);

/* The configuration of the digital test sequences (QMF bypassed): n lower-
 * and higher-band samples into n octets, and n octets into n lower- and
 * higher-band samples (the decoder's mode applies). These keep their own
 * sub-band states in the object, reset by Init; use an object either this
 * way or with EncoderEncode/DecoderDecode. Errors: null: vspStsNullPtrErr; n < 1:
 * vspStsSizeErr; statuses of the sub-band steps. */
VSPS_CODECS_API VspStatus vspscodecG722EncoderEncodeBands(VspscodecG722Encoder* enc, const Vsp16s* xl, const Vsp16s* xh,
                                                          int n, Vsp8u* octets);
VSPS_CODECS_API VspStatus vspscodecG722DecoderDecodeBands(VspscodecG722Decoder* dec, const Vsp8u* octets, int n,
                                                          Vsp16s* rl, Vsp16s* rh);

/* ---- GSM 06.10 full rate ------------------------------------------------- */
/* Samples per frame (20 ms at 8 kHz), parameters per frame, octets of the
 * packed frame and of the test-sequence frame. */
enum {
  vspscodecGsmfrFrame = 160,
  vspscodecGsmfrParams = 76,
  vspscodecGsmfrPackedBytes = 33,
  vspscodecGsmfrCodBytes = 152
};

typedef struct VspscodecGsmfrEncoder VspscodecGsmfrEncoder; /* opaque encoder object */
typedef struct VspscodecGsmfrDecoder VspscodecGsmfrDecoder; /* opaque decoder object */

/* Bytes of an encoder object (written to *size). */
VSPS_CODECS_API VspStatus vspscodecGsmfrEncoderGetSize(int* size);
/* Formats an encoder in the reset state. Errors: null: vspStsNullPtrErr. */
VSPS_CODECS_API VspStatus vspscodecGsmfrEncoderInit(VspscodecGsmfrEncoder* enc);
/* Encodes one frame of 160 samples (the standard keeps their top 13 bits)
 * into the 76 parameters: LARc[1..8], then per subframe Nc, bc, Mc, xmaxc,
 * xMc[0..12]. */
VSPS_CODECS_API VspStatus vspscodecGsmfrEncoderEncode(VspscodecGsmfrEncoder* enc, const Vsp16s* pcm, Vsp16s* params);

/* Bytes of a decoder object (written to *size). */
VSPS_CODECS_API VspStatus vspscodecGsmfrDecoderGetSize(int* size);
/* Formats a decoder in the reset state. Errors: null: vspStsNullPtrErr. */
VSPS_CODECS_API VspStatus vspscodecGsmfrDecoderInit(VspscodecGsmfrDecoder* dec);
/* Decodes the 76 parameters of one frame into 160 samples (multiples of
 * 8). A lag outside 40..120 is replaced by the last valid one. A parameter
 * outside its field (vspscodecGsmfrCheckParams) gives vspStsRangeErr with
 * the decoder state and the output unchanged. */
VSPS_CODECS_API VspStatus vspscodecGsmfrDecoderDecode(VspscodecGsmfrDecoder* dec, const Vsp16s* params, Vsp16s* pcm);

/* vspStsNoErr when each of the 76 parameters fits its field (6,6,5,5,4,4,
 * 3,3 bits for LARc; 7, 2, 2, 6 and 13 x 3 bits per subframe), else
 * vspStsRangeErr; null: vspStsNullPtrErr. */
VSPS_CODECS_API VspStatus vspscodecGsmfrCheckParams(const Vsp16s* params);
/* Packs 76 parameters into the 33-octet frame of the common file and RTP
 * format: the signature 0xD in the top 4 bits, then the fields most
 * significant bit first. Errors: null; a parameter outside its field:
 * vspStsRangeErr (nothing written). */
VSPS_CODECS_API VspStatus vspscodecGsmfrPack(const Vsp16s* params, Vsp8u* frame);
/* Unpacks a 33-octet frame. Errors: null; a signature other than 0xD:
 * vspStsBadArgErr (nothing written). */
VSPS_CODECS_API VspStatus vspscodecGsmfrUnpack(const Vsp8u* frame, Vsp16s* params);
/* The test-sequence format: 76 parameters as 16-bit little-endian words
 * (152 octets). ToCod checks the fields like Pack; FromCod gives
 * vspStsRangeErr for a word outside its field (nothing written). */
VSPS_CODECS_API VspStatus vspscodecGsmfrToCod(const Vsp16s* params, Vsp8u* words);
VSPS_CODECS_API VspStatus vspscodecGsmfrFromCod(const Vsp8u* words, Vsp16s* params);

#ifdef __cplusplus
}
#endif

#endif /* VSPS_CODECS_H */
