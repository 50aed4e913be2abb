// G.729 decoder (main body and Annex A): the frame loop of clause 4 over the
// library's steps. The object lives in caller memory; every computation is a
// library call, the driver only sequences them and keeps the memories.
#include <cstddef>
#include <cstring>

#include "vsps_codecs.h"

namespace {

constexpr int kFrame = 80;
constexpr int kSubfr = 40;
constexpr int kM = 10;
constexpr int kExcHistory = 154;                   // PIT_MAX + L_INTERPOL
constexpr int kExcLen = kExcHistory + kFrame;      // past excitation + this frame
constexpr int kMaxPostFilterState = 1024;          // bytes reserved for either post-filter state
constexpr Vsp16s kLspReset[kM] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
constexpr Vsp16s kLsfReset[kM] = {2339, 4679, 7018, 9358, 11698, 14037, 16377, 18717, 21056, 23396};  // Q13, MA memory rows
constexpr Vsp16s kLspSidReset[kM] = {31441, 27566, 21458, 13612, 4663, -4663, -13612, -21458, -27566, -31441};
constexpr Vsp16s kInitSeed = 11111;
constexpr Vsp16s kPostHighPass[6] = {8192, 15836, -7667, 7699, -15398, 7699};  // 100 Hz, Q13 (a0 a1 a2 b0 b1 b2)

}  // namespace

struct VspsG729Decoder {
  int options;
  Vsp16s exc[kExcLen];      // excitation: 154 past samples, then the frame
  Vsp16s memSyn[kM];        // synthesis filter memory
  Vsp16s lspOld[kM];        // previous frame's LSP (interpolation)
  Vsp16s freqPrev[4 * kM];  // LSF MA predictor memory
  Vsp16s lastLsf[kM];       // last good LSF (erasures)
  int lastMode;             // MA mode of the last good frame
  Vsp16s oldT0;             // lag concealment
  Vsp16s gains[2];          // gain_pit Q14, gain_code Q1 of the last subframe
  Vsp16s sharpGain;         // gain that sets the next pitch sharpening
  Vsp16s pastQuaEn[4];      // gain predictor memory, Q10
  Vsp16s seedFer;           // random generator of erased frames
  Vsp16s voicing;           // main body: voicing of the previous frame
  Vsp16s t0Post[2];         // lags for the post-filter of a comfort-noise frame
  // Annex B
  int pastType;             // type of the previous frame (1 speech)
  Vsp16s seedCng;           // comfort-noise generator
  Vsp16s sidSav, shSidSav;  // energy of the last good frame's excitation
  Vsp16s sidGain, curGain;  // SID gain and smoothed comfort-noise gain
  Vsp16s lspSid[kM];        // comfort-noise LSP
  Vsp8u highPass[24];       // post-processing filter state
  alignas(8) Vsp8u postFilter[kMaxPostFilterState];
};

namespace {

bool annex_a(const VspsG729Decoder* d) { return (d->options & VSPS_G729_ANNEX_A) != 0; }

// LSP of the frame from its indices, or repeated on an erasure.
void decode_lsp(VspsG729Decoder* d, const VspsG729Frame* f, bool erased, Vsp16s* lsp) {
  Vsp16s lsf[kM];
  if (!erased) {
    const Vsp16s codes[4] = {static_cast<Vsp16s>(f->prm[0] >> 7 & 1), static_cast<Vsp16s>(f->prm[0] & 127),
                             static_cast<Vsp16s>(f->prm[1] >> 5 & 31), static_cast<Vsp16s>(f->prm[1] & 31)};
    legacy90vspsLSFDecode_G729_16s(codes, d->freqPrev, lsf);
    std::memcpy(d->lastLsf, lsf, sizeof lsf);
    d->lastMode = codes[0];
  } else {
    legacy90vspsLSFDecodeErased_G729_16s(d->lastMode, d->freqPrev, d->lastLsf);
    std::memcpy(lsf, d->lastLsf, sizeof lsf);
  }
  legacy90vspsLSFToLSP_G729_16s(lsf, lsp);
}

// Interpolated A(z) of both subframes from the previous and current LSP.
void lp_of_frame(VspsG729Decoder* d, const Vsp16s* lsp, Vsp16s* az) {
  Vsp16s mid[kM];
  legacy90vspsInterpolate_G729_16s(d->lspOld, lsp, mid, kM);
  legacy90vspsLSPToLPC_G729_16s(mid, az);
  legacy90vspsLSPToLPC_G729_16s(lsp, az + kM + 1);
  std::memcpy(d->lspOld, lsp, sizeof d->lspOld);
}

// One speech subframe: excitation and synthesis. Returns the integer lag.
Vsp16s speech_subframe(VspsG729Decoder* d, const VspsG729Frame* f, bool erased, bool badPitch, int sf,
                       const Vsp16s* az, Vsp16s* syn, Vsp16s* t0) {
  const Vsp16s* prm = f->prm + (sf == 0 ? 2 : 7);
  Vsp16s frac = 0;
  legacy90vspsDecodePitchLag_G729_16s(erased ? 0 : prm[0], sf, erased || (sf == 0 && badPitch), &d->oldT0, t0, &frac);
  Vsp16s* exc = d->exc + sf * kSubfr;  // 154 past samples before the subframe
  legacy90vspsDecodeAdaptiveVector_G729_16s_I(*t0, frac, exc);
  const int k = sf == 0 ? 4 : 8;  // C, S, G of the subframe
  Vsp16s index = f->prm[k], signs = f->prm[k + 1];
  if (erased) {
    Vsp16s r[2];
    legacy90vspsRandom_G729_16s(&d->seedFer, r, 2);
    index = static_cast<Vsp16s>(r[0] & 0x1fff);
    signs = static_cast<Vsp16s>(r[1] & 0xf);
  }
  Vsp16s code[kSubfr];
  legacy90vspsDecodeFixedCodebook_G729_16s(index, signs, code);
  legacy90vspsPitchSharpening_G729_16s_I(code, *t0, d->sharpGain);
  legacy90vspsDecodeGain_G729_16s(erased ? 0 : f->prm[k + 2], erased, code, d->pastQuaEn, d->gains);
  d->sharpGain = d->gains[0];
  Vsp16s gp = d->gains[0], gc = d->gains[1];
  if (erased && !annex_a(d)) {  // main body: voiced -> pitch only, unvoiced -> code only
    if (d->voicing == 0)
      gp = 0;
    else
      gc = 0;
  }
  legacy90vspsBuildExcitation_G729_16s_I(code, gp, gc, exc + kExcHistory, kSubfr);
  legacy90vspsDecodeSynthesis_G729_16s(az, d->exc, kExcHistory + (sf + 1) * kSubfr, syn, d->memSyn);
  return *t0;
}

}  // namespace

extern "C" VSPS_CODECS_API VspStatus vspscodecG729DecoderGetSize(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(VspsG729Decoder));
  return vspStsNoErr;
}

extern "C" VSPS_CODECS_API VspStatus vspscodecG729DecoderInit(VspsG729Decoder* pDec, int options) {
  if (pDec == nullptr) return vspStsNullPtrErr;
  if ((options & ~(VSPS_G729_ANNEX_A | VSPS_G729_DTX)) != 0) return vspStsRangeErr;
  std::memset(pDec, 0, sizeof *pDec);
  VspsG729Decoder* d = pDec;
  d->options = options;
  std::memcpy(d->lspOld, kLspReset, sizeof kLspReset);
  for (int k = 0; k < 4; ++k) std::memcpy(d->freqPrev + k * kM, kLsfReset, sizeof kLsfReset);
  std::memcpy(d->lastLsf, kLsfReset, sizeof kLsfReset);
  d->oldT0 = 60;
  for (Vsp16s& e : d->pastQuaEn) e = -14336;
  d->seedFer = 21845;
  d->voicing = 60;
  d->t0Post[0] = d->t0Post[1] = 60;
  d->pastType = VSPS_G729_SPEECH;
  d->seedCng = kInitSeed;
  d->shSidSav = 1;
  legacy90vspsDecodeSidGain_G729B_16s(0, &d->sidGain);
  std::memcpy(d->lspSid, kLspSidReset, sizeof kLspSidReset);
  legacy90vspsHighPassFilterInit_G729(kPostHighPass, d->highPass);
  int size = 0;
  if (annex_a(d)) {
    legacy90vspsPostFilterGetStateSize_G729A(&size);
    if (size > kMaxPostFilterState) return vspStsErr;
    legacy90vspsPostFilterInit_G729A(d->postFilter);
  } else {
    legacy90vspsPostFilterGetStateSize_G729(&size);
    if (size > kMaxPostFilterState) return vspStsErr;
    legacy90vspsPostFilterInit_G729(d->postFilter);
  }
  return vspStsNoErr;
}

namespace {

// A comfort-noise frame (Annex B): SID parameters or the last ones,
// random excitation, synthesis through the comfort-noise filter.
void noise_frame(VspsG729Decoder* d, const VspsG729Frame* f, int type, Vsp16s* az, Vsp16s* syn) {
  if (type == VSPS_G729_SID) {
    legacy90vspsDecodeSidGain_G729B_16s(f->prm[3], &d->sidGain);
    legacy90vspsDecodeSID_G729B_16s(f->prm, d->freqPrev, d->lspSid);
  } else if (d->pastType == VSPS_G729_SPEECH) {  // the first SID frame was lost
    Vsp16s energyQ = 0, index = 0;
    legacy90vspsQuantSidEnergy_G729B_16s(&d->sidSav, &d->shSidSav, 0, &energyQ, &index);
    legacy90vspsDecodeSidGain_G729B_16s(index, &d->sidGain);
  }
  legacy90vspsComfortNoiseExcitation_G729B_16s(d->sidGain, d->pastType == VSPS_G729_SPEECH, &d->curGain, &d->seedCng,
                                              d->exc, nullptr);
  lp_of_frame(d, d->lspSid, az);
  for (int sf = 0; sf < 2; ++sf)
    legacy90vspsDecodeSynthesis_G729_16s(az + sf * (kM + 1), d->exc, kExcHistory + (sf + 1) * kSubfr,
                                         syn + sf * kSubfr, d->memSyn);
  d->sharpGain = 0;  // SHARPMIN
  d->t0Post[0] = d->t0Post[1] = d->oldT0;
}

void speech_frame(VspsG729Decoder* d, const VspsG729Frame* f, bool erased, Vsp16s* az, Vsp16s* syn) {
  bool badPitch = false;
  if (!erased) {
    Vsp16s parity = 0;
    legacy90vspsPitchParity_G729_16s(f->prm[2], &parity);
    badPitch = parity != f->prm[3];
  }
  Vsp16s lsp[kM];
  decode_lsp(d, f, erased, lsp);
  lp_of_frame(d, lsp, az);
  Vsp16s t0 = 0;
  for (int sf = 0; sf < 2; ++sf) {
    speech_subframe(d, f, erased, badPitch, sf, az + sf * (kM + 1), syn + sf * kSubfr, &t0);
    d->t0Post[sf] = t0;
  }
}

}  // namespace

extern "C" VSPS_CODECS_API VspStatus vspscodecG729DecoderDecode(VspsG729Decoder* pDec, const VspsG729Frame* pFrame,
                                                                Vsp16s* pPcm) {
  if (pDec == nullptr || pFrame == nullptr || pPcm == nullptr) return vspStsNullPtrErr;
  if (pFrame->type < 0 || pFrame->type > 2) return vspStsRangeErr;
  VspsG729Decoder* d = pDec;
  const bool dtx = (d->options & VSPS_G729_DTX) != 0;
  bool erased = pFrame->erased != 0;
  int type = pFrame->type;
  if (!dtx && type != VSPS_G729_SPEECH) erased = true, type = VSPS_G729_SPEECH;
  if (erased) type = d->pastType == VSPS_G729_SPEECH ? VSPS_G729_SPEECH : VSPS_G729_NO_DATA;
  Vsp16s az[2 * (kM + 1)], syn[kFrame];
  if (type == VSPS_G729_SPEECH) {
    d->seedCng = kInitSeed;
    speech_frame(d, pFrame, erased, az, syn);
  } else {
    noise_frame(d, pFrame, type, az, syn);
  }
  if (dtx && !erased) legacy90vspsExcitationEnergy_G729B_16s(d->exc + kExcHistory, &d->sidSav, &d->shSidSav);
  d->pastType = type;
  std::memmove(d->exc, d->exc + kFrame, sizeof(Vsp16s) * kExcHistory);
  const int vad = type == VSPS_G729_SPEECH ? 1 : 0;
  if (annex_a(d)) {
    for (int sf = 0; sf < 2; ++sf)
      legacy90vspsPostFilter_G729A_16s(az + sf * (kM + 1), syn + sf * kSubfr, pPcm + sf * kSubfr, d->t0Post[sf], vad,
                                       d->postFilter);
  } else {
    Vsp16s voicing = 0;
    for (int sf = 0; sf < 2; ++sf) {
      Vsp16s vo = 0;
      legacy90vspsPostFilter_G729_16s(az + sf * (kM + 1), syn + sf * kSubfr, pPcm + sf * kSubfr, d->t0Post[0], vad,
                                      &vo, d->postFilter);
      if (vo != 0) voicing = vo;
    }
    d->voicing = voicing;
  }
  legacy90vspsHighPassFilter_G729_16s_ISfs(pPcm, kFrame, 13, d->highPass);
  return vspStsNoErr;
}
