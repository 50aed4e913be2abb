// GSM-AMR parameter packing (TS 26.073 Prm2bits / Bits2prm) and the frame
// sizes of the serial and storage formats. Modes 0..7 = 4.75 .. 12.2 kbit/s,
// 8 = SID.
#pragma once

#include <cstdint>

#include "vsps.h"

namespace vsps::codecs::amr {

extern const int kPrmCount[9];       // parameters per frame
extern const int kBitCount[9];       // coded bits per frame
extern const int kStorageBytes[16];  // storage-format frame bytes per frame type (0: unused type)

// Bits2prm: parameters from bits (one per byte, MSB first per parameter;
// a bit counts as 1 only if it equals 1).
void bits_to_prm(int mode, const Vsp8u* bits, Vsp16s* prm);
// Prm2bits.
void prm_to_bits(int mode, const Vsp16s* prm, Vsp8u* bits);
// Storage-format order of a speech mode: payload bit k is serial bit order[k].
const int16_t* storage_order(int mode);

}  // namespace vsps::codecs::amr
