#include "tools/g729_round_trip.h"

#include "tools/cpu_clock.h"
#include "vsps_codecs.h"

namespace vsps::tool {

namespace {
constexpr int kFrame = 80;  // 10 ms at 8 kHz
}  // namespace

bool g729_round_trip(const std::vector<int16_t>& pcm, int options, G729RoundTrip* out) {
  int encSize = 0, decSize = 0;
  if (vspscodecG729EncoderGetSize(&encSize) != vspStsNoErr || vspscodecG729DecoderGetSize(&decSize) != vspStsNoErr)
    return false;
  std::vector<uint8_t> encMem(static_cast<std::size_t>(encSize)), decMem(static_cast<std::size_t>(decSize));
  auto* enc = reinterpret_cast<VspsG729Encoder*>(encMem.data());
  auto* dec = reinterpret_cast<VspsG729Decoder*>(decMem.data());
  if (vspscodecG729EncoderInit(enc, options) != vspStsNoErr || vspscodecG729DecoderInit(dec, options) != vspStsNoErr)
    return false;
  out->frames = static_cast<int>(pcm.size() / kFrame);
  out->decoded.assign(static_cast<std::size_t>(out->frames) * kFrame, 0);
  out->encoderNs = out->decoderNs = 0;
  for (int n = 0; n < out->frames; ++n) {
    const std::size_t at = static_cast<std::size_t>(n) * kFrame;
    VspsG729Frame sent{}, received{};
    double t0 = thread_cpu_ns();
    if (vspscodecG729EncoderEncode(enc, &pcm[at], &sent) != vspStsNoErr) return false;
    out->encoderNs += thread_cpu_ns() - t0;
    Vsp16s words[VSPS_G729_SERIAL_MAX_WORDS];
    int written = 0, used = 0;
    if (vspscodecG729SerialWrite(&sent, words, &written) != vspStsNoErr ||
        vspscodecG729SerialRead(words, written, &received, &used) != vspStsNoErr || used != written)
      return false;
    t0 = thread_cpu_ns();
    if (vspscodecG729DecoderDecode(dec, &received, &out->decoded[at]) != vspStsNoErr) return false;
    out->decoderNs += thread_cpu_ns() - t0;
  }
  return true;
}

}  // namespace vsps::tool
