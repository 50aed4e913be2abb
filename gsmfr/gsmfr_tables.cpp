// GSM 06.10 tables (clauses 4.2.8 to 4.2.16 of the standard).
#include "gsmfr/gsmfr_tables.h"

namespace vsps::gsmfr {

const int16_t kLarA[kOrder] = {20480, 20480, 20480, 20480, 13964, 15360, 8534, 9036};
const int16_t kLarB[kOrder] = {0, 0, 2048, -2560, 94, -1792, -341, -1144};
const int16_t kLarMic[kOrder] = {-32, -32, -16, -16, -8, -8, -4, -4};
const int16_t kLarMac[kOrder] = {31, 31, 15, 15, 7, 7, 3, 3};
const int16_t kLarInvA[kOrder] = {13107, 13107, 13107, 13107, 19223, 17476, 31454, 29708};
const int16_t kLtpDlb[4] = {6554, 16384, 26214, 32767};
const int16_t kLtpQlb[4] = {3277, 11469, 21299, 32767};
const int16_t kRpeH[11] = {-134, -374, 0, 2054, 5741, 8192, 5741, 2054, 0, -374, -134};
const int16_t kRpeNrFac[8] = {29128, 26215, 23832, 21846, 20165, 18725, 17476, 16384};
const int16_t kRpeFac[8] = {18431, 20479, 22527, 24575, 26623, 28671, 30719, 32767};

}  // namespace vsps::gsmfr
