// GSM-AMR encoder conformance through the codec layer: every encoder stream
// of ../shared/testvectors/gsmamr (the five G.729 inputs in all eight modes,
// the mode-switching stream, the homing stream in two modes, DTX with VAD
// option 1 and 2, the installation check) coded from its input and compared
// with the reference bit-stream (.cod) frame for frame. Skips when the
// streams are absent.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "tests/codecs/itu_files.h"
#include "vsps_codecs.h"

namespace {

struct Stream {
  std::string cod;    // expected serial stream, relative to the gsmamr folder
  std::string input;  // relative to the test-vector folder
  int mode;           // constant mode, or -1: the mode file below
  std::string modeFile;
  int dtx, vad;
};

int mode_of(const std::string& name) {
  const char* names[8] = {"MR475", "MR515", "MR59", "MR67", "MR74", "MR795", "MR102", "MR122"};
  for (int i = 0; i < 8; ++i)
    if (name == names[i]) return i;
  return -1;
}

// Frames differing from the expected stream (or -1 when the sizes differ).
long encode_and_compare(const Stream& s, const std::string& dir) {
  const std::vector<uint16_t> in = itu::read_words(dir + "/" + s.input);
  const std::vector<uint16_t> want = itu::read_words(dir + "/gsmamr/" + s.cod);
  const std::size_t frames = in.size() / 160;
  if (want.size() != frames * 250) return -1;
  std::vector<int> modes(frames, s.mode);
  if (s.mode < 0) {
    std::ifstream f(dir + "/gsmamr/" + s.modeFile);
    std::string line;
    for (std::size_t k = 0; k < frames && std::getline(f, line);) {
      while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
      if (!line.empty()) modes[k++] = mode_of(line);
    }
  }
  int size = 0;
  vspscodecGsmAmrEncoderGetSize(&size);
  std::vector<uint64_t> mem((static_cast<std::size_t>(size) + 7) / 8);
  EXPECT_EQ(vspscodecGsmAmrEncoderInit(mem.data(), s.dtx, s.vad), vspStsNoErr);
  long bad = 0;
  for (std::size_t k = 0; k < frames; ++k) {
    Vsp16s pcm[160], words[250];
    for (int i = 0; i < 160; ++i) pcm[i] = static_cast<Vsp16s>(in[160 * k + i]);
    Vsp8u bits[244];
    int tx = -1;
    EXPECT_EQ(vspscodecGsmAmrEncode(mem.data(), modes[k], pcm, &tx, bits), vspStsNoErr);
    EXPECT_EQ(vspscodecGsmAmrSerialWrite(tx, modes[k], bits, words), vspStsNoErr);
    bool same = true;
    for (int i = 0; i < 250; ++i) same = same && static_cast<uint16_t>(words[i]) == want[250 * k + i];
    if (!same && bad++ == 0) std::printf("  %s: first differing frame %zu\n", s.cod.c_str(), k);
  }
  return bad;
}

std::vector<Stream> dtx_off_streams() {
  std::vector<Stream> v;
  const char* modes[8] = {"475", "515", "59", "67", "74", "795", "102", "122"};
  for (const char* x : {"SPEECH", "ALGTHM", "TAME", "PITCH", "FIXED"})
    for (int m = 0; m < 8; ++m)
      v.push_back({std::string(x) + "_" + modes[m] + ".cod", std::string("g729/") + x + ".IN", m, "", 0, 1});
  v.push_back({"SPEECH_switch.cod", "g729/SPEECH.IN", -1, "SPEECH_switch.modes", 0, 1});
  v.push_back({"HOMING_475.cod", "gsmamr/HOMING.INP", 0, "", 0, 1});
  v.push_back({"HOMING_122.cod", "gsmamr/HOMING.INP", 7, "", 0, 1});
  return v;
}

std::vector<Stream> dtx_streams() {
  return {{"SPEECH_122_dtx1.cod", "g729/SPEECH.IN", 7, "", 1, 1},
          {"SPEECH_475_dtx2.cod", "g729/SPEECH.IN", 0, "", 1, 2},
          {"check/spch_dos.cod", "gsmamr/check/spch_dos.inp", -1, "check/allmodes.txt", 1, 1},
          {"check/spch_do2.cod", "gsmamr/check/spch_dos.inp", -1, "check/allmodes.txt", 1, 2}};
}

void run(const std::vector<Stream>& streams) {
  const std::string dir = vt::testvectors_dir();
  if (itu::folder("gsmamr").empty() || itu::folder("g729").empty())
    GTEST_SKIP() << "GSM-AMR streams or G.729 inputs not found (../shared/testvectors)";
  for (const Stream& s : streams) EXPECT_EQ(encode_and_compare(s, dir), 0) << s.cod;
  std::printf("%zu encoder streams\n", streams.size());
}

TEST(GsmAmrEncoderStreams, DtxOffEveryModeBitForBit) { run(dtx_off_streams()); }

TEST(GsmAmrEncoderStreams, DtxWithVadOption1And2BitForBit) { run(dtx_streams()); }

}  // namespace
