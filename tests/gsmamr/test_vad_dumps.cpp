// GSM-AMR VAD option 1, VAD option 2 and the DTX encoder against the
// reference encoder's per-frame dumps (../shared/golden/gsmamr-frames):
// every frame of the four DTX files, fed the dumped pre-processed speech
// (hp), unquantised LSPs (lsp) and open-loop lags (Top). The open-loop
// hooks get their correlations from a small routine below written from the
// open-loop search's definition (10.2 kbit/s: the weighted search with its
// lag history), run on the dumped weighted speech (wsp) and closed-loop
// lags (lag). The state words are read from the blocks (their layout is the
// library's) and compared with the dump lines v1lvl, v1snr, v1st, v1bckr,
// v1ave, v1post, v2, v2chdb, v2noise, v2ltp, dtx and sid.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "gsmamr/dtx_enc_state.h"
#include "gsmamr/vad1_state.h"
#include "gsmamr/vad2_state.h"
#include "tests/support/golden.h"
#include "vsps.h"

namespace {

namespace fs = std::filesystem;
namespace amr = vsps::test_ns::amr;
using Frame = std::map<std::string, std::vector<int64_t>>;  // "key sf" -> values

std::vector<Frame> read_dump(const fs::path& path) {
  std::vector<Frame> frames;
  std::ifstream f(path);
  std::string line, side, key;
  while (std::getline(f, line)) {
    std::istringstream in(line);
    int frame = 0, sf = 0;
    if (!(in >> side >> frame >> sf >> key) || side != "E") continue;
    if (frame >= static_cast<int>(frames.size())) frames.resize(static_cast<std::size_t>(frame) + 1);
    key.push_back(' ');
    key.append(std::to_string(sf));
    std::vector<int64_t>& v = frames[static_cast<std::size_t>(frame)][key];
    for (int64_t x; in >> x;) v.push_back(x);
  }
  return frames;
}

constexpr int kRate[8] = {0, 1, 3, 6, 7, 8, 11, 12};  // standard mode -> rate selector

// Open-loop correlations of one search (scaling, correlation per lag, the
// three lag sections, hp_max), from the search's definition. sig[-143..L-1].
struct OpenLoop {
  int32_t max[3], energy[3];
  int best[3];
  int16_t hp_max;
  std::vector<int32_t> corr;  // by lag
  std::vector<int16_t> scal;  // the scaled signal, 143 samples of history first
};

int16_t sat16(int64_t v) { return static_cast<int16_t>(v > 32767 ? 32767 : (v < -32768 ? -32768 : v)); }
int32_t sat32(int64_t v) { return static_cast<int32_t>(v > INT32_MAX ? INT32_MAX : (v < INT32_MIN ? INT32_MIN : v)); }
int32_t mac(int32_t acc, int16_t a, int16_t b) { return sat32(int64_t(acc) + 2 * int64_t(a) * b); }
int32_t abs32(int32_t v) { return v == INT32_MIN ? INT32_MAX : (v < 0 ? -v : v); }
int64_t shift32(int32_t v, int n) { return n >= 0 ? int64_t(v) << n : int64_t(v) >> -n; }  // no saturation needed here
int norm32(int32_t v) {  // left shifts normalising v (0 for 0)
  int n = 0;
  if (v == 0) return 0;
  while (v > -0x40000000 - 1 && v < 0x40000000) v *= 2, ++n;
  return n;
}

OpenLoop open_loop(const int16_t* sig, int L, int pit_min) {
  OpenLoop r{};
  int32_t t0 = 0;
  for (int i = -143; i < L; ++i) t0 = mac(t0, sig[i], sig[i]);
  r.scal.resize(static_cast<std::size_t>(143 + L));
  int16_t* scal = r.scal.data() + 143;
  for (int i = -143; i < L; ++i)
    scal[i] = t0 == INT32_MAX ? static_cast<int16_t>(sig[i] >> 3) : (t0 < (1 << 20) ? sat16(sig[i] * 8) : sig[i]);
  std::vector<int32_t>& corr = r.corr;
  corr.assign(144, 0);
  for (int T = pit_min; T <= 143; ++T)
    for (int j = 0; j < L; ++j)
      corr[static_cast<std::size_t>(T)] = mac(corr[static_cast<std::size_t>(T)], scal[j], scal[j - T]);
  const int hi[3] = {143, 4 * pit_min - 1, 2 * pit_min - 1}, lo[3] = {4 * pit_min, 2 * pit_min, pit_min};
  for (int s = 0; s < 3; ++s) {
    int32_t max = INT32_MIN;
    int p = hi[s];
    for (int T = hi[s]; T >= lo[s]; --T)
      if (corr[static_cast<std::size_t>(T)] >= max) max = corr[static_cast<std::size_t>(T)], p = T;
    int32_t e = 0;
    for (int j = 0; j < L; ++j) e = mac(e, scal[j - p], scal[j - p]);
    r.max[s] = max, r.energy[s] = e, r.best[s] = p;
  }
  int32_t max = INT32_MIN;
  for (int i = 142; i > pit_min; --i) {
    const std::size_t u = static_cast<std::size_t>(i);
    const int32_t t = abs32(sat32(int64_t(sat32(2 * int64_t(corr[u]) - corr[u + 1])) - corr[u - 1]));
    if (t >= max) max = t;
  }
  int32_t e0 = 0, e1 = 0;
  for (int i = 0; i < L; ++i) e0 = mac(e0, scal[i], scal[i]), e1 = mac(e1, scal[i], scal[i - 1]);
  const int32_t t = abs32(sat32(int64_t(sat32(2 * int64_t(e0))) - sat32(2 * int64_t(e1))));
  const int s1 = norm32(max) - 1, s2 = norm32(t);
  const int16_t m16 = static_cast<int16_t>(shift32(max, s1) >> 16), t16 = static_cast<int16_t>(shift32(t, s2) >> 16);
  const int16_t cor = t16 != 0 ? static_cast<int16_t>(m16 >= t16 ? 32767 : (int32_t(m16) << 15) / t16) : int16_t(0);
  const int shift = s1 - s2;
  r.hp_max = shift >= 0 ? static_cast<int16_t>(cor >> (shift > 15 ? 15 : shift))
                        : sat16(int64_t(cor) << (-shift > 16 ? 16 : -shift));
  return r;
}

// The 10.2 kbit/s weighted search on the correlations of open_loop: lag and
// neighbourhood weights, the median of the last five lags; writes the
// record's first and chosen pairs, returns the lag.
struct WeightedOl {
  int16_t med = 40, ada_w = 0, wght_flg = 0, lags[5] = {40, 40, 40, 40, 40}, gain_flg[2] = {0, 0};
};
int32_t mpy_32_16(int32_t L, int16_t n) {
  const int16_t hi = static_cast<int16_t>(L >> 16), lo = static_cast<int16_t>((L & 0xFFFF) >> 1);
  return sat32(int64_t(sat32(2 * int64_t(hi) * n)) + 2 * ((int32_t(lo) * n) >> 15));
}
int16_t round16(int32_t L) { return static_cast<int16_t>(sat32(int64_t(L) + 0x8000) >> 16); }

int weighted_search(WeightedOl& w, const OpenLoop& ol, const std::vector<int16_t>& cw, int L, int k, Vsp32s* rec) {
  int32_t max = INT32_MIN;
  int p = 143, we = 123 + 143 - w.med;
  for (int T = 143; T >= 20; --T) {
    int32_t t = mpy_32_16(ol.corr[static_cast<std::size_t>(T)], cw[static_cast<std::size_t>(107 + T)]);
    if (w.wght_flg > 0) t = mpy_32_16(t, cw[static_cast<std::size_t>(we--)]);
    if (t >= max) max = t, p = T;
  }
  const int16_t* scal = ol.scal.data() + 143;
  int32_t t0 = 0, t1 = 0;
  for (int j = 0; j < L; ++j) t0 = mac(t0, scal[j], scal[j - p]), t1 = mac(t1, scal[j - p], scal[j - p]);
  rec[0] = rec[6] = t0, rec[1] = rec[7] = t1;
  w.gain_flg[k] = round16(sat32(int64_t(t0) - 2 * int64_t(round16(t1)) * 13107));
  if (w.gain_flg[k] > 0) {
    for (int i = 4; i > 0; --i) w.lags[i] = w.lags[i - 1];
    w.lags[0] = static_cast<int16_t>(p);
    int16_t tmp[5], order[5];
    std::copy(w.lags, w.lags + 5, tmp);
    for (int i = 0; i < 5; ++i) {  // median: repeatedly the largest (">=", the last of equals)
      int16_t m = -32767, ix = 0;
      for (int16_t j = 0; j < 5; ++j)
        if (tmp[j] >= m) m = tmp[j], ix = j;
      tmp[ix] = -32768, order[i] = ix;
    }
    w.med = w.lags[order[2]], w.ada_w = 32767;
  } else {
    w.med = static_cast<int16_t>(p), w.ada_w = static_cast<int16_t>((w.ada_w * 29491) >> 15);
  }
  w.wght_flg = w.ada_w < 9830 ? 0 : 1;
  return p;
}

std::vector<int16_t> read_table(const fs::path& path) {
  std::ifstream f(path);
  std::vector<int16_t> v;
  for (std::string line; std::getline(f, line);)
    if (!line.empty() && line[0] != '#') v.push_back(static_cast<int16_t>(std::stoi(line)));
  return v;
}

struct Counts {
  std::map<std::string, int> match, total;
  void check(const std::string& key, const std::vector<int64_t>& want, const std::vector<int64_t>& got, int frame) {
    ++total[key];
    if (want == got)
      ++match[key];
    else if (total[key] - match[key] <= 3)
      ADD_FAILURE() << key << " differs in frame " << frame;
  }
};

const std::vector<int64_t>& get(const Frame& fr, const std::string& key) {
  static const std::vector<int64_t> none;
  const auto it = fr.find(key);
  return it == fr.end() ? none : it->second;
}

template <class T>
std::vector<int64_t> v64(const T* p, int n) {
  return std::vector<int64_t>(p, p + n);
}

struct DumpCase {
  const char* name;
  const char* file;
  int vad;  // 1 or 2
};

void PrintTo(const DumpCase& c, std::ostream* os) { *os << c.file; }

class VadDumps : public ::testing::TestWithParam<DumpCase> {};

TEST_P(VadDumps, EveryFrame) {
  const fs::path path = fs::path(vt::testvectors_dir()) / ".." / "golden" / "gsmamr-frames" / GetParam().file;
  if (vt::testvectors_dir().empty() || !fs::exists(path)) GTEST_SKIP() << "dump not found: " << path;
  const std::vector<Frame> frames = read_dump(path);
  ASSERT_GE(frames.size(), 100u);
  const bool vad1 = GetParam().vad == 1;

  int n1 = 0, n2 = 0, nd = 0;
  legacy90vspsVAD1StateSize_GSMAMR(&n1);
  legacy90vspsVAD2StateSize_GSMAMR(&n2);
  legacy90vspsDTXEncStateSize_GSMAMR(&nd);
  std::vector<Vsp8u> st1(static_cast<std::size_t>(n1)), st2(static_cast<std::size_t>(n2)),
      dtx(static_cast<std::size_t>(nd));
  ASSERT_EQ(legacy90vspsVAD1Init_GSMAMR(st1.data()), vspStsNoErr);
  ASSERT_EQ(legacy90vspsVAD2Init_GSMAMR(st2.data()), vspStsNoErr);
  ASSERT_EQ(legacy90vspsDTXEncInit_GSMAMR(dtx.data()), vspStsNoErr);
  auto* s1 = reinterpret_cast<amr::Vad1State*>(st1.data());
  auto* s2 = reinterpret_cast<amr::Vad2State*>(st2.data());
  auto* sd = reinterpret_cast<amr::DtxEncState*>(dtx.data());

  const std::vector<int16_t> cw = read_table(path.parent_path() / ".." / ".." / "tables" / "gsmamr" / "corrweight.txt");
  ASSERT_EQ(cw.size(), 251u);
  WeightedOl wol;
  std::vector<int16_t> speech(200, 0), wsp(143 + 160, 0);
  Vsp16s pastQuaEn[8] = {};
  Counts c;
  for (std::size_t n = 0; n < frames.size(); ++n) {
    const Frame& fr = frames[n];
    const int frame = static_cast<int>(n);
    const std::vector<int64_t>& hp = get(fr, "hp -1");
    std::copy(speech.begin() + 160, speech.end(), speech.begin());
    for (int i = 0; i < 160; ++i)
      speech[40 + static_cast<std::size_t>(i)] = static_cast<int16_t>(hp[static_cast<std::size_t>(i)]);
    const int mode = kRate[get(fr, "tx -1")[1]];

    int vad = 0;
    if (vad1) {
      ASSERT_EQ(legacy90vspsVAD1_GSMAMR_16s(speech.data(), st1.data(), &vad), vspStsNoErr);
      c.check("v1lvl", get(fr, "v1lvl -1"), v64(s1->old_level, 9), frame);
      c.check("v1snr", get(fr, "v1snr -1"), {s1->snr_sum, s1->noise_level, s1->vad_thr, s1->pow_sum}, frame);
      c.check("v1st", get(fr, "v1st -1"),
              {s1->vadreg, s1->pitch, s1->tone, s1->complex_high, s1->complex_low, s1->burst_count, s1->hang_count,
               s1->stat_count, s1->complex_hang_count, s1->complex_hang_timer, s1->best_corr_hp, s1->corr_hp_fast,
               s1->speech_vad_decision, s1->complex_warning, s1->sp_burst_count, s1->oldlag_count, s1->oldlag},
              frame);
      c.check("v1bckr", get(fr, "v1bckr -1"), v64(s1->bckr_est, 9), frame);
      c.check("v1ave", get(fr, "v1ave -1"), v64(s1->ave_level, 9), frame);
    } else {
      for (int h = 0; h < 2; ++h) {
        int half = 0;
        ASSERT_EQ(legacy90vspsVAD2_GSMAMR_16s(speech.data() + 40 + 80 * h, st2.data(), &half), vspStsNoErr);
        vad |= half;
        c.check("v2", get(fr, h == 0 ? "v2 0" : "v2 1"),
                {half, s2->vm_sum, s2->tsnrq, s2->xt, s2->update_flag, s2->tsnr, s2->update_cnt, s2->hyster_cnt,
                 s2->last_update_cnt, s2->hangover, s2->burstcount, s2->fupdate_flag, s2->negSNRvar, s2->shift_state},
                frame);
        c.check("v2chdb", get(fr, h == 0 ? "v2chdb 0" : "v2chdb 1"), v64(s2->ch_enrg_db, 16), frame);
        c.check("v2noise", get(fr, h == 0 ? "v2noise 0" : "v2noise 1"), v64(s2->Lch_noise, 16), frame);
      }
    }

    // DTX encoder.
    int used = 0, computeSid = 0;
    ASSERT_EQ(legacy90vspsDTXTxHandler_GSMAMR(vad, dtx.data(), &used, &computeSid, mode), vspStsNoErr);
    c.check(
        "dtx", get(fr, "dtx -1"),
        {vad, computeSid, used == vspRateDTX ? 8 : get(fr, "tx -1")[1], sd->dtxHangoverCount, sd->decAnaElapsedCount},
        frame);
    std::vector<Vsp16s> lsp(get(fr, "lsp -1").begin(), get(fr, "lsp -1").end());
    ASSERT_EQ(legacy90vspsDTXBuffer_GSMAMR_16s(lsp.data(), speech.data() + 40, dtx.data()), vspStsNoErr);
    if (used == vspRateDTX) {
      Vsp16s prm[5];
      ASSERT_EQ(legacy90vspsDTXEncode_GSMAMR_16s(computeSid, pastQuaEn, prm, dtx.data()), vspStsNoErr);
      c.check("sid", get(fr, "sid -1"), v64(prm, 5), frame);
    }

    // Open-loop hooks on the dumped weighted speech and lags.
    std::copy(wsp.begin() + 160, wsp.end(), wsp.begin());
    for (int i = 0; i < 160; ++i)
      wsp[143 + static_cast<std::size_t>(i)] = static_cast<int16_t>(get(fr, "wsp -1")[static_cast<std::size_t>(i)]);
    const std::vector<int64_t>& top = get(fr, "Top -1");
    const Vsp16s lags[2] = {static_cast<Vsp16s>(top[0]), static_cast<Vsp16s>(top[1])};
    const bool one = mode == vspRate4750 || mode == vspRate5150, mr102 = mode == vspRate10200;
    const int pit_min = mode == vspRate12200 ? 18 : 20;
    Vsp32s rec[18] = {};  // the open-loop records: 3 x (max, energy), chosen pair, hp_max
    if (!mr102) wol.gain_flg[0] = wol.gain_flg[1] = 0;
    for (int k = 0; k < (one ? 1 : 2); ++k) {
      const OpenLoop ol = open_loop(wsp.data() + 143 + 80 * k, one ? 160 : 80, pit_min);
      for (int s = 0; s < 3 && !mr102; ++s) {
        rec[9 * k + 2 * s] = ol.max[s], rec[9 * k + 2 * s + 1] = ol.energy[s];
        if (ol.best[s] == lags[k]) rec[9 * k + 6] = ol.max[s], rec[9 * k + 7] = ol.energy[s];
      }
      if (mr102) c.check("Top (10.2)", {lags[k]}, {weighted_search(wol, ol, cw, 80, k, rec + 9 * k)}, frame);
      rec[9 * k + 8] = ol.hp_max;
    }
    // The closed-loop lags of subframes 0 and 3 replace lags of the median's history.
    if (wol.gain_flg[0] > 0 && !get(fr, "lag 0").empty()) wol.lags[1] = static_cast<int16_t>(get(fr, "lag 0")[0]);
    if (wol.gain_flg[1] > 0 && !get(fr, "lag 3").empty()) wol.lags[0] = static_cast<int16_t>(get(fr, "lag 3")[0]);
    if (vad1) {
      const std::vector<int64_t>& post = get(fr, "v1post -1");
      ASSERT_EQ(legacy90vspsVAD1PitchUpdate_GSMAMR_32s(rec, lags, st1.data(), mode), vspStsNoErr);
      c.check("v1post", post,
              {s1->pitch, s1->tone, s1->complex_high, s1->complex_low, s1->best_corr_hp, s1->oldlag_count, s1->oldlag},
              frame);
    } else {
      const std::vector<int64_t>& ltp = get(fr, "v2ltp -1");
      ASSERT_EQ(legacy90vspsVAD2LTPFlag_GSMAMR_32s(rec, st2.data(), mode), vspStsNoErr);
      c.check("v2ltp", ltp, {s2->L_R0, s2->L_Rmax, s2->LTP_flag}, frame);
    }
  }
  for (const auto& [key, total] : c.total) {
    std::cout << "  " << GetParam().file << " " << key << ": " << c.match[key] << "/" << total << " match\n";
    EXPECT_EQ(c.match[key], total) << key;
  }
}

std::string case_name(const ::testing::TestParamInfo<DumpCase>& p) { return p.param.name; }

INSTANTIATE_TEST_SUITE_P(Files, VadDumps,
                         ::testing::Values(DumpCase{"Speech122Vad1", "SPEECH_122_dtx1.txt", 1},
                                           DumpCase{"CheckVad1", "spch_dos_vad1.txt", 1},
                                           DumpCase{"Speech475Vad2", "SPEECH_475_dtx2.txt", 2},
                                           DumpCase{"CheckVad2", "spch_do2_vad2.txt", 2}),
                         case_name);

}  // namespace
