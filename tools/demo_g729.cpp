// G.729 encoder front end and decoder LSP path, library calls only.
#include <algorithm>
#include <vector>

#include "tools/demo.h"
#include "tools/lp_metrics.h"
#include "vsps.h"

namespace vsps::tool {

namespace {
constexpr int kFrame = 80;    // 10 ms at 8 kHz
constexpr int kWindow = 240;  // 120 past, 80 current, 40 look-ahead samples
constexpr Vsp16s kPreProcess[6] = {4096, 7807, -3733, 1899, -3798, 1899};  // 140 Hz high-pass, Q12
constexpr Vsp16s kMaReset[10] = {2339, 4679, 7018, 9358, 11698, 14037, 16377, 18717, 21056, 23396};
constexpr Vsp16s kLspReset[10] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
}  // namespace

bool demo_g729(const std::vector<int16_t>& pcm, bool listFrames, FILE* out) {
  int hpfSize = 0;
  legacy90vspsHighPassFilterSize_G729(&hpfSize);
  std::vector<Vsp8u> hpf(static_cast<std::size_t>(hpfSize));
  legacy90vspsHighPassFilterInit_G729(kPreProcess, hpf.data());
  Vsp16s encMa[40], decMa[40];
  for (int k = 0; k < 40; ++k) encMa[k] = decMa[k] = kMaReset[k % 10];
  Vsp16s speech[kWindow] = {};
  Vsp16s lpc[11] = {4096};
  Vsp16s lspOld[10], lspqOld[10];
  std::copy(kLspReset, kLspReset + 10, lspOld);
  std::copy(kLspReset, kLspReset + 10, lspqOld);

  const int frames = static_cast<int>(pcm.size() / kFrame);
  int mismatches = 0, unstable = 0, clamped = 0;
  double sdSum = 0, sdMax = 0;
  int sdOver2 = 0;
  for (int f = 0; f < frames; ++f) {
    std::copy(speech + kFrame, speech + kWindow, speech);
    Vsp16s* current = speech + kWindow - kFrame;
    std::copy(pcm.begin() + f * kFrame, pcm.begin() + (f + 1) * kFrame, current);
    Vsp32s r[11];
    int norm = 0;
    Vsp16s rc[10], lsp[10], lspq[10], words[2], energy = 0;
    if (legacy90vspsHighPassFilter_G729_16s_ISfs(current, kFrame, 12, hpf.data()) != vspStsNoErr ||
        legacy90vspsAutoCorr_NormE_G729_16s32s(speech, r, 11, &norm) != vspStsNoErr ||
        legacy90vspsLagWindow_G729_32s_I(r + 1, 10) != vspStsNoErr)
      return false;
    const VspStatus lev = legacy90vspsLevinsonDurbin_G729_32s16s(r, 10, lpc, rc, &energy);
    if (lev < 0) return false;
    unstable += lev == vspStsLPCUnstable;  // lpc keeps the previous filter
    const VspStatus q = legacy90vspsLPCToLSP_G729_16s(lpc, lspOld, lsp);
    const VspStatus qq = legacy90vspsLSPQuant_G729_16s(lsp, encMa, lspq, words);
    if (q != vspStsNoErr || qq < 0) return false;
    clamped += qq != vspStsNoErr;

    // Decoder: the words carry L0..L3.
    const Vsp16s codes[4] = {static_cast<Vsp16s>(words[0] >> 7 & 1), static_cast<Vsp16s>(words[0] & 127),
                             static_cast<Vsp16s>(words[1] >> 5 & 31), static_cast<Vsp16s>(words[1] & 31)};
    Vsp16s lsf[10], lspDec[10];
    if (legacy90vspsLSFDecode_G729_16s(codes, decMa, lsf) < 0 || legacy90vspsLSFToLSP_G729_16s(lsf, lspDec) < 0)
      return false;
    mismatches += !std::equal(lspDec, lspDec + 10, lspq);

    // Quantisation quality on the second subframe's filter (the frame's own LSPs).
    Vsp16s a[11], aq[11];
    if (legacy90vspsLSPToLPC_G729_16s(lsp, a) < 0 || legacy90vspsLSPToLPC_G729_16s(lspq, aq) < 0) return false;
    const double sd = spectral_distortion_db(a, aq);
    sdSum += sd;
    sdMax = std::max(sdMax, sd);
    sdOver2 += sd > 2.0;
    // First subframe: interpolated filter of the previous and current quantised LSPs.
    Vsp16s lspSub1[10];
    if (legacy90vspsInterpolate_G729_16s(lspqOld, lspq, lspSub1, 10) < 0 ||
        legacy90vspsLSPToLPC_G729_16s(lspSub1, a) < 0)
      return false;
    if (listFrames) std::fprintf(out, "%d %d %d %d\n", codes[0], codes[1], codes[2], codes[3]);
    std::copy(lsp, lsp + 10, lspOld);
    std::copy(lspq, lspq + 10, lspqOld);
  }
  if (!listFrames)
    std::fprintf(out,
                 "G.729 front end: %d frames of 10 ms; LSP quantisation %.2f dB mean spectral distortion "
                 "(max %.2f, %.1f%% over 2 dB); decoder %s the encoder's LSPs; %d unstable, %d clamped\n",
                 frames, frames ? sdSum / frames : 0.0, sdMax, frames ? 100.0 * sdOver2 / frames : 0.0,
                 mismatches == 0 ? "reproduces" : "DIFFERS FROM", unstable, clamped);
  return mismatches == 0;
}

}  // namespace vsps::tool
