// The GSM-AMR encoder steps against the per-frame reference dumps
// (../shared/golden/gsmamr-frames, DTX off): every frame of the SPEECH and
// PITCH files of all eight modes and of the mode-switching file. Each step
// gets its inputs from the dump (LP filters, targets, codebook vectors,
// quantised gains, past excitation) or from the steps before it, and its
// outputs are compared with the dump's: hp, Aq/A, wsp, Top, the tone flag,
// h, res, lag, adapt, gp, xn2, exc, syn. Skips when the dumps are absent.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/codecs/itu_files.h"
#include "tests/gsmamr/amr_frame_dump.h"
#include "vsps.h"

namespace {

const int kRate[8] = {vspRate4750, vspRate5150, vspRate5900,  vspRate6700,
                      vspRate7400, vspRate7950, vspRate10200, vspRate12200};
const Vsp16s kPreHp[6] = {4096, 7807, -3733, 1899, -3798, 1899};  // 140 Hz set, Q12

struct Count {
  std::map<std::string, int> bad, seen;
  std::map<std::string, std::string> where;
  std::string at;
  void check(const std::string& key, const std::vector<int16_t>& got, const std::vector<int16_t>& want) {
    ++seen[key];
    if (got != want && bad[key]++ == 0) where[key] = at;
  }
};

std::vector<int16_t> part(const Vsp16s* p, int n) { return std::vector<int16_t>(p, p + n); }

// Runs one dump file through the steps; per-key mismatch counts.
Count run_file(const std::string& name, const std::string& input, int fixed_mode) {
  const amrt::FrameDump d(amrt::FrameDump::folder() + "/" + name + ".txt", 'E');
  const std::vector<uint16_t> pcm = itu::read_words(vt::testvectors_dir() + "/g729/" + input);
  Count c;
  Vsp8u hp[24];
  legacy90vspsHighPassFilterInit_G729(kPreHp, hp);
  std::vector<Vsp16s> speech(320, 0), wsp(303, 0), exc(154 + 160, 0);
  Vsp16s memW[10] = {}, memSyn[10] = {}, memErr[10] = {}, olState[10] = {40, 0, 0, 40, 40, 40, 40, 40, 0, 0};
  Vsp16s tone[8] = {}, prevLag = 0, prevLspQ[10] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
  for (int f = 0; f < d.frames(); ++f) {
    const int m = fixed_mode >= 0 ? fixed_mode : d.get(f, -1, "tx")[1];
    const int rate = kRate[m];
    c.at = "frame " + std::to_string(f);
    Vsp16s* x = &speech[160];
    for (int i = 0; i < 160; ++i) x[i] = static_cast<Vsp16s>(pcm[160 * f + i] & 0xFFF8);
    legacy90vspsHighPassFilter_G729_16s_ISfs(x, 160, 12, hp);
    c.check("hp", part(x, 160), d.get(f, -1, "hp"));
    const Vsp16s* sp = &speech[120];  // the frame being coded
    std::vector<int16_t> A, Aq;
    for (int s = 0; s < 4; ++s) {
      const auto a = d.get(f, s, "A"), q = d.get(f, s, "Aq");
      A.insert(A.end(), a.begin(), a.end());
      Aq.insert(Aq.end(), q.begin(), q.end());
    }
    // Quantised filters from the quantised LSPs; unquantised ones of the
    // interpolated subframes from the unquantised LSPs.
    std::vector<int16_t> lspq = d.get(f, -1, "lspq"), lsp = d.get(f, -1, "lsp");
    if (m == 7) {
      auto mid = d.get(f, -1, "lspmidq");
      lspq.insert(lspq.begin(), mid.begin(), mid.end());
    }
    Vsp16s aq[44];
    legacy90vspsInterpolateLPC_GSMAMR_16s(prevLspQ, lspq.data(), aq, rate);
    c.check("Aq", part(aq, 44), Aq);
    for (int i = 0; i < 10; ++i) prevLspQ[i] = lspq[lspq.size() - 10 + i];
    int lspFlag = 0;
    legacy90vspsToneStabCheck_GSMAMR_16s(lsp.data(), tone, &lspFlag);
    // Weighted speech and open-loop lags.
    Vsp16s* w = &wsp[143];
    Vsp32s vad[9];
    Vsp16s top[2];
    for (int h = 0; h < 2; ++h) {
      legacy90vspsWeightedSpeech_GSMAMR_16s(sp + 80 * h - 10, A.data() + 22 * h, w + 80 * h, memW, rate);
      if (m >= 2) legacy90vspsOpenLoopPitch_GSMAMR_16s(wsp.data(), olState, vad, &top[h], h, rate);
    }
    if (m < 2) {
      legacy90vspsOpenLoopPitch_GSMAMR_16s(wsp.data(), olState, vad, &top[0], 1, rate);
      top[1] = top[0];
    }
    c.check("wsp", part(w, 160), d.get(f, -1, "wsp"));
    c.check("Top", part(top, 2), d.get(f, -1, "Top"));
    for (int s = 0; s < 4; ++s) {
      c.at = "frame " + std::to_string(f) + " sf " + std::to_string(s);
      const Vsp16s noW0[10] = {};
      Vsp16s h1[40], res[40], xn[40], y1[40], lag[3], xn2[40], gain[3], coeff[4], syn[40], sharp = 0;
      legacy90vspsSubframePreProc_GSMAMR_16s(A.data() + 11 * s, Aq.data() + 11 * s, sp + 40 * s - 10, memErr, noW0, h1,
                                             res, xn, rate);  // xn unused: its memory needs y2
      c.check("h", part(h1, 40), d.get(f, s, "h"));
      c.check("res", part(res, 40), d.get(f, s, "res"));
      const auto dxn = d.get(f, s, "xn");
      Vsp16s* e = &exc[154 + 40 * s];
      for (int i = 0; i < 40; ++i) e[i] = res[i];
      const bool provisional = m == 0 && (s & 1);  // 4.75: odd subframes search the provisional excitation
      legacy90vspsAdaptiveCodebookSearch_GSMAMR_16s(dxn.data(), h1, e - 154, top, &prevLag, lag, y1, s, rate);
      const auto gp = d.get(f, s, "gp");
      if (!provisional) {
        c.check("lag", part(lag, 3), d.get(f, s, "lag"));
        c.check("adapt", part(e, 40), d.get(f, s, "adapt"));
        legacy90vspsPitchGain_GSMAMR_16s(dxn.data(), y1, e, tone, res, xn2, gain, coeff, lspFlag, rate);
        std::vector<int16_t> g = {gain[0], gain[1], static_cast<int16_t>(lspFlag)};
        if (m == 7) g.push_back(gain[2]);
        c.check("gp", g, gp);
        c.check("xn2", part(xn2, 40), d.get(f, s, "xn2"));
      }
      const auto dlag = d.get(f, s, "lag");
      prevLag = dlag[0];
      if (s == 0 && olState[8] > 0) olState[4] = prevLag;  // the lag history of the 10.2 open-loop search
      if (s == 3 && olState[9] > 0) olState[3] = prevLag;
      const auto dg = d.get(f, s, "gain");
      legacy90vspsToneStabUpdate_GSMAMR_16s(m == 0 && (s & 1) == 0 ? gp[0] : dg[0], tone);
      // Post-processing on the adaptive vector of the dump's lag (4.75: rebuilt
      // from the final excitation of the even subframe), its code and gains.
      const auto code = d.get(f, s, "code");
      legacy90vspsAdaptiveVector_GSMAMR_16s(e - 154, h1, dlag.data(), y1, rate);
      const Vsp16s gq[2] = {dg[0], dg[1]};
      Vsp16s y2[40] = {}, memW0[10];
      legacy90vspsSubframePostProc_GSMAMR_16s(sp + 40 * s, Aq.data() + 11 * s, dxn.data(), code.data(), y1, y2, gq, e,
                                              memSyn, memErr, memW0, syn, &sharp, rate);
      c.check("exc", part(e, 40), d.get(f, s, "exc"));
      const auto dsyn = d.get(f, -1, "syn");
      c.check("syn", part(syn, 40), std::vector<int16_t>(dsyn.begin() + 40 * s, dsyn.begin() + 40 * s + 40));
    }
    std::copy(speech.begin() + 160, speech.end(), speech.begin());
    std::copy(wsp.begin() + 160, wsp.end(), wsp.begin());
    std::copy(exc.begin() + 160, exc.end(), exc.begin());
  }
  return c;
}

TEST(GsmAmrEncoderSteps, EveryDumpedFrameOfTheDtxOffFiles) {
  if (amrt::FrameDump::folder().empty() || itu::folder("g729").empty())
    GTEST_SKIP() << "GSM-AMR frame dumps or G.729 inputs not found (../shared)";
  const char* modes[8] = {"475", "515", "59", "67", "74", "795", "102", "122"};
  std::vector<std::tuple<std::string, std::string, int>> files = {{"SPEECH_switch", "SPEECH.IN", -1}};
  for (int m = 0; m < 8; ++m) {
    files.emplace_back(std::string("SPEECH_") + modes[m], "SPEECH.IN", m);
    files.emplace_back(std::string("PITCH_") + modes[m], "PITCH.IN", m);
  }
  for (const auto& [name, input, mode] : files) {
    const Count c = run_file(name, input, mode);
    for (const auto& [key, n] : c.seen) {
      const int bad = c.bad.count(key) ? c.bad.at(key) : 0;
      EXPECT_EQ(bad, 0) << name << " " << key << ": " << bad << " of " << n << " differ, first at " << c.where.at(key);
    }
  }
}

}  // namespace
