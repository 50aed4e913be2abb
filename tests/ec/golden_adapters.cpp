// Golden-file adapters of the echo-cancellation toolkit: history in front
// of the full-band blocks, pointer arrays of sub-band frames, filter-bank
// and tone-detector state blocks carried through a seq.
#include <cstring>

#include "ec/subband_layout.h"
#include "ec/tone_layout.h"
#include "tests/ec/ec_test_util.h"
#include "tests/support/golden_runner.h"

namespace {

using vt::Call;
using vt::GoldenAdapter;
using vt::GoldenCase;
using vt::SeqContext;

// The reference array holds `history` samples before the block.
GoldenAdapter history_adapter(int extra) {
  GoldenAdapter a;
  a.bind = [extra](Call& call, const GoldenCase& gc, SeqContext&) {
    const vt::GoldenArray* in = gc.in("reference");
    if (in == nullptr) return;
    vt::fill_from_tokens(call, "reference", in->values, vt::Role::In);
    const int64_t history = gc.arg_int("tapLen") - 1 + extra;
    if (gc.arg_int("len") >= 1 && history >= 0 && static_cast<std::size_t>(history) <= in->values.size())
      call.offset("reference", static_cast<std::size_t>(history));
  };
  return a;
}

// Frames of numSegments x numSubbands for the named pointer arrays.
GoldenAdapter frames_adapter(std::vector<std::string> names) {
  GoldenAdapter a;
  a.bind = [names](Call& call, const GoldenCase& gc, SeqContext&) {
    for (const std::string& n : names)
      ect::bind_frames(call, gc, n, gc.arg_int("numSegments"), gc.arg_int("numSubbands"));
  };
  return a;
}

// A filter-bank working call: the seq's state block (Init on the first
// case with the init... arguments), a work buffer of the reported size.
GoldenAdapter subband_adapter(bool fixedPoint) {
  GoldenAdapter a;
  a.extraNames = {"initOrder", "initFrameSize", "initWindowLen", "initWindow"};
  constexpr std::size_t kMisalign = 5;
  a.bind = [fixedPoint](Call& call, const GoldenCase& gc, SeqContext& seq) {
    const int order = static_cast<int>(gc.arg_int("initOrder"));
    const int windowLen = static_cast<int>(gc.arg_int("initWindowLen"));
    if (seq.first || seq.state.empty()) {
      std::vector<uint8_t> window;
      if (const vt::GoldenArray* w = gc.in("initWindow")) {
        for (const std::string& t : w->values) {
          if (fixedPoint) {
            const auto v = static_cast<Vsp16s>(vt::parse_int(t));
            window.insert(window.end(), reinterpret_cast<const uint8_t*>(&v), reinterpret_cast<const uint8_t*>(&v) + 2);
          } else {
            const float v = vt::parse_float(t);
            window.insert(window.end(), reinterpret_cast<const uint8_t*>(&v), reinterpret_cast<const uint8_t*>(&v) + 4);
          }
        }
      }
      const int st = ect::setup_subband_state(call, fixedPoint, order, static_cast<int>(gc.arg_int("initFrameSize")),
                                              windowLen, window, "state", "workBuffer", kMisalign);
      if (st != 0) throw std::runtime_error("Init failed: " + std::to_string(st));
    } else {
      ect::restore_state(call, "state", seq.state, ect::subband_self_pointers(fixedPoint), kMisalign);
      call.bytes("workBuffer", static_cast<std::size_t>(ect::subband_sizes(fixedPoint, order, windowLen).work), 7);
    }
    if (gc.arg_is_null("workBuffer")) call.null("workBuffer");
    if (gc.arg_is_null("state")) call.null("state");
  };
  a.after = [](Call& call, const GoldenCase&, SeqContext& seq, std::vector<std::string>&) {
    if (call.role("state") != vt::Role::Null) seq.state = ect::save_state(call, "state");
  };
  return a;
}

// Init cases: 'alloc' blocks of the reported sizes at odd addresses.
GoldenAdapter subband_init_adapter(bool fixedPoint) {
  GoldenAdapter a;
  a.bind = [fixedPoint](Call& call, const GoldenCase& gc, SeqContext&) {
    const ect::SubbandSizes sz = ect::subband_sizes(fixedPoint, static_cast<int>(gc.arg_int("order")),
                                                    static_cast<int>(gc.arg_int("windowLen")));
    for (const char* name : {"state", "initBuffer"}) {
      const std::string* v = gc.arg(name);
      if (v != nullptr && *v == "alloc") {
        const int bytes = sz.status != 0 ? (1 << 20) : (std::string(name) == "state" ? sz.state : sz.init);
        call.bytes(name, static_cast<std::size_t>(bytes), std::string(name) == "state" ? 3 : 9);
      }
    }
    if (call.has("state") && call.role("state") != vt::Role::Null)
      call.self_pointers("state", ect::subband_self_pointers(fixedPoint));
  };
  return a;
}

GoldenAdapter tone_init_adapter(int bytes) {
  GoldenAdapter a;
  a.bind = [bytes](Call& call, const GoldenCase& gc, SeqContext&) {
    const std::string* v = gc.arg("state");
    if (v != nullptr && *v == "alloc") call.bytes("state", static_cast<std::size_t>(bytes), 6);
  };
  return a;
}

// Compares the diagnostic state dump of a tone-detector case, except the
// field at `skip` (-1: none).
template <class T>
void compare_dump(const GoldenCase& gc, const char* name, const std::vector<T>& got, std::vector<std::string>& errors,
                  int skip) {
  const vt::GoldenArray* want = gc.out(name);
  if (want == nullptr) return;
  if (want->values.size() != got.size()) {
    errors.push_back(std::string(name) + ": dump size differs");
    return;
  }
  for (std::size_t k = 0; k < got.size(); ++k) {
    if (static_cast<int>(k) == skip) continue;
    const double w = vt::parse_double(want->values[k]);
    if (static_cast<double>(got[k]) != w) {
      errors.push_back(std::string(name) + "[" + std::to_string(k) + "] = " + std::to_string(got[k]) + ", expected " +
                       want->values[k]);
      return;
    }
  }
}

// The tone run of the dumps follows the other reading of its reset (reset
// only by a counted reversal); ours restarts it at every dip below 0.48.
// Results and all other fields must agree.
constexpr int kToneRunField16s = 6;
constexpr int kToneRunField32f = 0;

GoldenAdapter tone_adapter(bool fixedPoint) {
  GoldenAdapter a;
  a.extraNames = {"initRate", "state", "stateF", "stateI"};
  a.bind = [fixedPoint](Call& call, const GoldenCase& gc, SeqContext& seq) {
    const int bytes = fixedPoint ? vsps::ec::kToneStateBytes16s : vsps::ec::kToneStateBytes32f;
    call.bytes("state", static_cast<std::size_t>(bytes), 11);
    auto mem = call.buf<uint8_t>("state");
    if (seq.first || seq.state.empty()) {
      const int rate = static_cast<int>(gc.arg_int("initRate"));
      const int st = fixedPoint ? legacy90vspsToneDetectInit_EC_16s(mem.data(), rate)
                                : legacy90vspsToneDetectInit_EC_32f(mem.data(), rate);
      if (st != 0) throw std::runtime_error("Init failed");
    } else {
      std::memcpy(mem.data(), seq.state.data(), mem.size());
    }
    if (gc.arg_is_null("state")) call.null("state");
  };
  a.after = [fixedPoint](Call& call, const GoldenCase& gc, SeqContext& seq, std::vector<std::string>& errors) {
    if (call.role("state") == vt::Role::Null) return;
    auto mem = call.buf<uint8_t>("state");
    seq.state.assign(mem.begin(), mem.end());
    const uint8_t* block = vsps::ec::align16(mem.data());
    if (fixedPoint) {
      vsps::ec::ToneState16s s;
      std::memcpy(&s, block, sizeof s);
      compare_dump(gc, "state",
                   std::vector<int64_t>{s.ey, s.ex, s.x1, s.x2, s.y1, s.y2, s.toneRun, s.minRun, s.maxRun, s.gapRun,
                                        s.gapLimit, s.reversals, s.alpha},
                   errors, kToneRunField16s);
    } else {
      vsps::ec::ToneState32f s;
      std::memcpy(&s, block, sizeof s);
      compare_dump(gc, "stateF", std::vector<float>{s.ey, s.ex, s.x1, s.x2, s.y1, s.y2, s.alpha}, errors, -1);
      compare_dump(gc, "stateI", std::vector<int64_t>{s.toneRun, s.minRun, s.maxRun, s.gapRun, s.gapLimit, s.reversals},
                   errors, kToneRunField32f);
    }
  };
  return a;
}

}  // namespace

VT_GOLDEN_ADAPTER(legacy90vspsFIR_EC_32f) { return history_adapter(0); }
VT_GOLDEN_ADAPTER(legacy90vspsFIR_EC_16s) { return history_adapter(0); }
VT_GOLDEN_ADAPTER(legacy90vspsNLMS_EC_32f) { return history_adapter(1); }
VT_GOLDEN_ADAPTER(legacy90vspsNLMS_EC_16s) { return history_adapter(1); }
VT_GOLDEN_ADAPTER(legacy90vspsFIRSubband_EC_32fc) { return frames_adapter({"inputFrames", "coeffFrames"}); }
VT_GOLDEN_ADAPTER(legacy90vspsFIRSubband_EC_32sc_Sfs) { return frames_adapter({"inputFrames", "coeffFrames"}); }
VT_GOLDEN_ADAPTER(legacy90vspsFIRSubbandLow_EC_32sc_Sfs) { return frames_adapter({"inputFrames", "coeffFrames"}); }
VT_GOLDEN_ADAPTER(legacy90vspsFIRSubbandCoeffUpdate_EC_32fc_I) {
  return frames_adapter({"inputFrames", "coeffFrames"});
}
VT_GOLDEN_ADAPTER(legacy90vspsSubbandAnalysis_16s32sc_Sfs) { return subband_adapter(true); }
VT_GOLDEN_ADAPTER(legacy90vspsSubbandSynthesis_32sc16s_Sfs) { return subband_adapter(true); }
VT_GOLDEN_ADAPTER(legacy90vspsSubbandAnalysis_32f32fc) { return subband_adapter(false); }
VT_GOLDEN_ADAPTER(legacy90vspsSubbandSynthesis_32fc32f) { return subband_adapter(false); }
VT_GOLDEN_ADAPTER(legacy90vspsSubbandProcessInit_16s) { return subband_init_adapter(true); }
VT_GOLDEN_ADAPTER(legacy90vspsSubbandProcessInit_32f) { return subband_init_adapter(false); }
VT_GOLDEN_ADAPTER(legacy90vspsToneDetectInit_EC_16s) { return tone_init_adapter(vsps::ec::kToneStateBytes16s); }
VT_GOLDEN_ADAPTER(legacy90vspsToneDetectInit_EC_32f) { return tone_init_adapter(vsps::ec::kToneStateBytes32f); }
VT_GOLDEN_ADAPTER(legacy90vspsToneDetect_EC_16s) { return tone_adapter(true); }
VT_GOLDEN_ADAPTER(legacy90vspsToneDetect_EC_32f) { return tone_adapter(false); }

namespace {
// Successful GetSize cases list no sizes (they are ours): give the outputs
// and check the lower bounds the layout implies.
GoldenAdapter subband_size_adapter(bool fixedPoint) {
  GoldenAdapter a;
  a.bind = [](Call& call, const GoldenCase& gc, SeqContext&) {
    for (const char* name : {"stateSize", "initBufSize", "workBufSize"})
      if (gc.in(name) == nullptr && gc.out(name) == nullptr && !gc.arg_is_null(name)) call.out(name, 1);
  };
  a.after = [fixedPoint](Call& call, const GoldenCase& gc, SeqContext&, std::vector<std::string>& errors) {
    if (gc.status.value_or(-1) != 0 || call.role("stateSize") == vt::Role::Null) return;
    const int64_t order = gc.arg_int("order"), len = gc.arg_int("windowLen");
    const int state = call.buf<int>("stateSize")[0], work = call.buf<int>("workBufSize")[0];
    const int64_t minState = fixedPoint ? 2 * ((2 * len + 15) / 16 * 16) + 48 + 16 : 8 * len + 40 + 16;
    if (state < minState) errors.push_back("stateSize " + std::to_string(state) + " below " + std::to_string(minState));
    if (work < 4 * (int64_t(1) << order) + 16) errors.push_back("workBufSize too small");
  };
  return a;
}
}  // namespace

VT_GOLDEN_ADAPTER(legacy90vspsSubbandProcessGetSize_16s) { return subband_size_adapter(true); }
VT_GOLDEN_ADAPTER(legacy90vspsSubbandProcessGetSize_32f) { return subband_size_adapter(false); }
