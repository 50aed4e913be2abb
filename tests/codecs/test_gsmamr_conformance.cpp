// GSM-AMR conformance streams through the codec layer: every decoder output
// (.out) of ../shared/testvectors/gsmamr, and of its check/ folder, from its
// serial bit-stream (.cod) and from its storage-format file (.amr), sample
// for sample. Skips when the streams are absent.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/golden.h"
#include "vsps_codecs.h"

namespace {

namespace fs = std::filesystem;

std::vector<uint8_t> read_bytes(const fs::path& p) {
  std::ifstream f(p, std::ios::binary);
  return {std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
}

// Decoded frames of one stream (rx type, mode, bits), or a failure message.
struct Frame {
  int rx = 0, mode = 0;
  Vsp8u bits[244] = {};
};

std::vector<Frame> read_serial(const std::vector<uint8_t>& d) {
  std::vector<Frame> frames(d.size() / 500);
  for (std::size_t k = 0; k < frames.size(); ++k) {
    Vsp16s w[250];
    for (int i = 0; i < 250; ++i) w[i] = static_cast<Vsp16s>(d[500 * k + 2 * i] | (d[500 * k + 2 * i + 1] << 8));
    EXPECT_EQ(vspscodecGsmAmrSerialRead(w, &frames[k].rx, &frames[k].mode, frames[k].bits), vspStsNoErr) << k;
  }
  return frames;
}

std::vector<Frame> read_storage(const std::vector<uint8_t>& d) {
  std::vector<Frame> frames;
  EXPECT_TRUE(d.size() >= 6 && std::string(d.begin(), d.begin() + 6) == "#!AMR\n");
  for (std::size_t pos = 6; pos < d.size();) {
    int bytes = 0;
    if (vspscodecGsmAmrStorageFrameSize(d[pos], &bytes) != vspStsNoErr || pos + bytes > d.size()) {
      ADD_FAILURE() << "bad storage frame at byte " << pos;
      break;
    }
    Frame f;
    EXPECT_EQ(vspscodecGsmAmrStorageRead(&d[pos], &f.rx, &f.mode, f.bits), vspStsNoErr);
    frames.push_back(f);
    pos += static_cast<std::size_t>(bytes);
  }
  return frames;
}

// Decodes the frames and compares with the expected output; returns the
// number of differing samples.
std::size_t decode_and_compare(const std::vector<Frame>& frames, const std::vector<uint8_t>& expected) {
  int size = 0;
  EXPECT_EQ(vspscodecGsmAmrDecoderGetSize(&size), vspStsNoErr);
  std::vector<uint64_t> mem((static_cast<std::size_t>(size) + 7) / 8);
  EXPECT_EQ(vspscodecGsmAmrDecoderInit(mem.data()), vspStsNoErr);
  EXPECT_EQ(expected.size(), frames.size() * 320);
  std::size_t bad = 0;
  for (std::size_t k = 0; k < frames.size(); ++k) {
    Vsp16s pcm[160];
    EXPECT_EQ(vspscodecGsmAmrDecode(mem.data(), frames[k].rx, frames[k].mode, frames[k].bits, pcm), vspStsNoErr);
    for (std::size_t i = 0; i < 160; ++i) {
      const std::size_t o = 2 * (160 * k + i);
      if (o + 1 < expected.size() && pcm[i] != static_cast<Vsp16s>(expected[o] | (expected[o + 1] << 8))) ++bad;
    }
  }
  return bad;
}

std::vector<fs::path> outputs() {
  std::vector<fs::path> v;
  const std::string dir = vt::testvectors_dir();
  if (dir.empty() || !fs::is_directory(dir + "/gsmamr")) return v;
  for (const char* sub : {"/gsmamr", "/gsmamr/check"})
    for (const auto& e : fs::directory_iterator(dir + sub))
      if (e.path().extension() == ".out") v.push_back(e.path());
  std::sort(v.begin(), v.end());
  return v;
}

struct Format {
  const char* ext;
  std::vector<Frame> (*read)(const std::vector<uint8_t>&);
  std::size_t minFiles;  // 51 serial pairs; 45 storage files (none for bad, homing, random)
};

class GsmAmrDecoderStreams : public testing::TestWithParam<Format> {};

TEST_P(GsmAmrDecoderStreams, EveryStreamSampleForSample) {
  const auto outs = outputs();
  if (outs.empty()) GTEST_SKIP() << "GSM-AMR conformance streams not found (../shared/testvectors/gsmamr)";
  std::size_t files = 0, frames = 0;
  for (const fs::path& out : outs) {
    fs::path in = out;
    in.replace_extension(GetParam().ext);
    if (!fs::exists(in)) continue;
    const auto f = GetParam().read(read_bytes(in));
    EXPECT_EQ(decode_and_compare(f, read_bytes(out)), 0u) << in.filename();
    ++files;
    frames += f.size();
  }
  EXPECT_GE(files, GetParam().minFiles);
  std::printf("%zu %s files, %zu frames\n", files, GetParam().ext, frames);
}

INSTANTIATE_TEST_SUITE_P(Formats, GsmAmrDecoderStreams,
                         testing::Values(Format{".cod", read_serial, 51}, Format{".amr", read_storage, 45}),
                         [](const testing::TestParamInfo<Format>& i) { return std::string(i.param.ext + 1); });

}  // namespace

namespace {

// Packing every serial stream's frames into the storage format gives the
// stream's .amr file byte for byte (the encoder's transmit types 0..3).
TEST(GsmAmrStorageFormat, PackingEverySerialStreamGivesItsAmrFile) {
  const auto outs = outputs();
  if (outs.empty()) GTEST_SKIP() << "GSM-AMR conformance streams not found (../shared/testvectors/gsmamr)";
  std::size_t files = 0;
  for (fs::path cod : outs) {
    cod.replace_extension(".cod");
    fs::path amr = cod;
    amr.replace_extension(".amr");
    if (!fs::exists(amr) || !fs::exists(cod)) continue;
    const auto d = read_bytes(cod);
    std::vector<uint8_t> packed = {'#', '!', 'A', 'M', 'R', '\n'};
    for (std::size_t k = 0; k < d.size() / 500; ++k) {
      auto word = [&](int i) { return static_cast<Vsp16s>(d[500 * k + 2 * i] | (d[500 * k + 2 * i + 1] << 8)); };
      Vsp8u bits[244];
      for (int i = 0; i < 244; ++i) bits[i] = static_cast<Vsp8u>(word(1 + i));
      Vsp8u frame[32];
      int n = 0;
      const int mode = word(245) < 0 ? 0 : word(245);
      ASSERT_EQ(vspscodecGsmAmrStorageWrite(word(0), mode, bits, frame, &n), vspStsNoErr) << cod << " " << k;
      packed.insert(packed.end(), frame, frame + n);
    }
    EXPECT_TRUE(packed == read_bytes(amr)) << amr.filename();
    ++files;
  }
  EXPECT_GE(files, 45u);
}

}  // namespace
