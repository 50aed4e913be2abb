// Content generators of the G.722 contract rows: codec state blocks
// formatted by Init.
#include "tests/support/contract_rows.h"

VT_GENERATOR("g722_encoder", [](vt::Call& call, std::string_view p, std::mt19937*) {
  legacy90vspsEncodeInit_G722_16s8u(reinterpret_cast<VspsEncoderState_G722_16s*>(call.buf<Vsp8u>(p).data()));
});
VT_GENERATOR("g722_decoder", [](vt::Call& call, std::string_view p, std::mt19937*) {
  legacy90vspsDecodeInit_G722_8u16s(reinterpret_cast<VspsDecoderState_G722_16s*>(call.buf<Vsp8u>(p).data()));
});
