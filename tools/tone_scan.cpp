#include "tools/tone_scan.h"

#include "vsps.h"

namespace vsps::tool {

bool scan_for_tone(const std::vector<int16_t>& pcm, int rate, std::vector<double>* times,
                   const std::function<void(std::size_t)>& progress) {
  int size = 0;
  if (legacy90vspsToneDetectGetStateSize_EC_16s(rate, &size) != vspStsNoErr) return false;
  std::vector<Vsp8u> state(static_cast<std::size_t>(size));
  if (legacy90vspsToneDetectInit_EC_16s(state.data(), rate) != vspStsNoErr) return false;
  auto* st = reinterpret_cast<VspsToneDetectState_16s*>(state.data());
  const auto block = static_cast<std::size_t>(rate / 50);  // 20 ms
  for (std::size_t n = 0; n + block <= pcm.size(); n += block) {
    int detected = 0;
    if (legacy90vspsToneDetect_EC_16s(pcm.data() + n, static_cast<int>(block), &detected, st) != vspStsNoErr)
      return false;
    if (detected) times->push_back(static_cast<double>(n + block) / rate);
    if (progress) progress(n + block);
  }
  return true;
}

}  // namespace vsps::tool
