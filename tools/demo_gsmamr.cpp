// GSM-AMR analysis, LSP quantisation and decoding with lost frames.
#include <algorithm>
#include <vector>

#include "tools/demo.h"
#include "tools/lp_metrics.h"
#include "vsps.h"

namespace vsps::tool {

namespace {
constexpr int kFrame = 160;  // 20 ms at 8 kHz
constexpr Vsp16s kLspReset[10] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
constexpr Vsp16s kPastLsfReset[10] = {1384, 2077, 3420, 5108, 6742, 8122, 9863, 11092, 12714, 13701};

// One rate over the whole signal; every 25th frame is lost.
bool run_rate(const std::vector<int16_t>& pcm, int mode, const char* name, FILE* out) {
  Vsp16s speech[2 * kFrame] = {}, lpc[11] = {4096}, prevLsp[10], encRq[10] = {};
  Vsp16s decRq[10] = {}, pastLsf[10], decLsp[10];
  std::copy(kLspReset, kLspReset + 10, prevLsp);
  std::copy(kLspReset, kLspReset + 10, decLsp);
  std::copy(kPastLsfReset, kPastLsfReset + 10, pastLsf);
  const bool mr122 = mode == vspRate12200;
  const int frames = static_cast<int>(pcm.size() / kFrame);
  int mismatches = 0, lost = 0;
  double sdSum = 0;
  for (int n = 0; n < frames; ++n) {
    std::copy(speech + kFrame, speech + 2 * kFrame, speech);
    std::copy(pcm.begin() + n * kFrame, pcm.begin() + (n + 1) * kFrame, speech + kFrame);
    Vsp32s r[22];
    Vsp16s lsp[20], qLsp[20], idx[5] = {}, subframes[40];
    // 240-sample analysis buffer: it ends with the current frame; at 12.2 kbit/s
    // it starts 40 samples earlier (the two asymmetric windows).
    if (legacy90vspsAutoCorr_GSMAMR_16s32s(speech + (mr122 ? 40 : 80), r, mode) != vspStsNoErr) return false;
    for (int v = 0; v < (mr122 ? 2 : 1); ++v) {
      if (legacy90vspsLevinsonDurbin_GSMAMR_32s16s(r + 11 * v, lpc) < 0 ||
          legacy90vspsLPCToLSP_GSMAMR_16s(lpc, prevLsp, lsp + 10 * v) != vspStsNoErr)
        return false;
      std::copy(lsp + 10 * v, lsp + 10 * v + 10, prevLsp);
    }
    if (legacy90vspsLSPQuant_GSMAMR_16s(lsp, encRq, qLsp, idx, mode) != vspStsNoErr) return false;
    Vsp16s a[11], aq[11];
    const int last = mr122 ? 10 : 0;
    if (legacy90vspsLSPToLPC_GSMAMR_16s(lsp + last, a) < 0 || legacy90vspsLSPToLPC_GSMAMR_16s(qLsp + last, aq) < 0)
      return false;
    sdSum += spectral_distortion_db(a, aq);
    const Vsp16s bfi = n % 25 == 24;
    lost += bfi;
    if (legacy90vspsQuantLSPDecode_GSMAMR_16s(idx, decRq, pastLsf, decLsp, subframes, bfi, mode) != vspStsNoErr)
      return false;
    const bool afterLoss = n % 25 == 0 && n > 0;  // the decoder's predictor catches up after one good frame
    if (!bfi && !afterLoss) mismatches += !std::equal(decLsp, decLsp + 10, qLsp + last);
  }
  std::fprintf(out,
               "GSM-AMR %-10s %d frames of 20 ms; %.2f dB mean spectral distortion; %d lost frames concealed; "
               "decoder %s the encoder's LSPs on good frames\n",
               name, frames, frames ? sdSum / frames : 0.0, lost, mismatches == 0 ? "reproduces" : "DIFFERS FROM");
  return mismatches == 0;
}
}  // namespace

bool demo_gsmamr(const std::vector<int16_t>& pcm, FILE* out) {
  return run_rate(pcm, vspRate12200, "12.2k:", out) && run_rate(pcm, vspRate4750, "4.75k:", out);
}

}  // namespace vsps::tool
