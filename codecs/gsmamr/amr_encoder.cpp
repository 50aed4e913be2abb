// GSM-AMR encoder driver: the frame loop of TS 26.073 Speech_Encode_Frame
// and cod_amr over the library's encoder steps (pre-processing, LP
// analysis and quantisation, weighting, open-loop and closed-loop pitch,
// algebraic codebook, gain quantisation, memory updates), the 4.75 kbit/s
// subframe pairing, DTX with VAD option 1 or 2, the encoder homing frame and
// the transmit frame type (sid_sync). Holds no arithmetic of its own: state,
// buffer moves, control flow and parameter order only.
#include <cstddef>
#include <cstring>

#include "codecs/gsmamr/amr_format.h"
#include "vsps.h"
#include "vsps_codecs.h"

namespace vsps::codecs::amr {
namespace {

constexpr uint32_t kMagic = 0x414d5245;  // "AMRE"
const int kRate[8] = {vspRate4750, vspRate5150, vspRate5900,  vspRate6700,
                      vspRate7400, vspRate7950, vspRate10200, vspRate12200};
const Vsp16s kPreHp[6] = {4096, 7807, -3733, 1899, -3798, 1899};  // 140 Hz high-pass, input halved, Q12
const Vsp16s kLspInit[10] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
constexpr int kCbWords[8] = {2, 2, 2, 2, 2, 2, 7, 10};  // codebook parameters a subframe
enum { kTxSpeech = 0, kTxSidFirst = 1, kTxSidUpdate = 2, kTxNoData = 3 };

// Everything of cod_amr and the driver that is not inside a step's state block.
struct Core {
  Vsp16s speech[320];     // old_speech: the frame coded is speech + 120, the newest 160 at 160
  Vsp16s wsp[143 + 160];  // weighted speech with its history
  Vsp16s exc[154 + 160];  // past total excitation, then the frame's
  Vsp16s memW[10], memSyn[10], memErr[10], memW0[10];
  Vsp16s oldA[11];  // the last stable LP filter (Levinson fallback)
  Vsp16s lspOld[10], lspOldQ[10], pastRq[10];
  Vsp16s olState[10];  // open-loop state of 10.2 kbit/s with the lag history
  Vsp16s tone[8];      // tone stabiliser
  Vsp16s prevLag, sharp;
  Vsp16s pastQuaEn[8];     // code-gain predictor: past quantised energies (Q10), 4 + 4 of 12.2 kbit/s
  int sidCounter, prevFt;  // sid_sync
};

struct Header {
  uint32_t magic;
  int dtx, vad;
  int gainBytes, vadBytes, dtxBytes;
};

constexpr std::size_t align8(std::size_t n) { return (n + 7) & ~std::size_t(7); }

struct Layout {
  Header* h;
  Core* c;
  Vsp8u* hp;
  Vsp8u* gain;
  Vsp8u* vad;
  Vsp8u* dtx;
};

Layout layout(void* p) {
  auto* h = static_cast<Header*>(p);
  Vsp8u* b = static_cast<Vsp8u*>(p) + align8(sizeof(Header));
  Layout l{h, reinterpret_cast<Core*>(b), nullptr, nullptr, nullptr, nullptr};
  b += align8(sizeof(Core));
  l.hp = b;
  b += 24;
  l.gain = b;
  b += align8(static_cast<std::size_t>(h->gainBytes));
  l.vad = b;
  b += align8(static_cast<std::size_t>(h->vadBytes));
  l.dtx = b;
  return l;
}

template <class T, std::size_t N>
void fill(T (&a)[N], T v) {
  for (T& x : a) x = v;
}
template <class T, std::size_t N>
void copy(T (&dst)[N], const T* src) {
  std::memcpy(dst, src, sizeof dst);
}

VspStatus reset_all(const Layout& l) {
  Core& c = *l.c;
  std::memset(&c, 0, sizeof c);
  c.oldA[0] = 4096;
  for (int i = 0; i < 4; ++i) {
    c.pastQuaEn[i] = -14336;
    c.pastQuaEn[4 + i] = -2381;
  }
  copy(c.lspOld, kLspInit);
  copy(c.lspOldQ, kLspInit);
  const Vsp16s ol[10] = {40, 0, 0, 40, 40, 40, 40, 40, 0, 0};
  copy(c.olState, ol);
  c.sidCounter = 3;
  c.prevFt = kTxSpeech;
  VspStatus st = legacy90vspsHighPassFilterInit_G729(kPreHp, l.hp);
  if (st == vspStsNoErr) st = legacy90vspsGainQuantInit_GSMAMR(l.gain);
  if (st == vspStsNoErr && l.h->vad == 1) st = legacy90vspsVAD1Init_GSMAMR(l.vad);
  if (st == vspStsNoErr && l.h->vad == 2) st = legacy90vspsVAD2Init_GSMAMR(l.vad);
  if (st == vspStsNoErr) st = legacy90vspsDTXEncInit_GSMAMR(l.dtx);
  return st;
}

// LP analysis of the requested mode: unquantised filters A (4 x 11) and the
// frame's LSPs (lsp: 10; 12.2 kbit/s mid-frame then end-of-frame, 20).
VspStatus lp_analysis(Core& c, int m, Vsp16s* A, Vsp16s* lsp) {
  const int rate = kRate[m];
  Vsp32s r[22];
  VspStatus st = legacy90vspsAutoCorr_GSMAMR_16s32s(c.speech + (m == 7 ? 40 : 80), r, rate);
  const int n = m == 7 ? 2 : 1;
  Vsp16s a[2][11];
  for (int k = 0; k < n && st == vspStsNoErr; ++k) {
    st = legacy90vspsLevinsonDurbin_GSMAMR_32s16s(r + 11 * k, a[k]);
    if (st == vspStsLPCUnstable) {
      std::memcpy(a[k], c.oldA, sizeof c.oldA);
      st = vspStsNoErr;
    } else {
      std::memcpy(c.oldA, a[k], sizeof c.oldA);
    }
  }
  if (st != vspStsNoErr) return st;
  const Vsp16s* prev = c.lspOld;
  for (int k = 0; k < n && st == vspStsNoErr; ++k) {
    st = legacy90vspsLPCToLSP_GSMAMR_16s(a[k], prev, lsp + 10 * k);
    prev = lsp + 10 * k;
  }
  if (st == vspStsNoErr) st = legacy90vspsInterpolateLPC_GSMAMR_16s(c.lspOld, lsp, A, rate);
  if (st != vspStsNoErr) return st;
  std::memcpy(A + 33, a[n - 1], sizeof a[0]);  // the analysed filters are used as they are
  if (n == 2) std::memcpy(A + 11, a[0], sizeof a[0]);
  return vspStsNoErr;
}

// Open-loop lags of the frame, with the VAD hooks.
VspStatus open_loop(const Layout& l, int m, const Vsp16s* A, Vsp16s* top) {
  Core& c = *l.c;
  const int rate = kRate[m];
  Vsp32s vad[2][9] = {};
  VspStatus st = vspStsNoErr;
  for (int h = 0; h < 2 && st == vspStsNoErr; ++h) {
    st = legacy90vspsWeightedSpeech_GSMAMR_16s(c.speech + 120 + 80 * h - 10, A + 22 * h, c.wsp + 143 + 80 * h, c.memW,
                                               rate);
    if (st == vspStsNoErr && m >= 2)
      st = legacy90vspsOpenLoopPitch_GSMAMR_16s(c.wsp, c.olState, vad[h], &top[h], h, rate);
  }
  if (st == vspStsNoErr && m < 2) {
    st = legacy90vspsOpenLoopPitch_GSMAMR_16s(c.wsp, c.olState, vad[0], &top[0], 1, rate);
    top[1] = top[0];
  }
  if (st != vspStsNoErr || l.h->dtx == 0) return st;
  if (l.h->vad == 1) return legacy90vspsVAD1PitchUpdate_GSMAMR_32s(&vad[0][0], top, l.vad, rate);
  return legacy90vspsVAD2LTPFlag_GSMAMR_32s(&vad[0][0], l.vad, rate);
}

// One subframe's analysis up to the quantised gains.
struct Sub {
  Vsp16s h1[40], res[40], res2[40], xn[40], xn2[40], y1[40], y2[40], code[40], lag[3], gp[3], coeff[4], gains[4],
      gidx[2];
  Vsp16s cb[10];
};

VspStatus analyse_subframe(const Layout& l, int m, int sf, const Vsp16s* A, const Vsp16s* Aq, const Vsp16s* top,
                           int lspFlag, const Vsp16s* memW0, Sub& s) {
  Core& c = *l.c;
  const int rate = kRate[m];
  Vsp16s* exc = c.exc + 154 + 40 * sf;
  VspStatus st = legacy90vspsSubframePreProc_GSMAMR_16s(A + 11 * sf, Aq + 11 * sf, c.speech + 120 + 40 * sf - 10,
                                                        c.memErr, memW0, s.h1, s.res, s.xn, rate);
  if (st != vspStsNoErr) return st;
  std::memcpy(exc, s.res, sizeof s.res);
  std::memcpy(s.res2, s.res, sizeof s.res);  // res2 becomes the LTP residual
  st = legacy90vspsAdaptiveCodebookSearch_GSMAMR_16s(s.xn, s.h1, exc - 154, top, &c.prevLag, s.lag, s.y1, sf, rate);
  if (st == vspStsNoErr)
    st = legacy90vspsPitchGain_GSMAMR_16s(s.xn, s.y1, exc, c.tone, s.res2, s.xn2, s.gp, s.coeff, lspFlag, rate);
  if (st != vspStsNoErr) return st;
  if (sf == 0 && c.olState[8] > 0) c.olState[4] = s.lag[0];  // lag history of the 10.2 open-loop search
  if (sf == 3 && c.olState[9] > 0) c.olState[3] = s.lag[0];
  st = legacy90vspsFixedCodebookSearch_GSMAMR_16s(s.xn2, s.h1, s.res2, s.lag[0], m == 7 ? s.gp[0] : c.sharp, sf, s.code,
                                                  s.y2, s.cb, rate);
  if (st == vspStsNoErr)
    st = legacy90vspsGainQuant_GSMAMR_16s(s.xn, s.xn2, s.y1, s.y2, s.code, s.res, exc, s.coeff, s.gp[0], s.gp[1],
                                          c.pastQuaEn, l.gain, s.gains, s.gidx, sf, rate);
  return st;
}

VspStatus post_process(const Layout& l, int m, int sf, const Vsp16s* Aq, const Vsp16s* xn, const Vsp16s* code,
                       const Vsp16s* y1, const Vsp16s* y2, const Vsp16s* gains, Vsp16s* memSyn, Vsp16s* memW0) {
  Core& c = *l.c;
  Vsp16s synth[40];
  return legacy90vspsSubframePostProc_GSMAMR_16s(c.speech + 120 + 40 * sf, Aq + 11 * sf, xn, code, y1, y2, gains,
                                                 c.exc + 154 + 40 * sf, memSyn, c.memErr, memW0, synth, &c.sharp,
                                                 kRate[m]);
}

// The four subframes of a speech frame; parameters appended to prm.
VspStatus speech_subframes(const Layout& l, int m, const Vsp16s* A, const Vsp16s* Aq, const Vsp16s* top, int lspFlag,
                           Vsp16s* prm, int& np) {
  Core& c = *l.c;
  const int rate = kRate[m];
  Sub even{};
  Vsp16s memSynSave[10], memW0Save[10], memErrSave[10], sharpSave = 0;
  int gainSlot = 0;
  for (int sf = 0; sf < 4; ++sf) {
    Sub s{};
    const bool pairEven = m == 0 && (sf & 1) == 0, pairOdd = m == 0 && (sf & 1) == 1;
    if (pairEven) {
      copy(memSynSave, c.memSyn);
      copy(memW0Save, c.memW0);
      copy(memErrSave, c.memErr);
      sharpSave = c.sharp;
    }
    VspStatus st = analyse_subframe(l, m, sf, A, Aq, top, lspFlag, m == 0 ? memW0Save : c.memW0, s);
    if (st != vspStsNoErr) return st;
    prm[np++] = s.lag[2];
    if (m == 7) prm[np++] = s.gp[2];
    for (int i = 0; i < kCbWords[m]; ++i) prm[np++] = s.cb[i];
    if (m == 7) prm[np++] = s.gidx[0];
    if (m == 5) {
      prm[np++] = s.gidx[0];
      prm[np++] = s.gidx[1];
    }
    if (m != 0 && m != 5 && m != 7) prm[np++] = s.gidx[0];
    if (pairEven) {
      gainSlot = np++;
      st = legacy90vspsToneStabUpdate_GSMAMR_16s(s.gp[0], c.tone);
      // Provisional update with the unquantised gains on the saved memories.
      if (st == vspStsNoErr) st = post_process(l, m, sf, Aq, s.xn, s.code, s.y1, s.y2, s.gains, memSynSave, memW0Save);
      c.sharp = sharpSave;
      even = s;
      if (st != vspStsNoErr) return st;
      continue;
    }
    st = legacy90vspsToneStabUpdate_GSMAMR_16s(s.gains[0], c.tone);
    if (st == vspStsNoErr && pairOdd) {
      prm[gainSlot] = s.gidx[0];
      copy(c.memErr, memErrSave);
      const int e = sf - 1;
      Vsp16s y1[40];
      st = legacy90vspsAdaptiveVector_GSMAMR_16s(c.exc + 40 * e, even.h1, even.lag, y1, rate);
      if (st == vspStsNoErr)
        st = post_process(l, m, e, Aq, even.xn, even.code, y1, even.y2, s.gains + 2, c.memSyn, c.memW0);
      if (st == vspStsNoErr)
        st = legacy90vspsSubframePreProc_GSMAMR_16s(A + 11 * sf, Aq + 11 * sf, c.speech + 120 + 40 * sf - 10, c.memErr,
                                                    c.memW0, s.h1, s.res, s.xn, rate);
      if (st == vspStsNoErr) st = legacy90vspsAdaptiveVector_GSMAMR_16s(c.exc + 40 * sf, s.h1, s.lag, s.y1, rate);
    }
    if (st == vspStsNoErr) st = post_process(l, m, sf, Aq, s.xn, s.code, s.y1, s.y2, s.gains, c.memSyn, c.memW0);
    if (st != vspStsNoErr) return st;
  }
  return vspStsNoErr;
}

// sid_sync: the transmit frame type of the frame.
int tx_type(Core& c, bool dtxFrame) {
  int type = kTxSpeech;
  if (dtxFrame) {
    --c.sidCounter;
    if (c.prevFt == kTxSpeech) {
      type = kTxSidFirst;
      c.sidCounter = 3;
    } else if (c.sidCounter == 0) {
      type = kTxSidUpdate;
      c.sidCounter = 8;
    } else {
      type = kTxNoData;
    }
  } else {
    c.sidCounter = 8;
  }
  c.prevFt = type;
  return type;
}

VspStatus encode_frame(const Layout& l, int m, const Vsp16s* pcm, int* pTx, Vsp8u* bits) {
  Core& c = *l.c;
  const int rate = kRate[m];
  Vsp16s* x = c.speech + 160;
  for (int i = 0; i < 160; ++i) x[i] = static_cast<Vsp16s>(pcm[i] & 0xFFF8);
  VspStatus st = legacy90vspsHighPassFilter_G729_16s_ISfs(x, 160, 12, l.hp);
  int usedRate = rate, computeSid = 0;
  if (st == vspStsNoErr && l.h->dtx != 0) {
    int vad = 0;
    if (l.h->vad == 1) {
      st = legacy90vspsVAD1_GSMAMR_16s(c.speech + 120, l.vad, &vad);
    } else {
      int v0 = 0, v1 = 0;
      st = legacy90vspsVAD2_GSMAMR_16s(x, l.vad, &v0);
      if (st == vspStsNoErr) st = legacy90vspsVAD2_GSMAMR_16s(x + 80, l.vad, &v1);
      vad = v0 | v1;
    }
    if (st == vspStsNoErr) st = legacy90vspsDTXTxHandler_GSMAMR(vad, l.dtx, &usedRate, &computeSid, rate);
  }
  if (st != vspStsNoErr) return st;
  const bool dtxFrame = usedRate == vspRateDTX;
  Vsp16s A[44], Aq[44], lsp[20], qlsp[20], prm[57];
  int np = 0;
  st = lp_analysis(c, m, A, lsp);
  const Vsp16s* lspNew = lsp + (m == 7 ? 10 : 0);
  if (st == vspStsNoErr && !dtxFrame) {
    Vsp16s idx[5];
    st = legacy90vspsLSPQuant_GSMAMR_16s(lsp, c.pastRq, qlsp, idx, rate);
    if (st == vspStsNoErr) st = legacy90vspsInterpolateLPC_GSMAMR_16s(c.lspOldQ, qlsp, Aq, rate);
    for (int i = 0; i < (m == 7 ? 5 : 3); ++i) prm[np++] = idx[i];
    std::memcpy(c.lspOldQ, qlsp + (m == 7 ? 10 : 0), sizeof c.lspOldQ);
  }
  std::memcpy(c.lspOld, lspNew, sizeof c.lspOld);
  if (st == vspStsNoErr) st = legacy90vspsDTXBuffer_GSMAMR_16s(lspNew, x, l.dtx);
  int lspFlag = 0;
  if (st == vspStsNoErr && dtxFrame) {
    st = legacy90vspsDTXEncode_GSMAMR_16s(computeSid, c.pastQuaEn, prm, l.dtx);
    np = 5;
    fill(c.exc, Vsp16s(0));
    fill(c.memW0, Vsp16s(0));
    fill(c.memErr, Vsp16s(0));
    fill(c.pastRq, Vsp16s(0));
    copy(c.lspOldQ, lspNew);
    c.prevLag = 0;
    c.sharp = 0;
  } else if (st == vspStsNoErr) {
    st = legacy90vspsToneStabCheck_GSMAMR_16s(lspNew, c.tone, &lspFlag);
  }
  Vsp16s top[2] = {};
  if (st == vspStsNoErr) st = open_loop(l, m, A, top);
  if (st == vspStsNoErr && !dtxFrame) st = speech_subframes(l, m, A, Aq, top, lspFlag, prm, np);
  if (st != vspStsNoErr) return st;
  std::memmove(c.speech, c.speech + 160, 160 * sizeof(Vsp16s));
  std::memmove(c.wsp, c.wsp + 160, 143 * sizeof(Vsp16s));
  if (!dtxFrame) std::memmove(c.exc, c.exc + 160, 154 * sizeof(Vsp16s));
  std::memset(bits, 0, 244);
  prm_to_bits(dtxFrame ? 8 : m, prm, bits);
  *pTx = tx_type(c, dtxFrame);
  return vspStsNoErr;
}

}  // namespace
}  // namespace vsps::codecs::amr

using namespace vsps::codecs::amr;

extern "C" VspStatus vspscodecGsmAmrEncoderGetSize(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  int gain = 0, v1 = 0, v2 = 0, dtx = 0;
  VspStatus st = legacy90vspsGainQuantStateSize_GSMAMR(&gain);
  if (st == vspStsNoErr) st = legacy90vspsVAD1StateSize_GSMAMR(&v1);
  if (st == vspStsNoErr) st = legacy90vspsVAD2StateSize_GSMAMR(&v2);
  if (st == vspStsNoErr) st = legacy90vspsDTXEncStateSize_GSMAMR(&dtx);
  if (st != vspStsNoErr) return st;
  *pSize =
      static_cast<int>(align8(sizeof(Header)) + align8(sizeof(Core)) + 24 + align8(static_cast<std::size_t>(gain)) +
                       align8(static_cast<std::size_t>(v1 > v2 ? v1 : v2)) + static_cast<std::size_t>(dtx));
  return vspStsNoErr;
}

extern "C" VspStatus vspscodecGsmAmrEncoderInit(void* pEncoder, int dtx, int vad) {
  if (pEncoder == nullptr) return vspStsNullPtrErr;
  if (dtx < 0 || dtx > 1 || vad < 1 || vad > 2) return vspStsRangeErr;
  Header h{};
  h.magic = kMagic;
  h.dtx = dtx;
  h.vad = vad;
  int v1 = 0, v2 = 0;
  VspStatus st = legacy90vspsGainQuantStateSize_GSMAMR(&h.gainBytes);
  if (st == vspStsNoErr) st = legacy90vspsVAD1StateSize_GSMAMR(&v1);
  if (st == vspStsNoErr) st = legacy90vspsVAD2StateSize_GSMAMR(&v2);
  if (st == vspStsNoErr) st = legacy90vspsDTXEncStateSize_GSMAMR(&h.dtxBytes);
  if (st != vspStsNoErr) return st;
  h.vadBytes = vad == 1 ? v1 : v2;
  std::memcpy(pEncoder, &h, sizeof h);
  return reset_all(layout(pEncoder));
}

extern "C" VspStatus vspscodecGsmAmrEncode(void* pEncoder, int mode, const Vsp16s* pSrcPcm, int* pTxType,
                                           Vsp8u* pBits) {
  if (pEncoder == nullptr || pSrcPcm == nullptr || pTxType == nullptr || pBits == nullptr) return vspStsNullPtrErr;
  if (mode < 0 || mode > 7) return vspStsRangeErr;
  const Layout l = layout(pEncoder);
  if (l.h->magic != kMagic) return vspStsBadArgErr;
  bool homing = true;  // encoder homing frame: 160 samples of 0x0008 (before the 13-bit mask)
  for (int i = 0; i < 160; ++i) homing = homing && pSrcPcm[i] == 0x0008;
  VspStatus st = encode_frame(l, mode, pSrcPcm, pTxType, pBits);
  if (st == vspStsNoErr && homing) st = reset_all(l);
  return st;
}

extern "C" VspStatus vspscodecGsmAmrSerialWrite(int txType, int mode, const Vsp8u* pBits, Vsp16s* pWords) {
  if (pBits == nullptr || pWords == nullptr) return vspStsNullPtrErr;
  if (txType < 0 || txType > 3 || mode < 0 || mode > 7) return vspStsRangeErr;
  std::memset(pWords, 0, 250 * sizeof(Vsp16s));
  pWords[0] = static_cast<Vsp16s>(txType);
  for (int i = 0; i < 244; ++i) pWords[1 + i] = pBits[i];
  pWords[245] = static_cast<Vsp16s>(txType == kTxNoData ? -1 : mode);
  return vspStsNoErr;
}
