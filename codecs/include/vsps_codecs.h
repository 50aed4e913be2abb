/**
 * \file vsps_codecs.h
 * \brief Codec drivers over the vsps primitives: whole encoders and decoders
 * with caller-allocated objects, built only on the public vsps.h.
 *
 * Pattern of every driver: ...GetSize reports the bytes of the object, Init
 * formats caller memory (aligned to 8 bytes or more) and is also the reset,
 * the working calls process frames and keep the codec state in the object.
 * Nothing allocates. Results are VspStatus values of vsps.h.
 */
#ifndef VSPS_CODECS_H
#define VSPS_CODECS_H

#include "vsps.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- G.722 ---------------------------------------------------------------- */
typedef struct VspcG722Encoder VspcG722Encoder; /**< opaque encoder object */
typedef struct VspcG722Decoder VspcG722Decoder; /**< opaque decoder object */

/** Bytes of an encoder object (written to *size). */
VspStatus vspcG722EncoderGetSize(int* size);
/** Formats an encoder in the reset state. Errors: null: vspStsNullPtrErr. */
VspStatus vspcG722EncoderInit(VspcG722Encoder* enc);
/** Encodes n samples at 16 kHz (n even) into n/2 octets (ih << 6 | il, the
 * 64 kbit/s stream). */
VspStatus vspcG722Encode(VspcG722Encoder* enc, const Vsp16s* pcm, int n, Vsp8u* octets);

/** Bytes of a decoder object (written to *size). */
VspStatus vspcG722DecoderGetSize(int* size);
/** Formats a decoder for mode 1, 2 or 3 (64, 56, 48 kbit/s: the octets'
 * 0, 1 or 2 low bits are auxiliary data and ignored). Errors: null
 * vspStsNullPtrErr; another mode vspStsRangeErr. */
VspStatus vspcG722DecoderInit(VspcG722Decoder* dec, int mode);
/** Decodes n octets into 2 n samples at 16 kHz. */
VspStatus vspcG722Decode(VspcG722Decoder* dec, const Vsp8u* octets, int n, Vsp16s* pcm);

/** The configuration of the digital test sequences (QMF bypassed): n
 * lower- and higher-band samples into n octets, and n octets into n lower-
 * and higher-band samples (the decoder's mode applies). These keep their
 * own sub-band states in the object, reset by Init; use an object either
 * this way or with Encode/Decode. */
VspStatus vspcG722EncodeBands(VspcG722Encoder* enc, const Vsp16s* xl, const Vsp16s* xh, int n, Vsp8u* octets);
VspStatus vspcG722DecodeBands(VspcG722Decoder* dec, const Vsp8u* octets, int n, Vsp16s* rl, Vsp16s* rh);

/* ---- GSM 06.10 full rate ------------------------------------------------ */
/** Samples per frame (20 ms at 8 kHz), parameters per frame, octets of the
 * packed frame. */
enum { vspcGsmfrFrame = 160, vspcGsmfrParams = 76, vspcGsmfrPackedBytes = 33, vspcGsmfrCodBytes = 152 };

typedef struct VspcGsmfrEncoder VspcGsmfrEncoder; /**< opaque encoder object */
typedef struct VspcGsmfrDecoder VspcGsmfrDecoder; /**< opaque decoder object */

/** Bytes of an encoder object (written to *size). */
VspStatus vspcGsmfrEncoderGetSize(int* size);
/** Formats an encoder in the reset state. Errors: null: vspStsNullPtrErr. */
VspStatus vspcGsmfrEncoderInit(VspcGsmfrEncoder* enc);
/** Encodes one frame of 160 samples (the standard keeps their top 13 bits)
 * into the 76 parameters: LARc[1..8], then per subframe Nc, bc, Mc, xmaxc,
 * xMc[0..12]. */
VspStatus vspcGsmfrEncode(VspcGsmfrEncoder* enc, const Vsp16s* pcm, Vsp16s* params);

/** Bytes of a decoder object (written to *size). */
VspStatus vspcGsmfrDecoderGetSize(int* size);
/** Formats a decoder in the reset state. Errors: null: vspStsNullPtrErr. */
VspStatus vspcGsmfrDecoderInit(VspcGsmfrDecoder* dec);
/** Decodes the 76 parameters of one frame into 160 samples (multiples of
 * 8). A lag outside 40..120 is replaced by the last valid one. A parameter
 * outside its field (vspcGsmfrCheckParams) gives vspStsRangeErr with the
 * decoder state and the output unchanged. */
VspStatus vspcGsmfrDecode(VspcGsmfrDecoder* dec, const Vsp16s* params, Vsp16s* pcm);

/** vspStsNoErr when each of the 76 parameters fits its field (6,6,5,5,4,4,
 * 3,3 bits for LARc; 7, 2, 2, 6 and 13 x 3 bits per subframe), else
 * vspStsRangeErr; null: vspStsNullPtrErr. */
VspStatus vspcGsmfrCheckParams(const Vsp16s* params);
/** Packs 76 parameters into the 33-octet frame of the common file and RTP
 * format: the signature 0xD in the top 4 bits, then the fields most
 * significant bit first. Errors: null; a parameter outside its field:
 * vspStsRangeErr (nothing written). */
VspStatus vspcGsmfrPack(const Vsp16s* params, Vsp8u* frame);
/** Unpacks a 33-octet frame. Errors: null; a signature other than 0xD:
 * vspStsBadArgErr (nothing written). */
VspStatus vspcGsmfrUnpack(const Vsp8u* frame, Vsp16s* params);
/** The test-sequence format: 76 parameters as 16-bit little-endian words
 * (152 octets). ToCod checks the fields like Pack; FromCod returns
 * vspStsRangeErr for a word outside its field (nothing written). */
VspStatus vspcGsmfrToCod(const Vsp16s* params, Vsp8u* words);
VspStatus vspcGsmfrFromCod(const Vsp8u* words, Vsp16s* params);

#ifdef __cplusplus
}
#endif

#endif /* VSPS_CODECS_H */
