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
