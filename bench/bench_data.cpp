// Builds the benchmark inputs once with the library (see bench_data.h).
#include "bench/bench_data.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "tools/speech_signal.h"

namespace bench {

namespace {
const Vsp16s kResetRow[10] = {2339, 4679, 7018, 9358, 11698, 14037, 16377, 18717, 21056, 23396};
const Vsp16s kLspInit[10] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};

void must(VspStatus st) {
  if (st < 0) std::abort();
}
}  // namespace

const std::vector<Vsp16s>& speech8k() {
  static const std::vector<Vsp16s> s = [] {
    const std::vector<int16_t> v = vsps::signals::speech_like(10.0, 8000, 3);
    return std::vector<Vsp16s>(v.begin(), v.end());
  }();
  return s;
}

const std::vector<Vsp16s>& speech16k() {
  static const std::vector<Vsp16s> s = [] {
    const std::vector<int16_t> v = vsps::signals::speech_like(10.0, 16000, 3);
    return std::vector<Vsp16s>(v.begin(), v.end());
  }();
  return s;
}

const std::vector<G729Frame>& g729_frames() {
  static const std::vector<G729Frame> frames = [] {
    std::vector<G729Frame> out;
    const std::vector<Vsp16s>& pcm = speech8k();
    Vsp8u hpf[24];
    const Vsp16s coeff[6] = {4096, 7807, -3733, 1899, -3798, 1899};
    must(legacy90vspsHighPassFilterInit_G729(coeff, hpf));
    Vsp16s speech[240] = {}, memory[40], lpc[11] = {4096}, lspOld[10];
    for (int k = 0; k < 40; ++k) memory[k] = kResetRow[k % 10];
    std::memcpy(lspOld, kLspInit, sizeof lspOld);
    // Skip the first half second (the signal's onset), keep kFrames voiced-and-unvoiced frames.
    for (int f = 0; static_cast<int>(out.size()) < kFrames; ++f) {
      std::memmove(speech, speech + 80, 160 * sizeof(Vsp16s));
      std::memcpy(speech + 160, &pcm[static_cast<std::size_t>(f) * 80], 80 * sizeof(Vsp16s));
      must(legacy90vspsHighPassFilter_G729_16s_ISfs(speech + 160, 80, 12, hpf));
      G729Frame fr{};
      std::memcpy(fr.buffer, speech, sizeof speech);
      std::memcpy(fr.prevFreq, memory, sizeof memory);
      int norm = 0;
      must(legacy90vspsAutoCorr_NormE_G729_16s32s(speech, fr.r, 11, &norm));
      must(legacy90vspsLagWindow_G729_32s_I(fr.r + 1, 10));
      Vsp16s rc[10], err = 0;
      legacy90vspsLevinsonDurbin_G729_32s16s(fr.r, 10, lpc, rc, &err);  // unstable: keeps the last filter
      std::memcpy(fr.lpc, lpc, sizeof lpc);
      must(legacy90vspsLPCToLSP_G729_16s(lpc, lspOld, fr.lsp));
      std::memcpy(lspOld, fr.lsp, sizeof lspOld);
      must(legacy90vspsLSPToLSF_G729_16s(fr.lsp, fr.lsf));
      Vsp16s qLsp[10], words[2];
      must(legacy90vspsLSPQuant_G729_16s(fr.lsp, memory, qLsp, words));
      fr.codes[0] = static_cast<Vsp16s>(words[0] >> 7 & 1);
      fr.codes[1] = static_cast<Vsp16s>(words[0] & 127);
      fr.codes[2] = static_cast<Vsp16s>(words[1] >> 5 & 31);
      fr.codes[3] = static_cast<Vsp16s>(words[1] & 31);
      for (int k = 0; k < 11; ++k) {
        fr.rF[k] = static_cast<float>(fr.r[k]) / 2147483648.0f;
        fr.lpcF[k] = static_cast<float>(fr.lpc[k]) / 4096.0f;
      }
      for (int k = 0; k < 10; ++k) {
        fr.lspF[k] = static_cast<float>(fr.lsp[k]) / 32768.0f;
        fr.lsfF[k] = static_cast<float>(fr.lsf[k]) / 8192.0f;
      }
      for (int k = 0; k < 40; ++k) fr.prevFreqF[k] = static_cast<float>(fr.prevFreq[k]) / 8192.0f;
      for (int n = 0; n < 240; ++n) fr.windowed[n] = static_cast<Vsp16s>(fr.buffer[n] / 2);
      if (f >= 50 && f % 3 == 0) out.push_back(fr);
    }
    return out;
  }();
  return frames;
}

const std::vector<AmrFrame>& amr_frames() {
  static const std::vector<AmrFrame> frames = [] {
    std::vector<AmrFrame> out;
    const std::vector<Vsp16s>& pcm = speech8k();
    Vsp16s speech[320] = {}, lpc[11] = {4096}, lspOld[10], pastRq475[10] = {}, pastRq122[10] = {};
    std::memcpy(lspOld, kLspInit, sizeof lspOld);
    for (int f = 0; static_cast<int>(out.size()) < kFrames; ++f) {
      std::memmove(speech, speech + 160, 160 * sizeof(Vsp16s));
      std::memcpy(speech + 160, &pcm[static_cast<std::size_t>(f) * 160], 160 * sizeof(Vsp16s));
      AmrFrame fr{};
      std::memcpy(fr.buffer, speech + 80, sizeof fr.buffer);
      Vsp32s r[11];
      must(legacy90vspsAutoCorr_GSMAMR_16s32s(speech + 80, r, vspRate4750));
      legacy90vspsLevinsonDurbin_GSMAMR_32s16s(r, lpc);
      std::memcpy(fr.lpc, lpc, sizeof lpc);
      must(legacy90vspsLPCToLSP_GSMAMR_16s(lpc, lspOld, fr.lsp));
      must(legacy90vspsAutoCorr_GSMAMR_16s32s(speech + 40, fr.r122, vspRate12200));
      for (int v = 0; v < 2; ++v) {
        Vsp16s a[11];
        std::memcpy(a, lpc, sizeof a);
        legacy90vspsLevinsonDurbin_GSMAMR_32s16s(fr.r122 + 11 * v, a);
        must(legacy90vspsLPCToLSP_GSMAMR_16s(a, fr.lsp, fr.lsp122 + 10 * v));
      }
      std::memcpy(lspOld, fr.lsp, sizeof lspOld);
      Vsp16s q[20];
      must(legacy90vspsLSPQuant_GSMAMR_16s(fr.lsp, pastRq475, q, fr.idx475, vspRate4750));
      must(legacy90vspsLSPQuant_GSMAMR_16s(fr.lsp122, pastRq122, q, fr.idx122, vspRate12200));
      if (f >= 25 && f % 2 == 0) out.push_back(fr);
    }
    return out;
  }();
  return frames;
}

}  // namespace bench
