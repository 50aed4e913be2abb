// G.729 bit-stream formats: the ITU serial format of the test vectors (with
// Annex B's variable-length frames) and the RTP payload of RFC 3551.
#include "vsps_codecs.h"

namespace {

constexpr int kSpeechWidths[11] = {8, 10, 8, 1, 13, 4, 7, 5, 13, 4, 7};
constexpr int kSidWidths[4] = {1, 5, 4, 5};
constexpr Vsp16s kSync = 0x6B21;
constexpr Vsp16s kOne = 0x0081;
constexpr Vsp16s kZero = 0x007F;

// Parameters from bits (0/1 values), MSB first.
void unpack(const int* bits, const int* widths, int n, Vsp16s* prm) {
  for (int p = 0, pos = 0; p < n; ++p) {
    int v = 0;
    for (int b = 0; b < widths[p]; ++b) v = v << 1 | bits[pos++];
    prm[p] = static_cast<Vsp16s>(v);
  }
}

int pack(const Vsp16s* prm, const int* widths, int n, int* bits) {
  int pos = 0;
  for (int p = 0; p < n; ++p)
    for (int b = widths[p] - 1; b >= 0; --b) bits[pos++] = (prm[p] >> b) & 1;
  return pos;
}

}  // namespace

extern "C" VSPS_CODECS_API VspStatus vspscodecG729SerialRead(const Vsp16s* pWords, int nWords, VspsG729Frame* pFrame, int* pUsed) {
  if (pWords == nullptr || pFrame == nullptr || pUsed == nullptr) return vspStsNullPtrErr;
  if (nWords < 2) return vspStsSizeErr;
  const int count = pWords[1];
  if (count != 0 && count != 15 && count != 16 && count != 80) return vspStsBadArgErr;
  if (nWords < 2 + count) return vspStsSizeErr;
  int bits[80] = {};
  int erased = 0;
  for (int i = 0; i < count; ++i) {
    const Vsp16s w = pWords[2 + i];
    if (w != kOne && w != kZero && w != 0) return vspStsBadArgErr;
    if (w == 0) erased = 1;
    bits[i] = w == kOne ? 1 : 0;
  }
  VspsG729Frame f{};
  f.erased = erased || pWords[0] != kSync;  // a damaged sync word marks a lost frame (the ITU decoders' rule)
  if (count == 80) {
    f.type = VSPS_G729_SPEECH;
    unpack(bits, kSpeechWidths, 11, f.prm);
  } else if (count == 0) {
    f.type = VSPS_G729_NO_DATA;
  } else {
    f.type = VSPS_G729_SID;
    unpack(bits, kSidWidths, 4, f.prm);
  }
  *pFrame = f;
  *pUsed = 2 + count;
  return vspStsNoErr;
}

extern "C" VSPS_CODECS_API VspStatus vspscodecG729SerialWrite(const VspsG729Frame* pFrame, Vsp16s* pWords, int* pWritten) {
  if (pFrame == nullptr || pWords == nullptr || pWritten == nullptr) return vspStsNullPtrErr;
  if (pFrame->type < 0 || pFrame->type > 2) return vspStsRangeErr;
  int bits[80] = {};
  int count = 0;
  if (pFrame->type == VSPS_G729_SPEECH) {
    count = pack(pFrame->prm, kSpeechWidths, 11, bits);
  } else if (pFrame->type == VSPS_G729_SID) {
    count = pack(pFrame->prm, kSidWidths, 4, bits) + 1;  // octet mode: one padding bit
  }
  pWords[0] = kSync;
  pWords[1] = static_cast<Vsp16s>(count);
  for (int i = 0; i < count; ++i) pWords[2 + i] = bits[i] ? kOne : kZero;
  *pWritten = 2 + count;
  return vspStsNoErr;
}

extern "C" VSPS_CODECS_API VspStatus vspscodecG729RtpRead(const Vsp8u* pBytes, int nBytes, VspsG729Frame* pFrame) {
  if ((pBytes == nullptr && nBytes > 0) || pFrame == nullptr) return vspStsNullPtrErr;
  if (nBytes != 0 && nBytes != 2 && nBytes != 10) return vspStsSizeErr;
  int bits[80] = {};
  for (int i = 0; i < 8 * nBytes; ++i) bits[i] = (pBytes[i / 8] >> (7 - i % 8)) & 1;
  VspsG729Frame f{};
  if (nBytes == 10) {
    f.type = VSPS_G729_SPEECH;
    unpack(bits, kSpeechWidths, 11, f.prm);
  } else if (nBytes == 2) {
    f.type = VSPS_G729_SID;
    unpack(bits, kSidWidths, 4, f.prm);
  }
  *pFrame = f;
  return vspStsNoErr;
}

extern "C" VSPS_CODECS_API VspStatus vspscodecG729RtpWrite(const VspsG729Frame* pFrame, Vsp8u* pBytes, int* pWritten) {
  if (pFrame == nullptr || pBytes == nullptr || pWritten == nullptr) return vspStsNullPtrErr;
  if (pFrame->type < 0 || pFrame->type > 2) return vspStsRangeErr;
  int bits[80] = {};
  int n = 0;
  if (pFrame->type == VSPS_G729_SPEECH) n = 10, pack(pFrame->prm, kSpeechWidths, 11, bits);
  if (pFrame->type == VSPS_G729_SID) n = 2, pack(pFrame->prm, kSidWidths, 4, bits);
  for (int i = 0; i < n; ++i) {
    int v = 0;
    for (int b = 0; b < 8; ++b) v = v << 1 | bits[8 * i + b];
    pBytes[i] = static_cast<Vsp8u>(v);
  }
  *pWritten = n;
  return vspStsNoErr;
}
