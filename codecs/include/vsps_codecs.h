/**
 * \file vsps_codecs.h
 * \brief Codec drivers over the vsps primitives: whole encoders and decoders
 * with caller-allocated objects, built only on the public vsps.h.
 *
 * Pattern of every driver: ...GetSize reports the bytes of the object, Init
 * formats caller memory (any alignment of 8 or more) for a configuration,
 * the working calls process blocks of samples or code words and keep the
 * codec state in the object. Nothing allocates. Results are VspStatus
 * values of vsps.h.
 */
#ifndef VSPS_CODECS_H
#define VSPS_CODECS_H

#include "vsps.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- G.711 --------------------------------------------------------------- */
/** Compresses n 16-bit linear samples into n G.711 code words (law
 * vspPcmALaw or vspPcmMuLaw, words as transmitted). */
VspStatus vspcG711Encode(int law, const Vsp16s* pcm, int n, Vsp8u* codes);
/** Expands n G.711 code words into n 16-bit linear samples. */
VspStatus vspcG711Decode(int law, const Vsp8u* codes, int n, Vsp16s* pcm);

/* ---- G.726 --------------------------------------------------------------- */
/** How G.726 code words are carried in bytes. */
typedef enum VspcG726Format {
  vspcG726Unpacked = 0, /**< one code word per byte, in the low bits */
  vspcG726Rtp = 1,      /**< packed, RFC 3551 order (first word in the low bits) */
  vspcG726Aal2 = 2      /**< packed, ITU-T I.366.2 order (first word in the high bits) */
} VspcG726Format;

typedef struct VspcG726Encoder VspcG726Encoder; /**< opaque encoder object */
typedef struct VspcG726Decoder VspcG726Decoder; /**< opaque decoder object */

/** Bytes of an encoder object (written to *size). */
VspStatus vspcG726EncoderGetSize(int* size);
/** Formats an encoder: kbps 16, 24, 32 or 40; law of the input (vspPcmLinear:
 * 16-bit samples, G.726 Annex A; vspPcmALaw / vspPcmMuLaw: G.711 code words);
 * the output format. Also the reset. Errors: null object vspStsNullPtrErr,
 * other values vspStsRangeErr. */
VspStatus vspcG726EncoderInit(VspcG726Encoder* enc, int kbps, int law, VspcG726Format format);
/** Changes the rate (16, 24, 32, 40) for the following blocks and keeps the
 * codec state. */
VspStatus vspcG726EncoderSetRate(VspcG726Encoder* enc, int kbps);
/** Bytes that n samples encode to in the encoder's format: n unpacked,
 * (n*bits + 7)/8 packed. */
int vspcG726EncodedBytes(const VspcG726Encoder* enc, int n);
/** Encodes n samples (const Vsp16s* for the linear law, const Vsp8u* code
 * words for A-law and mu-law) into vspcG726EncodedBytes(enc, n) bytes. In a
 * packed format a block whose code words do not fill whole octets ends with
 * zero padding: give blocks of a multiple of 8 samples except the last. */
VspStatus vspcG726Encode(VspcG726Encoder* enc, const void* samples, int n, Vsp8u* out);

/** Bytes of a decoder object (written to *size). */
VspStatus vspcG726DecoderGetSize(int* size);
/** Formats a decoder: kbps 16, 24, 32 or 40; output law (vspPcmLinear: 16-bit
 * samples, Annex A limiting; vspPcmALaw / vspPcmMuLaw: G.711 code words after
 * the synchronous coding adjustment); the input format. Also the reset. */
VspStatus vspcG726DecoderInit(VspcG726Decoder* dec, int kbps, int law, VspcG726Format format);
/** Changes the rate for the following blocks and keeps the codec state. */
VspStatus vspcG726DecoderSetRate(VspcG726Decoder* dec, int kbps);
/** Bytes that hold n code words in the decoder's format. */
int vspcG726DecoderInputBytes(const VspcG726Decoder* dec, int n);
/** Decodes n code words from vspcG726DecoderInputBytes(dec, n) bytes into n
 * output samples (Vsp16s* for the linear law, Vsp8u* code words for A-law and
 * mu-law). */
VspStatus vspcG726Decode(VspcG726Decoder* dec, const Vsp8u* in, int n, void* samples);

#ifdef __cplusplus
}
#endif

#endif /* VSPS_CODECS_H */
