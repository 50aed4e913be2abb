// G.729 encoder (main body and Annex A): the frame loop of clause 3 over the
// library's steps. The object lives in caller memory; every computation is a
// library call, the driver only sequences them and keeps the memories.
#include <cstring>

#include "vsps_codecs.h"

namespace {

constexpr int kFrame = 80;
constexpr int kSubfr = 40;
constexpr int kM = 10;
constexpr int kMp1 = kM + 1;
constexpr int kWindow = 240;                 // LP analysis buffer
constexpr int kSpeechAt = 120;               // start of the frame being coded in the buffer
constexpr int kPitMax = 143;
constexpr int kExcHistory = 154;             // PIT_MAX + L_INTERPOL
constexpr Vsp16s kLspReset[kM] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
constexpr Vsp16s kLsfReset[kM] = {2339, 4679, 7018, 9358, 11698, 14037, 16377, 18717, 21056, 23396};  // Q13
constexpr int kMaxStateBytes = 512;          // reserved for each Annex B state block
constexpr Vsp16s kPreHighPass[6] = {4096, 7807, -3733, 1899, -3798, 1899};  // 140 Hz, Q12 (a0 a1 a2 b0 b1 b2)

}  // namespace

struct VspsG729Encoder {
  int options;
  Vsp8u highPass[24];
  Vsp16s speech[kWindow];            // pre-processed speech, the analysis window
  Vsp16s wsp[kPitMax + kFrame];      // weighted speech
  Vsp16s exc[kExcHistory + kFrame];  // excitation
  Vsp16s memSyn[kM], memW0[kM], memW[kM], memErr[kM];
  Vsp16s lspOld[kM], lspOldQ[kM];
  Vsp16s freqPrev[4 * kM];
  Vsp16s lpc[kMp1], rc[kM];          // last successful Levinson output
  Vsp16s weightMem[3];               // smooth flag, previous log-area ratios
  Vsp16s sharpGain;                  // previous quantised pitch gain
  Vsp32s excErr[4];                  // taming
  Vsp16s pastQuaEn[4];               // gain predictor
  Vsp16s extra;                      // codebook search budget carried to subframe 1
  alignas(8) Vsp8u vad[kMaxStateBytes];  // Annex B detector
  alignas(8) Vsp8u dtx[kMaxStateBytes];  // Annex B DTX and comfort noise
};

namespace {

bool annex_a(const VspsG729Encoder* e) { return (e->options & VSPS_G729_ANNEX_A) != 0; }

bool dtx(const VspsG729Encoder* e) { return (e->options & VSPS_G729_DTX) != 0; }

// LP analysis of the frame: LSP, A_t and the gammas (main body), the VAD
// decision and the DTX bookkeeping (Annex B). Returns the VAD decision.
int lp_analysis(VspsG729Encoder* e, Vsp16s* lspNew, Vsp16s* at, Vsp16s* gamma) {
  Vsp32s r[13], raw[kMp1];
  int norm = 0;
  const int lags = dtx(e) ? 12 : kM;
  legacy90vspsAutoCorr_NormE_G729_16s32s(e->speech, r, lags + 1, &norm);
  std::memcpy(raw, r, sizeof raw);
  legacy90vspsLagWindow_G729_32s_I(r + 1, lags);
  Vsp16s lpc[kMp1], rc[kM], err = 0;
  if (legacy90vspsLevinsonDurbin_G729_32s16s(r, kM, lpc, rc, &err) == vspStsNoErr) {
    std::memcpy(e->lpc, lpc, sizeof lpc);
    std::memcpy(e->rc, rc, sizeof rc);
  }
  if (annex_a(e))
    legacy90vspsLPCToLSP_G729A_16s(e->lpc, e->lspOld, lspNew);
  else
    legacy90vspsLPCToLSP_G729_16s(e->lpc, e->lspOld, lspNew);
  int vad = 1;
  if (dtx(e)) {
    Vsp16s lsf[kM];
    legacy90vspsLSPToLSF_Norm_G729_16s(lspNew, lsf);
    legacy90vspsVAD_G729B_16s(r, norm, e->rc[1], lsf, e->speech, &vad, e->vad);
    legacy90vspsDTXUpdate_G729B(raw, norm, vad, e->dtx);
  }
  if (!annex_a(e)) {
    Vsp16s mid[kM], lsfInt[kM], lsfNew[kM];
    legacy90vspsInterpolate_G729_16s(e->lspOld, lspNew, mid, kM);
    legacy90vspsLSPToLPC_G729_16s(mid, at);
    std::memcpy(at + kMp1, e->lpc, sizeof e->lpc);
    legacy90vspsLSPToLSF_Norm_G729_16s(mid, lsfInt);
    legacy90vspsLSPToLSF_Norm_G729_16s(lspNew, lsfNew);
    legacy90vspsWeightingGamma_G729_16s(e->rc, lsfInt, lsfNew, e->weightMem, gamma);
  }
  std::memcpy(e->lspOld, lspNew, sizeof e->lspOld);
  return vad;
}

// LSP quantisation and the quantised filters of both subframes.
void quantise_lsp(VspsG729Encoder* e, const Vsp16s* lspNew, Vsp16s* prm, Vsp16s* aq) {
  Vsp16s lspNewQ[kM], mid[kM];
  legacy90vspsLSPQuant_G729_16s(lspNew, e->freqPrev, lspNewQ, prm);
  legacy90vspsInterpolate_G729_16s(e->lspOldQ, lspNewQ, mid, kM);
  legacy90vspsLSPToLPC_G729_16s(mid, aq);
  legacy90vspsLSPToLPC_G729_16s(lspNewQ, aq + kMp1);
  std::memcpy(e->lspOldQ, lspNewQ, sizeof lspNewQ);
}

// The speech, weighted speech and excitation histories move by a frame.
void shift_buffers(VspsG729Encoder* e) {
  std::memmove(e->speech, e->speech + kFrame, sizeof(Vsp16s) * (kWindow - kFrame));
  std::memmove(e->wsp, e->wsp + kFrame, sizeof(Vsp16s) * kPitMax);
  std::memmove(e->exc, e->exc + kFrame, sizeof(Vsp16s) * kExcHistory);
}

// A non-speech frame (Annex B): comfort-noise coding and the memories.
void noise_frame(VspsG729Encoder* e, const Vsp16s* at, const Vsp16s* gamma, VspsG729Frame* f) {
  Vsp16s aq[2 * kMp1], prm[5];
  legacy90vspsDTXEncode_G729B_16s(annex_a(e), e->freqPrev, e->lpc, e->rc, e->lspOldQ, e->exc, e->excErr, aq, prm,
                                  e->dtx);
  for (int sf = 0; sf < 2; ++sf) {
    const Vsp16s* sp = e->speech + kSpeechAt + sf * kSubfr;
    const Vsp16s* exc = e->exc + kExcHistory + sf * kSubfr;
    if (annex_a(e)) {
      legacy90vspsNoiseMemoryUpdate_G729AB_16s(aq + sf * kMp1, sp - kM, exc, e->wsp + kPitMax + sf * kSubfr, e->memW,
                                               e->memW0);
    } else {
      Vsp16s ap1[kMp1], ap2[kMp1];
      legacy90vspsWeightLPC_G729_16s(at + sf * kMp1, gamma[2 * sf], ap1);
      legacy90vspsWeightLPC_G729_16s(at + sf * kMp1, gamma[2 * sf + 1], ap2);
      legacy90vspsNoiseMemoryUpdate_G729B_16s(aq + sf * kMp1, ap1, ap2, sp, exc, e->memSyn, e->memErr, e->memW0);
    }
  }
  e->sharpGain = 0;  // SHARPMIN
  f->type = prm[0] == 2 ? VSPS_G729_SID : VSPS_G729_NO_DATA;
  for (int i = 0; i < 4; ++i) f->prm[i] = f->type == VSPS_G729_SID ? prm[1 + i] : 0;
}

// Weighted speech of the frame (and, Annex A, the LP residual in exc).
void weighted_speech(VspsG729Encoder* e, const Vsp16s* at, const Vsp16s* aq, const Vsp16s* gamma) {
  for (int sf = 0; sf < 2; ++sf) {
    const Vsp16s* sp = e->speech + kSpeechAt + sf * kSubfr;
    Vsp16s* w = e->wsp + kPitMax + sf * kSubfr;
    if (annex_a(e)) {
      Vsp16s ap[kMp1], ap1[kMp1];
      legacy90vspsWeightLPC_G729A_16s(aq + sf * kMp1, ap, ap1);
      Vsp16s* res = e->exc + kExcHistory + sf * kSubfr;
      legacy90vspsResidualFilter_NR_16s_Sfs(aq + sf * kMp1, kM, sp - kM, res, kSubfr, 12);
      legacy90vspsSynthesisFilter_NR_16s_Sfs(ap1, kM, res, w, kSubfr, 12, e->memW);
    } else {
      Vsp16s ap1[kMp1], ap2[kMp1];
      legacy90vspsWeightLPC_G729_16s(at + sf * kMp1, gamma[2 * sf], ap1);
      legacy90vspsWeightLPC_G729_16s(at + sf * kMp1, gamma[2 * sf + 1], ap2);
      legacy90vspsResidualFilter_NR_16s_Sfs(ap1, kM, sp - kM, w, kSubfr, 12);
      legacy90vspsSynthesisFilter_NR_16s_Sfs(ap2, kM, w, w, kSubfr, 12, e->memW);
    }
  }
}

struct Subframe {
  Vsp16s h[kSubfr], xn[kSubfr], ap[kMp1];
};

// Impulse response and target of a subframe (clause 3.5, 3.6).
void target(VspsG729Encoder* e, int sf, const Vsp16s* at, const Vsp16s* aq, const Vsp16s* gamma, Subframe* s) {
  const Vsp16s* a = aq + sf * kMp1;
  Vsp16s zero[kM] = {};
  if (annex_a(e)) {
    Vsp16s ap1[kMp1];
    legacy90vspsWeightLPC_G729A_16s(a, s->ap, ap1);
    Vsp16s imp[kSubfr] = {4096};
    legacy90vspsSynthesisFilter_NR_16s_Sfs(s->ap, kM, imp, s->h, kSubfr, 12, zero);
    Vsp16s mem[kM];
    std::memcpy(mem, e->memW0, sizeof mem);
    legacy90vspsSynthesisFilter_NR_16s_Sfs(s->ap, kM, e->exc + kExcHistory + sf * kSubfr, s->xn, kSubfr, 12, mem);
    return;
  }
  Vsp16s ap1[kMp1], ap2[kMp1];
  legacy90vspsWeightLPC_G729_16s(at + sf * kMp1, gamma[2 * sf], ap1);
  legacy90vspsWeightLPC_G729_16s(at + sf * kMp1, gamma[2 * sf + 1], ap2);
  Vsp16s aiZero[kSubfr] = {};
  std::memcpy(aiZero, ap1, sizeof ap1);
  legacy90vspsSynthesisFilter_NR_16s_Sfs(a, kM, aiZero, s->h, kSubfr, 12, zero);
  std::memset(zero, 0, sizeof zero);
  legacy90vspsSynthesisFilter_NR_16s_Sfs(ap2, kM, s->h, s->h, kSubfr, 12, zero);
  Vsp16s* res = e->exc + kExcHistory + sf * kSubfr;
  legacy90vspsResidualFilter_NR_16s_Sfs(a, kM, e->speech + kSpeechAt + sf * kSubfr - kM, res, kSubfr, 12);
  Vsp16s err[kM + kSubfr], mem[kM];
  std::memcpy(err, e->memErr, sizeof e->memErr);
  std::memcpy(mem, e->memErr, sizeof mem);
  legacy90vspsSynthesisFilter_NR_16s_Sfs(a, kM, res, err + kM, kSubfr, 12, mem);
  legacy90vspsResidualFilter_NR_16s_Sfs(ap1, kM, err, s->xn, kSubfr, 12);
  std::memcpy(mem, e->memW0, sizeof mem);
  legacy90vspsSynthesisFilter_NR_16s_Sfs(ap2, kM, s->xn, s->xn, kSubfr, 12, mem);
}

void speech_subframe(VspsG729Encoder* e, int sf, const Vsp16s* at, const Vsp16s* aq, const Vsp16s* gamma,
                     Vsp16s refLag, Vsp16s* T0, Vsp16s* prm) {
  Subframe s;
  target(e, sf, at, aq, gamma, &s);
  Vsp16s* excStart = e->exc + sf * kSubfr;  // 154 past samples, then the subframe
  Vsp16s* exc = excStart + kExcHistory;
  Vsp16s frac = 0, y1[kSubfr];
  if (annex_a(e)) {
    legacy90vspsClosedLoopPitch_G729A_16s_I(excStart, s.xn, s.h, refLag, sf, T0, &frac);
    Vsp16s zero[kM] = {};
    legacy90vspsSynthesisFilter_NR_16s_Sfs(s.ap, kM, exc, y1, kSubfr, 12, zero);
  } else {
    legacy90vspsClosedLoopPitch_G729_16s(excStart, s.xn, s.h, refLag, sf, T0, &frac);
    legacy90vspsDecodeAdaptiveVector_G729_16s_I(*T0, frac, excStart);
    legacy90vspsConvPartial_NR_16s_Sfs(exc, s.h, y1, kSubfr, 12);
  }
  Vsp16s* out = prm + (sf == 0 ? 2 : 7);
  legacy90vspsEncodePitchLag_G729_16s(*T0, frac, refLag, sf, out);
  if (sf == 0) legacy90vspsPitchParity_G729_16s(out[0], out + 1);
  Vsp16s* cb = out + (sf == 0 ? 2 : 1);
  int taming = 0;
  legacy90vspsTamingTest_G729_32s(*T0, frac, e->excErr, &taming);
  Vsp16s gp = 0, coeff[4], xn2[kSubfr], code[kSubfr], y2[kSubfr], gains[2];
  legacy90vspsPitchGain_G729_16s(s.xn, y1, taming, &gp, coeff, xn2);
  if (annex_a(e))
    legacy90vspsFixedCodebookSearch_G729A_16s(xn2, s.h, *T0, e->sharpGain, code, y2, cb);
  else
    legacy90vspsFixedCodebookSearch_G729_16s(xn2, s.h, *T0, e->sharpGain, sf, &e->extra, code, y2, cb);
  legacy90vspsGainQuant_G729_16s(code, s.xn, y1, y2, coeff, taming, e->pastQuaEn, gains, cb + 2);
  e->sharpGain = gains[0];
  legacy90vspsBuildExcitation_G729_16s_I(code, gains[0], gains[1], exc, kSubfr);
  legacy90vspsTamingUpdate_G729_32s_I(gains[0], *T0, e->excErr);
  if (annex_a(e))
    legacy90vspsEncoderMemoryUpdate_G729A_16s(s.xn, y1, y2, gains[0], gains[1], e->memW0);
  else
    legacy90vspsEncoderMemoryUpdate_G729_16s(aq + sf * kMp1, exc, e->speech + kSpeechAt + sf * kSubfr, s.xn, y1, y2,
                                             gains[0], gains[1], e->memSyn, e->memErr, e->memW0);
}

}  // namespace

extern "C" VSPS_CODECS_API VspStatus vspscodecG729EncoderGetSize(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(VspsG729Encoder));
  return vspStsNoErr;
}

extern "C" VSPS_CODECS_API VspStatus vspscodecG729EncoderInit(VspsG729Encoder* pEnc, int options) {
  if (pEnc == nullptr) return vspStsNullPtrErr;
  if ((options & ~(VSPS_G729_ANNEX_A | VSPS_G729_DTX)) != 0) return vspStsRangeErr;
  std::memset(pEnc, 0, sizeof *pEnc);
  VspsG729Encoder* e = pEnc;
  e->options = options;
  legacy90vspsHighPassFilterInit_G729(kPreHighPass, e->highPass);
  int size = 0;
  legacy90vspsVADGetStateSize_G729B(&size);
  if (size > kMaxStateBytes) return vspStsErr;
  legacy90vspsDTXGetStateSize_G729B(&size);
  if (size > kMaxStateBytes) return vspStsErr;
  legacy90vspsVADInit_G729B(e->vad);
  legacy90vspsDTXInit_G729B(e->dtx);
  std::memcpy(e->lspOld, kLspReset, sizeof kLspReset);
  std::memcpy(e->lspOldQ, kLspReset, sizeof kLspReset);
  for (int k = 0; k < 4; ++k) std::memcpy(e->freqPrev + k * kM, kLsfReset, sizeof kLsfReset);
  e->lpc[0] = 4096;
  e->weightMem[0] = 1;
  for (Vsp32s& x : e->excErr) x = 0x4000;
  for (Vsp16s& x : e->pastQuaEn) x = -14336;
  return vspStsNoErr;
}

extern "C" VSPS_CODECS_API VspStatus vspscodecG729EncoderEncode(VspsG729Encoder* pEnc, const Vsp16s* pPcm,
                                                                VspsG729Frame* pFrame) {
  if (pEnc == nullptr || pPcm == nullptr || pFrame == nullptr) return vspStsNullPtrErr;
  VspsG729Encoder* e = pEnc;
  VspsG729Frame f{};
  f.type = VSPS_G729_SPEECH;
  std::memcpy(e->speech + kWindow - kFrame, pPcm, sizeof(Vsp16s) * kFrame);
  legacy90vspsHighPassFilter_G729_16s_ISfs(e->speech + kWindow - kFrame, kFrame, 12, e->highPass);
  Vsp16s at[2 * kMp1], aq[2 * kMp1], gamma[4], lspNew[kM];
  const int vad = lp_analysis(e, lspNew, at, gamma);
  if (vad) quantise_lsp(e, lspNew, f.prm, aq);
  if (!annex_a(e) || vad) weighted_speech(e, at, aq, gamma);
  if (!vad) {
    noise_frame(e, at, gamma, &f);
    shift_buffers(e);
    *pFrame = f;
    return vspStsNoErr;
  }
  Vsp16s top = 0;
  if (annex_a(e))
    legacy90vspsOpenLoopPitch_G729A_16s(e->wsp, &top);
  else
    legacy90vspsOpenLoopPitch_G729_16s(e->wsp, &top);
  Vsp16s t0 = 0;
  speech_subframe(e, 0, at, aq, gamma, top, &t0, f.prm);
  const Vsp16s t0First = t0;
  speech_subframe(e, 1, at, aq, gamma, t0First, &t0, f.prm);
  shift_buffers(e);
  *pFrame = f;
  return vspStsNoErr;
}
