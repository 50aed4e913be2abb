/* A sub-band echo canceller assembled from the echo-cancellation toolkit.
 *
 * Per hop of HOP samples:
 *   far end  -> analysis (state 1) -> X, the newest of SEGS far-end frames
 *   near end -> analysis (state 2) -> D
 *   echo estimate Y[k] = sum over m of X_m[k] H_m[k]    (FIRSubband_EC_32fc)
 *   error E = D - Y; step mu / (|X[k]|^2 over the taps + delta) per sub-band
 *   H_m[k] += step[k] E[k] conj(X_m[k])      (FIRSubbandCoeffUpdate_EC_32fc_I)
 *   E -> synthesis (state 3) -> HOP output samples (echo removed)
 *
 * The far end is a built-in speech-like signal (coloured noise with a
 * syllabic envelope), the echo path the G.168 hybrid model D2 at 6 dB echo
 * return loss, the near end that echo plus noise 45 dB below the far end.
 * Prints the echo-return-loss enhancement (ERLE: near-end power over output
 * power) every half second; exits with 1 on a library error or if the ERLE
 * of the last two seconds is below MIN_ERLE_DB. Float signals, full scale
 * 1.0. Plain C99 against vsps.h only. */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "vsps.h"

#define ORDER 6            /* transform of N = 2^6 = 64 points */
#define BINS 33            /* N/2 + 1 sub-bands */
#define HOP 32             /* samples per frame (N/2) */
#define WLEN 256           /* prototype window length (4N) */
#define SEGS 16            /* taps per sub-band: 16 frames = 64 ms of echo tail */
#define DELAY (WLEN - HOP) /* analysis + synthesis delay in samples */
#define RATE 8000
#define SECONDS 8
#define REPORT (RATE / 2) /* ERLE every 0.5 s */
#define MIN_ERLE_DB 25.0

static const double kPi = 3.14159265358979323846, kMu = 0.5, kDelta = 1e-2;
/* G.168 hybrid model D2: 8 kHz impulse response (scaled in main). */
static const int kEchoPath[64] = {
    -436,  -829,  -2797, -4208, -17968, -11215, 46150, 34480, -10427, 9049, -1309, -6320, 390,  -8191, -1751, -6051,
    -3796, -4055, -3948, -2557, -3372,  -1808,  -2259, -1300, -1098,  -618, -340,  -61,   323,  419,   745,   716,
    946,   880,   1014,  976,   1033,   1091,   1053,  1042,  794,    831,  899,   716,   390,  313,   304,   304,
    73,    -119,  -109,  -176,  -359,   -407,   -512,  -580,  -704,   -618, -685,  -791,  -772, -820,  -839,  -724};

static int failed(VspStatus st, const char* what) {
  if (st == vspStsNoErr) return 0;
  fprintf(stderr, "%s: status %d\n", what, (int)st);
  return 1;
}

/* Gaussian noise (Box-Muller over a small LCG), reproducible. */
static double gauss(unsigned* seed) {
  double u1, u2;
  *seed = *seed * 1664525u + 1013904223u;
  u1 = ((*seed >> 8) + 1.0) / 16777217.0;
  *seed = *seed * 1664525u + 1013904223u;
  u2 = (*seed >> 8) / 16777216.0;
  return sqrt(-2.0 * log(u1)) * cos(2 * kPi * u2);
}

/* The analysis/synthesis prototype: a sinc with its first zeros at +-N
 * samples under a Blackman window, scaled so that analysis followed by
 * synthesis has unit gain at hop HOP (sum of w^2 = HOP). At hop N/2 its
 * sub-band aliasing is far below that of the built-in windows (hop 44). */
static void design_prototype(Vsp32f* w) {
  double v[WLEN], energy = 0;
  int i;
  for (i = 0; i < WLEN; ++i) {
    const double t = (i - (WLEN - 1) / 2.0) / (1 << ORDER), phase = 2 * kPi * (i + 0.5) / WLEN;
    v[i] = (t == 0 ? 1.0 : sin(kPi * t) / (kPi * t)) * (0.42 - 0.5 * cos(phase) + 0.08 * cos(2 * phase));
    energy += v[i] * v[i];
  }
  for (i = 0; i < WLEN; ++i) w[i] = (Vsp32f)(v[i] * sqrt(HOP / energy));
}

int main(void) {
  /* ---- Canceller memories (owned between hops) ---- */
  Vsp8u *bank[3], *work; /* filter-bank states: far end, near end, output; one work buffer */
  static Vsp32fc history[SEGS][BINS], coeffs[SEGS][BINS]; /* X_m and H_m, zero at start */
  int newest = 0;                                         /* ring slot of X_0 in history */
  /* ---- Signals and measurement ---- */
  static float farEnd[SECONDS * RATE], nearEnd[SECONDS * RATE], out[SECONDS * RATE];
  const int total = SECONDS * RATE;
  Vsp32f window[WLEN];
  double h[64], norm = 0, y1 = 0, y2 = 0, tailNear = 0, tailOut = 0, pNear = 0, pOut = 0, erle;
  int stateSize, initSize, workSize, b, n, k, m;
  unsigned seed = 1;

  /* 1. Block sizes for (order, window length), then three states formatted
   *    with the designed window. The init buffer is needed only by Init;
   *    the states must stay where Init put them (they point into
   *    themselves). Any alignment is accepted. */
  design_prototype(window);
  if (failed(legacy90vspsSubbandProcessGetSize_32f(ORDER, WLEN, &stateSize, &initSize, &workSize), "GetSize")) return 1;
  {
    Vsp8u* init = (Vsp8u*)malloc((size_t)initSize + 1); /* + 1: the size is 0 below order 5 */
    work = (Vsp8u*)malloc((size_t)workSize);
    for (b = 0; b < 3; ++b) {
      bank[b] = (Vsp8u*)malloc((size_t)stateSize);
      if (init == NULL || work == NULL || bank[b] == NULL ||
          failed(legacy90vspsSubbandProcessInit_32f(bank[b], ORDER, HOP, WLEN, window, init), "Init"))
        return 1;
    }
    free(init);
  }

  /* 2. Signals: speech-like far end (AR(2) resonance near 700 Hz, 3 Hz
   *    syllabic envelope, RMS about 0.1), echo through D2 scaled to 6 dB
   *    echo return loss for white input (sum h^2 = 10^-0.6), near-end noise
   *    45 dB below the far end. */
  for (k = 0; k < 64; ++k) norm += (double)kEchoPath[k] * kEchoPath[k];
  for (k = 0; k < 64; ++k) h[k] = kEchoPath[k] * sqrt(pow(10.0, -0.6) / norm);
  for (n = 0; n < total; ++n) {
    const double v = gauss(&seed) + 1.3 * y1 - 0.6 * y2;
    y2 = y1;
    y1 = v;
    farEnd[n] = (float)(0.07 * v * (0.6 + 0.4 * sin(2 * kPi * 3.0 * n / RATE)));
  }
  for (n = 0; n < total; ++n) {
    double e = 0;
    for (k = 0; k < 64 && k <= n; ++k) e += h[k] * farEnd[n - k];
    nearEnd[n] = (float)(e + 0.1 * pow(10.0, -45.0 / 20) * gauss(&seed));
  }

  printf("%d sub-bands, hop %d, window %d, %d taps per sub-band, mu %.2f; G.168 D2, ERL 6 dB\n", BINS, HOP, WLEN, SEGS,
         kMu);
  for (n = 0; n < total; n += HOP) {
    const Vsp32fc* x[SEGS]; /* x[m]: far-end frame m hops ago */
    Vsp32fc* c[SEGS];       /* c[m]: its coefficients */
    Vsp32fc nearFrame[BINS], estimate[BINS], error[BINS];
    Vsp64f step[BINS];

    /* 3. Analysis of both inputs: the newest far-end frame replaces the
     *    oldest slot of the ring. */
    newest = (newest + SEGS - 1) % SEGS;
    if (failed(legacy90vspsSubbandAnalysis_32f32fc(farEnd + n, history[newest], (VspsSubbandProcessState_32f*)bank[0],
                                                   work),
               "far-end analysis") ||
        failed(legacy90vspsSubbandAnalysis_32f32fc(nearEnd + n, nearFrame, (VspsSubbandProcessState_32f*)bank[1], work),
               "near-end analysis"))
      return 1;
    for (m = 0; m < SEGS; ++m) {
      x[m] = history[(newest + m) % SEGS];
      c[m] = coeffs[m];
    }

    /* 4. Echo estimate per sub-band and the error D - Y. */
    if (failed(legacy90vspsFIRSubband_EC_32fc(x, (const Vsp32fc* const*)c, estimate, SEGS, BINS), "FIRSubband"))
      return 1;
    for (k = 0; k < BINS; ++k) {
      error[k].re = nearFrame[k].re - estimate[k].re;
      error[k].im = nearFrame[k].im - estimate[k].im;
    }

    /* 5. Normalised step per sub-band and the coefficient update. */
    for (k = 0; k < BINS; ++k) {
      double energy = 0;
      for (m = 0; m < SEGS; ++m) energy += (double)x[m][k].re * x[m][k].re + (double)x[m][k].im * x[m][k].im;
      step[k] = kMu / (energy + kDelta);
    }
    if (failed(legacy90vspsFIRSubbandCoeffUpdate_EC_32fc_I(step, x, error, c, SEGS, BINS), "CoeffUpdate")) return 1;

    /* 6. Synthesis of the error: HOP output samples, DELAY samples late. */
    if (failed(legacy90vspsSubbandSynthesis_32fc32f(error, out + n, (VspsSubbandProcessState_32f*)bank[2], work),
               "synthesis"))
      return 1;

    /* ERLE of the near end against the output DELAY samples later. */
    for (k = n; k < n + HOP; ++k)
      if (k >= DELAY) {
        pNear += (double)nearEnd[k - DELAY] * nearEnd[k - DELAY];
        pOut += (double)out[k] * out[k];
      }
    if ((n + HOP) % REPORT == 0) {
      printf("t = %4.1f s  ERLE %5.1f dB\n", (double)(n + HOP) / RATE, 10 * log10(pNear / pOut));
      if (n + HOP > total - 2 * RATE) {
        tailNear += pNear;
        tailOut += pOut;
      }
      pNear = pOut = 0;
    }
  }
  for (b = 0; b < 3; ++b) free(bank[b]);
  free(work);

  erle = 10 * log10(tailNear / tailOut);
  printf("ERLE over the last 2 s: %.1f dB (required: %.0f dB)\n", erle, MIN_ERLE_DB);
  return erle >= MIN_ERLE_DB ? 0 : 1;
}
