// The plain scalar model of the hot functions, under the names of the
// library's benchmarks with "Model_" inserted (BM_Model_G729_LSPQuant is the
// model of BM_G729_LSPQuant, same inputs). Each first checks, on every
// benchmark frame, that the model computes what the library computes.
#include <benchmark/benchmark.h>

#include <array>
#include <cstring>

#include "bench/bench_data.h"
#include "bench/model/amr_model.h"
#include "bench/model/g729_model.h"
#include "bench/model/ref_ops.h"
#include "gsmamr/amr_tables.h"

namespace {

using bench::kFrames;

const bench::G729Frame& g729(int i) { return bench::g729_frames()[static_cast<std::size_t>(i)]; }
const bench::AmrFrame& amr(int i) { return bench::amr_frames()[static_cast<std::size_t>(i)]; }

// Runs `body(frame)` per iteration over the frames after `check(frame)` held
// for every frame.
template <class Check, class Body>
void run(benchmark::State& state, Check check, Body body) {
  for (int i = 0; i < kFrames; ++i)
    if (!check(i)) {
      state.SkipWithError("the scalar model differs from the library");
      return;
    }
  int i = 0;
  for (auto _ : state) {
    body(i);
    i = i + 1 == kFrames ? 0 : i + 1;
  }
}

void BM_Model_G729_AutoCorr_NormE_G729(benchmark::State& state) {
  int16_t rh[11], rl[11];
  run(
      state,
      [&](int i) {
        Vsp32s r[11];
        int norm;
        legacy90vspsAutoCorr_NormE_G729_16s32s(g729(i).buffer, r, 11, &norm);
        model::g729::autocorr(g729(i).buffer, 10, rh, rl);
        for (int k = 0; k < 11; ++k)
          if (r[k] != model::L_Comp(rh[k], rl[k])) return false;
        return true;
      },
      [&](int i) {
        model::g729::autocorr(g729(i).buffer, 10, rh, rl);
        benchmark::DoNotOptimize(rh);
      });
}
BENCHMARK(BM_Model_G729_AutoCorr_NormE_G729);

void BM_Model_G729_HighPassFilter(benchmark::State& state) {
  model::g729::PreProcessState s;
  int16_t x[80];
  run(
      state,
      [&](int i) {
        Vsp8u hpf[24];
        const Vsp16s coeff[6] = {4096, 7807, -3733, 1899, -3798, 1899};
        legacy90vspsHighPassFilterInit_G729(coeff, hpf);
        model::g729::PreProcessState m;
        Vsp16s a[240], b[240];
        std::memcpy(a, g729(i).buffer, sizeof a);
        std::memcpy(b, a, sizeof b);
        legacy90vspsHighPassFilter_G729_16s_ISfs(a, 240, 12, hpf);
        model::g729::pre_process(m, b, 240);
        return std::memcmp(a, b, sizeof a) == 0;
      },
      [&](int i) {
        std::memcpy(x, g729(i).buffer + 160, sizeof x);
        model::g729::pre_process(s, x, 80);
        benchmark::DoNotOptimize(x);
      });
}
BENCHMARK(BM_Model_G729_HighPassFilter);

void split(const Vsp32s* r, int16_t* rh, int16_t* rl) {
  for (int k = 0; k < 11; ++k) model::L_Extract(r[k], &rh[k], &rl[k]);
}

void BM_Model_G729_LevinsonDurbin(benchmark::State& state) {
  int16_t a[11], rc[10];
  run(
      state,
      [&](int i) {
        int16_t rh[11], rl[11];
        Vsp16s la[11], lrc[10], err;
        split(g729(i).r, rh, rl);
        const bool ok = model::g729::levinson(rh, rl, a, rc);
        const bool lok = legacy90vspsLevinsonDurbin_G729_32s16s(g729(i).r, 10, la, lrc, &err) == vspStsNoErr;
        return ok == lok && (!ok || std::memcmp(a, la, sizeof a) == 0);
      },
      [&](int i) {
        int16_t rh[11], rl[11];
        split(g729(i).r, rh, rl);  // the library splits its 32-bit input too
        model::g729::levinson(rh, rl, a, rc);
        benchmark::DoNotOptimize(a);
      });
}
BENCHMARK(BM_Model_G729_LevinsonDurbin);

void BM_Model_G729_LPCToLSP(benchmark::State& state) {
  int16_t lsp[10];
  run(
      state,
      [&](int i) {
        Vsp16s l[10];
        legacy90vspsLPCToLSP_G729_16s(g729(i).lpc, g729(i).lsp, l);
        model::g729::az_lsp(g729(i).lpc, lsp, g729(i).lsp);
        return std::memcmp(l, lsp, sizeof l) == 0;
      },
      [&](int i) {
        model::g729::az_lsp(g729(i).lpc, lsp, g729(i).lsp);
        benchmark::DoNotOptimize(lsp);
      });
}
BENCHMARK(BM_Model_G729_LPCToLSP);

void BM_Model_G729_LSPQuant(benchmark::State& state) {
  model::g729::QuantState s;
  int16_t q[10];
  int codes[4];
  run(
      state,
      [&](int i) {
        Vsp16s mem[40], lq[10], words[2];
        std::memcpy(mem, g729(i).prevFreq, sizeof mem);
        std::memcpy(s.freq_prev, g729(i).prevFreq, sizeof mem);
        legacy90vspsLSPQuant_G729_16s(g729(i).lsp, mem, lq, words);
        model::g729::qua_lsp(s, g729(i).lsp, q, codes);
        return std::memcmp(lq, q, sizeof q) == 0 && std::memcmp(mem, s.freq_prev, sizeof mem) == 0 &&
               words[0] == (codes[0] << 7 | codes[1]) && words[1] == (codes[2] << 5 | codes[3]);
      },
      [&](int i) {
        std::memcpy(s.freq_prev, g729(i).prevFreq, sizeof s.freq_prev);
        model::g729::qua_lsp(s, g729(i).lsp, q, codes);
        benchmark::DoNotOptimize(q);
      });
}
BENCHMARK(BM_Model_G729_LSPQuant);

void BM_Model_G729_LSPToLPC(benchmark::State& state) {
  int16_t a[11];
  run(
      state,
      [&](int i) {
        Vsp16s la[11];
        legacy90vspsLSPToLPC_G729_16s(g729(i).lsp, la);
        model::g729::lsp_az(g729(i).lsp, a);
        return std::memcmp(la, a, sizeof a) == 0;
      },
      [&](int i) {
        model::g729::lsp_az(g729(i).lsp, a);
        benchmark::DoNotOptimize(a);
      });
}
BENCHMARK(BM_Model_G729_LSPToLPC);

void BM_Model_G729_LSFToLSP(benchmark::State& state) {
  int16_t lsp[10];
  run(
      state,
      [&](int i) {
        Vsp16s l[10];
        legacy90vspsLSFToLSP_G729_16s(g729(i).lsf, l);
        model::g729::lsf_lsp2(g729(i).lsf, lsp);
        return std::memcmp(l, lsp, sizeof l) == 0;
      },
      [&](int i) {
        model::g729::lsf_lsp2(g729(i).lsf, lsp);
        benchmark::DoNotOptimize(lsp);
      });
}
BENCHMARK(BM_Model_G729_LSFToLSP);

void BM_Model_G729_LSPToLSF(benchmark::State& state) {
  int16_t lsf[10];
  run(
      state,
      [&](int i) {
        Vsp16s l[10];
        legacy90vspsLSPToLSF_G729_16s(g729(i).lsp, l);
        model::g729::lsp_lsf2(g729(i).lsp, lsf);
        return std::memcmp(l, lsf, sizeof l) == 0;
      },
      [&](int i) {
        model::g729::lsp_lsf2(g729(i).lsp, lsf);
        benchmark::DoNotOptimize(lsf);
      });
}
BENCHMARK(BM_Model_G729_LSPToLSF);

void BM_Model_G729_LSFDecode(benchmark::State& state) {
  model::g729::QuantState s;
  int16_t lsf[10];
  auto codes = [](int i) {
    const Vsp16s* c = g729(i).codes;
    return std::array<int, 4>{c[0], c[1], c[2], c[3]};
  };
  run(
      state,
      [&](int i) {
        Vsp16s mem[40], l[10];
        std::memcpy(mem, g729(i).prevFreq, sizeof mem);
        std::memcpy(s.freq_prev, g729(i).prevFreq, sizeof mem);
        legacy90vspsLSFDecode_G729_16s(g729(i).codes, mem, l);
        model::g729::lsf_decode(s, codes(i).data(), lsf);
        return std::memcmp(l, lsf, sizeof l) == 0 && std::memcmp(mem, s.freq_prev, sizeof mem) == 0;
      },
      [&](int i) {
        std::memcpy(s.freq_prev, g729(i).prevFreq, sizeof s.freq_prev);  // as the library's benchmark
        model::g729::lsf_decode(s, codes(i).data(), lsf);
        benchmark::DoNotOptimize(lsf);
      });
}
BENCHMARK(BM_Model_G729_LSFDecode);

void BM_Model_G729_LSPToLPC_32f(benchmark::State& state) {
  float a[11];
  run(
      state,
      [&](int i) {
        Vsp32f la[11];
        legacy90vspsLSPToLPC_G729_32f(g729(i).lspF, la);
        model::g729::lsp_az_f(g729(i).lspF, a);
        return std::memcmp(la, a, sizeof a) == 0;
      },
      [&](int i) {
        model::g729::lsp_az_f(g729(i).lspF, a);
        benchmark::DoNotOptimize(a);
      });
}
BENCHMARK(BM_Model_G729_LSPToLPC_32f);

void BM_Model_G729_LevinsonDurbin_32f(benchmark::State& state) {
  float a[11], rc[10];
  run(
      state,
      [&](int i) {
        Vsp32f la[11], lrc[10], err = 0;
        legacy90vspsLevinsonDurbin_G729_32f(g729(i).rF, 10, la, lrc, &err);
        const float e = model::g729::levinson_f(g729(i).rF, a, rc);
        return std::memcmp(la, a, sizeof a) == 0 && std::memcmp(lrc, rc, sizeof rc) == 0 &&
               std::memcmp(&err, &e, sizeof e) == 0;
      },
      [&](int i) {
        benchmark::DoNotOptimize(model::g729::levinson_f(g729(i).rF, a, rc));
        benchmark::DoNotOptimize(a);
      });
}
BENCHMARK(BM_Model_G729_LevinsonDurbin_32f);

void BM_Model_G729_LPCToLSP_A(benchmark::State& state) {
  int16_t lsp[10];
  run(
      state,
      [&](int i) {
        Vsp16s l[10];
        legacy90vspsLPCToLSP_G729A_16s(g729(i).lpc, g729(i).lsp, l);
        model::g729::az_lsp_grid(g729(i).lpc, lsp, g729(i).lsp, true);
        return std::memcmp(l, lsp, sizeof l) == 0;
      },
      [&](int i) {
        model::g729::az_lsp_grid(g729(i).lpc, lsp, g729(i).lsp, true);
        benchmark::DoNotOptimize(lsp);
      });
}
BENCHMARK(BM_Model_G729_LPCToLSP_A);

void BM_Model_G729_LSPToLSF_Norm(benchmark::State& state) {
  int16_t lsf[10];
  run(
      state,
      [&](int i) {
        Vsp16s l[10];
        legacy90vspsLSPToLSF_Norm_G729_16s(g729(i).lsp, l);
        model::g729::lsp_lsf(g729(i).lsp, lsf);
        return std::memcmp(l, lsf, sizeof l) == 0;
      },
      [&](int i) {
        model::g729::lsp_lsf(g729(i).lsp, lsf);
        benchmark::DoNotOptimize(lsf);
      });
}
BENCHMARK(BM_Model_G729_LSPToLSF_Norm);

void BM_Model_G729_LSFDecodeErased(benchmark::State& state) {
  model::g729::QuantState s;
  int16_t lsf[10];
  run(
      state,
      [&](int i) {
        Vsp16s mem[40], l[10];
        std::memcpy(mem, g729(i).prevFreq, sizeof mem);
        std::memcpy(l, g729(i).lsf, sizeof l);
        std::memcpy(s.freq_prev, g729(i).prevFreq, sizeof mem);
        legacy90vspsLSFDecodeErased_G729_16s(g729(i).codes[0], mem, l);
        model::g729::lsf_decode_erased(s, g729(i).codes[0], g729(i).lsf);
        return std::memcmp(mem, s.freq_prev, sizeof mem) == 0 && std::memcmp(l, g729(i).lsf, sizeof l) == 0;
      },
      [&](int i) {
        std::memcpy(s.freq_prev, g729(i).prevFreq, sizeof s.freq_prev);  // as the library's benchmark
        std::memcpy(lsf, g729(i).lsf, sizeof lsf);
        model::g729::lsf_decode_erased(s, g729(i).codes[0], lsf);
        benchmark::DoNotOptimize(s.freq_prev);
      });
}
BENCHMARK(BM_Model_G729_LSFDecodeErased);

void BM_Model_AMR_AutoCorr(benchmark::State& state) {
  const bool mr122 = state.range(0) == vspRate12200;
  int16_t rh[2][11], rl[2][11];
  auto body = [&](int i) {
    if (mr122) {
      model::amr::autocorr_lag(amr(i).buffer, vsps::gsmamr::kWindow160_80, rh[0], rl[0]);
      model::amr::autocorr_lag(amr(i).buffer, vsps::gsmamr::kWindow232_8, rh[1], rl[1]);
    } else {
      model::amr::autocorr_lag(amr(i).buffer, vsps::gsmamr::kWindow200_40, rh[0], rl[0]);
    }
  };
  run(
      state,
      [&](int i) {
        Vsp32s r[22];
        legacy90vspsAutoCorr_GSMAMR_16s32s(amr(i).buffer, r, static_cast<int>(state.range(0)));
        body(i);
        for (int v = 0; v < (mr122 ? 2 : 1); ++v)
          for (int k = 0; k < 11; ++k) {
            int16_t h, l;
            model::L_Extract(r[11 * v + k], &h, &l);  // bit 0 of r[0] is not part of the DPF value
            if (h != rh[v][k] || l != rl[v][k]) return false;
          }
        return true;
      },
      [&](int i) {
        body(i);
        benchmark::DoNotOptimize(rh);
      });
}
BENCHMARK(BM_Model_AMR_AutoCorr)->Arg(vspRate4750)->Arg(vspRate12200);

void BM_Model_AMR_LPCToLSP(benchmark::State& state) {
  int16_t lsp[10];
  run(
      state,
      [&](int i) {
        Vsp16s l[10];
        legacy90vspsLPCToLSP_GSMAMR_16s(amr(i).lpc, amr(i).lsp, l);
        model::amr::az_lsp(amr(i).lpc, lsp, amr(i).lsp);
        return std::memcmp(l, lsp, sizeof l) == 0;
      },
      [&](int i) {
        model::amr::az_lsp(amr(i).lpc, lsp, amr(i).lsp);
        benchmark::DoNotOptimize(lsp);
      });
}
BENCHMARK(BM_Model_AMR_LPCToLSP);

void BM_Model_AMR_LSPQuant(benchmark::State& state) {
  const int mode = static_cast<int>(state.range(0));
  const bool mr122 = mode == vspRate12200;
  int16_t pastRq[10] = {}, q[20], idx[5];
  auto body = [&](int i) {
    if (mr122)
      model::amr::q_plsf_5(pastRq, amr(i).lsp122, q, idx);
    else
      model::amr::q_plsf_3(pastRq, amr(i).lsp, q, idx, mode == vspRate4750, mode == vspRate7950);
  };
  Vsp16s libRq[10] = {};
  run(
      state,
      [&](int i) {
        Vsp16s lq[20] = {}, lidx[5] = {};
        legacy90vspsLSPQuant_GSMAMR_16s(mr122 ? amr(i).lsp122 : amr(i).lsp, libRq, lq, lidx, mode);
        std::memset(q, 0, sizeof q);
        std::memset(idx, 0, sizeof idx);
        body(i);
        return std::memcmp(lq, q, sizeof q) == 0 && std::memcmp(lidx, idx, sizeof idx) == 0 &&
               std::memcmp(libRq, pastRq, sizeof pastRq) == 0;
      },
      [&](int i) {
        body(i);
        benchmark::DoNotOptimize(q);
      });
}
BENCHMARK(BM_Model_AMR_LSPQuant)->Arg(vspRate4750)->Arg(vspRate7950)->Arg(vspRate12200);

}  // namespace
