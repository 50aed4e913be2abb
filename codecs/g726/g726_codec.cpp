// G.726 driver: encoder and decoder objects over the library's G.726 state
// blocks, with G.711 code words or 16-bit linear PCM outside and code words
// unpacked or packed into octets (RTP or AAL2 order).
#include <cstring>

#include "vsps_codecs.h"

namespace {

constexpr int kStateCapacity = 128;  // bytes reserved for the library's state block
constexpr int kChunk = 256;          // samples per internal step (whole octets at every rate)

struct Codec {
  int32_t rate;    // VspSpeechBitRate selector
  int32_t bits;    // bits per code word
  int32_t law;     // VspPcmLaw of the PCM side
  int32_t format;  // VspcG726Format
  alignas(8) unsigned char state[kStateCapacity];
};

int rate_of_kbps(int kbps, int* bits) {
  switch (kbps) {
    case 16:
      *bits = 2;
      return vspRate16000;
    case 24:
      *bits = 3;
      return vspRate24000;
    case 32:
      *bits = 4;
      return vspRate32000;
    case 40:
      *bits = 5;
      return vspRate40000;
    default:
      *bits = 0;
      return -1;
  }
}

bool law_ok(int law) { return law == vspPcmLinear || law == vspPcmALaw || law == vspPcmMuLaw; }

int packed_bytes(const Codec& c, int n) {
  return c.format == vspscodecG726Unpacked ? n : static_cast<int>((static_cast<int64_t>(n) * c.bits + 7) / 8);
}

// The bytes of n code words in the object's format; n < 0 is a size error.
VspStatus byte_count(const Codec* c, int n, int* bytes) {
  if (c == nullptr || bytes == nullptr) return vspStsNullPtrErr;
  if (n < 0) return vspStsSizeErr;
  *bytes = packed_bytes(*c, n);
  return vspStsNoErr;
}

int packing_order(const Codec& c) { return c.format == vspscodecG726Rtp ? vspPackRtp : vspPackAal2; }

// Checks the configuration, formats the library's state block with `init`
// (the encoder's or decoder's) and fills the driver fields; nothing is
// written on failure.
template <class Init>
VspStatus init_codec(Codec* c, int kbps, int law, int format, Init init) {
  if (c == nullptr) return vspStsNullPtrErr;
  int bits = 0;
  const int rate = rate_of_kbps(kbps, &bits);
  if (rate < 0 || !law_ok(law) || format < vspscodecG726Unpacked || format > vspscodecG726Aal2) return vspStsRangeErr;
  int size = 0;
  if (legacy90vspsEncodeGetStateSize_G726_16s8u(&size) != vspStsNoErr || size > kStateCapacity) return vspStsErr;
  if (legacy90vspsDecodeGetStateSize_G726_8u16s(&size) != vspStsNoErr || size > kStateCapacity) return vspStsErr;
  Codec probe{rate, bits, law, format, {}};
  if (const VspStatus st = init(probe.state, rate, law); st != vspStsNoErr) return st;
  std::memcpy(c, &probe, sizeof probe);
  return vspStsNoErr;
}

// The rate switch of either side through `setRate`; the state is kept.
template <class SetRate>
VspStatus set_codec_rate(Codec* c, int kbps, SetRate setRate) {
  if (c == nullptr) return vspStsNullPtrErr;
  int bits = 0;
  const int rate = rate_of_kbps(kbps, &bits);
  if (rate < 0) return vspStsRangeErr;
  const VspStatus st = setRate(c->state, rate);
  if (st == vspStsNoErr) {
    c->rate = rate;
    c->bits = bits;
  }
  return st;
}

}  // namespace

struct VspscodecG726Encoder : Codec {};
struct VspscodecG726Decoder : Codec {};

extern "C" {

VspStatus vspscodecG726EncoderGetSize(int* size) {
  if (size == nullptr) return vspStsNullPtrErr;
  *size = static_cast<int>(sizeof(VspscodecG726Encoder));
  return vspStsNoErr;
}

VspStatus vspscodecG726EncoderInit(VspscodecG726Encoder* enc, int kbps, int law, int format) {
  return init_codec(enc, kbps, law, format, [](unsigned char* state, int rate, int) {
    return legacy90vspsEncodeInit_G726_16s8u(reinterpret_cast<VspsEncoderState_G726_16s*>(state), rate);
  });
}

VspStatus vspscodecG726EncoderSetRate(VspscodecG726Encoder* enc, int kbps) {
  return set_codec_rate(enc, kbps, [](unsigned char* state, int rate) {
    return legacy90vspsEncodeSetRate_G726_16s8u(reinterpret_cast<VspsEncoderState_G726_16s*>(state), rate);
  });
}

VspStatus vspscodecG726EncoderOutputBytes(const VspscodecG726Encoder* enc, int n, int* bytes) {
  return byte_count(enc, n, bytes);
}

VspStatus vspscodecG726EncoderEncode(VspscodecG726Encoder* enc, const void* samples, int n, Vsp8u* out) {
  if (enc == nullptr || samples == nullptr || out == nullptr) return vspStsNullPtrErr;
  if (n < 1) return vspStsSizeErr;
  auto* state = reinterpret_cast<VspsEncoderState_G726_16s*>(enc->state);
  Vsp16s pcm[kChunk];
  Vsp8u codes[kChunk];
  for (int done = 0; done < n;) {
    const int len = n - done < kChunk ? n - done : kChunk;
    const Vsp16s* src = pcm;
    VspStatus st = vspStsNoErr;
    if (enc->law == vspPcmLinear)
      src = static_cast<const Vsp16s*>(samples) + done;
    else  // G.711 expansion >> 2 is the G.726 EXPAND block
      st = vspscodecG711Decode(enc->law, static_cast<const Vsp8u*>(samples) + done, len, pcm);
    if (st != vspStsNoErr) return st;
    if (enc->format == vspscodecG726Unpacked) {
      st = legacy90vspsEncode_G726_16s8u(src, out + done, len, state);
    } else {
      st = legacy90vspsEncode_G726_16s8u(src, codes, len, state);
      if (st == vspStsNoErr)
        st = legacy90vspsPack_G726_8u(codes, out + packed_bytes(*enc, done), len, enc->rate, packing_order(*enc));
    }
    if (st != vspStsNoErr) return st;
    done += len;
  }
  return vspStsNoErr;
}

VspStatus vspscodecG726DecoderGetSize(int* size) {
  if (size == nullptr) return vspStsNullPtrErr;
  *size = static_cast<int>(sizeof(VspscodecG726Decoder));
  return vspStsNoErr;
}

VspStatus vspscodecG726DecoderInit(VspscodecG726Decoder* dec, int kbps, int law, int format) {
  return init_codec(dec, kbps, law, format, [](unsigned char* state, int rate, int pcmLaw) {
    return legacy90vspsDecodeInit_G726_8u16s(reinterpret_cast<VspsDecoderState_G726_16s*>(state), rate, pcmLaw);
  });
}

VspStatus vspscodecG726DecoderSetRate(VspscodecG726Decoder* dec, int kbps) {
  return set_codec_rate(dec, kbps, [](unsigned char* state, int rate) {
    return legacy90vspsDecodeSetRate_G726_8u16s(reinterpret_cast<VspsDecoderState_G726_16s*>(state), rate);
  });
}

VspStatus vspscodecG726DecoderInputBytes(const VspscodecG726Decoder* dec, int n, int* bytes) {
  return byte_count(dec, n, bytes);
}

VspStatus vspscodecG726DecoderDecode(VspscodecG726Decoder* dec, const Vsp8u* in, int n, void* samples) {
  if (dec == nullptr || in == nullptr || samples == nullptr) return vspStsNullPtrErr;
  if (n < 1) return vspStsSizeErr;
  auto* state = reinterpret_cast<VspsDecoderState_G726_16s*>(dec->state);
  Vsp8u codes[kChunk];
  Vsp16s words[kChunk];
  for (int done = 0; done < n;) {
    const int len = n - done < kChunk ? n - done : kChunk;
    const Vsp8u* src = in + done;
    VspStatus st = vspStsNoErr;
    if (dec->format != vspscodecG726Unpacked) {
      st = legacy90vspsUnpack_G726_8u(in + packed_bytes(*dec, done), codes, len, dec->rate, packing_order(*dec));
      src = codes;
    }
    if (st != vspStsNoErr) return st;
    if (dec->law == vspPcmLinear) {
      st = legacy90vspsDecode_G726_8u16s(src, static_cast<Vsp16s*>(samples) + done, len, state);
    } else {
      st = legacy90vspsDecode_G726_8u16s(src, words, len, state);
      auto* bytes = static_cast<Vsp8u*>(samples) + done;
      for (int k = 0; k < len && st == vspStsNoErr; ++k) bytes[k] = static_cast<Vsp8u>(words[k]);
    }
    if (st != vspStsNoErr) return st;
    done += len;
  }
  return vspStsNoErr;
}

}  // extern "C"
