// Content generators of the GSM-AMR contract rows: state blocks formatted
// by their Init.
#include "tests/support/contract_rows.h"

VT_GENERATOR("amr_decoder", [](vt::Call& call, std::string_view p, std::mt19937*) {
  legacy90vspsDecoderInit_GSMAMR(call.buf<Vsp8u>(p).data());
});
VT_GENERATOR("amr_postfilter", [](vt::Call& call, std::string_view p, std::mt19937*) {
  legacy90vspsPostFilterInit_GSMAMR(call.buf<Vsp8u>(p).data());
});
