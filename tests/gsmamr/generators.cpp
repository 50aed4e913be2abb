// Content generators of the GSM-AMR contract rows: state blocks formatted
// by their Init.
#include <algorithm>

#include "tests/gsmamr/amr_test_util.h"
#include "tests/support/contract_rows.h"

VT_GENERATOR("amr_decoder", [](vt::Call& call, std::string_view p, std::mt19937*) {
  legacy90vspsDecoderInit_GSMAMR(call.buf<Vsp8u>(p).data());
});
VT_GENERATOR("amr_postfilter", [](vt::Call& call, std::string_view p, std::mt19937*) {
  legacy90vspsPostFilterInit_GSMAMR(call.buf<Vsp8u>(p).data());
});

// The decoder's reset LSP vector (Q15).
VT_GENERATOR("amr_reset_lsp", [](vt::Call& call, std::string_view p, std::mt19937*) {
  auto b = call.buf<int16_t>(p);
  std::copy(amrt::kResetLsp.begin(), amrt::kResetLsp.end(), b.begin());
});
// Three random trials in four: random ordered LSPs (else uniform words:
// unordered, extreme values).
VT_GENERATOR("amr_lsp_mostly_random", [](vt::Call& call, std::string_view p, std::mt19937* rng) {
  if (!rng || (*rng)() % 4 == 0) return;
  const auto l = amrt::random_lsp(*rng);
  std::copy(l.begin(), l.end(), call.buf<int16_t>(p).begin());
});

// Random speech-like frames (a resonator driven by noise) in random trials.
VT_GENERATOR("amr_speech", [](vt::Call& call, std::string_view p, std::mt19937* rng) {
  if (!rng) return;
  auto b = call.buf<int16_t>(p);
  const auto x = amrt::random_speech(*rng, b.size());
  std::copy(x.begin(), x.end(), b.begin());
});
