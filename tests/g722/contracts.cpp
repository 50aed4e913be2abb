// Contracts of the G.722 exports: block calls on the QMF and the sub-band
// coders with their state arrays, and the whole codec on state blocks
// formatted by Init (at an odd address: blocks take any alignment).
#include <random>

#include "tests/support/contract.h"

namespace {

constexpr int kNb = 16, kDet = 8;  // positions in a sub-band state

std::vector<int16_t> band_reset(int16_t det) {
  std::vector<int16_t> st(26, 0);
  st[kDet] = det;
  return st;
}

vt::Check nb_check(const char* label, int16_t nb) {
  return vt::custom(
      label, {"pState"}, [=](vt::Call& call) { call.buf<int16_t>("pState")[kNb] = nb; }, vspStsRangeErr);
}

vt::Check code_check(const char* label, int16_t code) {
  return vt::custom(
      label, {"pSrc"}, [=](vt::Call& call) { call.buf<int16_t>("pSrc")[79] = code; }, vspStsRangeErr);
}

// Random inputs and a random state whose log scale factor is in range.
std::function<void(vt::Call&, std::mt19937&)> random_band(int maxNb, int maxCode) {
  return [=](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.buf<int16_t>("pState")[kNb] = static_cast<int16_t>(rng() % static_cast<unsigned>(maxNb + 1));
    if (maxCode > 0)
      for (auto& c : call.buf<int16_t>("pSrc")) c = static_cast<int16_t>(rng() % static_cast<unsigned>(maxCode + 1));
  };
}

vt::Contract band(const char* name, int16_t det, int maxNb, int maxCode, bool lowerDecoder) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrc", 80).out("pDst", 80).scalar("len", 80).inout("pState", band_reset(det));
    if (lowerDecoder) call.scalar("mode", 1);
    return call;
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -1, vspStsSizeErr), nb_check("nb negative", -1),
              nb_check("nb above its limit", static_cast<int16_t>(maxNb + 1))};
  if (lowerDecoder) {
    c.checks.push_back(vt::bad("mode", 0, vspStsRangeErr));
    c.checks.push_back(vt::bad("mode", 4, vspStsRangeErr));
  }
  if (maxCode > 0) {
    c.checks.push_back(code_check("code above its field", static_cast<int16_t>(maxCode + 1)));
    c.checks.push_back(code_check("code negative", -1));
  }
  c.randomize = [=, fill = random_band(maxNb, maxCode)](vt::Call& call, std::mt19937& rng) {
    fill(call, rng);
    if (lowerDecoder) call.scalar("mode", 1 + static_cast<int64_t>(rng() % 3));
  };
  return c;
}

// A state block of the codec, formatted, at an odd address.
template <class State>
void codec_state(vt::Call& call, VspStatus (*size_fn)(int*), VspStatus (*init)(State*)) {
  int size = 0;
  size_fn(&size);
  call.bytes("pState", static_cast<std::size_t>(size), 1);
  init(reinterpret_cast<State*>(call.buf<Vsp8u>("pState").data()));
}

vt::Check corrupt_state() {
  return vt::custom(
      "state not formatted", {"pState"},
      [](vt::Call& call) {
        for (auto& b : call.buf<Vsp8u>("pState")) b = 0xFF;  // log scale factors -1
      },
      vspStsRangeErr);
}

}  // namespace

VT_CONTRACT(legacy90vspsQMFAnalysis_G722_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).in("pSrc", 160).out("pDstLow", 80).out("pDstHigh", 80).scalar("len", 160).inout("pDelay", 24);
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", 159, vspStsSizeErr), vt::bad("len", -2, vspStsSizeErr)};
  return c;
}

VT_CONTRACT(legacy90vspsQMFSynthesis_G722_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).in("pSrcLow", 80).in("pSrcHigh", 80).out("pDst", 160).scalar("len", 80).inout("pDelay", 24);
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -1, vspStsSizeErr)};
  return c;
}

VT_CONTRACT(legacy90vspsEncodeLowband_G722_16s) { return band(name, 32, 18432, 0, false); }
VT_CONTRACT(legacy90vspsEncodeHighband_G722_16s) { return band(name, 8, 22528, 0, false); }
VT_CONTRACT(legacy90vspsDecodeLowband_G722_16s) { return band(name, 32, 18432, 63, true); }
VT_CONTRACT(legacy90vspsDecodeHighband_G722_16s) { return band(name, 8, 22528, 3, false); }

VT_CONTRACT(legacy90vspsEncodeGetStateSize_G722_16s8u) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).out("pSize", 1); };
  return c;
}
VT_CONTRACT(legacy90vspsDecodeGetStateSize_G722_8u16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).out("pSize", 1); };
  return c;
}

VT_CONTRACT(legacy90vspsEncodeInit_G722_16s8u) {
  vt::Contract c;
  c.valid = [=] {
    int size = 0;
    legacy90vspsEncodeGetStateSize_G722_16s8u(&size);
    return vt::Call(name).bytes("pState", static_cast<std::size_t>(size), 1);
  };
  return c;
}
VT_CONTRACT(legacy90vspsDecodeInit_G722_8u16s) {
  vt::Contract c;
  c.valid = [=] {
    int size = 0;
    legacy90vspsDecodeGetStateSize_G722_8u16s(&size);
    return vt::Call(name).bytes("pState", static_cast<std::size_t>(size), 1);
  };
  return c;
}

VT_CONTRACT(legacy90vspsEncode_G722_16s8u) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrc", 160).out("pDst", 80).scalar("len", 160);
    codec_state(call, legacy90vspsEncodeGetStateSize_G722_16s8u, legacy90vspsEncodeInit_G722_16s8u);
    return call;
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", 159, vspStsSizeErr), corrupt_state()};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    legacy90vspsEncodeInit_G722_16s8u(reinterpret_cast<VspsEncoderState_G722_16s*>(call.buf<Vsp8u>("pState").data()));
  };
  return c;
}

VT_CONTRACT(legacy90vspsDecode_G722_8u16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrc", 80).out("pDst", 160).scalar("len", 80).scalar("mode", 1);
    codec_state(call, legacy90vspsDecodeGetStateSize_G722_8u16s, legacy90vspsDecodeInit_G722_8u16s);
    return call;
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("mode", 0, vspStsRangeErr), vt::bad("mode", 4, vspStsRangeErr),
              corrupt_state()};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("mode", 1 + static_cast<int64_t>(rng() % 3));
    legacy90vspsDecodeInit_G722_8u16s(reinterpret_cast<VspsDecoderState_G722_16s*>(call.buf<Vsp8u>("pState").data()));
  };
  return c;
}
