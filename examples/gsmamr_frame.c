/* GSM-AMR LP analysis and LSP quantisation per 20 ms frame, and the
 * decoder's LSP path with bad-frame concealment.
 *
 * Encoder, once per frame of 160 samples:
 *   windowed autocorrelation with lag window -> Levinson-Durbin -> LP to LSP
 *   (twice at 12.2 kbit/s: two windows, two filters) -> LSP quantisation
 * Decoder, from the indices (or nothing, for a lost frame):
 *   LSF decoding / concealment -> four subframe LSP vectors -> LSP to LP
 *
 * Input conditioning: TS 26.073 runs the 80 Hz high-pass Pre_Process (with
 * the input halved) before the analysis; the built-in signal below has no DC
 * or hum, so it is fed as it is. The encoder applies no pre-emphasis before
 * the LP analysis (legacy90vspsPreemphasize_GSMAMR_16s is the tilt
 * compensation of the decoder's post-filter), so none is done here.
 *
 * Runs 12.2 kbit/s and 4.75 kbit/s over a built-in vowel-like signal, marks
 * every tenth frame as lost, prints the indices of the first frames, how far
 * the concealed LSPs are from the sent ones, and a summary. Exits with 1 on a
 * library error or if the decoder differs from the encoder on a good frame
 * whose predictor memory is in step. Plain C99 against vsps.h only. */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "vsps.h"

#define FRAME 160 /* 20 ms at 8 kHz */
#define ORDER 10
#define FRAMES 50
#define LOST_EVERY 10 /* frames 9, 19, 29, ... are lost */

static const Vsp16s kLspReset[ORDER] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
/* Decoder reset of the last decoded LSF vector (normalised Q15), every mode. */
static const Vsp16s kPastLsfReset[ORDER] = {1384, 2077, 3420, 5108, 6742, 8122, 9863, 11092, 12714, 13701};

typedef struct {            /* encoder memories, owned between frames */
  Vsp16s speech[2 * FRAME]; /* the previous and the current frame, Q0 */
  Vsp16s lpc[ORDER + 1];    /* last good LP filter, Q12 */
  Vsp16s prevLsp[ORDER];    /* last unquantised LSPs, Q15: LP-to-LSP fallback */
  Vsp16s pastRq[ORDER];     /* quantised prediction residual of the last frame */
} Encoder;

typedef struct {          /* decoder memories, owned between frames */
  Vsp16s pastRq[ORDER];   /* the decoder's copy of the residual memory */
  Vsp16s pastLsfQ[ORDER]; /* last decoded LSFs: the base of concealment */
  Vsp16s lsp[ORDER];      /* previous frame's LSPs in, this frame's out, Q15 */
} Decoder;

static int failed(VspStatus st, const char* what) {
  if (st == vspStsNoErr) return 0;
  fprintf(stderr, "%s: status %d\n", what, (int)st);
  return 1;
}

/* Built-in input: three formant-like tones with a slow level change. */
static Vsp16s input_sample(long n) {
  const double pi = 3.14159265358979323846, t = (double)n / 8000.0;
  double v = sin(2 * pi * 700.0 * t) + sin(2 * pi * 1200.0 * t) / 2 + sin(2 * pi * 2600.0 * t) / 3;
  return (Vsp16s)lround(v * 6000.0 * (1.0 + 0.5 * sin(2 * pi * 3.0 * t)));
}

/* One encoder frame: qLsp gets the quantised LSPs (10, or 20 at 12.2 kbit/s:
 * subframes 2 and 4), idx the indices (3, or 5 at 12.2 kbit/s). */
static int encode(Encoder* e, const Vsp16s* frame, int mode, Vsp16s* qLsp, Vsp16s* idx) {
  const int mr122 = mode == vspRate12200;
  Vsp32s r[2 * (ORDER + 1)]; /* one or two normalised, lag-windowed autocorrelations */
  Vsp16s lsp[2 * ORDER];
  int v;
  memmove(e->speech, e->speech + FRAME, FRAME * sizeof e->speech[0]);
  memcpy(e->speech + FRAME, frame, FRAME * sizeof e->speech[0]);
  /* The 240-sample analysis buffer: the last 240 samples of the history,
   * or at 12.2 kbit/s the 240 that start 40 samples earlier (as in the
   * standard's encoder). The mode selects the window(s). */
  if (failed(legacy90vspsAutoCorr_GSMAMR_16s32s(e->speech + (mr122 ? 40 : 80), r, mode), "AutoCorr")) return 1;
  for (v = 0; v < (mr122 ? 2 : 1); ++v) {
    /* Status 12 (unstable) leaves e->lpc untouched: the last good filter
     * stays, as the standard's Levinson does with its old_A. */
    const VspStatus st = legacy90vspsLevinsonDurbin_GSMAMR_32s16s(r + (ORDER + 1) * v, e->lpc);
    if (st != vspStsLPCUnstable && failed(st, "LevinsonDurbin")) return 1;
    if (failed(legacy90vspsLPCToLSP_GSMAMR_16s(e->lpc, e->prevLsp, lsp + ORDER * v), "LPCToLSP")) return 1;
    memcpy(e->prevLsp, lsp + ORDER * v, sizeof e->prevLsp); /* fallback of the next search */
  }
  return failed(legacy90vspsLSPQuant_GSMAMR_16s(lsp, e->pastRq, qLsp, idx, mode), "LSPQuant");
}

static int run_mode(int mode, const char* name, int* mismatches) {
  const int mr122 = mode == vspRate12200;
  Encoder enc;
  Decoder dec;
  int n, i, lost = 0;
  memset(&enc, 0, sizeof enc);
  enc.lpc[0] = 4096;
  memcpy(enc.prevLsp, kLspReset, sizeof enc.prevLsp);
  memset(&dec, 0, sizeof dec);
  memcpy(dec.pastLsfQ, kPastLsfReset, sizeof dec.pastLsfQ);
  memcpy(dec.lsp, kLspReset, sizeof dec.lsp);

  for (n = 0; n < FRAMES; ++n) {
    Vsp16s frame[FRAME], qLsp[2 * ORDER], idx[5] = {0}, subframes[4 * ORDER], a[ORDER + 1];
    const Vsp16s* sent; /* the encoder's quantised LSPs of the frame's last subframe */
    const Vsp16s bfi = (Vsp16s)(n % LOST_EVERY == LOST_EVERY - 1);
    const int recovering = n % LOST_EVERY == 0 && n > 0; /* first good frame after a loss */
    int s, maxDiff = 0;
    for (i = 0; i < FRAME; ++i) frame[i] = input_sample((long)n * FRAME + i);
    if (encode(&enc, frame, mode, qLsp, idx)) return 1;
    sent = qLsp + (mr122 ? ORDER : 0);

    /* Channel: a lost frame delivers no indices (bfi = 1; idx is then not
     * read). The decoder updates its three memories in either case. */
    lost += bfi;
    if (failed(legacy90vspsQuantLSPDecode_GSMAMR_16s(idx, dec.pastRq, dec.pastLsfQ, dec.lsp, subframes, bfi, mode),
               "QuantLSPDecode"))
      return 1;
    /* One LP synthesis filter per 5 ms subframe, a[0..10] Q12. */
    for (s = 0; s < 4; ++s)
      if (failed(legacy90vspsLSPToLPC_GSMAMR_16s(subframes + ORDER * s, a), "LSPToLPC")) return 1;

    for (i = 0; i < ORDER; ++i) {
      /* the frame's last LSPs and, at 12.2 kbit/s, the subframe-2 vector */
      const int d = abs(dec.lsp[i] - sent[i]), d2 = mr122 ? abs(subframes[ORDER + i] - qLsp[i]) : 0;
      if (d > maxDiff) maxDiff = d;
      if (d2 > maxDiff) maxDiff = d2;
    }
    /* A good frame decodes exactly, except the first one after a loss: the
     * concealment left a different residual memory for its prediction. */
    if (!bfi && !recovering) *mismatches += maxDiff != 0;
    if (n < 2)
      printf("%s frame %d: indices %d %d %d %d %d; subframe 4 a1..a3 = %d %d %d\n", name, n, idx[0], idx[1], idx[2],
             idx[3], idx[4], a[1], a[2], a[3]);
    if (n < 2 * LOST_EVERY && (bfi || recovering))
      printf("%s frame %d: %s, LSPs at most %d (Q15) from the encoder's\n", name, n,
             bfi ? "lost, concealed" : "good, first after the loss", maxDiff);
  }
  printf("%s %d frames of 20 ms, %d lost and concealed\n", name, FRAMES, lost);
  return 0;
}

int main(void) {
  int mismatches = 0;
  if (run_mode(vspRate12200, "12.2k", &mismatches) || run_mode(vspRate4750, "4.75k", &mismatches)) return 1;
  printf("decoder %s on good frames\n", mismatches == 0 ? "reproduces the encoder's LSPs" : "DIFFERS from the encoder");
  return mismatches == 0 ? 0 : 1;
}
