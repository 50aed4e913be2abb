// GSM-AMR bit-stream formats: the standard's 250-word serial frames and the
// RFC 4867 storage format (ToC byte, bits in the TS 26.101 importance order).
#include "codecs/gsmamr/amr_format.h"

#include "codecs/gsmamr/amr_format_tables.h"
#include "vsps_codecs.h"

namespace vsps::codecs::amr {
namespace {

const int16_t* const kOrders[8] = {kStorageOrderMr475, kStorageOrderMr515, kStorageOrderMr59,  kStorageOrderMr67,
                                   kStorageOrderMr74,  kStorageOrderMr795, kStorageOrderMr102, kStorageOrderMr122};
const int16_t* const kBitNos[9] = {kBitNoMr475, kBitNoMr515, kBitNoMr59,  kBitNoMr67, kBitNoMr74,
                                   kBitNoMr795, kBitNoMr102, kBitNoMr122, kBitNoMrDtx};

}  // namespace

const int kPrmCount[9] = {17, 19, 19, 19, 19, 23, 39, 57, 5};
const int kBitCount[9] = {95, 103, 118, 134, 148, 159, 204, 244, 35};
const int kStorageBytes[16] = {13, 14, 16, 18, 20, 21, 27, 32, 6, 0, 0, 0, 0, 0, 0, 1};

void bits_to_prm(int mode, const Vsp8u* bits, Vsp16s* prm) {
  const int16_t* w = kBitNos[mode];
  int k = 0;
  for (int i = 0; i < kPrmCount[mode]; ++i) {
    int v = 0;
    for (int b = 0; b < w[i]; ++b) v = (v << 1) | (bits[k++] == 1 ? 1 : 0);
    prm[i] = static_cast<Vsp16s>(v);
  }
}

void prm_to_bits(int mode, const Vsp16s* prm, Vsp8u* bits) {
  const int16_t* w = kBitNos[mode];
  int k = 0;
  for (int i = 0; i < kPrmCount[mode]; ++i)
    for (int b = w[i] - 1; b >= 0; --b) bits[k++] = static_cast<Vsp8u>((prm[i] >> b) & 1);
}

const int16_t* storage_order(int mode) { return kOrders[mode]; }

}  // namespace vsps::codecs::amr

using namespace vsps::codecs::amr;

extern "C" VspStatus vspscodecGsmAmrSerialRead(const Vsp16s* pWords, int* pRxType, int* pMode, Vsp8u* pBits) {
  if (pWords == nullptr || pRxType == nullptr || pMode == nullptr || pBits == nullptr) return vspStsNullPtrErr;
  static const int kRx[8] = {0, 4, 5, 7, 1, 3, 6, 2};
  const int type = pWords[0], mode = pWords[245];
  if (type < 0 || type > 7) return vspStsRangeErr;
  const int rx = kRx[type];
  if (rx != 7 && (mode < 0 || mode > 7)) return vspStsRangeErr;
  *pRxType = rx;
  *pMode = rx == 7 ? -1 : mode;
  for (int i = 0; i < 244; ++i) pBits[i] = pWords[1 + i] == 1 ? 1 : 0;
  return vspStsNoErr;
}

extern "C" VspStatus vspscodecGsmAmrStorageFrameSize(Vsp8u toc, int* pBytes) {
  if (pBytes == nullptr) return vspStsNullPtrErr;
  const int ft = (toc >> 3) & 15;
  if (kStorageBytes[ft] == 0) return vspStsRangeErr;
  *pBytes = kStorageBytes[ft];
  return vspStsNoErr;
}

extern "C" VspStatus vspscodecGsmAmrStorageRead(const Vsp8u* pFrame, int* pRxType, int* pMode, Vsp8u* pBits) {
  if (pFrame == nullptr || pRxType == nullptr || pMode == nullptr || pBits == nullptr) return vspStsNullPtrErr;
  const int ft = (pFrame[0] >> 3) & 15;
  const bool good = (pFrame[0] & 4) != 0;
  if (kStorageBytes[ft] == 0) return vspStsRangeErr;
  auto bit = [&](int k) { return static_cast<Vsp8u>((pFrame[1 + (k >> 3)] >> (7 - (k & 7))) & 1); };
  for (int i = 0; i < 244; ++i) pBits[i] = 0;
  if (ft == 15) {
    *pRxType = 7;
    *pMode = -1;
  } else if (ft == 8) {
    for (int k = 0; k < 35; ++k) pBits[k] = bit(k);
    *pRxType = !good ? 6 : (bit(35) != 0 ? 5 : 4);
    *pMode = (bit(36) << 2) | (bit(37) << 1) | bit(38);
  } else {
    const int16_t* order = storage_order(ft);
    for (int k = 0; k < kBitCount[ft]; ++k) pBits[order[k]] = bit(k);
    *pRxType = good ? 0 : 3;
    *pMode = ft;
  }
  return vspStsNoErr;
}

extern "C" VspStatus vspscodecGsmAmrStorageWrite(int txType, int mode, const Vsp8u* pBits, Vsp8u* pFrame, int* pBytes) {
  if (pBits == nullptr || pFrame == nullptr || pBytes == nullptr) return vspStsNullPtrErr;
  if (txType < 0 || txType > 3 || mode < 0 || mode > 7) return vspStsRangeErr;
  const int ft = txType == 0 ? mode : (txType == 3 ? 15 : 8);
  const int bytes = kStorageBytes[ft];
  pFrame[0] = static_cast<Vsp8u>((ft << 3) | 4);
  for (int i = 1; i < bytes; ++i) pFrame[i] = 0;
  auto put = [&](int k, int v) {
    if (v != 0) pFrame[1 + (k >> 3)] = static_cast<Vsp8u>(pFrame[1 + (k >> 3)] | (0x80 >> (k & 7)));
  };
  if (ft == 8) {
    for (int k = 0; k < 35; ++k) put(k, pBits[k] == 1);
    put(35, txType == 2);
    for (int b = 0; b < 3; ++b) put(36 + b, (mode >> (2 - b)) & 1);
  } else if (ft != 15) {
    const int16_t* order = storage_order(ft);
    for (int k = 0; k < kBitCount[ft]; ++k) put(k, pBits[order[k]] == 1);
  }
  *pBytes = bytes;
  return vspStsNoErr;
}
