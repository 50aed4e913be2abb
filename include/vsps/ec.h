/*
 * vsps/ec.h - the list of exports of the echo-cancellation toolkit.
 *
 * One entry per export, VSPS_FN(return type, name, (parameters), (argument
 * names)); the comment above an entry is its public documentation. Included
 * by vsps_functions.h; see there for the entry format. No include guard.
 */
/* clang-format off */

/* ======================================================================
 * Echo-cancellation toolkit
 * ====================================================================== */

/* Single-precision tools of this section (and the G.729 float twins) store
 * every NaN result, in outputs, states and work buffers, as the quiet NaN
 * 0x7FC00000, so that their bytes are identical at every processor level
 * even when different NaNs meet in the inputs. */

/* ---- Sub-band filter bank ---------------------------------------------
 * A weighted overlap-add bank on a real transform of length N = 2^order:
 * analysis windows the last windowLen input samples, folds them to N
 * (time aliasing) and transforms them into N/2+1 complex sub-bands (bins
 * 0..N/2, packed; bins 0 and N/2 have a zero imaginary part); synthesis
 * inverse-transforms N/2+1 bins, extends the block periodically over
 * windowLen samples, windows it with the window read backwards and
 * overlap-adds it. Each call moves one hop of frameSize samples. Use one
 * state for each analysed signal and one for each synthesised signal.
 * With the built-in windows, analysis followed by synthesis gives the input
 * back delayed by windowLen - frameSize samples at unit gain, plus the
 * prototypes' time-aliased copies at multiples of N: a signal-to-error
 * ratio of 16.1 dB for (5, 24, 128) and 24.2 dB for (6, 44, 256), both
 * twins (tested). Their sub-band aliasing at these hops also bounds a
 * per-band echo canceller (about 17-25 dB of echo-return-loss enhancement
 * on the G.168 hybrids); a caller's prototype at hop N/2 reaches 27-40 dB
 * (examples/subband_echo_canceller.c; tools/echo/ on all eight).
 *
 * The real transform: orders 1..13 (N = 2..8192; order 13 gives 4097
 * sub-bands, the sub-band filters' limit); forward unscaled, inverse
 * divided by N; radix-2 complex transform of N/2 points with a packing
 * step, tables built by Init inside the state. Float: single precision.
 * Fixed point: 32-bit data, Q30 twiddles, 64-bit products rounded to
 * nearest, block floating point chosen per call from the sum of the input
 * magnitudes (no overflow is possible); outputs rounded to nearest and
 * saturated (32-bit bins, 16-bit inverse values). Error against an exact
 * DFT (tested for orders 1..13): float forward at most
 * 2^-24*(order+1)*sum|u| per bin component, float inverse at most
 * 2^-24*(order+1)*2*sum|X|/N per sample; fixed forward at most
 * 2^max(0,-s) + 2^-24*sum|u|/2^s units, fixed inverse at most
 * 2^max(0,-s) + 2^-20*(2*sum|X|/N)/2^s units (s the scale factor).
 *
 * Blocks: the state, init and work buffers may have any alignment; every
 * function works from the first 16-byte boundary at or after the pointer
 * (the reported sizes include 16 bytes for this). The state holds pointers
 * into itself: it must not be moved or copied after Init.
 *
 * Sizes (bytes): fixed-point state = tables + 2*roundup16(2*windowLen) +
 * 48 + 16; float state = 8*windowLen + 40 + tables + 16, with tables =
 * roundup16(8*(N/2-1) + 8*(N/4+1) + N) (twiddles of every butterfly stage,
 * packing twiddles, bit-reversal indices); init buffer = 8*(N/4+1) + 16
 * from order 5 on (the quarter-wave cosine table), 0 below; work buffer =
 * roundup16(4*N) + 16 (the transform runs in place in the folded block).
 */

/* Sizes of the fixed-point filter bank's blocks for a transform order and a
 * window length (see the sizes above).
 * Checks in order: order < 1 or windowLen < 1: vspStsBadArgErr; any output
 * pointer null: vspStsNullPtrErr; windowLen not a multiple of 2^order, order
 * above 13 (outside the transform's range), or a state size above INT_MAX:
 * vspStsBadArgErr. Nothing is written on failure. */
VSPS_FN(VspStatus, legacy90vspsSubbandProcessGetSize_16s, (int order, int windowLen, int* stateSize, int* initBufSize, int* workBufSize), (order, windowLen, stateSize, initBufSize, workBufSize))

/* As legacy90vspsSubbandProcessGetSize_16s for the float filter bank. */
VSPS_FN(VspStatus, legacy90vspsSubbandProcessGetSize_32f, (int order, int windowLen, int* stateSize, int* initBufSize, int* workBufSize), (order, windowLen, stateSize, initBufSize, workBufSize))

/* Formats a fixed-point filter-bank state (VspsSubbandProcessState_16s) in
 * the caller's block: copies the window (Q13, windowLen values), builds the
 * transform tables (using initBuffer from order 5 on), stores the sizes and
 * zeroes the delay line. A null window selects the built-in prototype
 * window, accepted only for (order, frameSize, windowLen) = (5, 24, 128) or
 * (6, 44, 256): the float window of legacy90vspsSubbandProcessInit_32f in
 * Q13, each value truncated toward zero (peaks 7627 and 7739).
 * Checks in order: order < 1, frameSize < 1, frameSize > 2^order or
 * windowLen < 1: vspStsBadArgErr; state null: vspStsNullPtrErr; windowLen not
 * a multiple of 2^order: vspStsBadArgErr; null window with another
 * configuration: vspStsBadArgErr; order above 13 (the transform's range, for
 * which no block size exists): vspStsErr with nothing written; a null
 * initBuffer from order 5 on: vspStsErr, returned after the window has been
 * copied into the block (the rest of the block is not written). The init
 * buffer is not checked otherwise and is only needed during this call. */
VSPS_FN(VspStatus, legacy90vspsSubbandProcessInit_16s, (Vsp8u* state, int order, int frameSize, int windowLen, const Vsp16s* window, Vsp8u* initBuffer), (state, order, frameSize, windowLen, window, initBuffer))

/* As legacy90vspsSubbandProcessInit_16s for the float filter bank
 * (VspsSubbandProcessState_32f, window in single precision). The built-in
 * windows are symmetric, peak at the middle (0.9311249 for 128, 0.9447229
 * for 256) and sum to about 27.1875 and 50.3192. */
VSPS_FN(VspStatus, legacy90vspsSubbandProcessInit_32f, (Vsp8u* state, int order, int frameSize, int windowLen, const Vsp32f* window, Vsp8u* initBuffer), (state, order, frameSize, windowLen, window, initBuffer))

/* Analysis of one frame: the delay line d (L = windowLen) moves left by
 * H = frameSize and the H source samples (Q0) are appended; the block is
 * windowed (window read forward) and folded to N:
 *   u[j] = sat16((d[j]*w[j] + 4096) >> 13), then for each further i = j + bN
 *   u[j] = sat16(u[j] + ((d[i]*w[i] + 4096) >> 13))
 * (every product rounded to Q0 and the sum saturated after every term; a
 * full-scale input saturates inside the fold), and transformed:
 * destination[k] = DFT(u)[k] / 2^scaleFactor, k = 0..N/2, rounded to
 * nearest and saturated to 32 bits. scaleFactor is any int (negative values
 * scale up).
 * Checks: source, destination, state or workBuffer null: vspStsNullPtrErr; a
 * state whose header Init did not write (sizes out of range):
 * vspStsErr, before anything is written. The transform itself cannot
 * fail. */
VSPS_FN(VspStatus, legacy90vspsSubbandAnalysis_16s32sc_Sfs, (const Vsp16s* source, Vsp32sc* destination, VspsSubbandProcessState_16s* state, int scaleFactor, Vsp8u* workBuffer), (source, destination, state, scaleFactor, workBuffer))

/* Float analysis of one frame: as legacy90vspsSubbandAnalysis_16s32sc_Sfs
 * with u[j] = d[j]*w[j] + d[j+N]*w[j+N] + ... in single precision, in
 * increasing i, and destination = DFT(u) unscaled. Same checks. */
VSPS_FN(VspStatus, legacy90vspsSubbandAnalysis_32f32fc, (const Vsp32f* source, Vsp32fc* destination, VspsSubbandProcessState_32f* state, Vsp8u* workBuffer), (source, destination, state, workBuffer))

/* Synthesis of one frame: v = IDFT(source)/N/2^scaleFactor (N real values;
 * the imaginary parts of bins 0 and N/2 are not read), rounded to nearest
 * and saturated to 16 bits; the overlap-add line moves left by H and its
 * last H values become 0; for k = 0..L-1
 *   d[k] = sat16(d[k] + ((v[k mod N]*w[L-1-k] + 4096) >> 13))
 * (the window read backwards: the deliberate mirror of the analysis, equal
 * for symmetric windows); destination = d[0..H-1]. The transform runs first,
 * so nothing in the state changes before it. Checks as the analysis. */
VSPS_FN(VspStatus, legacy90vspsSubbandSynthesis_32sc16s_Sfs, (const Vsp32sc* source, Vsp16s* destination, VspsSubbandProcessState_16s* state, int scaleFactor, Vsp8u* workBuffer), (source, destination, state, scaleFactor, workBuffer))

/* Float synthesis of one frame: v = IDFT(source)/N in single precision,
 * d[k] = d[k] + v[k mod N]*w[L-1-k]; destination = d[0..H-1]. Checks as the
 * analysis. */
VSPS_FN(VspStatus, legacy90vspsSubbandSynthesis_32fc32f, (const Vsp32fc* source, Vsp32f* destination, VspsSubbandProcessState_32f* state, Vsp8u* workBuffer), (source, destination, state, workBuffer))

/* ---- Full-band adaptive filters -----------------------------------------
 * reference points at the first sample of the block; the caller keeps the
 * tapLen (or tapLen-1) history samples contiguous in front of it. h[0]
 * weights the newest sample. */

/* Echo estimate and error: for n = 0..len-1, y = sum over k = 0..tapLen-1 of
 * coeffs[k]*reference[n-k] (single precision, increasing k, from 0);
 * error[n] = nearEnd[n] - y. Reads reference[-(tapLen-1) .. len-1].
 * Checks: reference, nearEnd, error or coeffs null: vspStsNullPtrErr; len < 1
 * or tapLen < 1: vspStsBadArgErr. */
VSPS_FN(VspStatus, legacy90vspsFIR_EC_32f, (const Vsp32f* reference, const Vsp32f* nearEnd, Vsp32f* error, int len, const Vsp32f* coeffs, int tapLen), (reference, nearEnd, error, len, coeffs, tapLen))

/* Fixed point, coefficients Q15, samples Q0: y = sat32(y + ((x[n-k]*h[k] +
 * 16384) >> 15)) per tap in increasing k (each product rounded by itself,
 * the sum saturated after every term); error[n] = sat16(nearEnd[n] - y).
 * Checks as legacy90vspsFIR_EC_32f. */
VSPS_FN(VspStatus, legacy90vspsFIR_EC_16s, (const Vsp16s* reference, const Vsp16s* nearEnd, Vsp16s* error, int len, const Vsp16s* coeffs, int tapLen), (reference, nearEnd, error, len, coeffs, tapLen))

/* Least-mean-squares FIR whose update lags one sample (normalise the step
 * yourself: step[n] is used as given). c = *carriedError; for n = 0..len-1:
 * for k = 0..tapLen-1: h[k] = h[k] + c*x[n-1-k], y = y + x[n-k]*h[k] (y from
 * 0, the just-updated h[k]); e = nearEnd[n] - y; error[n] = e; c = e*step[n];
 * all in single precision in this order. Afterwards *carriedError = c (zero
 * it before the first call). Reads reference[-tapLen .. len-1].
 * Checks: any of the six pointers null: vspStsNullPtrErr; len < 1 or
 * tapLen < 1: vspStsBadArgErr. Nothing is written on failure. */
VSPS_FN(VspStatus, legacy90vspsNLMS_EC_32f, (const Vsp32f* reference, const Vsp32f* nearEnd, const Vsp32f* step, Vsp32f* error, int len, Vsp32f* coeffs, int tapLen, Vsp32f* carriedError), (reference, nearEnd, step, error, len, coeffs, tapLen, carriedError))

/* Fixed point (coefficients Q15; step[n] a 32-bit value with c = e*step
 * in Q11 units), in the order of legacy90vspsNLMS_EC_32f:
 *   h[k] = sat16(h[k] + ((x[n-1-k]*c + 4096) >> 13));
 *   y = sat32(y + ((h[k]*x[n-k] + 16384) >> 15));
 *   e = sat16(nearEnd[n] - y); c = (e*step[n] + 1024) >> 11.
 * c starts as the 16-bit *carriedError; inside a call it is not limited to
 * 16 bits, and it is saturated to 16 bits only when written back.
 * Decision: the products x*c and e*step, with their rounding constants,
 * are evaluated in 32-bit two's-complement arithmetic with wrap-around
 * ("in 32-bit arithmetic"): with a large step the carried value can exceed
 * 16 bits and x*c then wraps rather than being taken in 64 bits. Keep
 * |e*step| below 2^31 and |c| below 2^16 (steps below 2^15) when the wrap
 * must never happen. Splitting a block into two calls gives the same
 * result while c stays within 16 bits. Checks as legacy90vspsNLMS_EC_32f. */
VSPS_FN(VspStatus, legacy90vspsNLMS_EC_16s, (const Vsp16s* reference, const Vsp16s* nearEnd, const Vsp32s* step, Vsp16s* error, int len, Vsp16s* coeffs, int tapLen, Vsp16s* carriedError), (reference, nearEnd, step, error, len, coeffs, tapLen, carriedError))

/* ---- Sub-band adaptive filters -------------------------------------------
 * Frames of numSubbands complex values; inputFrames[m] is the reference's
 * analysis frame m frames ago (0 the newest), coeffFrames[m] its
 * coefficients. Entries of the pointer arrays are not checked for null.
 * Limits: numSubbands 1..4097 (vspStsFIRLenErr outside), numSegments 1..255
 * (vspStsRangeErr outside). */

/* Echo estimate per sub-band: output[k] = sum over m of
 * inputFrames[m][k]*coeffFrames[m][k] (plain complex product, no
 * conjugation): re = re + (xr*hr - xi*hi), im = im + (xr*hi + xi*hr) in
 * single precision, increasing m, from 0.
 * Checks in order: any pointer null: vspStsNullPtrErr; numSubbands:
 * vspStsFIRLenErr; numSegments: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsFIRSubband_EC_32fc, (const Vsp32fc* const* inputFrames, const Vsp32fc* const* coeffFrames, Vsp32fc* output, int numSegments, int numSubbands), (inputFrames, coeffFrames, output, numSegments, numSubbands))

/* Integer echo estimate: 64-bit products, the two terms of each product
 * combined with 64-bit saturation, the sums saturated at the 64-bit limits
 * after every addition; then scaled: scaleFactor s > 0 divides by 2^s
 * rounding toward zero (deliberately: s = 1 maps -3 to -1), s < 0 multiplies
 * by 2^-s with saturation; the result is saturated to 32 bits.
 * Checks as legacy90vspsFIRSubband_EC_32fc, then scaleFactor outside
 * -31..31: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsFIRSubband_EC_32sc_Sfs, (const Vsp32sc* const* inputFrames, const Vsp32sc* const* coeffFrames, Vsp32sc* output, int numSegments, int numSubbands, int scaleFactor), (inputFrames, coeffFrames, output, numSegments, numSubbands, scaleFactor))

/* Economical integer echo estimate of sub-bands firstSubband..numSubbands-1
 * (the output below firstSubband is not written): plain 64-bit sums of the
 * 64-bit products with wrap-around and no saturation, an arithmetic right
 * shift by scaleFactor (toward minus infinity), and the low 32 bits stored
 * (deliberately without saturation). firstSubband = numSubbands is a
 * success that writes nothing.
 * Checks in order: any pointer null: vspStsNullPtrErr; numSegments outside
 * 1..255, firstSubband < 0 or firstSubband > numSubbands: vspStsRangeErr;
 * numSubbands outside 1..4097: vspStsFIRLenErr; scaleFactor outside 0..31:
 * vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsFIRSubbandLow_EC_32sc_Sfs, (const Vsp32sc* const* inputFrames, const Vsp32sc* const* coeffFrames, int numSegments, Vsp32sc* output, int firstSubband, int numSubbands, int scaleFactor), (inputFrames, coeffFrames, numSegments, output, firstSubband, numSubbands, scaleFactor))

/* Normalised-LMS update, float: for every sub-band k, t = step[k]*E[k] in
 * double precision (tr = mu*er, ti = mu*ei); for every segment m,
 * H_m[k] = (float)((double)H_m[k] + (tr*xr + ti*xi)) and likewise
 * im = ti*xr - tr*xi, with x = inputFrames[m][k] (H += mu E conj(X)).
 * Checks in order: any pointer null: vspStsNullPtrErr; numSubbands:
 * vspStsFIRLenErr; numSegments: vspStsRangeErr; any step[k] < 0 (checked
 * over all sub-bands before any coefficient changes; -0.0 and NaN are not
 * negative): vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsFIRSubbandCoeffUpdate_EC_32fc_I, (const Vsp64f* step, const Vsp32fc* const* inputFrames, const Vsp32fc* errorFrame, Vsp32fc** coeffFrames, int numSegments, int numSubbands), (step, inputFrames, errorFrame, coeffFrames, numSegments, numSubbands))

/* Normalised-LMS update, integer twin of legacy90vspsFIRSubbandCoeffUpdate
 * _EC_32fc_I. step holds numSubbands pairs (mantissa, exponent) of 32-bit
 * values: the step of sub-band k is mantissa_k * 2^-exponent_k (mantissa
 * Q31-style, 0 .. 2^31-1); the coefficients are in Q(scaleFactor), the
 * format legacy90vspsFIRSubband_EC_32sc_Sfs with the same scale factor
 * expects. For every sub-band k:
 *   t = ((mantissa*E[k] + 2^30) >> 31) per component (64-bit);
 *   for every segment m: D = t*conj(X_m[k]) in 64 bits, the two terms of
 *   each component combined with 64-bit saturation; D shifted by
 *   exponent - scaleFactor - 31 bits (right, arithmetic, for a positive
 *   count; left with 64-bit saturation for a negative one);
 *   H_m[k] = sat32(H_m[k] + D).
 * Checks in order: any pointer null: vspStsNullPtrErr; numSubbands outside
 * 1..4097: vspStsFIRLenErr; numSegments outside 1..255: vspStsRangeErr;
 * scaleFactor outside 0..31: vspStsRangeErr; any mantissa < 0 (checked
 * before any change): vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsFIRSubbandCoeffUpdate_EC_32sc_I, (const Vsp32s* step, const Vsp32sc* const* inputFrames, const Vsp32sc* errorFrame, Vsp32sc** coeffFrames, int numSegments, int numSubbands, int scaleFactor), (step, inputFrames, errorFrame, coeffFrames, numSegments, numSubbands, scaleFactor))

/* The update that goes with legacy90vspsFIRSubbandLow_EC_32sc_Sfs: only
 * sub-bands firstSubband..numSubbands-1 are updated, with the arithmetic of
 * legacy90vspsFIRSubbandCoeffUpdate_EC_32sc_I except that the two terms of
 * t*conj(X) are combined in wrapping 64-bit arithmetic (no 64-bit
 * saturation; the final 32-bit saturation stays). t of sub-band k is stored
 * in workFrame[k] (numSubbands complex values; entries below firstSubband
 * are not written). step: numSubbands (mantissa, exponent) pairs.
 * Checks in order: any of the five pointers null: vspStsNullPtrErr;
 * numSegments outside 1..255, firstSubband < 0 or > numSubbands:
 * vspStsRangeErr; numSubbands outside 1..4097: vspStsFIRLenErr; scaleFactor
 * outside 0..31: vspStsRangeErr. firstSubband = numSubbands: success, nothing
 * done. Steps are not range-checked. */
VSPS_FN(VspStatus, legacy90vspsFIRSubbandLowCoeffUpdate_EC_32sc_I, (const Vsp32sc* const* inputFrames, const Vsp32sc* errorFrame, Vsp32sc** coeffFrames, int numSegments, Vsp32sc* workFrame, const Vsp32s* step, int firstSubband, int numSubbands, int scaleFactor), (inputFrames, errorFrame, coeffFrames, numSegments, workFrame, step, firstSubband, numSubbands, scaleFactor))

/* Affine-projection update of order P = projectionOrder (1..16), float.
 * inputFrames holds numSegments + P - 1 frames (0 the newest): the
 * regressor of frame n-p is x_p = (X_p[k], .., X_{p+L-1}[k]), L =
 * numSegments. errorFrames holds P frames: errorFrames[p] is the error of
 * frame n-p (d - x_p^T h; the a-priori errors of the last P frames are the
 * usual approximation). stepData holds numSubbands pairs (mu_k, delta_k):
 * step and regularisation. Per sub-band, in double precision:
 *   A[p][q] = x_p^T conj(x_q) + delta_k [p == q];  solve A g = e (Cholesky);
 *   H_m[k] = (float)((double)H_m[k] + (mu_k / P) * sum_p g_p conj(X_{p+m}[k])).
 * The step is scaled by 1/P. P = 1 is the normalised LMS update
 * mu E conj(X) / (|x|^2 + delta). A sub-band whose matrix is not positive
 * definite (zero input with delta = 0) is left unchanged.
 * Checks in order: any pointer null: vspStsNullPtrErr; numSubbands outside
 * 1..4097: vspStsFIRLenErr; numSegments outside 1..255 or projectionOrder
 * outside 1..16: vspStsRangeErr; any mu_k or delta_k negative or NaN
 * (checked before any change): vspStsSizeErr. */
VSPS_FN(VspStatus, legacy90vspsFIRSubbandAPCoeffUpdate_EC_32fc_I, (const Vsp64f* stepData, const Vsp32fc* const* inputFrames, const Vsp32fc* const* errorFrames, Vsp32fc** coeffFrames, int numSegments, int numSubbands, int projectionOrder), (stepData, inputFrames, errorFrames, coeffFrames, numSegments, numSubbands, projectionOrder))

/* ---- 2100 Hz tone detector (G.165 disabling tone) -----------------------
 * A resonator at 2100 Hz, y = c0 x[n] + c1 x[n-2] - c2 y[n-1] - c3 y[n-2]
 * (8000 Hz: 155, -155, 619, 3786 in Q12 / 0.037804753, -0.037804753,
 * 0.15110244, 0.9243905; 16000 Hz: 79, -79, -5455, 3938 / 0.019259274,
 * -0.019259274, -1.3317118, 0.96148145), smoothed energies Ex (input) and
 * Ey (output) with alpha 0.96 (8000 Hz) or 0.92 (16000 Hz) (Q14 15728,
 * 15073), a tone run, a gap run and a reversal count. Limits: minimum run
 * fs*0.413, maximum fs*0.466, gap limit fs/50 samples (3304, 3728, 160 at
 * 8000 Hz). A reversal is counted when the output energy dips below 0.48 Ex
 * after a tone run strictly between the minimum and the maximum; the call
 * in which the count reaches 2 (or more) reports 1.
 *
 * Decision: every dip of the output energy below 0.48 Ex ends the tone run
 * (it restarts from 0), whether the dip counts as a reversal or not. So a
 * reversal is counted when the tone lasted 413..466 ms since the previous
 * dip, and a detector that meets the tone inside a segment (started late,
 * or the tone resuming after a gap) counts the reversals that follow its
 * first dip. (Resetting the run only on counted reversals would let the
 * run span two segments after an uncounted dip and never report such a
 * tone.) It costs nothing on noisy tones: within a segment the output
 * energy stays above 0.48 Ex wherever the tone is present at all (tested:
 * reported at 12 dB signal-to-noise ratio; at 8 dB the 0.8 presence test
 * fails first).
 * Gaps: a gap of low-level noise longer than fs/50 (once the smoothed
 * energies have fallen to the noise's level) resets the run and the
 * reversal count. Digital silence after a tone is no gap in either twin:
 * the two energies decay together (fixed point: the resonator settles into
 * a limit cycle of a few units while Ex reaches 0; float: both energies stop
 * at subnormal values), so the reversal count survives it, however long,
 * and the tone run keeps counting through it, except in the float twin at
 * 16000 Hz, whose resonator rings longer than Ex decays: its output energy
 * exceeds 10000 Ex and the run restarts (the count is kept). When the tone
 * returns, its onset is a dip and restarts the run. From Init (both energies
 * 0) an all-zero input counts as a gap in the fixed-point twin, while the
 * float twin (output energy not above 0.0008 Ex, or not below Ex) resets the
 * tone run and the gap run and keeps the reversal count. The tone run and
 * the reversal count stop at INT32_MAX (a tone, or digital silence after
 * one, of 2^31 samples or more) rather than wrap. */

/* Bytes of a fixed-point detector state: 72. Checks: size null:
 * vspStsNullPtrErr; rate not 8000 or 16000: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsToneDetectGetStateSize_EC_16s, (int rate, int* size), (rate, size))

/* Bytes of a float detector state: 80. Checks as the fixed-point one. */
VSPS_FN(VspStatus, legacy90vspsToneDetectGetStateSize_EC_32f, (int rate, int* size), (rate, size))

/* Formats a fixed-point detector state (VspsToneDetectState_16s) at any
 * alignment: the rate's coefficients and alpha, zero histories, energies
 * and counters, the three limits. Checks: state null: vspStsNullPtrErr;
 * rate not 8000 or 16000: vspStsRangeErr. */
VSPS_FN(VspStatus, legacy90vspsToneDetectInit_EC_16s, (Vsp8u* state, int rate), (state, rate))

/* As legacy90vspsToneDetectInit_EC_16s for the float detector
 * (VspsToneDetectState_32f). */
VSPS_FN(VspStatus, legacy90vspsToneDetectInit_EC_32f, (Vsp8u* state, int rate), (state, rate))

/* Runs the fixed-point detector over len samples (Q0) continuing from the
 * state; *result = 1 when a reversal was counted in this call with the
 * count at 2 or more, else 0. Per sample:
 *   y = sat16((c0*x + c1*x[n-2] - c2*y[n-1] - c3*y[n-2] + 2048) >> 12);
 *   Ex = (x*x*(16384-alpha) + Ex*alpha) >> 14, Ey likewise (64-bit);
 *   Ey > (Ex*13107) >> 14: tone run + 1, gap run = 0;
 *   else: if Ey < (Ex*7864) >> 14 and minimum < tone run < maximum: count
 *   a reversal and reset the tone run; then gap run + 1, and above the
 *   limit the tone run, gap run and count are reset (thresholds formed in
 *   64 bits). Checks: signal, result or state null: vspStsNullPtrErr;
 *   len < 1: vspStsBadArgErr. */
VSPS_FN(VspStatus, legacy90vspsToneDetect_EC_16s, (const Vsp16s* signal, int len, int* result, VspsToneDetectState_16s* state), (signal, len, result, state))

/* The float detector: y = ((c0*x + c1*x[n-2]) - c2*y[n-1]) - c3*y[n-2];
 * Ex = alpha*Ex + (1-alpha)*(x*x), Ey likewise, single precision;
 * Ey > 0.8 Ex and 10000 Ex > Ey: gap run = 0, tone run + 1; else if
 * Ey > 0.0008 Ex and Ex > Ey: the reversal and gap steps of the fixed-point
 * detector (0.48); else gap run = 0 and tone run = 0, the count kept.
 * Checks as legacy90vspsToneDetect_EC_16s. */
VSPS_FN(VspStatus, legacy90vspsToneDetect_EC_32f, (const Vsp32f* signal, int len, int* result, VspsToneDetectState_32f* state), (signal, len, result, state))
