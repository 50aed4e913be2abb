#include "tools/lp_frontend.h"

#include <algorithm>

#include "tools/cpu_clock.h"
#include "tools/lp_metrics.h"

namespace vsps::tool {

namespace {

double now_ns() { return thread_cpu_ns(); }
double ns_since(double t0) { return now_ns() - t0; }

// Initial LSPs of both codecs' encoders and decoders (cosine domain, Q15).
constexpr Vsp16s kLspResetQ15[10] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};

// The spectral distortion of a frame: LP filters rebuilt from both LSP sets.
double frame_sd_db(const std::array<Vsp16s, 10>& lsp, const std::array<Vsp16s, 10>& lspq, bool* ok) {
  Vsp16s aQ12[11], aqQ12[11];
  *ok = legacy90vspsLSPToLPC_G729_16s(lsp.data(), aQ12) >= 0 && legacy90vspsLSPToLPC_G729_16s(lspq.data(), aqQ12) >= 0;
  return *ok ? spectral_distortion_db(aQ12, aqQ12) : 0.0;
}

class G729FrontEnd final : public LpFrontEnd {
 public:
  static constexpr int kFrame = 80;    // 10 ms at 8 kHz
  static constexpr int kWindow = 240;  // 120 past, 80 current, 40 look-ahead samples
  static constexpr int kMaOrder = 4;   // frames of MA predictor memory

  bool init() {
    static constexpr Vsp16s kHighPassQ12[6] = {4096, 7807, -3733, 1899, -3798, 1899};  // 140 Hz second order
    static constexpr Vsp16s kMaResetQ13[10] = {2339, 4679, 7018, 9358, 11698, 14037, 16377, 18717, 21056, 23396};
    int size = 0;
    if (legacy90vspsHighPassFilterSize_G729(&size) != vspStsNoErr) return false;
    hpf_.assign(static_cast<std::size_t>(size), 0);
    if (legacy90vspsHighPassFilterInit_G729(kHighPassQ12, hpf_.data()) != vspStsNoErr) return false;
    for (int k = 0; k < 40; ++k) encMaQ13_[k] = decMaQ13_[k] = kMaResetQ13[k % 10];
    std::copy(kLspResetQ15, kLspResetQ15 + 10, lspOldQ15_);
    return true;
  }
  const char* name() const override { return "G.729"; }
  int frame_length() const override { return kFrame; }

  bool process(const Vsp16s* pcm, bool lost, LpFrame* out) override {
    const double t0 = now_ns();
    std::copy(speech_ + kFrame, speech_ + kWindow, speech_);
    Vsp16s* current = speech_ + kWindow - kFrame;
    std::copy(pcm, pcm + kFrame, current);
    Vsp32s r[11];
    int norm = 0;
    Vsp16s rcQ15[10], wordsOut[2], energy = 0;
    if (legacy90vspsHighPassFilter_G729_16s_ISfs(current, kFrame, 12, hpf_.data()) != vspStsNoErr ||
        legacy90vspsAutoCorr_NormE_G729_16s32s(speech_, r, 11, &norm) != vspStsNoErr ||
        legacy90vspsLagWindow_G729_32s_I(r + 1, 10) != vspStsNoErr)
      return false;
    const VspStatus lev = legacy90vspsLevinsonDurbin_G729_32s16s(r, 10, lpcQ12_, rcQ15, &energy);
    if (lev < 0) return false;
    out->unstable = lev == vspStsLPCUnstable;  // lpcQ12_ keeps the previous filter
    if (legacy90vspsLPCToLSP_G729_16s(lpcQ12_, lspOldQ15_, out->lspQ15.data()) != vspStsNoErr ||
        legacy90vspsLSPQuant_G729_16s(out->lspQ15.data(), encMaQ13_, out->quantLspQ15.data(), wordsOut) < 0)
      return false;
    std::copy(out->lspQ15.begin(), out->lspQ15.end(), lspOldQ15_);
    // The two transmitted words carry L0 (1 bit), L1 (7), L2 (5), L3 (5).
    const Vsp16s codes[4] = {static_cast<Vsp16s>(wordsOut[0] >> 7 & 1), static_cast<Vsp16s>(wordsOut[0] & 127),
                             static_cast<Vsp16s>(wordsOut[1] >> 5 & 31), static_cast<Vsp16s>(wordsOut[1] & 31)};
    out->codes.assign(codes, codes + 4);

    // Decoder: a good frame decodes the codes; an erased one repeats the last
    // good LSFs and keeps the MA memory consistent.
    if (lost) {
      if (legacy90vspsLSFDecodeErased_G729_16s(lastMode_, decMaQ13_, lsfQ13_) != vspStsNoErr) return false;
      sinceLoss_ = 0;
    } else {
      if (legacy90vspsLSFDecode_G729_16s(codes, decMaQ13_, lsfQ13_) < 0) return false;
      lastMode_ = codes[0];
      ++sinceLoss_;
    }
    Vsp16s decodedQ15[10];
    if (legacy90vspsLSFToLSP_G729_16s(lsfQ13_, decodedQ15) < 0) return false;
    libraryNs_ += ns_since(t0);
    out->lost = lost;
    out->decoderMatches =
        lost || sinceLoss_ <= kMaOrder || std::equal(decodedQ15, decodedQ15 + 10, out->quantLspQ15.begin());
    bool ok = true;
    out->sdDb = frame_sd_db(out->lspQ15, out->quantLspQ15, &ok);
    return ok;
  }

 private:
  std::vector<Vsp8u> hpf_;
  Vsp16s speech_[kWindow] = {};
  Vsp16s lpcQ12_[11] = {4096};
  Vsp16s lspOldQ15_[10];
  Vsp16s encMaQ13_[40], decMaQ13_[40];
  Vsp16s lsfQ13_[10] = {};
  int lastMode_ = 0;
  int sinceLoss_ = kMaOrder + 1;
};

class GsmAmrFrontEnd final : public LpFrontEnd {
 public:
  static constexpr int kFrame = 160;  // 20 ms at 8 kHz

  explicit GsmAmrFrontEnd(int mode) : mode_(mode) {
    static constexpr Vsp16s kPastLsfResetQ15[10] = {1384, 2077, 3420, 5108, 6742, 8122, 9863, 11092, 12714, 13701};
    std::copy(kLspResetQ15, kLspResetQ15 + 10, prevLspQ15_);
    std::copy(kLspResetQ15, kLspResetQ15 + 10, decLspQ15_);
    std::copy(kPastLsfResetQ15, kPastLsfResetQ15 + 10, pastLsfQ15_);
    for (const AmrMode& m : amr_modes())
      if (m.mode == mode) name_ = std::string("GSM-AMR ") + m.kbps;
  }
  const char* name() const override { return name_.c_str(); }
  int frame_length() const override { return kFrame; }

  bool process(const Vsp16s* pcm, bool lost, LpFrame* out) override {
    const double t0 = now_ns();
    const bool mr122 = mode_ == vspRate12200;
    std::copy(speech_ + kFrame, speech_ + 2 * kFrame, speech_);
    std::copy(pcm, pcm + kFrame, speech_ + kFrame);
    Vsp32s r[22];
    Vsp16s lspQ15[20], quantQ15[20], idx[5] = {}, subframesQ15[40];
    // The 240-sample analysis buffer ends with the current frame; at 12.2
    // kbit/s it starts 40 samples earlier (two asymmetric windows, two filters).
    if (legacy90vspsAutoCorr_GSMAMR_16s32s(speech_ + (mr122 ? 40 : 80), r, mode_) != vspStsNoErr) return false;
    out->unstable = false;
    for (int v = 0; v < (mr122 ? 2 : 1); ++v) {
      const VspStatus lev = legacy90vspsLevinsonDurbin_GSMAMR_32s16s(r + 11 * v, lpcQ12_);
      if (lev < 0) return false;
      out->unstable = out->unstable || lev == vspStsLPCUnstable;
      if (legacy90vspsLPCToLSP_GSMAMR_16s(lpcQ12_, prevLspQ15_, lspQ15 + 10 * v) != vspStsNoErr) return false;
      std::copy(lspQ15 + 10 * v, lspQ15 + 10 * v + 10, prevLspQ15_);
    }
    if (legacy90vspsLSPQuant_GSMAMR_16s(lspQ15, encPredQ15_, quantQ15, idx, mode_) != vspStsNoErr) return false;
    const int last = mr122 ? 10 : 0;  // the frame's own (last) filter
    std::copy(lspQ15 + last, lspQ15 + last + 10, out->lspQ15.begin());
    std::copy(quantQ15 + last, quantQ15 + last + 10, out->quantLspQ15.begin());
    out->codes.assign(idx, idx + (mr122 ? 5 : 3));

    if (legacy90vspsQuantLSPDecode_GSMAMR_16s(idx, decPredQ15_, pastLsfQ15_, decLspQ15_, subframesQ15, lost ? 1 : 0,
                                              mode_) != vspStsNoErr)
      return false;
    libraryNs_ += ns_since(t0);
    // The decoder's prediction residual memory catches up one good frame after a loss.
    out->lost = lost;
    out->decoderMatches = lost || afterLoss_ || std::equal(decLspQ15_, decLspQ15_ + 10, out->quantLspQ15.begin());
    afterLoss_ = lost;
    bool ok = true;
    out->sdDb = frame_sd_db(out->lspQ15, out->quantLspQ15, &ok);
    return ok;
  }

 private:
  int mode_;
  std::string name_ = "GSM-AMR";
  Vsp16s speech_[2 * kFrame] = {};
  Vsp16s lpcQ12_[11] = {4096};
  Vsp16s prevLspQ15_[10], decLspQ15_[10], pastLsfQ15_[10];
  Vsp16s encPredQ15_[10] = {}, decPredQ15_[10] = {};  // MA prediction residual memories
  bool afterLoss_ = false;
};

}  // namespace

std::unique_ptr<LpFrontEnd> make_g729_frontend() {
  auto fe = std::make_unique<G729FrontEnd>();
  return fe->init() ? std::move(fe) : nullptr;
}

std::unique_ptr<LpFrontEnd> make_gsmamr_frontend(int mode) { return std::make_unique<GsmAmrFrontEnd>(mode); }

const std::vector<AmrMode>& amr_modes() {
  static const std::vector<AmrMode> modes = {{vspRate4750, "4.75"},  {vspRate5150, "5.15"}, {vspRate5900, "5.9"},
                                             {vspRate6700, "6.7"},   {vspRate7400, "7.4"},  {vspRate7950, "7.95"},
                                             {vspRate10200, "10.2"}, {vspRate12200, "12.2"}};
  return modes;
}

LpSummary summarise(const std::vector<LpFrame>& frames) {
  LpSummary s;
  s.frames = static_cast<int>(frames.size());
  int in2to4 = 0, over4 = 0;
  double sum = 0;
  for (const LpFrame& f : frames) {
    s.lost += f.lost;
    s.unstable += f.unstable;
    s.mismatches += !f.decoderMatches;
    sum += f.sdDb;
    s.maxSdDb = std::max(s.maxSdDb, f.sdDb);
    in2to4 += f.sdDb > 2.0 && f.sdDb <= 4.0;
    over4 += f.sdDb > 4.0;
  }
  if (s.frames > 0) {
    s.meanSdDb = sum / s.frames;
    s.pct2to4 = 100.0 * in2to4 / s.frames;
    s.pctOver4 = 100.0 * over4 / s.frames;
  }
  return s;
}

}  // namespace vsps::tool
