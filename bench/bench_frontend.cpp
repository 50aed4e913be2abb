// End-to-end frame costs (counter frame_ms: the frame's duration, from which
// the table derives channels per core) and the plain scalar model of the same
// arithmetic (bench/model), timed in the same run. Every model benchmark
// first checks that the model computes what the library computes on the
// same input, and fails (SkipWithError) otherwise.
#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <vector>

#include "bench/bench_data.h"
#include "bench/model/amr_model.h"
#include "bench/model/g729_model.h"
#include "bench/model/ref_ops.h"
#include "gsmamr/amr_tables.h"

namespace {

constexpr int kCheckFrames = 200;
const Vsp16s kLspInit[10] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
const Vsp16s kResetRow[10] = {2339, 4679, 7018, 9358, 11698, 14037, 16377, 18717, 21056, 23396};

// ---- G.729 encoder front end ---------------------------------------------------

struct G729Encoder {
  Vsp8u hpf[24];
  Vsp16s speech[240] = {};
  Vsp16s memory[40];
  Vsp16s lpc[11] = {4096};
  Vsp16s lspOld[10];
  G729Encoder() {
    const Vsp16s coeff[6] = {4096, 7807, -3733, 1899, -3798, 1899};
    legacy90vspsHighPassFilterInit_G729(coeff, hpf);
    for (int k = 0; k < 40; ++k) memory[k] = kResetRow[k % 10];
    std::memcpy(lspOld, kLspInit, sizeof lspOld);
  }
  // One 10 ms frame: the quantised LSP and the two index words.
  void frame(const Vsp16s* pcm, Vsp16s* lspq, Vsp16s* words) {
    std::memmove(speech, speech + 80, 160 * sizeof(Vsp16s));
    std::memcpy(speech + 160, pcm, 80 * sizeof(Vsp16s));
    legacy90vspsHighPassFilter_G729_16s_ISfs(speech + 160, 80, 12, hpf);
    Vsp32s r[11];
    int norm;
    legacy90vspsAutoCorr_NormE_G729_16s32s(speech, r, 11, &norm);
    legacy90vspsLagWindow_G729_32s_I(r + 1, 10);
    Vsp16s rc[10], err;
    legacy90vspsLevinsonDurbin_G729_32s16s(r, 10, lpc, rc, &err);
    Vsp16s lsp[10];
    legacy90vspsLPCToLSP_G729_16s(lpc, lspOld, lsp);
    std::memcpy(lspOld, lsp, sizeof lsp);
    legacy90vspsLSPQuant_G729_16s(lsp, memory, lspq, words);
  }
};

struct G729EncoderModel {
  model::g729::PreProcessState hpf;
  model::g729::QuantState quant;
  int16_t speech[240] = {};
  int16_t lpc[11] = {4096};
  int16_t lspOld[10];
  G729EncoderModel() { std::memcpy(lspOld, kLspInit, sizeof lspOld); }
  void frame(const int16_t* pcm, int16_t* lspq, int16_t* words) {
    std::memmove(speech, speech + 80, 160 * sizeof(int16_t));
    std::memcpy(speech + 160, pcm, 80 * sizeof(int16_t));
    model::g729::pre_process(hpf, speech + 160, 80);
    int16_t rh[11], rl[11], rc[10], lsp[10];
    model::g729::autocorr(speech, 10, rh, rl);
    model::g729::lag_window(10, rh, rl);
    model::g729::levinson(rh, rl, lpc, rc);
    model::g729::az_lsp(lpc, lsp, lspOld);
    std::memcpy(lspOld, lsp, sizeof lsp);
    int codes[4];
    model::g729::qua_lsp(quant, lsp, lspq, codes);
    words[0] = static_cast<int16_t>(codes[0] << 7 | codes[1]);
    words[1] = static_cast<int16_t>(codes[2] << 5 | codes[3]);
  }
};

template <class A, class B>
bool encoders_agree(A& a, B& b) {
  const Vsp16s* pcm = bench::speech8k().data();
  for (int f = 0; f < kCheckFrames; ++f) {
    Vsp16s qa[10], qb[10], wa[2], wb[2];
    a.frame(pcm + 80 * f, qa, wa);
    b.frame(pcm + 80 * f, qb, wb);
    if (std::memcmp(qa, qb, sizeof qa) != 0 || std::memcmp(wa, wb, sizeof wa) != 0) return false;
  }
  return true;
}

template <class Enc>
void run_g729_encoder(benchmark::State& state, bool isModel) {
  if (isModel) {
    G729Encoder lib;
    G729EncoderModel mod;
    if (!encoders_agree(lib, mod)) {
      state.SkipWithError("the scalar model differs from the library");
      return;
    }
  }
  Enc enc;
  const std::vector<Vsp16s>& pcm = bench::speech8k();
  const int frames = static_cast<int>(pcm.size() / 80);
  int f = 0;
  Vsp16s q[10], w[2];
  for (auto _ : state) {
    enc.frame(&pcm[static_cast<std::size_t>(f) * 80], q, w);
    benchmark::DoNotOptimize(q);
    f = f + 1 == frames ? 0 : f + 1;
  }
  state.counters["frame_ms"] = 10;
}
void BM_G729_EncoderFrontEnd(benchmark::State& state) { run_g729_encoder<G729Encoder>(state, false); }
void BM_Model_G729_EncoderFrontEnd(benchmark::State& state) { run_g729_encoder<G729EncoderModel>(state, true); }
BENCHMARK(BM_G729_EncoderFrontEnd);
BENCHMARK(BM_Model_G729_EncoderFrontEnd);

// ---- G.729 decoder LSP path: LSF decoding, LSF to LSP, interpolation, two LP filters

const std::vector<std::array<Vsp16s, 4>>& g729_code_stream() {
  static const std::vector<std::array<Vsp16s, 4>> codes = [] {
    std::vector<std::array<Vsp16s, 4>> out;
    G729Encoder enc;
    const std::vector<Vsp16s>& pcm = bench::speech8k();
    for (std::size_t f = 0; f + 1 < pcm.size() / 80; ++f) {
      Vsp16s q[10], w[2];
      enc.frame(&pcm[f * 80], q, w);
      out.push_back({static_cast<Vsp16s>(w[0] >> 7 & 1), static_cast<Vsp16s>(w[0] & 127),
                     static_cast<Vsp16s>(w[1] >> 5 & 31), static_cast<Vsp16s>(w[1] & 31)});
    }
    return out;
  }();
  return codes;
}

struct G729Decoder {
  Vsp16s memory[40];
  Vsp16s lspOld[10];
  G729Decoder() {
    for (int k = 0; k < 40; ++k) memory[k] = kResetRow[k % 10];
    std::memcpy(lspOld, kLspInit, sizeof lspOld);
  }
  void frame(const Vsp16s* codes, Vsp16s* a) {  // a: 2 x 11
    Vsp16s lsf[10], lsp[10], mid[10];
    legacy90vspsLSFDecode_G729_16s(codes, memory, lsf);
    legacy90vspsLSFToLSP_G729_16s(lsf, lsp);
    legacy90vspsInterpolate_G729_16s(lspOld, lsp, mid, 10);
    legacy90vspsLSPToLPC_G729_16s(mid, a);
    legacy90vspsLSPToLPC_G729_16s(lsp, a + 11);
    std::memcpy(lspOld, lsp, sizeof lsp);
  }
};

struct G729DecoderModel {
  model::g729::QuantState quant;
  int16_t lspOld[10];
  G729DecoderModel() { std::memcpy(lspOld, kLspInit, sizeof lspOld); }
  void frame(const Vsp16s* codes16, int16_t* a) {
    const int codes[4] = {codes16[0], codes16[1], codes16[2], codes16[3]};
    int16_t lsp[10], mid[10];
    model::g729::lsp_decode(quant, codes, lsp);
    for (int i = 0; i < 10; ++i) mid[i] = model::add(model::shr(lspOld[i], 1), model::shr(lsp[i], 1));
    model::g729::lsp_az(mid, a);
    model::g729::lsp_az(lsp, a + 11);
    std::memcpy(lspOld, lsp, sizeof lsp);
  }
};

template <class Dec>
void run_g729_decoder(benchmark::State& state, bool isModel) {
  const auto& codes = g729_code_stream();
  if (isModel) {
    G729Decoder lib;
    G729DecoderModel mod;
    for (int f = 0; f < kCheckFrames; ++f) {
      Vsp16s a1[22], a2[22];
      lib.frame(codes[static_cast<std::size_t>(f)].data(), a1);
      mod.frame(codes[static_cast<std::size_t>(f)].data(), a2);
      if (std::memcmp(a1, a2, sizeof a1) != 0) {
        state.SkipWithError("the scalar model differs from the library");
        return;
      }
    }
  }
  Dec dec;
  std::size_t f = 0;
  Vsp16s a[22];
  for (auto _ : state) {
    dec.frame(codes[f].data(), a);
    benchmark::DoNotOptimize(a);
    f = f + 1 == codes.size() ? 0 : f + 1;
  }
  state.counters["frame_ms"] = 10;
}
void BM_G729_DecoderLspPath(benchmark::State& state) { run_g729_decoder<G729Decoder>(state, false); }
void BM_Model_G729_DecoderLspPath(benchmark::State& state) { run_g729_decoder<G729DecoderModel>(state, true); }
BENCHMARK(BM_G729_DecoderLspPath);
BENCHMARK(BM_Model_G729_DecoderLspPath);

// ---- GSM-AMR encoder front end (20 ms frame) -----------------------------------

struct AmrEncoder {
  int mode;
  Vsp16s speech[320] = {};
  Vsp16s lpc[11] = {4096};
  Vsp16s prevLsp[10];
  Vsp16s pastRq[10] = {};
  explicit AmrEncoder(int m) : mode(m) { std::memcpy(prevLsp, kLspInit, sizeof prevLsp); }
  void frame(const Vsp16s* pcm, Vsp16s* qLsp, Vsp16s* idx) {
    std::memmove(speech, speech + 160, 160 * sizeof(Vsp16s));
    std::memcpy(speech + 160, pcm, 160 * sizeof(Vsp16s));
    const bool mr122 = mode == vspRate12200;
    Vsp32s r[22];
    legacy90vspsAutoCorr_GSMAMR_16s32s(speech + (mr122 ? 40 : 80), r, mode);
    Vsp16s lsp[20];
    for (int v = 0; v < (mr122 ? 2 : 1); ++v) {
      legacy90vspsLevinsonDurbin_GSMAMR_32s16s(r + 11 * v, lpc);
      legacy90vspsLPCToLSP_GSMAMR_16s(lpc, prevLsp, lsp + 10 * v);
      std::memcpy(prevLsp, lsp + 10 * v, sizeof prevLsp);
    }
    legacy90vspsLSPQuant_GSMAMR_16s(lsp, pastRq, qLsp, idx, mode);
  }
};

struct AmrEncoderModel {
  int mode;
  int16_t speech[320] = {};
  int16_t lpc[11] = {4096};
  int16_t prevLsp[10];
  int16_t pastRq[10] = {};
  explicit AmrEncoderModel(int m) : mode(m) { std::memcpy(prevLsp, kLspInit, sizeof prevLsp); }
  void frame(const int16_t* pcm, int16_t* qLsp, int16_t* idx) {
    std::memmove(speech, speech + 160, 160 * sizeof(int16_t));
    std::memcpy(speech + 160, pcm, 160 * sizeof(int16_t));
    const bool mr122 = mode == vspRate12200;
    int16_t rh[2][11], rl[2][11], lsp[20];
    if (mr122) {
      model::amr::autocorr_lag(speech + 40, vsps::gsmamr::kWindow160_80, rh[0], rl[0]);
      model::amr::autocorr_lag(speech + 40, vsps::gsmamr::kWindow232_8, rh[1], rl[1]);
    } else {
      model::amr::autocorr_lag(speech + 80, vsps::gsmamr::kWindow200_40, rh[0], rl[0]);
    }
    for (int v = 0; v < (mr122 ? 2 : 1); ++v) {
      model::amr::levinson(rh[v], rl[v], lpc);
      model::amr::az_lsp(lpc, lsp + 10 * v, prevLsp);
      std::memcpy(prevLsp, lsp + 10 * v, sizeof prevLsp);
    }
    if (mr122)
      model::amr::q_plsf_5(pastRq, lsp, qLsp, idx);
    else
      model::amr::q_plsf_3(pastRq, lsp, qLsp, idx, mode == vspRate4750 || mode == vspRate5150, mode == vspRate7950);
  }
};

template <class Enc>
void run_amr_encoder(benchmark::State& state, bool isModel) {
  const int mode = static_cast<int>(state.range(0));
  const std::vector<Vsp16s>& pcm = bench::speech8k();
  if (isModel) {
    AmrEncoder lib(mode);
    AmrEncoderModel mod(mode);
    for (int f = 0; f < kCheckFrames; ++f) {
      Vsp16s qa[20] = {}, qb[20] = {}, ia[5] = {}, ib[5] = {};
      lib.frame(&pcm[static_cast<std::size_t>(f) * 160], qa, ia);
      mod.frame(&pcm[static_cast<std::size_t>(f) * 160], qb, ib);
      if (std::memcmp(qa, qb, sizeof qa) != 0 || std::memcmp(ia, ib, sizeof ia) != 0) {
        state.SkipWithError("the scalar model differs from the library");
        return;
      }
    }
  }
  Enc enc(mode);
  const int frames = static_cast<int>(pcm.size() / 160);
  int f = 0;
  Vsp16s q[20], idx[5];
  for (auto _ : state) {
    enc.frame(&pcm[static_cast<std::size_t>(f) * 160], q, idx);
    benchmark::DoNotOptimize(q);
    f = f + 1 == frames ? 0 : f + 1;
  }
  state.counters["frame_ms"] = 20;
}
void BM_AMR_EncoderFrontEnd(benchmark::State& state) { run_amr_encoder<AmrEncoder>(state, false); }
void BM_Model_AMR_EncoderFrontEnd(benchmark::State& state) { run_amr_encoder<AmrEncoderModel>(state, true); }
BENCHMARK(BM_AMR_EncoderFrontEnd)->Arg(vspRate4750)->Arg(vspRate12200);
BENCHMARK(BM_Model_AMR_EncoderFrontEnd)->Arg(vspRate4750)->Arg(vspRate12200);

}  // namespace
