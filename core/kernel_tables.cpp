#include "core/kernel_tables.h"

namespace vsps::tables {
namespace {

constexpr std::array<int16_t, 256> make_norm_byte(int offset) {
  std::array<int16_t, 256> t{};
  for (int b = 0; b < 256; ++b) {
    int bits = 0;
    for (int v = b; v != 0; v >>= 1) ++bits;
    t[b] = static_cast<int16_t>(b < 128 ? 7 - bits + offset : -1 + offset);
  }
  return t;
}

// G.729 Inv_sqrt table, Q15 (49 values).
constexpr int16_t kG729InvSqrtQ15[49] = {32767, 31790, 30894, 30070, 29309, 28602, 27945, 27330, 26755, 26214,
                                         25705, 25225, 24770, 24339, 23930, 23541, 23170, 22817, 22479, 22155,
                                         21845, 21548, 21263, 20988, 20724, 20470, 20225, 19988, 19760, 19539,
                                         19326, 19119, 18919, 18725, 18536, 18354, 18176, 18004, 17837, 17674,
                                         17515, 17361, 17211, 17064, 16921, 16782, 16646, 16514, 16384};

constexpr std::array<int32_t, kInvSqrtTableSize> make_inv_sqrt_base() {
  std::array<int32_t, kInvSqrtTableSize> t{};
  for (int i = 0; i < kInvSqrtTableSize; ++i) t[i] = int32_t(kG729InvSqrtQ15[i]) * 65536;
  return t;
}
constexpr std::array<int16_t, kInvSqrtTableSize> make_inv_sqrt_slope() {
  std::array<int16_t, kInvSqrtTableSize> t{};
  for (int i = 0; i < kInvSqrtTableSize; ++i)
    t[i] = static_cast<int16_t>(2 * (kG729InvSqrtQ15[i] - kG729InvSqrtQ15[i + 1]));
  return t;
}

}  // namespace

constexpr std::array<int16_t, 256> kNormByte = make_norm_byte(0);
constexpr std::array<int16_t, 256> kNormByteLow = make_norm_byte(8);
constexpr std::array<int32_t, kInvSqrtTableSize> kInvSqrtBaseQ31 = make_inv_sqrt_base();
constexpr std::array<int16_t, kInvSqrtTableSize> kInvSqrtSlope = make_inv_sqrt_slope();

static_assert(make_inv_sqrt_slope()[0] == 1954 && make_inv_sqrt_slope()[47] == 260);
static_assert(make_norm_byte(0)[0] == 7 && make_norm_byte(0)[1] == 6 && make_norm_byte(0)[127] == 0);

}  // namespace vsps::tables
