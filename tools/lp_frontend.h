// The G.729 and GSM-AMR LP front ends, assembled from library calls only,
// one frame at a time, with the figures the tool reports per frame.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "vsps.h"

namespace vsps::tool {

// One analysed frame.
struct LpFrame {
  std::array<Vsp16s, 10> lspQ15{};       // unquantised LSPs (cosine domain, Q15) of the frame's own filter
  std::array<Vsp16s, 10> quantLspQ15{};  // after quantisation (what the decoder rebuilds)
  std::vector<int> codes;                // transmitted LSP indices
  double sdDb = 0;                       // spectral distortion, unquantised vs quantised envelope
  bool lost = false;                     // the decoder treated the frame as erased
  bool decoderMatches = true;            // decoder LSPs equal the encoder's quantised LSPs (good frames)
  bool unstable = false;                 // Levinson-Durbin kept the previous filter
};

// The interface shared by both codecs' front ends.
class LpFrontEnd {
 public:
  virtual ~LpFrontEnd() = default;
  virtual const char* name() const = 0;
  virtual int frame_length() const = 0;  // samples at 8 kHz
  // Analyses frame_length() new samples; `lost` erases the frame at the
  // decoder. False on a library error.
  virtual bool process(const Vsp16s* pcm, bool lost, LpFrame* out) = 0;
  // Nanoseconds spent in library calls so far (processor time of the
  // calling thread where the system measures it).
  double library_ns() const { return libraryNs_; }

 protected:
  double libraryNs_ = 0;
};

// G.729: 10 ms frames; high-pass, 240-sample window, autocorrelation, lag
// window, Levinson-Durbin, LSP conversion and quantisation; the decoder's
// LSF decoding (erased-frame path for lost frames).
std::unique_ptr<LpFrontEnd> make_g729_frontend();
// GSM-AMR at `mode` (a VspSpeechBitRate): 20 ms frames; the mode's windows,
// Levinson-Durbin, LSP conversion and quantisation; the decoder with
// bad-frame concealment.
std::unique_ptr<LpFrontEnd> make_gsmamr_frontend(int mode);

// The GSM-AMR modes with their names ("4.75" .. "12.2").
struct AmrMode {
  int mode;
  const char* kbps;
};
const std::vector<AmrMode>& amr_modes();

// Figures over a run.
struct LpSummary {
  int frames = 0, lost = 0, unstable = 0, mismatches = 0;
  double meanSdDb = 0, maxSdDb = 0;
  double pct2to4 = 0, pctOver4 = 0;  // outliers: share of frames with SD in 2..4 dB and above 4 dB
};
LpSummary summarise(const std::vector<LpFrame>& frames);

}  // namespace vsps::tool
