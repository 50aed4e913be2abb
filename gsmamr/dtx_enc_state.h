// State block of the GSM-AMR DTX encoder (TS 26.073 dtx_encState): the
// 8-frame LSP and log-energy history, the last SID parameters and the
// transmit handler's counters. hist_ptr, the only index, is clamped to 0..7
// on load, so any block content is safe to run on.
#pragma once

#include <cstdint>
#include <cstring>

#include "core/level_ns.h"
#include "vsps.h"

namespace vsps::VSPS_NS::amr {

inline constexpr int kDtxHist = 8;  // DTX_HIST_SIZE

struct DtxEncState {
  int16_t lsp_hist[kDtxHist * 10];  // unquantised LSPs (Q15)
  int16_t log_en_hist[kDtxHist];    // log2 frame energies (Q10, halved)
  int16_t hist_ptr;
  int16_t log_en_index, init_lsf_vq_index, lsp_index[3];
  int16_t dtxHangoverCount, decAnaElapsedCount;
};

inline void load_state(const Vsp8u* p, DtxEncState& s) {
  std::memcpy(&s, p, sizeof s);
  if (s.hist_ptr < 0 || s.hist_ptr >= kDtxHist) s.hist_ptr = 0;
}
inline void store_state(const DtxEncState& s, Vsp8u* p) { std::memcpy(p, &s, sizeof s); }

}  // namespace vsps::VSPS_NS::amr
