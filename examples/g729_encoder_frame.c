/* G.729 LP analysis per 10 ms frame, and the decoder's LSP path.
 *
 * Encoder, once per frame of 80 samples:
 *   high-pass pre-processing -> windowed autocorrelation -> lag window ->
 *   Levinson-Durbin -> LP to LSP -> LSP quantisation (18 bits: L0..L3)
 * Decoder, from the 18 bits:
 *   LSF decoding -> LSF to LSP -> subframe interpolation -> LSP to LP
 *
 * The library keeps no memory between calls except inside state blocks the
 * caller allocates. Everything that lives from frame to frame is declared at
 * the top of main() and marked "owned between frames".
 *
 * Runs without arguments on two seconds of a built-in signal; prints the
 * codes of the first frames and a summary. Exits with 1 on any library error
 * or if the decoder does not reproduce the encoder's quantised LSPs.
 * Plain C99 against vsps.h only. */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "vsps.h"

#define FRAME 80   /* 10 ms at 8 kHz */
#define WINDOW 240 /* analysis buffer: 120 past, 80 current, 40 look-ahead samples */
#define ORDER 10   /* LP order */
#define FRAMES 200 /* two seconds */

/* Q15 LSP reset (cosines of equally spaced frequencies), both sides. */
static const Vsp16s kLspReset[ORDER] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
/* Q13 radian LSF residual each of the 4 MA memory rows is reset to. */
static const Vsp16s kMaRowReset[ORDER] = {2339, 4679, 7018, 9358, 11698, 14037, 16377, 18717, 21056, 23396};
/* Pre-processing high-pass (140 Hz, input halved): a0 a1 a2 b0 b1 b2, Q12. */
static const Vsp16s kPreProcess[6] = {4096, 7807, -3733, 1899, -3798, 1899};

/* Reports a library call that did not return vspStsNoErr; returns 1 then. */
static int failed(VspStatus st, const char* what) {
  if (st == vspStsNoErr) return 0;
  fprintf(stderr, "%s: status %d\n", what, (int)st);
  return 1;
}

/* Built-in input: a gliding tone, a fixed tone and some noise (Q0 PCM). */
static Vsp16s input_sample(long n) {
  static unsigned seed = 1;
  const double pi = 3.14159265358979323846, t = (double)n / 8000.0;
  double noise;
  seed = seed * 1103515245u + 12345u;
  noise = (double)((seed >> 16) & 0x7FFF) / 32768.0 - 0.5;
  return (Vsp16s)(6000.0 * sin(2 * pi * (300.0 + 200.0 * t) * t) + 3000.0 * sin(2 * pi * 1700.0 * t) + 800.0 * noise);
}

int main(void) {
  /* ---- Encoder memories (owned between frames) ---- */
  Vsp8u* hpf; /* high-pass state block, size from the library */
  int hpfSize = 0;
  Vsp16s speech[WINDOW];   /* pre-processed speech, Q0; the newest 80 at the end */
  Vsp16s lpc[ORDER + 1];   /* last good LP filter, Q12 (kept on an unstable frame) */
  Vsp16s lspOld[ORDER];    /* previous unquantised LSPs, Q15: LP-to-LSP fallback */
  Vsp16s encMa[4 * ORDER]; /* MA predictor memory of the quantiser, Q13, newest row first */
  /* ---- Decoder memories (owned between frames) ---- */
  Vsp16s decMa[4 * ORDER]; /* the decoder's copy of the MA memory, Q13 */
  Vsp16s lspqOld[ORDER];   /* previous decoded LSPs, Q15: for the first subframe */
  int f, i, unstable = 0, clamped = 0, mismatches = 0;

  /* The state block: ask its size, allocate it, let Init format it. */
  if (failed(legacy90vspsHighPassFilterSize_G729(&hpfSize), "HighPassFilterSize")) return 1;
  hpf = (Vsp8u*)malloc((size_t)hpfSize);
  if (hpf == NULL || failed(legacy90vspsHighPassFilterInit_G729(kPreProcess, hpf), "HighPassFilterInit")) return 1;
  memset(speech, 0, sizeof speech);
  memset(lpc, 0, sizeof lpc);
  lpc[0] = 4096;
  memcpy(lspOld, kLspReset, sizeof lspOld);
  memcpy(lspqOld, kLspReset, sizeof lspqOld);
  for (i = 0; i < 4 * ORDER; ++i) encMa[i] = decMa[i] = kMaRowReset[i % ORDER];

  for (f = 0; f < FRAMES; ++f) {
    Vsp16s* fresh = speech + WINDOW - FRAME; /* where the 80 new samples go */
    Vsp32s r[ORDER + 1];                     /* autocorrelation, normalised, DPF form */
    int norm = 0;
    Vsp16s rc[ORDER], energy, lsp[ORDER], lspq[ORDER], words[2];
    Vsp16s codes[4], lsf[ORDER], lspDec[ORDER], lspSub1[ORDER], aSub1[ORDER + 1], aSub2[ORDER + 1];
    unsigned long bits;
    VspStatus st;

    /* 1. Slide the analysis buffer by one frame, append the new samples and
     *    pre-process only those (scale factor 12: the encoder's filter). */
    memmove(speech, speech + FRAME, (WINDOW - FRAME) * sizeof speech[0]);
    for (i = 0; i < FRAME; ++i) fresh[i] = input_sample((long)f * FRAME + i);
    if (failed(legacy90vspsHighPassFilter_G729_16s_ISfs(fresh, FRAME, 12, hpf), "HighPassFilter")) return 1;

    /* 2. r[0..10] of the G.729 asymmetric window over all 240 samples, then
     *    the lag window (with the white-noise correction) on r[1..10]. */
    if (failed(legacy90vspsAutoCorr_NormE_G729_16s32s(speech, r, ORDER + 1, &norm), "AutoCorr") ||
        failed(legacy90vspsLagWindow_G729_32s_I(r + 1, ORDER), "LagWindow"))
      return 1;

    /* 3. Levinson-Durbin: a[0..10] Q12, reflection coefficients Q15. Status
     *    12 (vspStsLPCUnstable) writes nothing, so lpc keeps the previous
     *    frame's filter, which is what the encoder should use then. */
    st = legacy90vspsLevinsonDurbin_G729_32s16s(r, ORDER, lpc, rc, &energy);
    if (st == vspStsLPCUnstable)
      ++unstable;
    else if (failed(st, "LevinsonDurbin"))
      return 1;

    /* 4. LP to LSP (Q15 cosines); if fewer than 10 roots are found the
     *    previous LSPs are returned. Then the two-stage MA quantiser: it
     *    updates encMa and packs the codes in two words,
     *    words[0] = L0 << 7 | L1 (8 bits), words[1] = L2 << 5 | L3 (10 bits). */
    if (failed(legacy90vspsLPCToLSP_G729_16s(lpc, lspOld, lsp), "LPCToLSP") ||
        failed(legacy90vspsLSPQuant_G729_16s(lsp, encMa, lspq, words), "LSPQuant"))
      return 1;

    /* 5. The 18 bits of the frame's bit stream (MSB first: L0 L1 L2 L3). */
    bits = (unsigned long)words[0] << 10 | (unsigned long)words[1];

    /* ---- Decoder side: only 'bits' crosses the channel ---- */
    /* 6. Unpack L0 (1 bit), L1 (7), L2 (5), L3 (5) and decode the LSFs
     *    (radian Q13); warnings 13..15 mean an LSF was clamped by the
     *    stability rule: the output is still valid. */
    codes[0] = (Vsp16s)(bits >> 17 & 1);
    codes[1] = (Vsp16s)(bits >> 10 & 127);
    codes[2] = (Vsp16s)(bits >> 5 & 31);
    codes[3] = (Vsp16s)(bits & 31);
    st = legacy90vspsLSFDecode_G729_16s(codes, decMa, lsf);
    if (st >= vspStsLsfLowClamped && st <= vspStsLsfBothClamped)
      ++clamped;
    else if (failed(st, "LSFDecode"))
      return 1;
    if (failed(legacy90vspsLSFToLSP_G729_16s(lsf, lspDec), "LSFToLSP")) return 1;
    mismatches += memcmp(lspDec, lspq, sizeof lspq) != 0;

    /* 7. Two 5 ms subframes: the first uses the mid-point of the previous
     *    and the current LSPs, the second the current ones; each becomes an
     *    LP synthesis filter a[0..10] Q12. (The encoder does the same with
     *    lspq, which is equal.) */
    if (failed(legacy90vspsInterpolate_G729_16s(lspqOld, lspDec, lspSub1, ORDER), "Interpolate") ||
        failed(legacy90vspsLSPToLPC_G729_16s(lspSub1, aSub1), "LSPToLPC 1") ||
        failed(legacy90vspsLSPToLPC_G729_16s(lspDec, aSub2), "LSPToLPC 2"))
      return 1;

    if (f < 4)
      printf(
          "frame %d: L0..L3 = %d %3d %2d %2d (18 bits 0x%05lX), subframe 1 a1..a3 = %d %d %d, subframe 2 = %d %d %d\n",
          f, codes[0], codes[1], codes[2], codes[3], bits, aSub1[1], aSub1[2], aSub1[3], aSub2[1], aSub2[2], aSub2[3]);

    /* 8. Memories for the next frame. */
    memcpy(lspOld, lsp, sizeof lsp);
    memcpy(lspqOld, lspDec, sizeof lspDec);
  }

  free(hpf);
  printf("%d frames of 10 ms: %d unstable (previous filter kept), %d with clamped LSFs; decoder %s\n", FRAMES, unstable,
         clamped, mismatches == 0 ? "reproduces the encoder's quantised LSPs" : "DIFFERS from the encoder's LSPs");
  return mismatches == 0 ? 0 : 1;
}
