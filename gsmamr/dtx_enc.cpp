// GSM-AMR DTX encoder, the per-frame part: state block (dtx_enc_reset), the
// transmit DTX handler (tx_dtx_handler) and the history (dtx_buffer).
#include "core/basic_ops.h"
#include "gsmamr/amr_ops.h"
#include "gsmamr/amr_tables.h"
#include "gsmamr/dec_state.h"
#include "gsmamr/dtx_enc_state.h"

namespace vsps::VSPS_NS {
namespace {

constexpr int16_t kHangConst = 7;       // DTX_HANG_CONST
constexpr int16_t kElapsedThresh = 30;  // DTX_ELAPSED_FRAMES_THRESH

}  // namespace

VspStatus legacy90vspsDTXEncStateSize_GSMAMR(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(amr::DtxEncState));
  return vspStsNoErr;
}

VspStatus legacy90vspsDTXEncInit_GSMAMR(Vsp8u* pState) {
  if (pState == nullptr) return vspStsNullPtrErr;
  amr::DtxEncState s{};
  for (int i = 0; i < amr::kDtxHist; ++i)
    for (int j = 0; j < 10; ++j) s.lsp_hist[10 * i + j] = gsmamr::kLspInit[j];
  s.dtxHangoverCount = kHangConst;
  s.decAnaElapsedCount = 32767;
  amr::store_state(s, pState);
  return vspStsNoErr;
}

VspStatus legacy90vspsDTXTxHandler_GSMAMR(int vad, Vsp8u* pState, int* pDstUsedMode, int* pDstComputeSid, int mode) {
  using namespace amr;
  if (pState == nullptr || pDstUsedMode == nullptr || pDstComputeSid == nullptr) return vspStsNullPtrErr;
  const int16_t m = ref_mode(mode);
  if ((vad != 0 && vad != 1) || m < 0 || m == MRDTX) return vspStsRangeErr;
  DtxEncState s;
  load_state(pState, s);
  s.decAnaElapsedCount = bop::add(s.decAnaElapsedCount, 1);
  int used = mode, computeSid = 0;
  if (vad != 0) {
    s.dtxHangoverCount = kHangConst;
  } else if (s.dtxHangoverCount == 0) {
    s.decAnaElapsedCount = 0;
    used = vspRateDTX;
    computeSid = 1;
  } else {
    s.dtxHangoverCount = bop::sub(s.dtxHangoverCount, 1);
    if (bop::sub(bop::add(s.decAnaElapsedCount, s.dtxHangoverCount), kElapsedThresh) < 0) used = vspRateDTX;
  }
  store_state(s, pState);
  *pDstUsedMode = used;
  *pDstComputeSid = computeSid;
  return vspStsNoErr;
}

VspStatus legacy90vspsDTXBuffer_GSMAMR_16s(const Vsp16s* pSrcLsp, const Vsp16s* pSrcSpeech, Vsp8u* pState) {
  using namespace amr;
  if (pSrcLsp == nullptr || pSrcSpeech == nullptr || pState == nullptr) return vspStsNullPtrErr;
  DtxEncState s;
  load_state(pState, s);
  s.hist_ptr = static_cast<int16_t>(s.hist_ptr == kDtxHist - 1 ? 0 : s.hist_ptr + 1);
  for (int j = 0; j < 10; ++j) s.lsp_hist[10 * s.hist_ptr + j] = pSrcLsp[j];
  int32_t E = 0;
  for (int i = 0; i < kFrame; ++i) E = bop::L_mac(E, pSrcSpeech[i], pSrcSpeech[i]);
  int16_t e = 0, f = 0;
  log2(E, e, f);
  int16_t log_en = bop::add(bop::shl(e, 10), bop::shr(f, 5));  // Q10
  log_en = bop::sub(log_en, 8521);                             // minus 8.32 (Q10), the reference offset
  s.log_en_hist[s.hist_ptr] = bop::shr(log_en, 1);
  store_state(s, pState);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
