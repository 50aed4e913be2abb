// The vsps tool's commands end to end, in process: outputs, files written,
// and the errors a user meets.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/g729/g729_bitstream.h"
#include "tests/support/golden.h"
#include "tests/tool/run_tool.h"
#include "tools/speech_signal.h"
#include "tools/svg_plot.h"

namespace {

namespace fs = std::filesystem;
using tooltest::run;

bool contains(const std::string& s, const std::string& part) { return s.find(part) != std::string::npos; }

std::vector<std::string> lines(const std::string& s) {
  std::vector<std::string> v;
  std::istringstream is(s);
  for (std::string l; std::getline(is, l);) v.push_back(l);
  return v;
}

std::string slurp(const fs::path& p) {
  std::ifstream f(p);
  return std::string(std::istreambuf_iterator<char>(f), {});
}

TEST(ToolDemo, PrintsEveryFamilysFiguresAndWritesThePlots) {
  const fs::path dir = tooltest::scratch_dir("demo");
  const tooltest::Result r = run({"demo", "-o", (dir / "plots").string()});
  ASSERT_EQ(r.status, 0) << r.err;
  for (const char* part :
       {"G.729 ", "GSM-AMR 4.75", "GSM-AMR 5.15", "GSM-AMR 5.9", "GSM-AMR 6.7", "GSM-AMR 7.4", "GSM-AMR 7.95",
        "GSM-AMR 10.2", "GSM-AMR 12.2", "ERLE per 0.5 s", "20 dB ERLE first reached", "fires at", "does not fire",
        "channels/core", "median of 7 runs", "GSM-AMR 4.75 and 5.15 share one; 5.9, 6.7,\n  7.4 and 10.2 another"})
    EXPECT_TRUE(contains(r.out, part)) << part;
  EXPECT_FALSE(contains(r.out, "DIFFERS"));
  EXPECT_TRUE(contains(r.out, "seg. SNR  encoder frames/s  decoder frames/s") && contains(r.out, "\n  G.729A "));
  for (const char* svg : {"lsp_g729.svg", "lsp_gsmamr_12k2.svg", "erle.svg"}) {
    const std::string text = slurp(dir / "plots" / svg);
    EXPECT_EQ(text.rfind("<svg", 0), 0u) << svg;
    EXPECT_TRUE(contains(text, "</svg>")) << svg;
    EXPECT_TRUE(contains(text, "<polyline")) << svg;
  }
  // LSF plots: the title names what the legend names, and the unquantised
  // tracks are drawn in another style than the quantised ones.
  for (const char* svg : {"lsp_g729.svg", "lsp_gsmamr_12k2.svg"}) {
    const std::string text = slurp(dir / "plots" / svg);
    EXPECT_TRUE(contains(text, "LSF tracks: unquantised (wide, light) and quantised (thin, dark)")) << svg;
    EXPECT_TRUE(contains(text, ">LSF 10<")) << svg;
    EXPECT_FALSE(contains(text, "LSP")) << svg;
    EXPECT_TRUE(contains(text, "stroke-width=\"5\" stroke-opacity=\"0.3\"")) << svg;
    EXPECT_TRUE(contains(text, "stroke-width=\"1.3\" points")) << svg;
  }
}

TEST(ToolLpc, CsvAndJsonHaveOneRecordPerFrame) {
  const fs::path dir = tooltest::scratch_dir("lpc");
  tooltest::write_wav_file(dir / "speech.wav", 8000, vsps::signals::speech_like(2.0, 8000, 3));
  struct Case {
    std::vector<std::string> options;
    std::size_t frames, codes;
  };
  const Case cases[] = {{{}, 200, 4},
                        {{"--codec", "amr"}, 100, 5},
                        {{"--codec", "amr", "--mode", "4.75"}, 100, 3},
                        {{"--codec", "amr", "--mode", "10.2"}, 100, 3},
                        {{"--codec=amr", "--mode=5.9"}, 100, 3}};
  for (const Case& c : cases) {
    std::vector<std::string> args = {"lpc", (dir / "speech.wav").string()};
    args.insert(args.end(), c.options.begin(), c.options.end());
    tooltest::Result r = run(args);
    ASSERT_EQ(r.status, 0) << r.err;
    const std::vector<std::string> rows = lines(r.out);
    ASSERT_EQ(rows.size(), c.frames + 1);
    const auto columns = static_cast<std::size_t>(std::count(rows[0].begin(), rows[0].end(), ',') + 1);
    EXPECT_EQ(columns, 2 + 20 + c.codes + 2) << rows[0];
    for (const std::string& row : rows)
      EXPECT_EQ(static_cast<std::size_t>(std::count(row.begin(), row.end(), ',') + 1), columns);
    EXPECT_TRUE(contains(r.err, "spectral distortion"));

    args.insert(args.end(), {"--format", "json", "-o", (dir / "out.json").string()});
    r = run(args);
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string json = slurp(dir / "out.json");
    std::size_t records = 0;
    for (std::size_t p = json.find("\"frame\":"); p != std::string::npos; p = json.find("\"frame\":", p + 1)) ++records;
    EXPECT_EQ(records, c.frames);
    EXPECT_EQ(json.front(), '{');
    EXPECT_EQ(json.substr(json.size() - 2), "}\n");
  }
}

TEST(ToolLpc, G729CodesMatchTheConformanceBitStream) {
  const std::string dir = vt::testvectors_dir();
  if (dir.empty() || !fs::exists(dir + "/g729/SPEECH.IN")) GTEST_SKIP() << "G.729 conformance files not found";
  const std::vector<int16_t> pcm = g729t::read_words(dir + "/g729/SPEECH.IN");
  const std::vector<g729t::BitFrame> bits = g729t::read_bitstream(dir + "/g729/SPEECH.BIT");
  const fs::path work = tooltest::scratch_dir("lpc_conformance");
  tooltest::write_wav_file(work / "speech.wav", 8000, pcm);
  const tooltest::Result r = run({"lpc", (work / "speech.wav").string()});
  ASSERT_EQ(r.status, 0) << r.err;
  const std::vector<std::string> rows = lines(r.out);
  const std::size_t frames = std::min(rows.size() - 1, bits.size());
  ASSERT_GT(frames, 1000u);
  std::size_t match = 0;
  for (std::size_t n = 0; n < frames; ++n) {
    std::vector<int> v;
    std::istringstream is(rows[n + 1]);
    for (std::string cell; std::getline(is, cell, ',');) v.push_back(std::atoi(cell.c_str()));
    const int* codes = &v[22];  // after frame, time and 20 LSPs
    match += (codes[0] << 7 | codes[1]) == bits[n].prm[0] && (codes[2] << 5 | codes[3]) == bits[n].prm[1];
  }
  EXPECT_EQ(match, frames);
}

TEST(ToolAec, RemovesTheEchoOfASyntheticPathAndKeepsTheNearEndAligned) {
  // The near end is the far end through a decaying 60-tap path, 6 dB down,
  // plus one near-end click 0.5 s before the end.
  const fs::path dir = tooltest::scratch_dir("aec");
  const std::vector<int16_t> far = vsps::signals::speech_like(6.0, 8000, 5);
  std::vector<double> path(60);
  for (std::size_t k = 0; k < path.size(); ++k)
    path[k] = 0.5 * std::exp(-0.08 * static_cast<double>(k)) * (k % 2 ? -1 : 1) * (k > 8);
  const std::size_t click = far.size() - 4000;
  std::vector<int16_t> near(far.size());
  for (std::size_t n = 0; n < far.size(); ++n) {
    double s = n == click ? 20000.0 : 0.0;
    for (std::size_t k = 0; k < path.size() && k <= n; ++k) s += path[k] * far[n - k];
    near[n] = static_cast<int16_t>(std::lround(std::clamp(s, -32768.0, 32767.0)));
  }
  tooltest::write_wav_file(dir / "far.wav", 8000, far);
  tooltest::write_wav_file(dir / "near.wav", 8000, near);
  const tooltest::Result r = run(
      {"aec", (dir / "far.wav").string(), (dir / "near.wav").string(), "-o", (dir / "out.wav").string(), "--blocks"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(contains(r.out, "20 dB ERLE first reached")) << r.out;
  EXPECT_TRUE(contains(r.out, "double talk")) << r.out;
  int rate = 0;
  const std::vector<int16_t> out = tooltest::read_wav_file(dir / "out.wav", &rate);
  ASSERT_EQ(out.size(), near.size());
  EXPECT_EQ(rate, 8000);
  double pn = 0, po = 0;
  for (std::size_t n = click - 12000; n < click - 800; ++n) {
    pn += double(near[n]) * near[n];
    po += double(out[n]) * out[n];
  }
  EXPECT_GT(10 * std::log10(pn / (po + 1)), 20.0) << "ERLE over 1.4 s before the click";
  const auto peak = std::max_element(out.begin() + long(click) - 400, out.begin() + long(click) + 400,
                                     [](int16_t a, int16_t b) { return std::abs(a) < std::abs(b); });
  EXPECT_EQ(peak - out.begin(), long(click)) << "the click stays where it was in the near end";
}

TEST(ToolTone, ReportsTheToneAtBothRates) {
  const fs::path dir = tooltest::scratch_dir("tone");
  for (int rate : {8000, 16000}) {
    std::vector<int16_t> pcm = vsps::signals::speech_like(1.0, rate, 2);
    const std::vector<int16_t> tone = vsps::signals::tone_with_reversals(3.0, rate, 2100, 8200, 450);
    pcm.insert(pcm.end(), tone.begin(), tone.end());
    const fs::path file = dir / ("tone" + std::to_string(rate) + ".wav");
    tooltest::write_wav_file(file, rate, pcm);
    const tooltest::Result r = run({"tone", file.string()});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "tone 1: 2100 Hz with phase reversals, detected at")) << r.out;
    EXPECT_TRUE(contains(r.out, "1 tone in 4.00 s")) << r.out;
  }
  tooltest::write_wav_file(dir / "speech.wav", 8000, vsps::signals::speech_like(3.0, 8000, 2));
  EXPECT_TRUE(contains(run({"tone", (dir / "speech.wav").string()}).out, "0 tones"));
}

TEST(ToolErrors, ClearMessagesAndExitStatuses) {
  const fs::path dir = tooltest::scratch_dir("errors");
  tooltest::write_wav_file(dir / "wide.wav", 16000, vsps::signals::speech_like(0.5, 16000, 1));
  tooltest::write_wav_file(dir / "cd.wav", 44100, vsps::signals::speech_like(0.5, 44100, 1));
  tooltest::write_wav_file(dir / "ok.wav", 8000, vsps::signals::speech_like(0.5, 8000, 1));
  tooltest::write_bytes(dir / "stereo.wav", tooltest::wav_bytes(1, 2, 8000, 16, 400, 400));
  tooltest::write_bytes(dir / "short.wav", tooltest::wav_bytes(1, 1, 8000, 16, 4000, 100));
  const std::string wide = (dir / "wide.wav").string(), ok = (dir / "ok.wav").string();
  const std::string okBefore = slurp(dir / "ok.wav");
  struct Case {
    std::vector<std::string> args;
    int status;
    const char* message;
  };
  std::vector<Case> cases = {
      {{"lpc", wide}, 1, "sampling rate 16000 Hz; the G.729 and GSM-AMR front ends need 8000 Hz"},
      {{"lpc", (dir / "stereo.wav").string()}, 1, "2 channels; mono required"},
      {{"lpc", (dir / "short.wav").string()}, 1, "truncated"},
      {{"lpc", (dir / "none.wav").string()}, 1, "cannot open"},
      {{"lpc", ok, "--codec", "g723"}, 2, "--codec takes g729 or amr"},
      {{"lpc", ok, "--codec", "amr", "--mode", "9.9"}, 2, "unknown GSM-AMR mode 9.9"},
      {{"lpc", ok, "--mode", "4.75"}, 2, "--mode applies to --codec amr"},
      {{"lpc", ok, "--colour", "red"}, 2, "unknown option --colour"},
      {{"lpc", ok, "-o"}, 2, "option -o needs a value"},
      {{"lpc"}, 2, "lpc needs one input file"},
      {{"tone", (dir / "cd.wav").string()}, 1, "the tone detector runs at 8000 or 16000 Hz"},
      {{"aec", ok, wide, "-o", (dir / "o.wav").string()}, 1, "both must have the same rate"},
      {{"aec", ok, ok}, 2, "aec needs FAR.wav NEAR.wav -o OUT.wav"},
      {{"aec", ok, ok, "-o", (dir / "o.wav").string(), "--tail", "0"}, 2, "--tail takes 1 to 128 ms at 8000 Hz"},
      {{"aec", ok, ok, "-o", (dir / "no-such-dir" / "o.wav").string()}, 1, "cannot create"},
      {{"demo", "input.wav"}, 2, "demo takes no input"},
      {{"amr"}, 2, "amr needs encode or decode"},
      {{"amr", "decode", ok}, 2, "amr decode needs IN and OUT"},
      {{"amr", "decode", (dir / "none.cod").string(), (dir / "o.pcm").string()}, 1, "cannot open"},
      {{"amr", "decode", ok, (dir / "o.pcm").string()}, 1, "is truncated"},
      {{"frobnicate"}, 2, "unknown command frobnicate"},
      {{"lpc", dir.string()}, 1, "is a directory"},
      {{"tone", dir.string()}, 1, "is a directory"},
      {{"lpc", ok, "-o", ok}, 1, "names the input"},
      {{"lpc", ok, "--codec"}, 2, "option --codec needs a value"},
      {{"info", "--level=3"}, 2, "unknown option --level"},
  };
#ifndef _WIN32  // links and /dev/full (the Windows build runs these tests under Wine)
  fs::create_hard_link(dir / "ok.wav", dir / "hard.wav");
  fs::create_symlink(dir / "ok.wav", dir / "soft.wav");
  cases.insert(cases.end(), {
                                {{"lpc", ok, "--format=json", "-o", (dir / "hard.wav").string()}, 1, "names the input"},
                                {{"lpc", ok, "-o", (dir / "soft.wav").string()}, 1, "names the input"},
                                {{"aec", ok, wide, "-o", (dir / "soft.wav").string()}, 1, "names the input"},
                                {{"lpc", ok, "-o", "/dev/full"}, 1, "/dev/full: write error"},
                                {{"aec", ok, ok, "-o", "/dev/full"}, 1, "/dev/full: write error"},
                            });
#endif
  for (const Case& c : cases) {
    const tooltest::Result r = run(c.args);
    std::string line;
    for (const std::string& a : c.args) line += a + " ";
    EXPECT_EQ(r.status, c.status) << line;
    EXPECT_TRUE(contains(r.err, c.message)) << line << "\n" << r.err;
    if (c.status == 2) EXPECT_TRUE(contains(r.err, "usage: vsps")) << line;
  }
  EXPECT_EQ(slurp(dir / "ok.wav"), okBefore) << "an input named as the output is left as it was";
}

#ifndef _WIN32
TEST(ToolErrors, WriteErrorsOnTheStandardOutputFail) {
  const fs::path dir = tooltest::scratch_dir("stdout_full");
  tooltest::write_wav_file(dir / "ok.wav", 8000, vsps::signals::speech_like(0.5, 8000, 1));
  for (const std::vector<std::string>& args :
       {std::vector<std::string>{"lpc", (dir / "ok.wav").string()},
        std::vector<std::string>{"tone", (dir / "ok.wav").string()}, std::vector<std::string>{"--help"}}) {
    const tooltest::Result r = run(args, "/dev/full");
    EXPECT_EQ(r.status, 1) << args[0];
    EXPECT_TRUE(contains(r.err, "vsps: standard output: write error")) << args[0] << ": " << r.err;
  }
}
#endif

TEST(ToolHelp, EveryCommandDescribesItsOptions) {
  struct Case {
    std::vector<std::string> args;
    std::vector<const char*> parts;
  };
  const Case cases[] = {
      {{"--help"}, {"usage: vsps", "demo", "lpc", "aec", "tone", "info", "--version"}},
      {{"demo", "--help"}, {"usage: vsps demo", "-o DIR"}},
      {{"lpc", "-h"}, {"usage: vsps lpc FILE.wav", "--codec g729|amr", "--mode KBPS", "--format csv|json", "-o OUT"}},
      {{"help", "aec"}, {"usage: vsps aec FAR.wav NEAR.wav -o OUT.wav", "--tail MS"}},
      {{"tone", "--help"}, {"usage: vsps tone FILE.wav"}},
      {{"info", "--help"}, {"usage: vsps info"}},
      {{"--version"}, {"vsps 9.", "library "}},
  };
  for (const Case& c : cases) {
    const tooltest::Result r = run(c.args);
    EXPECT_EQ(r.status, 0) << c.args[0];
    for (const char* part : c.parts)
      EXPECT_TRUE(contains(r.out, part)) << c.args[0] << " lacks " << part << "\n" << r.out;
  }
}

TEST(ToolProgress, LongFilesReportProgressShortOnesDoNot) {
  const fs::path dir = tooltest::scratch_dir("progress");
  tooltest::write_wav_file(dir / "long.wav", 8000, std::vector<int16_t>(8000 * 40 + 7, 0));  // a partial block
  tooltest::write_wav_file(dir / "short.wav", 8000, std::vector<int16_t>(8000 * 5, 0));
  const tooltest::Result longRun = run({"tone", (dir / "long.wav").string()});
  ASSERT_EQ(longRun.status, 0);
  EXPECT_TRUE(contains(longRun.err, "tone:  50% (20.0 of 40.0 s)")) << longRun.err;
  EXPECT_TRUE(contains(longRun.err, "tone: 100% (40.0 of 40.0 s)")) << longRun.err;
  EXPECT_FALSE(contains(longRun.err, "tone:   0%")) << longRun.err;
  EXPECT_EQ(run({"tone", (dir / "short.wav").string()}).err, "");
}

TEST(SvgPlot, TicksAreRoundAndCoverTheRange) {
  struct Case {
    double lo, hi;
    int count;
    std::vector<double> ticks;
  };
  const Case cases[] = {{0, 10, 10, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
                        {0, 4000, 8, {0, 500, 1000, 1500, 2000, 2500, 3000, 3500, 4000}},
                        {0, 50, 8, {0, 10, 20, 30, 40, 50}},
                        {-0.3, 0.7, 5, {-0.2, 0, 0.2, 0.4, 0.6}},
                        {1, 1, 5, {}}};
  for (const Case& c : cases) {
    const std::vector<double> t = vsps::tool::nice_ticks(c.lo, c.hi, c.count);
    ASSERT_EQ(t.size(), c.ticks.size()) << c.lo << ".." << c.hi;
    for (std::size_t i = 0; i < t.size(); ++i) EXPECT_NEAR(t[i], c.ticks[i], 1e-9);
  }
}

}  // namespace
