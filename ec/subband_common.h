// Argument checks and sizes shared by both twins of the filter bank. Per level.
#pragma once

#include <cstdint>

#include "core/level_ns.h"
#include "ec/ec_tables.h"
#include "ec/subband_layout.h"

namespace vsps::VSPS_NS::ec {

enum class Twin { Fixed16s, Float32f };

// GetSize: checks in the contract's order, then the three sizes.
inline VspStatus subband_get_size(Twin twin, int order, int windowLen, int* stateSize, int* initBufSize,
                                  int* workBufSize) {
  if (order < 1 || windowLen < 1) return vspStsBadArgErr;
  if (stateSize == nullptr || initBufSize == nullptr || workBufSize == nullptr) return vspStsNullPtrErr;
  if (order > 30 || windowLen % (int32_t(1) << order) != 0) return vspStsBadArgErr;
  if (order > vsps::ec::kMaxOrder) return vspStsBadArgErr;  // outside the transform's range
  const std::size_t state = twin == Twin::Fixed16s ? vsps::ec::state_bytes_16s(order, windowLen)
                                                   : vsps::ec::state_bytes_32f(order, windowLen);
  if (state > INT32_MAX) return vspStsBadArgErr;  // not expressible as an int
  *stateSize = static_cast<int>(state);
  *initBufSize = static_cast<int>(vsps::ec::init_buffer_bytes(order));
  *workBufSize = static_cast<int>(vsps::ec::work_buffer_bytes(order));
  return vspStsNoErr;
}

// Init checks before anything is written. Returns vspStsNoErr when the
// arguments are acceptable; *useDefault tells whether the built-in window of
// the configuration is to be used.
inline VspStatus subband_init_checks(const void* state, int order, int frameSize, int windowLen, const void* window,
                                     bool* useDefault) {
  if (order < 1 || frameSize < 1 || (order < 31 && frameSize > (int32_t(1) << order)) || windowLen < 1)
    return vspStsBadArgErr;
  if (state == nullptr) return vspStsNullPtrErr;
  if (order > 30 || windowLen % (int32_t(1) << order) != 0) return vspStsBadArgErr;
  *useDefault = window == nullptr;
  if (*useDefault &&
      !((order == 5 && frameSize == 24 && windowLen == 128) || (order == 6 && frameSize == 44 && windowLen == 256)))
    return vspStsBadArgErr;
  // No transform tables beyond the transform's range: no size function gave
  // the caller a block for such an order, so nothing is written.
  if (order > vsps::ec::kMaxOrder) return vspStsErr;
  return vspStsNoErr;
}

// The quarter-wave cosines for the table builders: in the init buffer from
// order 5 on, on the stack below. Null when the tables cannot be built.
inline const double* subband_quarter_cosines(int order, Vsp8u* initBuffer, double (&small)[5]) {
  if (order > vsps::ec::kMaxOrder) return nullptr;
  const int n = 1 << order;
  const int count = n / 4 + 1;
  double* q = small;
  if (order >= vsps::ec::kInitBufferFromOrder) {
    if (initBuffer == nullptr) return nullptr;
    q = reinterpret_cast<double*>(vsps::ec::align16(initBuffer));
  }
  vsps::ec::quarter_cosines(q, n, count);
  return q;
}

// log2 of the transform length N stored in a header.
inline int order_of(int32_t n) { return __builtin_ctz(static_cast<uint32_t>(n)); }

// The header of a state block (either twin) from the caller's pointer, or
// null when Init did not write it (sizes out of range or inconsistent).
template <class Header, class State>
inline Header* formatted_header(State* state) {
  auto* h = reinterpret_cast<Header*>(vsps::ec::align16(reinterpret_cast<uint8_t*>(state)));
  const int32_t n = h->fftLen;
  const bool ok = n >= 2 && n <= (1 << vsps::ec::kMaxOrder) && (n & (n - 1)) == 0 && h->frameSize >= 1 &&
                  h->frameSize <= n && h->windowLen >= n && h->windowLen % n == 0 && h->delay != nullptr &&
                  h->window != nullptr && h->tables != nullptr;
  return ok ? h : nullptr;
}

}  // namespace vsps::VSPS_NS::ec
