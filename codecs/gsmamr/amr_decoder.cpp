// GSM-AMR decoder driver: the frame loop of TS 26.073 Speech_Decode_Frame
// over the library's decoder steps, with the decoder homing logic of the
// standard's decoder program. Holds no arithmetic of its own.
#include <cstddef>
#include <cstring>

#include "codecs/gsmamr/amr_format.h"
#include "vsps.h"
#include "vsps_codecs.h"

namespace vsps::codecs::amr {
namespace {

constexpr uint32_t kMagic = 0x414d5244;  // "AMRD"
const int kRate[8] = {vspRate4750, vspRate5150, vspRate5900,  vspRate6700,
                      vspRate7400, vspRate7950, vspRate10200, vspRate12200};
constexpr int kHpStateBytes = 24;
const Vsp16s kPostHp[6] = {8192, 15836, -7667, 7699, -15398, 7699};  // 100 Hz high-pass, Q13

struct Header {
  uint32_t magic;
  int toolMode;    // mode of the last frame with a mode word (homing test)
  int decodeMode;  // the decoder's previous mode (reset by homing)
  int resetOld;    // the previous frame was a homing frame
  int decBytes, postBytes;
};

std::size_t align8(std::size_t n) { return (n + 7) & ~std::size_t(7); }

struct Layout {
  Header* h;
  Vsp8u* dec;
  Vsp8u* post;
  Vsp8u* hp;
};

Layout layout(void* p) {
  auto* h = static_cast<Header*>(p);
  auto* base = static_cast<Vsp8u*>(p) + align8(sizeof(Header));
  return {h, base, base + align8(static_cast<std::size_t>(h->decBytes)),
          base + align8(static_cast<std::size_t>(h->decBytes)) + align8(static_cast<std::size_t>(h->postBytes))};
}

VspStatus reset_all(const Layout& l) {
  VspStatus st = legacy90vspsDecoderInit_GSMAMR(l.dec);
  if (st == vspStsNoErr) st = legacy90vspsPostFilterInit_GSMAMR(l.post);
  if (st == vspStsNoErr) st = legacy90vspsHighPassFilterInit_G729(kPostHp, l.hp);
  l.h->decodeMode = 0;
  return st;
}

// One frame of Speech_Decode_Frame.
VspStatus decode_frame(const Layout& l, int rx, int mode, const Vsp8u* bits, Vsp16s* pcm) {
  const int rate = kRate[mode];
  Vsp16s prm[57];
  bits_to_prm(rx == 5 || rx == 6 ? 8 : mode, bits, prm);
  Vsp16s lpc[44];
  Vsp16s synth[160];
  int dtx = 0;
  VspStatus st = legacy90vspsDecoderFrameStart_GSMAMR_16s(prm, rx, l.dec, lpc, &dtx, rate);
  if (st != vspStsNoErr) return st;
  if (dtx != 0) {
    st = legacy90vspsComfortNoise_GSMAMR_16s(prm, l.dec, lpc, synth, rate);
  } else {
    for (int sf = 0; sf < 4 && st == vspStsNoErr; ++sf) {
      Vsp16s exc[40];
      st = legacy90vspsDecodeExcitation_GSMAMR_16s(prm, l.dec, exc, sf, rate);
      if (st == vspStsNoErr) st = legacy90vspsDecoderSynthesis_GSMAMR_16s(lpc + 11 * sf, exc, l.dec, synth + 40 * sf);
    }
    if (st == vspStsNoErr) st = legacy90vspsDecoderFrameEnd_GSMAMR_16s(synth, l.dec);
  }
  if (st == vspStsNoErr) st = legacy90vspsPostFilter_GSMAMR_16s(lpc, synth, l.post, rate);
  if (st == vspStsNoErr) st = legacy90vspsHighPassFilter_G729_16s_ISfs(synth, 160, 13, l.hp);
  if (st != vspStsNoErr) return st;
  for (int i = 0; i < 160; ++i) pcm[i] = static_cast<Vsp16s>(synth[i] & 0xFFF8);
  return vspStsNoErr;
}

}  // namespace
}  // namespace vsps::codecs::amr

using namespace vsps::codecs::amr;

extern "C" VspStatus vspscodecGsmAmrDecoderGetSize(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  int dec = 0, post = 0;
  VspStatus st = legacy90vspsDecoderStateSize_GSMAMR(&dec);
  if (st == vspStsNoErr) st = legacy90vspsPostFilterStateSize_GSMAMR(&post);
  if (st != vspStsNoErr) return st;
  *pSize = static_cast<int>(align8(sizeof(Header)) + align8(static_cast<std::size_t>(dec)) +
                            align8(static_cast<std::size_t>(post)) + kHpStateBytes);
  return vspStsNoErr;
}

extern "C" VspStatus vspscodecGsmAmrDecoderInit(void* pDecoder) {
  if (pDecoder == nullptr) return vspStsNullPtrErr;
  Header h{};
  h.magic = kMagic;
  h.resetOld = 1;
  VspStatus st = legacy90vspsDecoderStateSize_GSMAMR(&h.decBytes);
  if (st == vspStsNoErr) st = legacy90vspsPostFilterStateSize_GSMAMR(&h.postBytes);
  if (st != vspStsNoErr) return st;
  std::memcpy(pDecoder, &h, sizeof h);
  return reset_all(layout(pDecoder));
}

extern "C" VspStatus vspscodecGsmAmrDecode(void* pDecoder, int rxType, int mode, const Vsp8u* pBits, Vsp16s* pDstPcm) {
  if (pDecoder == nullptr || pBits == nullptr || pDstPcm == nullptr) return vspStsNullPtrErr;
  if (rxType < 0 || rxType > 7 || mode < -1 || mode > 7) return vspStsRangeErr;
  const Layout l = layout(pDecoder);
  if (l.h->magic != kMagic) return vspStsBadArgErr;
  int toolMode = l.h->toolMode, decodeMode = l.h->decodeMode;
  if (rxType != 7 && mode >= 0) toolMode = decodeMode = mode;
  // Decoder homing: the test on the parameters of the mode word's mode.
  Vsp16s prm[57];
  bits_to_prm(toolMode, pBits, prm);
  int reset = 0;
  VspStatus st = vspStsNoErr;
  if (l.h->resetOld != 0) st = legacy90vspsHomingFrameTest_GSMAMR_16s(prm, 1, &reset, kRate[toolMode]);
  if (st != vspStsNoErr) return st;
  l.h->toolMode = toolMode;
  l.h->decodeMode = decodeMode;
  if (reset != 0 && l.h->resetOld != 0) {
    for (int i = 0; i < 160; ++i) pDstPcm[i] = 0x0008;
  } else {
    st = decode_frame(l, rxType, decodeMode, pBits, pDstPcm);
    if (st != vspStsNoErr) return st;
  }
  if (l.h->resetOld == 0) st = legacy90vspsHomingFrameTest_GSMAMR_16s(prm, 0, &reset, kRate[toolMode]);
  if (st == vspStsNoErr && reset != 0) st = reset_all(l);
  l.h->resetOld = reset;
  return st;
}
