// Content generators of the G.729 (and shared LP filter) contract rows.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract_rows.h"

namespace {

// Q12 coefficients of a realistic filter (from ordered random LSPs).
g729t::V16 realistic_lpc(std::mt19937& rng) { return g729t::lpc_of(g729t::random_lsp(rng)); }

}  // namespace

// The G.729 LSP reset vector (Q15 cosines).
VT_GENERATOR("lsp_reset",
             [](vt::Call& call, std::string_view p, std::mt19937*) { g729t::put(call, p, g729t::kLsfReset); });

// A stable Q12 filter from fixed, widely spread LSPs.
VT_GENERATOR("lpc_spread", [](vt::Call& call, std::string_view p, std::mt19937*) {
  g729t::put(call, p, g729t::lpc_of({30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000}));
});

// Three random trials in four: a realistic filter; else the uniform values.
VT_GENERATOR("lpc_mostly_realistic", [](vt::Call& call, std::string_view p, std::mt19937* rng) {
  if (rng && (*rng)() % 4 != 0) g729t::put(call, p, realistic_lpc(*rng));
});

// A realistic filter in floating point (Q12 / 4096).
VT_GENERATOR("lpc_realistic_32f", [](vt::Call& call, std::string_view p, std::mt19937* rng) {
  if (!rng) return;
  const g729t::V16 a = realistic_lpc(*rng);
  std::vector<Vsp32f> f(a.size());
  for (std::size_t i = 0; i < a.size(); ++i) f[i] = static_cast<float>(a[i]) / 4096.0f;
  g729t::put(call, p, f);
});

namespace {

template <class T>
std::vector<Vsp32f> scaled(const std::vector<T>& v, float divisor) {
  std::vector<Vsp32f> f(v.size());
  for (std::size_t i = 0; i < v.size(); ++i) f[i] = static_cast<float>(v[i]) / divisor;
  return f;
}

}  // namespace

// LSF memories: four reset rows; four random stable rows (Q13, or /8192 in
// floating point).
VT_GENERATOR("lsf_memory_reset",
             [](vt::Call& call, std::string_view p, std::mt19937*) { g729t::put(call, p, g729t::reset_memory()); });
VT_GENERATOR("lsf_memory_random", [](vt::Call& call, std::string_view p, std::mt19937* rng) {
  if (rng) g729t::put(call, p, g729t::random_memory(*rng));
});
VT_GENERATOR("lsf_memory_random_32f", [](vt::Call& call, std::string_view p, std::mt19937* rng) {
  if (rng) g729t::put(call, p, scaled(g729t::random_memory(*rng), 8192.0f));
});
// Random ordered LSPs (Q15; /32768 in floating point), random stable LSFs;
// lsp_random_half: one random trial in two (else the uniform words).
VT_GENERATOR("lsp_random", [](vt::Call& call, std::string_view p, std::mt19937* rng) {
  if (rng) g729t::put(call, p, g729t::random_lsp(*rng));
});
VT_GENERATOR("lsp_random_half", [](vt::Call& call, std::string_view p, std::mt19937* rng) {
  if (rng && (*rng)() % 2) g729t::put(call, p, g729t::random_lsp(*rng));
});
VT_GENERATOR("lsp_random_32f", [](vt::Call& call, std::string_view p, std::mt19937* rng) {
  if (rng) g729t::put(call, p, scaled(g729t::random_lsp(*rng), 32768.0f));
});
VT_GENERATOR("lsf_random", [](vt::Call& call, std::string_view p, std::mt19937* rng) {
  if (rng) g729t::put(call, p, g729t::random_lsf(*rng));
});

namespace {

// A realistic normalised autocorrelation (as many lags as the buffer holds)
// of a coloured random signal; the valid call's from a fixed seed.
void coloured_autocorr(vt::Call& call, std::string_view p, std::mt19937* rng) {
  std::mt19937 fixed(9);
  std::mt19937& g = rng ? *rng : fixed;
  std::vector<Vsp16s> x(240);
  int v = 0;
  for (auto& s : x) {
    v = v * 3 / 4 + static_cast<int>(g() % 4001) - 2000;
    s = static_cast<Vsp16s>(v);
  }
  auto r = call.buf<Vsp32s>(p);
  int norm = 0;
  legacy90vspsAutoCorr_NormE_G729_16s32s(x.data(), r.data(), static_cast<int>(r.size()), &norm);
}

}  // namespace

VT_GENERATOR("coloured_autocorr", coloured_autocorr);
VT_GENERATOR("vad_init", [](vt::Call& call, std::string_view p, std::mt19937*) {
  legacy90vspsVADInit_G729B(call.buf<Vsp8u>(p).data());
});
VT_GENERATOR("dtx_init", [](vt::Call& call, std::string_view p, std::mt19937*) {
  legacy90vspsDTXInit_G729B(call.buf<Vsp8u>(p).data());
});
// A DTX state after two updates (voiced, then not); in random trials after
// three updates with random norms (-5..10) and decisions.
VT_GENERATOR("dtx_updated", [](vt::Call& call, std::string_view p, std::mt19937* rng) {
  Vsp8u* st = call.buf<Vsp8u>(p).data();
  legacy90vspsDTXInit_G729B(st);
  std::vector<Vsp32s> r(11);
  vt::Call scratch("legacy90vspsDTXUpdate_G729B");
  scratch.in("pAutoCorr", 11);
  for (int k = 0; k < (rng ? 3 : 2); ++k) {
    coloured_autocorr(scratch, "pAutoCorr", rng);
    const auto a = scratch.buf<Vsp32s>("pAutoCorr");
    const int norm = rng ? static_cast<int>((*rng)() % 16) - 5 : 2;
    const int vad = rng ? static_cast<int>((*rng)() % 2) : 1 - k;
    legacy90vspsDTXUpdate_G729B(a.data(), norm, vad, st);
  }
});

// A stable random Q12 LP filter: the LPC of a random descending LSP set (the
// valid call's from a fixed seed).
VT_GENERATOR("lpc_descending", [](vt::Call& call, std::string_view p, std::mt19937* rng) {
  std::mt19937 fixed(7);
  std::mt19937& g = rng ? *rng : fixed;
  g729t::V16 lsp(10);
  int v = 32000;
  for (auto& x : lsp) {
    v -= 1000 + static_cast<int>(g() % 4500);
    x = static_cast<Vsp16s>(v);
  }
  g729t::put(call, p, g729t::lpc_of(lsp));
});
VT_GENERATOR("postfilter_init", [](vt::Call& call, std::string_view p, std::mt19937*) {
  legacy90vspsPostFilterInit_G729(call.buf<Vsp8u>(p).data());
});
VT_GENERATOR("postfilter_a_init", [](vt::Call& call, std::string_view p, std::mt19937*) {
  legacy90vspsPostFilterInit_G729A(call.buf<Vsp8u>(p).data());
});

namespace {

// Deterministic saw-tooth contents ((i * step) % period) * scale + offset.
vt::Generator saw(int step, int period, int scale, int offset) {
  return [=](vt::Call& call, std::string_view p, std::mt19937*) {
    auto x = call.buf<Vsp16s>(p);
    for (std::size_t i = 0; i < x.size(); ++i)
      x[i] = static_cast<Vsp16s>(static_cast<int>(i) * step % period * scale + offset);
  };
}

}  // namespace

VT_GENERATOR("pitch_gain_target", saw(1, 7, 100, -300));
VT_GENERATOR("pitch_gain_filtered", saw(1, 7, 90, -250));
VT_GENERATOR("codebook_target", saw(37, 200, 1, -100));
VT_GENERATOR("gain_target", saw(53, 300, 1, -150));
VT_GENERATOR("gain_filtered_adaptive", saw(29, 250, 1, -120));
VT_GENERATOR("gain_filtered_code", saw(71, 2000, 1, -1000));

// A decaying impulse response (Q12) as the encoder's h.
VT_GENERATOR("impulse", [](vt::Call& call, std::string_view p, std::mt19937*) {
  int v = 4096;
  for (auto& x : call.buf<Vsp16s>(p)) {
    x = static_cast<Vsp16s>(v);
    v = -v * 3 / 5;
  }
});
