// State and buffer sizes: every size function reports the stated byte
// counts (the G.729 high-pass filter 24, the tone detectors 72 and 80 at
// both rates, the filter bank by its documented formula for every order and
// several window lengths, up to the largest state that fits INT_MAX). The
// refusals are the contracts' checks.
#include <gtest/gtest.h>

#include <climits>
#include <functional>

#include "tests/ec/ec_fuzz.h"
#include "vsps.h"

namespace {

constexpr int kGuard = -12345;

TEST(StateSizes, FixedBlocksHaveTheStatedByteCounts) {
  struct Row {
    const char* what;
    std::function<VspStatus(int*)> get;
    int bytes;
  };
  const Row rows[] = {
      {"G.729 high-pass", [](int* s) { return legacy90vspsHighPassFilterSize_G729(s); }, 24},
      {"tone 16s 8000", [](int* s) { return legacy90vspsToneDetectGetStateSize_EC_16s(8000, s); }, 72},
      {"tone 16s 16000", [](int* s) { return legacy90vspsToneDetectGetStateSize_EC_16s(16000, s); }, 72},
      {"tone 32f 8000", [](int* s) { return legacy90vspsToneDetectGetStateSize_EC_32f(8000, s); }, 80},
      {"tone 32f 16000", [](int* s) { return legacy90vspsToneDetectGetStateSize_EC_32f(16000, s); }, 80},
  };
  for (const Row& r : rows) {
    int size = kGuard;
    EXPECT_EQ(r.get(&size), vspStsNoErr) << r.what;
    EXPECT_EQ(size, r.bytes) << r.what;
  }
}

using GetSize = VspStatus (*)(int, int, int*, int*, int*);
struct Twin {
  bool fixedPoint;
  GetSize get;
};
const Twin kTwins[] = {{true, legacy90vspsSubbandProcessGetSize_16s}, {false, legacy90vspsSubbandProcessGetSize_32f}};

// The largest multiple of 2^order whose state fits INT_MAX.
int64_t largest_window(bool fixedPoint, int order) {
  const int64_t n = int64_t(1) << order;
  int64_t k = 1;
  while (ect::documented_sizes(fixedPoint, order, 2 * k * n).state <= INT_MAX) k *= 2;
  for (int64_t step = k / 2; step >= 1; step /= 2)
    if (ect::documented_sizes(fixedPoint, order, (k + step) * n).state <= INT_MAX) k += step;
  return k * n;
}

TEST(StateSizes, FilterBankFollowsTheDocumentedFormula) {
  for (const Twin& t : kTwins)
    for (int order = 1; order <= 13; ++order) {
      const int64_t n = int64_t(1) << order;
      for (int64_t len : {n, 2 * n, 3 * n, 16 * n, largest_window(t.fixedPoint, order)}) {
        int state = kGuard, init = kGuard, work = kGuard;
        ASSERT_EQ(t.get(order, static_cast<int>(len), &state, &init, &work), vspStsNoErr) << order << " " << len;
        const ect::DocumentedSizes d = ect::documented_sizes(t.fixedPoint, order, len);
        EXPECT_EQ(state, d.state) << t.fixedPoint << " order " << order << " windowLen " << len;
        EXPECT_EQ(init, d.init) << t.fixedPoint << " order " << order;
        EXPECT_EQ(work, d.work) << t.fixedPoint << " order " << order;
      }
    }
}

}  // namespace
