// Content generators of the G.726 contract rows: state blocks formatted by
// Init at the rate (and law) the row's scalars give before the call
// changes them (encoder at 32 kbit/s, decoder at 16 kbit/s A-law).
#include "tests/support/contract_rows.h"

VT_GENERATOR("g726_encoder_32k", [](vt::Call& call, std::string_view p, std::mt19937*) {
  legacy90vspsEncodeInit_G726_16s8u(reinterpret_cast<VspsEncoderState_G726_16s*>(call.buf<uint8_t>(p).data()),
                                    vspRate32000);
});
VT_GENERATOR("g726_decoder_16k_alaw", [](vt::Call& call, std::string_view p, std::mt19937*) {
  legacy90vspsDecodeInit_G726_8u16s(reinterpret_cast<VspsDecoderState_G726_16s*>(call.buf<uint8_t>(p).data()),
                                    vspRate16000, vspPcmALaw);
});
