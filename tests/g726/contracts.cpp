// Contracts of the G.726 encoder, decoder and code-word packing (their
// random trials choose rates, laws and lengths together); the state set-up
// is rows in contracts.txt.
#include <cmath>
#include <random>

#include "tests/support/contract.h"

namespace {

constexpr int kRates[4] = {vspRate16000, vspRate24000, vspRate32000, vspRate40000};

int bits_of(int rate) { return rate == vspRate16000 ? 2 : rate == vspRate24000 ? 3 : rate == vspRate32000 ? 4 : 5; }

vt::Call state_call(const char* name, const char* param, bool decoder, int rate, int law) {
  vt::Call c(name);
  c.bytes(param, 104, 5);
  auto* mem = c.buf<uint8_t>(param).data();
  if (decoder)
    legacy90vspsDecodeInit_G726_8u16s(reinterpret_cast<VspsDecoderState_G726_16s*>(mem), rate, law);
  else
    legacy90vspsEncodeInit_G726_16s8u(reinterpret_cast<VspsEncoderState_G726_16s*>(mem), rate);
  return c;
}

// A working call on a freshly initialised block: a sine (encoder) or the
// code words of one (decoder), or uniform values.
vt::Call coder(const char* name, bool decoder, int rate, int law, int len) {
  vt::Call c = state_call(name, decoder ? "pDecState" : "pEncState", decoder, rate, law);
  c.in("pSrc", static_cast<std::size_t>(len)).out("pDst", static_cast<std::size_t>(len)).scalar("len", len);
  return c;
}

// Random rate (and law), then realistic inputs: encoder most trials a loud
// sine with noise (overload included), some uniform values; a third of the
// trials run on a block of random bytes (any state must give the same bits
// at every level). Decoder input: uniform bytes (the unused high bits are
// ignored).
void randomize_coder(vt::Call& call, std::mt19937& rng, const char* name, bool decoder) {
  const int rate = kRates[rng() % 4];
  const int law = static_cast<int>(rng() % 3);
  const std::size_t len = call.buf<uint8_t>("pDst").size() / (decoder ? 2 : 1);
  call = coder(name, decoder, rate, law, static_cast<int>(len));
  if (decoder) {
    for (auto& b : call.buf<uint8_t>("pSrc")) b = static_cast<uint8_t>(rng());
  } else if (rng() % 3 == 0) {
    for (auto& x : call.buf<Vsp16s>("pSrc")) x = static_cast<Vsp16s>(rng());
  } else {
    auto x = call.buf<Vsp16s>("pSrc");
    const double amp = 100.0 + double(rng() % 40000), w = 0.05 + double(rng() % 1000) / 400.0;
    for (std::size_t n = 0; n < x.size(); ++n) {
      const double v = amp * std::sin(w * double(n)) + double(int(rng() % 201) - 100);
      x[n] = static_cast<Vsp16s>(v > 32767 ? 32767 : (v < -32768 ? -32768 : v));
    }
  }
  if (rng() % 3 == 0) {
    auto s = call.buf<uint8_t>(decoder ? "pDecState" : "pEncState");
    for (auto& b : s) b = static_cast<uint8_t>(rng());
  }
}

vt::Contract packing(const char* name, bool pack) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pSrc", pack ? 40 : 25)
        .out("pDst", pack ? 25 : 40)
        .scalar("len", 40)
        .scalar("rate", vspRate40000)
        .scalar("order", vspPackAal2);
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("rate", 16, vspStsRangeErr),
              vt::bad("rate", 25, vspStsRangeErr), vt::bad("order", 2, vspStsRangeErr),
              vt::bad("order", -1, vspStsRangeErr)};
  c.randomize = [=](vt::Call& call, std::mt19937& rng) {
    const int rate = kRates[rng() % 4];
    const int len = 1 + static_cast<int>(rng() % 64);
    const std::size_t bytes = static_cast<std::size_t>((len * bits_of(rate) + 7) / 8);
    call = vt::Call(name)
               .in("pSrc", pack ? static_cast<std::size_t>(len) : bytes)
               .out("pDst", pack ? bytes : static_cast<std::size_t>(len))
               .scalar("len", len)
               .scalar("rate", rate)
               .scalar("order", static_cast<int>(rng() % 2));
    call.randomize_inputs(rng);
  };
  return c;
}

}  // namespace

VT_CONTRACT(legacy90vspsEncode_G726_16s8u) {
  vt::Contract c;
  c.valid = [=] { return coder(name, false, vspRate32000, 0, 160); };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -160, vspStsSizeErr)};
  c.randomize = [=](vt::Call& call, std::mt19937& rng) { randomize_coder(call, rng, name, false); };
  return c;
}

VT_CONTRACT(legacy90vspsDecode_G726_8u16s) {
  vt::Contract c;
  c.valid = [=] { return coder(name, true, vspRate24000, vspPcmALaw, 160); };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -1, vspStsSizeErr)};
  c.randomize = [=](vt::Call& call, std::mt19937& rng) { randomize_coder(call, rng, name, true); };
  return c;
}

VT_CONTRACT(legacy90vspsPack_G726_8u) { return packing(name, true); }
VT_CONTRACT(legacy90vspsUnpack_G726_8u) { return packing(name, false); }
