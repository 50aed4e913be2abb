#include "tests/ec/ec_test_util.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "tests/support/golden_runner.h"

namespace ect {

const std::vector<std::size_t>& subband_self_pointers(bool fixedPoint) {
  static const std::vector<std::size_t> fixed = {0, 8, 16};  // delay, window, tables
  static const std::vector<std::size_t> flt = {16, 24, 32};
  return fixedPoint ? fixed : flt;
}

SubbandSizes subband_sizes(bool fixedPoint, int order, int windowLen) {
  SubbandSizes s;
  s.status = fixedPoint ? legacy90vspsSubbandProcessGetSize_16s(order, windowLen, &s.state, &s.init, &s.work)
                        : legacy90vspsSubbandProcessGetSize_32f(order, windowLen, &s.state, &s.init, &s.work);
  return s;
}

int setup_subband_state(vt::Call& call, bool fixedPoint, int order, int frameSize, int windowLen,
                        const std::vector<uint8_t>& windowBytes, const std::string& stateName,
                        const std::string& workName, std::size_t misalign) {
  const SubbandSizes sz = subband_sizes(fixedPoint, order, windowLen);
  if (sz.status != 0) throw std::runtime_error("GetSize failed: " + std::to_string(sz.status));
  call.bytes(stateName, static_cast<std::size_t>(sz.state), misalign);
  if (!workName.empty()) call.bytes(workName, static_cast<std::size_t>(sz.work), (misalign * 3) % 16);
  std::vector<uint8_t> init(static_cast<std::size_t>(sz.init) + 1);
  auto* state = call.buf<uint8_t>(stateName).data();
  const void* win = windowBytes.empty() ? nullptr : windowBytes.data();
  const int st = fixedPoint ? legacy90vspsSubbandProcessInit_16s(state, order, frameSize, windowLen,
                                                                 static_cast<const Vsp16s*>(win), init.data() + 1)
                            : legacy90vspsSubbandProcessInit_32f(state, order, frameSize, windowLen,
                                                                 static_cast<const Vsp32f*>(win), init.data() + 1);
  call.self_pointers(stateName, subband_self_pointers(fixedPoint));
  return st;
}

std::vector<uint8_t> save_state(vt::Call& call, const std::string& stateName) {
  auto mem = call.buf<uint8_t>(stateName);
  std::vector<uint8_t> saved(mem.begin(), mem.end());
  const auto base = reinterpret_cast<uintptr_t>(mem.data());
  saved.resize(saved.size() + sizeof base);
  std::memcpy(saved.data() + saved.size() - sizeof base, &base, sizeof base);
  return saved;
}

void restore_state(vt::Call& call, const std::string& stateName, const std::vector<uint8_t>& saved,
                   const std::vector<std::size_t>& selfPointers, std::size_t misalign) {
  uintptr_t oldBase;
  const std::size_t size = saved.size() - sizeof oldBase;
  std::memcpy(&oldBase, saved.data() + size, sizeof oldBase);
  // buf() starts after the misalignment: the saved bytes are those.
  call.bytes(stateName, size, misalign);
  auto mem = call.buf<uint8_t>(stateName);
  std::memcpy(mem.data(), saved.data(), size);
  const auto newBase = reinterpret_cast<uintptr_t>(mem.data());
  if ((oldBase & 15) != (newBase & 15)) throw std::runtime_error("state moved to another alignment");
  uint8_t* start = mem.data() + ((16 - (newBase & 15)) & 15);
  for (std::size_t off : selfPointers) {
    uintptr_t v;
    std::memcpy(&v, start + off, sizeof v);
    if (v >= oldBase && v < oldBase + size) v = v - oldBase + newBase;
    std::memcpy(start + off, &v, sizeof v);
  }
  call.self_pointers(stateName, selfPointers);
}

void bind_frames(vt::Call& call, const vt::GoldenCase& gc, const std::string& name, int64_t count, int64_t stride) {
  if (gc.arg_is_null(name)) {
    call.null(name);
    return;
  }
  const vt::GoldenArray* in = gc.in(name);
  const std::size_t tokens = in ? in->values.size() : 0;
  const std::size_t elems = tokens / 2;  // complex values
  const auto n = static_cast<std::size_t>(std::clamp<int64_t>(count, 1, 512));
  const auto s = static_cast<std::size_t>(std::clamp<int64_t>(stride, 0, 8192));
  // A short placeholder keeps every entry at its start (the call must fail
  // before reading it).
  call.frames(name, n, n * s <= elems ? s : 0, elems);
  if (in) vt::fill_from_tokens(call, name, in->values, vt::Role::In);
}

}  // namespace ect
