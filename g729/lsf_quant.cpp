// G.729 LSF quantiser and decoders: legacy90vspsLSFQuant_G729_16s,
// legacy90vspsLSPQuant_G729_16s, legacy90vspsLSFDecode_G729_16s and
// legacy90vspsLSFDecodeErased_G729_16s (clauses 3.2.4 and 4.4.1).
#include "g729/lsf_vq.h"
#include "g729/lsp_lsf.h"

namespace vsps::VSPS_NS {

namespace {
constexpr int M = lsfvq::M;
constexpr int kMemory = tables::g729::kMaOrder * M;

bool codes_valid(const int* codes) {
  return codes[0] >= 0 && codes[0] <= 1 && codes[1] >= 0 && codes[1] < tables::g729::kCb1Size && codes[2] >= 0 &&
         codes[2] < tables::g729::kCb2Size && codes[3] >= 0 && codes[3] < tables::g729::kCb2Size;
}

// Quantises and decodes with local copies, then writes memory, LSF and codes.
VspStatus quantise_lsf(const Vsp16s* lsfQ13, Vsp16s* prev, Vsp16s* qlsfQ13, int* codes) {
  int16_t mem[kMemory];
  for (int k = 0; k < kMemory; ++k) mem[k] = prev[k];
  lsfvq::quantise(lsfQ13, mem, codes);
  int16_t q[M];
  const VspStatus st = lsfvq::decode(codes, mem, q);
  for (int k = 0; k < kMemory; ++k) prev[k] = mem[k];
  for (int j = 0; j < M; ++j) qlsfQ13[j] = q[j];
  return st;
}
}  // namespace

VspStatus legacy90vspsLSFQuant_G729_16s(const Vsp16s* pSrcLsf, Vsp16s* pSrcDstPrevFreq, Vsp16s* pDstQLsf,
                                        Vsp16s* pDstQuantIndex) {
  if (pSrcLsf == nullptr || pSrcDstPrevFreq == nullptr || pDstQLsf == nullptr || pDstQuantIndex == nullptr)
    return vspStsNullPtrErr;
  int codes[4];
  const VspStatus st = quantise_lsf(pSrcLsf, pSrcDstPrevFreq, pDstQLsf, codes);
  for (int i = 0; i < 4; ++i) pDstQuantIndex[i] = static_cast<Vsp16s>(codes[i]);
  return st;
}

VspStatus legacy90vspsLSPQuant_G729_16s(const Vsp16s* pSrcLsp, Vsp16s* pSrcDstPrevFreq, Vsp16s* pDstQLsp,
                                        Vsp16s* pDstQuantIndex) {
  if (pSrcLsp == nullptr || pSrcDstPrevFreq == nullptr || pDstQLsp == nullptr || pDstQuantIndex == nullptr)
    return vspStsNullPtrErr;
  int16_t lsfQ13[M];
  lsp::lsp_to_lsf_radian(pSrcLsp, lsfQ13);
  int16_t qlsfQ13[M];
  int codes[4];
  quantise_lsf(lsfQ13, pSrcDstPrevFreq, qlsfQ13, codes);  // clamping is not reported here
  for (int j = 0; j < M; ++j) pDstQLsp[j] = lsp::lsf_to_lsp_radian(qlsfQ13[j]);
  pDstQuantIndex[0] = static_cast<Vsp16s>(codes[0] << 7 | codes[1]);
  pDstQuantIndex[1] = static_cast<Vsp16s>(codes[2] << 5 | codes[3]);
  return vspStsNoErr;
}

VspStatus legacy90vspsLSFDecode_G729_16s(const Vsp16s* pQuantIndex, Vsp16s* pSrcDstPrevFreq, Vsp16s* pDstQLsf) {
  if (pQuantIndex == nullptr || pSrcDstPrevFreq == nullptr || pDstQLsf == nullptr) return vspStsNullPtrErr;
  const int codes[4] = {pQuantIndex[0], pQuantIndex[1], pQuantIndex[2], pQuantIndex[3]};
  if (!codes_valid(codes)) return vspStsBadIndexErr;
  int16_t q[M];
  const VspStatus st = lsfvq::decode(codes, pSrcDstPrevFreq, q);
  for (int j = 0; j < M; ++j) pDstQLsf[j] = q[j];
  return st;
}

VspStatus legacy90vspsLSFDecodeErased_G729_16s(int maIndex, Vsp16s* pSrcDstPrevFreq, Vsp16s* pSrcDstLsf) {
  if (pSrcDstPrevFreq == nullptr || pSrcDstLsf == nullptr) return vspStsNullPtrErr;
  if (maIndex != 0 && maIndex != 1) return vspStsBadIndexErr;
  int16_t res[M];
  lsfvq::prev_extract(pSrcDstLsf, maIndex, pSrcDstPrevFreq, res);
  lsfvq::prev_update(res, pSrcDstPrevFreq);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
