// Constant tables of the G.729 pitch, codebook, gain, post-filter and Annex B
// steps (ITU-T G.729 clauses 3.7-3.9, 4.2, Annex A and Annex B), defined once
// for all levels in g729/codec_tables.cpp (tools/gen-g729-codec-tables.py).
#pragma once

#include <cstdint>

namespace vsps::tables::g729c {

extern const int16_t kTabSqr[49];  // Inv_sqrt table, Q15 1/sqrt(1 + i/16), 49 entries
extern const int16_t kTabLog[33];  // Log2 table, Q15 log2(1 + i/32), 33 entries
extern const int16_t kTabPow[33];  // Pow2 table, Q14 2^(i/32), 33 entries
extern const int16_t kInter3[13];  // 1/3 interpolation of the normalised correlation, Q15, 13 taps
extern const int16_t kInter3l[31];  // 1/3 interpolation of the past excitation, Q15, 31 taps
extern const int16_t kGbk1[16];  // gain codebook 1 [8][2]: pitch part Q14, code part Q13
extern const int16_t kGbk2[32];  // gain codebook 2 [16][2]: pitch part Q14, code part Q13
extern const int16_t kMap1[8];  // gbk1 row -> transmitted GA
extern const int16_t kMap2[16];  // gbk2 row -> transmitted GB
extern const int16_t kImap1[8];  // transmitted GA -> gbk1 row
extern const int16_t kImap2[16];  // transmitted GB -> gbk2 row
extern const int16_t kGainPred[4];  // MA prediction of the code energy, Q13
extern const int16_t kGainCoef[4];  // pre-selection coefficients [2][2]
extern const int32_t kGainLCoef[4];  // pre-selection coefficients, 32-bit [2][2]
extern const int16_t kGainThr1[4];  // pre-selection thresholds of codebook 1, Q14
extern const int16_t kGainThr2[8];  // pre-selection thresholds of codebook 2, Q15
extern const int16_t kTabHupS[28];  // post-filter 4-tap 1/8 interpolation [7][4], Q15
extern const int16_t kTabHupL[112];  // post-filter 16-tap 1/8 interpolation [7][16], Q15
extern const int16_t kTabZone[153];  // taming: zone 0..3 of each delay 0..152
extern const int16_t kSidGain[32];  // SID gain levels, Q3
extern const int16_t kSidPtrTab1[32];  // SID first-stage rows of lspcb1
extern const int16_t kSidPtrTab2[32];  // SID second-stage rows of lspcb2 [2][16]
extern const int16_t kSidNoiseFgSum[20];  // noise MA predictor complement [2][10], Q15
extern const int16_t kSidNoiseFgSumInv[20];  // its inverse [2][10], Q12
extern const int16_t kSidFact[3];  // SID energy factors
extern const int16_t kSidMarg[3];  // SID energy margins
extern const int16_t kSidMp[2];  // SID first-stage weights
extern const int16_t kLbfCorr[13];  // VAD low-band filter autocorrelation, Q15
extern const int16_t kVadFactor[33];  // VAD start-up mean factor, Q15 mantissa
extern const int16_t kVadShift[33];  // VAD start-up mean factor, shift

}  // namespace vsps::tables::g729c
