// The state-block services of the G.726 encoder and decoder: size, Init
// (the reset) and the rate switch that keeps the state.
#include "g726/adpcm.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

VspStatus state_size(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = vsps::g726::kStateBytes;
  return vspStsNoErr;
}

// Checks: block null; rate, then law outside their sets.
VspStatus format_block(void* block, int rate, int law) {
  if (block == nullptr) return vspStsNullPtrErr;
  const int bits = g726::bits_of_rate(rate);
  if (bits == 0 || (law != vspPcmLinear && law != vspPcmALaw && law != vspPcmMuLaw)) return vspStsRangeErr;
  const vsps::g726::State s = g726::reset_state(bits, law);
  std::memcpy(block, &s, sizeof s);
  return vspStsNoErr;
}

VspStatus set_rate(void* block, int rate) {
  if (block == nullptr) return vspStsNullPtrErr;
  const int bits = g726::bits_of_rate(rate);
  if (bits == 0) return vspStsRangeErr;
  vsps::g726::State s = g726::load_state(block);
  s.bits = bits;
  std::memcpy(block, &s, sizeof s);
  return vspStsNoErr;
}

}  // namespace

VspStatus legacy90vspsEncodeGetStateSize_G726_16s8u(int* pSize) { return state_size(pSize); }

VspStatus legacy90vspsEncodeInit_G726_16s8u(VspsEncoderState_G726_16s* pEncState, int rate) {
  return format_block(pEncState, rate, vspPcmLinear);
}

VspStatus legacy90vspsEncodeSetRate_G726_16s8u(VspsEncoderState_G726_16s* pEncState, int rate) {
  return set_rate(pEncState, rate);
}

VspStatus legacy90vspsDecodeGetStateSize_G726_8u16s(int* pSize) { return state_size(pSize); }

VspStatus legacy90vspsDecodeInit_G726_8u16s(VspsDecoderState_G726_16s* pDecState, int rate, int law) {
  return format_block(pDecState, rate, law);
}

VspStatus legacy90vspsDecodeSetRate_G726_8u16s(VspsDecoderState_G726_16s* pDecState, int rate) {
  return set_rate(pDecState, rate);
}

}  // namespace vsps::VSPS_NS
