// GSM-AMR LP analysis calling order: per 20 ms frame the encoder runs the
// windowed autocorrelation, Levinson-Durbin, LP to LSP and the LSP quantiser
// (the LP steps twice at 12.2 kbit/s); the decoder turns the indices back
// into the four subframe LSP vectors, concealing bad frames. Runs without
// arguments on a synthetic vowel-like signal; an optional argument names a
// 16-bit little-endian 8 kHz PCM file instead.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "vsps.h"

namespace {

constexpr int kFrame = 160;

std::vector<Vsp16s> synthetic_speech(int frames) {
  std::vector<Vsp16s> x(static_cast<std::size_t>(frames) * kFrame);
  const double formants[3] = {700.0, 1200.0, 2600.0};
  for (std::size_t n = 0; n < x.size(); ++n) {
    const double t = static_cast<double>(n) / 8000.0;
    double v = 0;
    for (int k = 0; k < 3; ++k) v += std::sin(2 * 3.14159265358979 * formants[k] * t) / (k + 1);
    v *= 6000.0 * (1.0 + 0.5 * std::sin(2 * 3.14159265358979 * 3.0 * t));  // slow level change
    x[n] = static_cast<Vsp16s>(std::lround(v));
  }
  return x;
}

std::vector<Vsp16s> read_pcm(const char* path) {
  std::vector<Vsp16s> x;
  if (FILE* f = std::fopen(path, "rb")) {
    unsigned char b[2];
    while (std::fread(b, 1, 2, f) == 2) x.push_back(static_cast<Vsp16s>(b[0] | (b[1] << 8)));
    std::fclose(f);
  }
  return x;
}

struct Encoder {
  Vsp16s speech[320] = {};  // 2 frames of history
  Vsp16s lpc[11] = {4096};  // last good LP filter (Q12)
  Vsp16s prevLsp[10] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
  Vsp16s pastRq[10] = {};  // quantiser memory
};

struct Decoder {
  Vsp16s pastRq[10] = {};
  Vsp16s pastLsfQ[10] = {1384, 2077, 3420, 5108, 6742, 8122, 9863, 11092, 12714, 13701};
  Vsp16s lsp[10] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
};

// One encoder frame; writes the quantised LSPs and the indices.
bool encode(Encoder& e, const Vsp16s* frame, int mode, Vsp16s* qLsp, Vsp16s* idx) {
  for (int i = 0; i < kFrame; ++i) {
    e.speech[i] = e.speech[i + kFrame];
    e.speech[i + kFrame] = frame[i];
  }
  const bool mr122 = mode == vspRate12200;
  Vsp32s r[22];
  if (legacy90vspsAutoCorr_GSMAMR_16s32s(e.speech + (mr122 ? 40 : 80), r, mode) != vspStsNoErr) return false;
  Vsp16s lsp[20];
  for (int v = 0; v < (mr122 ? 2 : 1); ++v) {
    // Status 12 (unstable) leaves e.lpc as it was: the last good filter is kept.
    if (legacy90vspsLevinsonDurbin_GSMAMR_32s16s(r + 11 * v, e.lpc) < 0) return false;
    if (legacy90vspsLPCToLSP_GSMAMR_16s(e.lpc, e.prevLsp, lsp + 10 * v) != vspStsNoErr) return false;
    for (int i = 0; i < 10; ++i) e.prevLsp[i] = lsp[10 * v + i];
  }
  return legacy90vspsLSPQuant_GSMAMR_16s(lsp, e.pastRq, qLsp, idx, mode) == vspStsNoErr;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<Vsp16s> speech = argc > 1 ? read_pcm(argv[1]) : synthetic_speech(50);
  if (speech.size() < kFrame) {
    std::fprintf(stderr, "no speech read\n");
    return 1;
  }
  const int frames = static_cast<int>(speech.size() / kFrame);
  int mismatches = 0;
  for (int mode : {vspRate4750, vspRate7950, vspRate12200}) {
    Encoder enc;
    Decoder dec;
    for (int n = 0; n < frames; ++n) {
      Vsp16s qLsp[20], idx[5] = {}, subframes[40], a[11];
      if (!encode(enc, &speech[static_cast<std::size_t>(n) * kFrame], mode, qLsp, idx)) return 1;
      const Vsp16s bfi = n % 10 == 9 ? 1 : 0;  // every tenth frame lost
      if (legacy90vspsQuantLSPDecode_GSMAMR_16s(idx, dec.pastRq, dec.pastLsfQ, dec.lsp, subframes, bfi, mode) !=
          vspStsNoErr)
        return 1;
      for (int s = 0; s < 4; ++s)  // one synthesis filter per subframe
        if (legacy90vspsLSPToLPC_GSMAMR_16s(subframes + 10 * s, a) != vspStsNoErr) return 1;
      const Vsp16s* last = qLsp + (mode == vspRate12200 ? 10 : 0);
      const bool afterLoss = n % 10 == 0 && n > 0;  // predictor memory not yet in step
      if (bfi == 0 && !afterLoss)
        for (int i = 0; i < 10; ++i) mismatches += dec.lsp[i] != last[i];
      if (n < 3)
        std::printf("mode %2d frame %d: indices %d %d %d %d %d, a(z) of subframe 4: %d %d %d ...\n", mode, n, idx[0],
                    idx[1], idx[2], idx[3], idx[4], a[0], a[1], a[2]);
    }
  }
  std::printf("%d frames per mode, %d decoder/encoder LSP mismatches on good frames\n", frames, mismatches);
  return mismatches == 0 ? 0 : 1;
}
