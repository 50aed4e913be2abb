// GSM-AMR post-filter (TS 26.073 Post_Filter): formant post-filter
// A(z/g3)/A(z/g4) with tilt compensation and adaptive gain control.
#include <cstring>

#include "gsmamr/amr_ops.h"
#include "gsmamr/dec_state.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace amr {
namespace {

struct PostState {
  int16_t mem_syn_pst[kM];
  int16_t synth_buf[kM + kFrame];  // 10 history samples, then the frame
  int16_t past_gain;               // AGC gain, Q12
  int16_t mem_pre;                 // tilt-compensation memory
};

constexpr int kLh = 22;  // length of the truncated impulse response

}  // namespace
}  // namespace amr

VspStatus legacy90vspsPostFilterStateSize_GSMAMR(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(amr::PostState));
  return vspStsNoErr;
}

VspStatus legacy90vspsPostFilterInit_GSMAMR(Vsp8u* pState) {
  if (pState == nullptr) return vspStsNullPtrErr;
  amr::PostState s{};
  s.past_gain = 4096;
  std::memcpy(pState, &s, sizeof s);
  return vspStsNoErr;
}

VspStatus legacy90vspsPostFilter_GSMAMR_16s(const Vsp16s* pSrcLpc, Vsp16s* pSrcDstSpeech, Vsp8u* pState, int mode) {
  using namespace amr;
  if (pSrcLpc == nullptr || pSrcDstSpeech == nullptr || pState == nullptr) return vspStsNullPtrErr;
  const int16_t m = ref_mode(mode);
  if (m < 0) return vspStsRangeErr;
  PostState s;
  std::memcpy(&s, pState, sizeof s);
  const bool high = m == MR122 || m == MR102;
  const int16_t* g3 = high ? gsmamr::kGamma3_MR122 : gsmamr::kGamma3;
  const int16_t* g4 = high ? gsmamr::kGamma4_MR122 : gsmamr::kGamma4;
  int16_t* work = s.synth_buf + kM;
  for (int i = 0; i < kFrame; ++i) work[i] = pSrcDstSpeech[i];
  int16_t syn[kFrame];
  for (int sf = 0; sf < 4; ++sf) {
    const int16_t* az = pSrcLpc + kMp1 * sf;
    int16_t ap3[kMp1], ap4[kMp1], res2[kSubfr], h[kLh];
    weight_ai(az, g3, ap3);
    weight_ai(az, g4, ap4);
    residu(ap3, &work[kSubfr * sf], res2, kSubfr);
    for (int i = 0; i < kLh; ++i) h[i] = i < kMp1 ? ap3[i] : int16_t(0);
    int16_t zero[kM] = {};
    syn_filt(ap4, h, h, kLh, zero, false);
    int32_t L = bop::L_mult(h[0], h[0]);
    for (int i = 1; i < kLh; ++i) L = bop::L_mac(L, h[i], h[i]);
    const int16_t t1 = bop::extract_h(L);
    L = bop::L_mult(h[0], h[1]);
    for (int i = 1; i < kLh - 1; ++i) L = bop::L_mac(L, h[i], h[i + 1]);
    int16_t t2 = bop::extract_h(L);
    t2 = t2 <= 0 ? int16_t(0) : bop::div_s(bop::mult(t2, 26214), t1);
    // tilt compensation (preemphasis), backwards through the subframe
    const int16_t last = res2[kSubfr - 1];
    for (int i = kSubfr - 1; i > 0; --i) res2[i] = bop::sub(res2[i], bop::mult(t2, res2[i - 1]));
    res2[0] = bop::sub(res2[0], bop::mult(t2, s.mem_pre));
    s.mem_pre = last;
    int16_t* out = syn + kSubfr * sf;
    syn_filt(ap4, res2, out, kSubfr, s.mem_syn_pst, true);
    // agc with memory (factor 0.9)
    int16_t g0 = 0;
    if (!agc_gain(&work[kSubfr * sf], out, kSubfr, g0)) {
      s.past_gain = 0;
      continue;
    }
    g0 = bop::mult(g0, 3276);
    int16_t gain = s.past_gain;
    for (int i = 0; i < kSubfr; ++i) {
      gain = bop::add(bop::mult(gain, 29491), g0);
      out[i] = bop::extract_h(bop::L_shl(bop::L_mult(out[i], gain), 3));
    }
    s.past_gain = gain;
  }
  for (int i = 0; i < kM; ++i) s.synth_buf[i] = work[kFrame - kM + i];
  for (int i = 0; i < kFrame; ++i) pSrcDstSpeech[i] = syn[i];
  std::memcpy(pState, &s, sizeof s);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
