// libFuzzer target over the speech decoders of the codec layer on arbitrary
// bit-streams: G.729 (main body, Annex A, with and without Annex B) from the
// ITU serial format and from RTP payloads, and GSM-AMR from the 3GPP serial
// format and the RFC 4867 storage format. The first input byte chooses the
// decoder and the format; the rest is read frame after frame through one
// decoder object, as a receiver would. Properties: no crash or sanitizer
// report, no write outside the exactly sized heap buffers (ASan), only the
// statuses the header documents, and a decoder that keeps decoding after
// any rejected frame.
//
//   ./vsps_fuzz_decoders -max_total_time=60
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "vsps.h"
#include "vsps_codecs.h"

namespace {

void require(bool ok) {
  if (!ok) std::abort();
}

bool documented(VspStatus s) {
  return s == vspStsNoErr || s == vspStsSizeErr || s == vspStsBadArgErr || s == vspStsRangeErr;
}

// G.729: options from the selector; frames from serial words or RTP payloads.
void g729(int options, bool rtp, const uint8_t* data, std::size_t size) {
  int bytes = 0;
  require(vspscodecG729DecoderGetSize(&bytes) == vspStsNoErr && bytes > 0);
  std::vector<unsigned char> object(static_cast<std::size_t>(bytes));
  auto* dec = reinterpret_cast<VspsG729Decoder*>(object.data());
  require(vspscodecG729DecoderInit(dec, options) == vspStsNoErr);
  std::size_t pos = 0;
  while (pos < size) {
    VspsG729Frame frame{};
    if (rtp) {
      // One length byte (0..10 used), then that many payload octets.
      const int n = data[pos++] % 11;
      const int avail = static_cast<int>(size - pos) < n ? static_cast<int>(size - pos) : n;
      std::vector<uint8_t> payload(data + pos, data + pos + avail);
      pos += static_cast<std::size_t>(avail);
      const VspStatus s = vspscodecG729RtpRead(payload.data(), avail, &frame);
      require(documented(s));
      if (s != vspStsNoErr) continue;
    } else {
      const int nWords = static_cast<int>((size - pos) / 2);
      if (nWords == 0) break;
      const int take = nWords < VSPS_G729_SERIAL_MAX_WORDS ? nWords : VSPS_G729_SERIAL_MAX_WORDS;
      std::vector<Vsp16s> words(static_cast<std::size_t>(take));
      std::memcpy(words.data(), data + pos, static_cast<std::size_t>(take) * 2);
      int used = 0;
      const VspStatus s = vspscodecG729SerialRead(words.data(), take, &frame, &used);
      require(documented(s));
      require(used >= 0 && used <= take);
      pos += static_cast<std::size_t>(used > 0 ? used : 1) * 2;
      if (s != vspStsNoErr) continue;
    }
    std::vector<Vsp16s> pcm(80);
    require(vspscodecG729DecoderDecode(dec, &frame, pcm.data()) == vspStsNoErr);
  }
}

// GSM-AMR: 250-word serial frames or storage-format frames (ToC + payload).
void amr(bool storage, const uint8_t* data, std::size_t size) {
  int bytes = 0;
  require(vspscodecGsmAmrDecoderGetSize(&bytes) == vspStsNoErr && bytes > 0);
  std::vector<unsigned char> object(static_cast<std::size_t>(bytes));
  require(vspscodecGsmAmrDecoderInit(object.data()) == vspStsNoErr);
  std::size_t pos = 0;
  while (pos < size) {
    int rxType = 0, mode = 0;
    std::vector<Vsp8u> bits(244);
    VspStatus s;
    if (storage) {
      int frameBytes = 0;
      s = vspscodecGsmAmrStorageFrameSize(data[pos], &frameBytes);
      require(documented(s));
      if (s != vspStsNoErr) {
        ++pos;
        continue;
      }
      require(frameBytes >= 1 && frameBytes <= 32);
      if (size - pos < static_cast<std::size_t>(frameBytes)) break;
      std::vector<Vsp8u> frame(data + pos, data + pos + frameBytes);
      pos += static_cast<std::size_t>(frameBytes);
      s = vspscodecGsmAmrStorageRead(frame.data(), &rxType, &mode, bits.data());
    } else {
      if (size - pos < 500) break;
      std::vector<Vsp16s> words(250);
      std::memcpy(words.data(), data + pos, 500);
      pos += 500;
      // Most random words are out of range: fold the type and mode words
      // so that frames also reach the decoder.
      words[0] = static_cast<Vsp16s>(words[0] & 7);
      if (words[245] != -1) words[245] = static_cast<Vsp16s>(words[245] & 7);
      s = vspscodecGsmAmrSerialRead(words.data(), &rxType, &mode, bits.data());
    }
    require(documented(s));
    if (s != vspStsNoErr) continue;
    std::vector<Vsp16s> pcm(160);
    require(vspscodecGsmAmrDecode(object.data(), rxType, mode, bits.data(), pcm.data()) == vspStsNoErr);
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  legacy90vspscInit();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const int selector = data[0] % 10;
  ++data;
  --size;
  if (selector < 8)
    g729(selector & 3, (selector & 4) != 0, data, size);  // options: Annex A, DTX
  else
    amr(selector == 9, data, size);
  return 0;
}
