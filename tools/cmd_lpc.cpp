// "vsps lpc FILE.wav": the G.729 or GSM-AMR front end per frame of the
// user's file, as CSV or JSON; a summary on stderr.
#include "tools/commands.h"
#include "tools/lp_frontend.h"
#include "tools/output_file.h"
#include "tools/progress.h"
#include "tools/wav_io.h"

namespace vsps::tool {

namespace {

void write_csv(FILE* f, const std::vector<LpFrame>& frames, int frameLength) {
  std::fprintf(f, "frame,time_s");
  for (int k = 1; k <= 10; ++k) std::fprintf(f, ",lsp%d_q15", k);
  for (int k = 1; k <= 10; ++k) std::fprintf(f, ",quant_lsp%d_q15", k);
  const std::size_t ncodes = frames.empty() ? 0 : frames[0].codes.size();
  for (std::size_t k = 0; k < ncodes; ++k) std::fprintf(f, ",code%zu", k);
  std::fprintf(f, ",sd_db,unstable\n");
  for (std::size_t n = 0; n < frames.size(); ++n) {
    const LpFrame& fr = frames[n];
    std::fprintf(f, "%zu,%.3f", n, static_cast<double>(n) * frameLength / 8000.0);
    for (Vsp16s v : fr.lspQ15) std::fprintf(f, ",%d", v);
    for (Vsp16s v : fr.quantLspQ15) std::fprintf(f, ",%d", v);
    for (int c : fr.codes) std::fprintf(f, ",%d", c);
    std::fprintf(f, ",%.4f,%d\n", fr.sdDb, fr.unstable ? 1 : 0);
  }
}

void write_json(FILE* f, const char* codec, const std::vector<LpFrame>& frames, int frameLength, const LpSummary& s) {
  auto array = [f](const auto& values) {
    std::fputc('[', f);
    bool first = true;
    for (int v : values) {
      std::fprintf(f, first ? "%d" : ",%d", v);
      first = false;
    }
    std::fputc(']', f);
  };
  std::fprintf(f, "{\n  \"codec\": \"%s\",\n  \"frame_ms\": %d,\n  \"lsp_format\": \"Q15 cosine\",\n", codec,
               frameLength / 8);
  std::fprintf(f,
               "  \"summary\": {\"frames\": %d, \"sd_mean_db\": %.4f, \"sd_max_db\": %.4f, \"outliers_2_4_db_pct\": "
               "%.3f, \"outliers_over_4_db_pct\": %.3f, \"unstable\": %d},\n  \"frames\": [\n",
               s.frames, s.meanSdDb, s.maxSdDb, s.pct2to4, s.pctOver4, s.unstable);
  for (std::size_t n = 0; n < frames.size(); ++n) {
    const LpFrame& fr = frames[n];
    std::fprintf(f, "    {\"frame\": %zu, \"time_s\": %.3f, \"lsp\": ", n,
                 static_cast<double>(n) * frameLength / 8000.0);
    array(fr.lspQ15);
    std::fprintf(f, ", \"quant_lsp\": ");
    array(fr.quantLspQ15);
    std::fprintf(f, ", \"codes\": ");
    array(fr.codes);
    std::fprintf(f, ", \"sd_db\": %.4f, \"unstable\": %s}%s\n", fr.sdDb, fr.unstable ? "true" : "false",
                 n + 1 < frames.size() ? "," : "");
  }
  std::fprintf(f, "  ]\n}\n");
}

}  // namespace

const CommandSpec kLpcSpec = {
    "lpc",
    "FILE.wav [options]",
    "LP analysis and LSP quantisation per frame of an 8 kHz file (CSV or JSON; summary on stderr)",
    {{"--codec", "g729|amr", "front end (default g729)"},
     {"--mode", "KBPS", "GSM-AMR mode: 4.75 5.15 5.9 6.7 7.4 7.95 10.2 12.2 (default 12.2)"},
     {"--format", "csv|json", "output format (default csv)"},
     {"-o", "OUT", "write to OUT instead of the standard output"}}};

int cmd_lpc(const Args& args, FILE* out, FILE* err) {
  Options opt;
  if (const int status = parse_or_exit(kLpcSpec, args, &opt, out, err); status >= 0) return status;
  if (opt.positional.size() != 1) {
    std::fprintf(err, "vsps: lpc needs one input file\n");
    return 2;
  }
  const std::string codec = opt.get("--codec") ? *opt.get("--codec") : "g729";
  const std::string format = opt.get("--format") ? *opt.get("--format") : "csv";
  if ((codec != "g729" && codec != "amr") || (format != "csv" && format != "json")) {
    std::fprintf(err, "vsps: --codec takes g729 or amr, --format csv or json\n");
    return 2;
  }
  std::unique_ptr<LpFrontEnd> fe;
  if (codec == "g729") {
    if (opt.get("--mode")) {
      std::fprintf(err, "vsps: --mode applies to --codec amr\n");
      return 2;
    }
    fe = make_g729_frontend();
  } else {
    const std::string mode = opt.get("--mode") ? *opt.get("--mode") : "12.2";
    for (const AmrMode& m : amr_modes())
      if (mode == m.kbps) fe = make_gsmamr_frontend(m.mode);
    if (!fe) {
      std::fprintf(err, "vsps: unknown GSM-AMR mode %s (4.75 5.15 5.9 6.7 7.4 7.95 10.2 12.2)\n", mode.c_str());
      return 2;
    }
  }
  if (!fe) {
    std::fprintf(err, "vsps: the front end could not be set up\n");
    return 1;
  }
  std::string error;
  const std::string* outPath = opt.get("-o");
  if (outPath && !output_is_not_an_input(*outPath, opt.positional, &error)) {
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return 1;
  }
  WavAudio wav;
  if (!load_wav(opt.positional[0], {8000}, "the G.729 and GSM-AMR front ends need 8000 Hz", &wav, err)) return 1;
  const auto frameLength = static_cast<std::size_t>(fe->frame_length());
  if (wav.samples.size() < frameLength) {
    std::fprintf(err, "vsps: %s: shorter than one %zu-sample frame\n", opt.positional[0].c_str(), frameLength);
    return 1;
  }
  std::vector<LpFrame> frames(wav.samples.size() / frameLength);
  Progress progress(err, "lpc", wav.samples.size(), wav.rate);
  for (std::size_t n = 0; n < frames.size(); ++n) {
    if (!fe->process(&wav.samples[n * frameLength], false, &frames[n])) {
      std::fprintf(err, "vsps: library error in frame %zu\n", n);
      return 1;
    }
    progress.update((n + 1) * frameLength);
  }
  progress.update(wav.samples.size());  // a last partial frame is not analysed
  const LpSummary s = summarise(frames);
  OutputFile output;
  if (outPath == nullptr)
    output.use_stream(out, "standard output");
  else if (!output.create(*outPath, &error)) {
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return 1;
  }
  if (format == "csv")
    write_csv(output.file(), frames, fe->frame_length());
  else
    write_json(output.file(), fe->name(), frames, fe->frame_length(), s);
  if (!output.finish(&error)) {
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return 1;
  }
  std::fprintf(
      err, "%s: %d frames; spectral distortion %.2f dB mean, %.2f max; outliers %.1f%% in 2-4 dB, %.1f%% over 4 dB\n",
      fe->name(), s.frames, s.meanSdDb, s.maxSdDb, s.pct2to4, s.pctOver4);
  return 0;
}

}  // namespace vsps::tool
