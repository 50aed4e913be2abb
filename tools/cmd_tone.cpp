// "vsps tone FILE.wav": times at which the 2100 Hz answer tone with phase
// reversals is detected, grouped into events.
#include "tools/commands.h"
#include "tools/progress.h"
#include "tools/tone_scan.h"
#include "tools/wav_io.h"

namespace vsps::tool {

const CommandSpec kToneSpec = {"tone", "FILE.wav", "2100 Hz answer tone with phase reversals (8 or 16 kHz)", {}};

int cmd_tone(const Args& args, FILE* out, FILE* err) {
  Options opt;
  if (const int status = parse_or_exit(kToneSpec, args, &opt, out, err); status >= 0) return status;
  if (opt.positional.size() != 1) {
    std::fprintf(err, "vsps: tone needs one input file\n");
    return 2;
  }
  WavAudio wav;
  if (!load_wav(opt.positional[0], {8000, 16000}, "the tone detector runs at 8000 or 16000 Hz", &wav, err)) return 1;
  std::vector<double> times;
  {
    Progress progress(err, "tone", wav.samples.size(), wav.rate);
    if (!scan_for_tone(wav.samples, wav.rate, &times, [&](std::size_t done) { progress.update(done); })) {
      std::fprintf(err, "vsps: library error in the tone detector\n");
      return 1;
    }
    progress.update(wav.samples.size());  // a last partial block is not analysed
  }
  // Detections less than 1 s apart belong to one tone (one per phase reversal).
  std::size_t events = 0;
  for (std::size_t i = 0; i < times.size();) {
    std::size_t j = i;
    while (j + 1 < times.size() && times[j + 1] - times[j] < 1.0) ++j;
    std::fprintf(out, "tone %zu: 2100 Hz with phase reversals, detected at %.2f s", ++events, times[i]);
    if (j > i) std::fprintf(out, ", again at each of %zu later reversals until %.2f s", j - i, times[j]);
    std::fprintf(out, "\n");
    i = j + 1;
  }
  std::fprintf(out, "%zu tone%s in %.2f s of audio at %d Hz\n", events, events == 1 ? "" : "s",
               static_cast<double>(wav.samples.size()) / wav.rate, wav.rate);
  return 0;
}

}  // namespace vsps::tool
