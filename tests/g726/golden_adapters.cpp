// Golden-file adapters of the G.726 encoder and decoder: each case is one
// sample with the reference's full incoming state (24 fields), written into
// our state block; the code word or output and the outgoing state are
// compared. A-law and mu-law encoder inputs are G.711-expanded first (the
// encoder's contract: G.711 expansion >> 2 is the G.726 EXPAND block).
#include <cstring>

#include "g726/state_layout.h"
#include "tests/support/golden_runner.h"

namespace {

using vt::Call;
using vt::GoldenCase;

int rate_selector(int64_t kbps) {
  return kbps == 16 ? vspRate16000 : kbps == 24 ? vspRate24000 : kbps == 32 ? vspRate32000 : vspRate40000;
}

int law_of(const std::string& law) { return law == "A" ? vspPcmALaw : law == "u" ? vspPcmMuLaw : vspPcmLinear; }

// The 24 reference fields in the block's order; coefficients (printed signed)
// as 16-bit patterns.
void put_fields(vsps::g726::State& s, const std::vector<std::string>& tokens) {
  int32_t* f = &s.sr[0];
  for (int k = 0; k < vsps::g726::kReferenceFields; ++k) {
    int32_t v = static_cast<int32_t>(vt::parse_int(tokens.at(static_cast<std::size_t>(k))));
    if (k >= 2 && k < 10) v &= 65535;
    f[k] = v;
  }
}

void bind_state(Call& call, const GoldenCase& gc, const char* param, bool decoder) {
  int size = 0;
  if (decoder)
    legacy90vspsDecodeGetStateSize_G726_8u16s(&size);
  else
    legacy90vspsEncodeGetStateSize_G726_16s8u(&size);
  call.bytes(param, static_cast<std::size_t>(size), 3);
  auto mem = call.buf<uint8_t>(param);
  const int rate = rate_selector(gc.arg_int("rate"));
  const int law = law_of(*gc.arg("law"));
  const int st =
      decoder ? legacy90vspsDecodeInit_G726_8u16s(reinterpret_cast<VspsDecoderState_G726_16s*>(mem.data()), rate, law)
              : legacy90vspsEncodeInit_G726_16s8u(reinterpret_cast<VspsEncoderState_G726_16s*>(mem.data()), rate);
  if (st != vspStsNoErr) throw std::runtime_error("Init failed");
  vsps::g726::State s;
  std::memcpy(&s, mem.data(), sizeof s);
  put_fields(s, gc.in("state")->values);
  std::memcpy(mem.data(), &s, sizeof s);
}

void check_state(Call& call, const GoldenCase& gc, const char* param, std::vector<std::string>& errors) {
  vsps::g726::State want, got;
  std::memcpy(&got, call.buf<uint8_t>(param).data(), sizeof got);
  want = got;
  put_fields(want, gc.out("state")->values);
  if (std::memcmp(&want, &got, sizeof got) == 0) return;
  const int32_t *w = &want.sr[0], *g = &got.sr[0];
  for (int k = 0; k < vsps::g726::kReferenceFields; ++k)
    if (w[k] != g[k]) {
      errors.push_back("state field " + std::to_string(k) + " = " + std::to_string(g[k]) + ", expected " +
                       std::to_string(w[k]));
      return;
    }
}

void expect_value(const std::string& what, int64_t got, const GoldenCase& gc, const char* name,
                  std::vector<std::string>& errors) {
  const int64_t want = vt::parse_int(gc.out(name)->values.at(0));
  if (got != want) errors.push_back(what + " " + std::to_string(got) + ", expected " + std::to_string(want));
}

}  // namespace

VT_GOLDEN_ADAPTER(legacy90vspsEncode_G726_16s8u) {
  vt::GoldenAdapter a;
  a.extraNames = {"rate", "law", "s", "I", "trace", "state"};
  a.bind = [](Call& call, const GoldenCase& gc, vt::SeqContext&) {
    bind_state(call, gc, "pEncState", false);
    const std::string law = *gc.arg("law");
    Vsp16s x = static_cast<Vsp16s>(gc.arg_int("s"));
    const Vsp8u code = static_cast<Vsp8u>(gc.arg_int("s"));
    if (law == "A") legacy90vspsALawToLin_G711_8u16s(&code, &x, 1);
    if (law == "u") legacy90vspsMuLawToLin_G711_8u16s(&code, &x, 1);
    call.in("pSrc", std::vector<Vsp16s>{x}).out("pDst", 1).scalar("len", 1);
  };
  a.after = [](Call& call, const GoldenCase& gc, vt::SeqContext&, std::vector<std::string>& errors) {
    expect_value("code word", call.buf<Vsp8u>("pDst")[0], gc, "I", errors);
    check_state(call, gc, "pEncState", errors);
  };
  return a;
}

VT_GOLDEN_ADAPTER(legacy90vspsDecode_G726_8u16s) {
  vt::GoldenAdapter a;
  a.extraNames = {"rate", "law", "I", "sd", "trace", "state"};
  a.bind = [](Call& call, const GoldenCase& gc, vt::SeqContext&) {
    bind_state(call, gc, "pDecState", true);
    call.in("pSrc", std::vector<Vsp8u>{static_cast<Vsp8u>(gc.arg_int("I"))}).out("pDst", 1).scalar("len", 1);
  };
  a.after = [](Call& call, const GoldenCase& gc, vt::SeqContext&, std::vector<std::string>& errors) {
    expect_value("output", call.buf<Vsp16s>("pDst")[0], gc, "sd", errors);
    check_state(call, gc, "pDecState", errors);
  };
  return a;
}
