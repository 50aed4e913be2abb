// The G.729 encoder front end with library calls only, on a built-in signal
// (two seconds of a gliding two-tone signal with noise): pre-processing,
// autocorrelation, lag window, Levinson-Durbin, LP to LSP and LSP
// quantisation per frame, then the decoder's LSF decoding of the codes. It
// prints the LSP words of the first frames and checks that the decoder
// reproduces the encoder's quantised LSPs.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "vsps.h"

namespace {

constexpr int kFrame = 80;  // 10 ms at 8 kHz
constexpr double kPi = 3.14159265358979323846;
constexpr int kWindow = 240;  // analysis buffer: 120 past, 80 current, 40 look-ahead samples

bool ok(VspStatus st, const char* what) {
  if (st < 0) std::fprintf(stderr, "%s failed: %d\n", what, static_cast<int>(st));
  return st >= 0;
}

}  // namespace

int main() {
  // Built-in input: 200 frames.
  const int frames = 200;
  std::vector<Vsp16s> pcm(frames * kFrame);
  unsigned seed = 1;
  for (std::size_t n = 0; n < pcm.size(); ++n) {
    const double t = static_cast<double>(n) / 8000.0;
    seed = seed * 1103515245u + 12345u;
    const double noise = static_cast<double>((seed >> 16) & 0x7FFF) / 32768.0 - 0.5;
    const double v =
        6000.0 * std::sin(2 * kPi * (300.0 + 200.0 * t) * t) + 3000.0 * std::sin(2 * kPi * 1700.0 * t) + 800.0 * noise;
    pcm[n] = static_cast<Vsp16s>(v);
  }

  // Encoder state.
  int hpfSize = 0;
  legacy90vspsHighPassFilterSize_G729(&hpfSize);
  std::vector<Vsp8u> hpf(static_cast<std::size_t>(hpfSize));
  const Vsp16s preCoeff[6] = {4096, 7807, -3733, 1899, -3798, 1899};  // a0 a1 a2 b0 b1 b2, Q12
  legacy90vspsHighPassFilterInit_G729(preCoeff, hpf.data());
  const Vsp16s resetRow[10] = {2339, 4679, 7018, 9358, 11698, 14037, 16377, 18717, 21056, 23396};
  Vsp16s encMemory[40], decMemory[40];
  for (int k = 0; k < 40; ++k) encMemory[k] = decMemory[k] = resetRow[k % 10];
  Vsp16s speech[kWindow] = {};
  Vsp16s lpc[11] = {4096};  // kept when Levinson-Durbin reports an unstable filter
  Vsp16s lspOld[10] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};

  int mismatches = 0;
  for (int f = 0; f < frames; ++f) {
    Vsp16s* current = speech + kWindow - kFrame;
    for (int n = 0; n < kFrame; ++n) current[n] = pcm[static_cast<std::size_t>(f * kFrame + n)];
    Vsp32s r[11];
    int norm = 0;
    Vsp16s rc[10], lsp[10], lspq[10], words[2], residualEnergy = 0;
    if (!ok(legacy90vspsHighPassFilter_G729_16s_ISfs(current, kFrame, 12, hpf.data()), "high-pass") ||
        !ok(legacy90vspsAutoCorr_NormE_G729_16s32s(speech, r, 11, &norm), "autocorrelation") ||
        !ok(legacy90vspsLagWindow_G729_32s_I(r + 1, 10), "lag window") ||
        !ok(legacy90vspsLevinsonDurbin_G729_32s16s(r, 10, lpc, rc, &residualEnergy), "Levinson-Durbin") ||
        !ok(legacy90vspsLPCToLSP_G729_16s(lpc, lspOld, lsp), "LP to LSP") ||
        !ok(legacy90vspsLSPQuant_G729_16s(lsp, encMemory, lspq, words), "LSP quantisation"))
      return EXIT_FAILURE;
    if (f < 5) std::printf("frame %d: LSP words %d %d\n", f, words[0], words[1]);

    // Decoder side: unpack the words and decode.
    const Vsp16s codes[4] = {static_cast<Vsp16s>(words[0] >> 7 & 1), static_cast<Vsp16s>(words[0] & 127),
                             static_cast<Vsp16s>(words[1] >> 5 & 31), static_cast<Vsp16s>(words[1] & 31)};
    Vsp16s lsf[10], lspDec[10];
    if (!ok(legacy90vspsLSFDecode_G729_16s(codes, decMemory, lsf), "LSF decoding") ||
        !ok(legacy90vspsLSFToLSP_G729_16s(lsf, lspDec), "LSF to LSP"))
      return EXIT_FAILURE;
    for (int i = 0; i < 10; ++i) mismatches += lspDec[i] != lspq[i];

    for (int i = 0; i < 10; ++i) lspOld[i] = lsp[i];
    for (int n = 0; n < kWindow - kFrame; ++n) speech[n] = speech[n + kFrame];
  }
  std::printf("%d frames coded; decoder %s the encoder's quantised LSPs\n", frames,
              mismatches == 0 ? "reproduces" : "DIFFERS FROM");
  return mismatches == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
