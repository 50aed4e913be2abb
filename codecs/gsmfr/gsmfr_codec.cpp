// GSM 06.10 full-rate driver: the encoder and decoder frame loops over the
// library's per-frame and per-subframe steps, with the codec state in
// caller-allocated objects.
#include <cstring>

#include "vsps_codecs.h"

namespace {

constexpr int kFrame = 160, kSub = 40, kHist = 120, kParams = 76;

struct Encoder {
  Vsp32s pre[3];     // z1, L_z2, mp
  Vsp16s larpp[8];   // previous frame's decoded LARs
  Vsp16s u[8];       // analysis lattice memory
  Vsp16s dp[kHist];  // reconstructed residual history, oldest first
};

struct Decoder {
  Vsp16s drp[kHist];  // reconstructed residual history, oldest first
  Vsp16s nrp;         // last valid lag
  Vsp16s larpp[8];    // previous frame's decoded LARs
  Vsp16s v[9];        // synthesis lattice memory
  Vsp16s msr;         // de-emphasis memory
};

// Per subframe j the parameters start at 8 + 17 j: Nc, bc, Mc, xmaxc, xMc[13].
constexpr int sub_base(int j) { return 8 + 17 * j; }

// Runs a chain of library calls, stopping at the first failure.
#define VSPSCODEC_TRY(call)             \
  do {                                  \
    const VspStatus st_ = (call);       \
    if (st_ != vspStsNoErr) return st_; \
  } while (0)

}  // namespace

extern "C" {

VspStatus vspscodecGsmfrEncoderGetSize(int* size) {
  if (size == nullptr) return vspStsNullPtrErr;
  *size = static_cast<int>(sizeof(Encoder));
  return vspStsNoErr;
}

VspStatus vspscodecGsmfrEncoderInit(VspscodecGsmfrEncoder* enc) {
  if (enc == nullptr) return vspStsNullPtrErr;
  std::memset(static_cast<void*>(enc), 0, sizeof(Encoder));
  return vspStsNoErr;
}

VspStatus vspscodecGsmfrEncoderEncode(VspscodecGsmfrEncoder* enc, const Vsp16s* pcm, Vsp16s* params) {
  if (enc == nullptr || pcm == nullptr || params == nullptr) return vspStsNullPtrErr;
  Encoder s;  // objects take any alignment: the state is worked on in a copy
  std::memcpy(&s, static_cast<const void*>(enc), sizeof s);
  Vsp16s so[kFrame], d[kFrame], out[kParams];
  VSPSCODEC_TRY(legacy90vspsPreprocess_GSMFR_16s(pcm, so, s.pre));
  VSPSCODEC_TRY(legacy90vspsLPCAnalysis_GSMFR_16s_I(so, out));
  VSPSCODEC_TRY(legacy90vspsShortTermAnalysis_GSMFR_16s(out, so, d, s.larpp, s.u));
  for (int j = 0; j < 4; ++j) {
    Vsp16s* p = out + sub_base(j);
    Vsp16s dpp[kSub], e[kSub], ep[kSub];
    VSPSCODEC_TRY(legacy90vspsLongTermPredictor_GSMFR_16s(d + kSub * j, s.dp, dpp, e, &p[0], &p[1]));
    VSPSCODEC_TRY(legacy90vspsRPEEncode_GSMFR_16s(e, &p[3], &p[2], p + 4, ep));
    std::memmove(s.dp, s.dp + kSub, sizeof(Vsp16s) * (kHist - kSub));
    for (int k = 0; k < kSub; ++k) {
      const int v = ep[k] + dpp[k];  // saturating add of the standard
      s.dp[kHist - kSub + k] = static_cast<Vsp16s>(v > 32767 ? 32767 : (v < -32768 ? -32768 : v));
    }
  }
  std::memcpy(params, out, sizeof out);
  std::memcpy(static_cast<void*>(enc), &s, sizeof s);
  return vspStsNoErr;
}

VspStatus vspscodecGsmfrDecoderGetSize(int* size) {
  if (size == nullptr) return vspStsNullPtrErr;
  *size = static_cast<int>(sizeof(Decoder));
  return vspStsNoErr;
}

VspStatus vspscodecGsmfrDecoderInit(VspscodecGsmfrDecoder* dec) {
  if (dec == nullptr) return vspStsNullPtrErr;
  Decoder s{};
  s.nrp = 40;
  std::memcpy(static_cast<void*>(dec), &s, sizeof s);
  return vspStsNoErr;
}

VspStatus vspscodecGsmfrDecoderDecode(VspscodecGsmfrDecoder* dec, const Vsp16s* params, Vsp16s* pcm) {
  if (dec == nullptr || params == nullptr || pcm == nullptr) return vspStsNullPtrErr;
  VSPSCODEC_TRY(vspscodecGsmfrCheckParams(params));
  Decoder s;  // work on a copy: the object changes only when the frame succeeds
  std::memcpy(&s, static_cast<const void*>(dec), sizeof s);
  Vsp16s wt[kFrame], sr[kFrame];
  for (int j = 0; j < 4; ++j) {
    const Vsp16s* p = params + sub_base(j);
    Vsp16s erp[kSub];
    VSPSCODEC_TRY(legacy90vspsRPEDecode_GSMFR_16s(p + 4, erp, p[3], p[2]));
    VSPSCODEC_TRY(legacy90vspsLongTermSynthesis_GSMFR_16s(erp, s.drp, wt + kSub * j, &s.nrp, p[0], p[1]));
  }
  VSPSCODEC_TRY(legacy90vspsShortTermSynthesis_GSMFR_16s(params, wt, sr, s.larpp, s.v));
  VSPSCODEC_TRY(legacy90vspsPostprocess_GSMFR_16s(sr, pcm, &s.msr));
  std::memcpy(static_cast<void*>(dec), &s, sizeof s);
  return vspStsNoErr;
}

}  // extern "C"
