// Shared by the waveform-codec benchmarks: the speech-like signal in 10 ms
// blocks, walked in order and wrapped at the end, so that a codec's state
// runs on as in a call and no single block is learnt by the branch
// predictors; and the counters every row reports.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

#include "vsps.h"

namespace bench {

// Offsets of consecutive blocks of `block` elements in a buffer of `size`.
class BlockWalk {
 public:
  BlockWalk(std::size_t block, std::size_t size) : block_(block), size_(size) {}
  std::size_t next() {
    const std::size_t at = pos_;
    pos_ = pos_ + 2 * block_ > size_ ? 0 : pos_ + block_;
    return at;
  }

 private:
  std::size_t pos_ = 0, block_, size_;
};

// A state block of the size the library asks for.
inline std::vector<Vsp8u> state_block(VspStatus (*getSize)(int*)) {
  int size = 0;
  getSize(&size);
  return std::vector<Vsp8u>(static_cast<std::size_t>(size));
}

// Every waveform row is one call per `frameMs` of audio (10 ms; GSM 06.10's
// 20 ms frame), so the tables can give channels per core.
inline void frame_counters(benchmark::State& state, int frameMs, int samples) {
  state.counters["frame_ms"] = frameMs;
  state.SetItemsProcessed(state.iterations() * samples);
}

// One call of `f(block)` per iteration on consecutive blocks of `block`
// elements of `in`; each iteration stands for `frameMs` of audio.
template <class In, class F>
void walk_blocks(benchmark::State& state, const std::vector<In>& in, std::size_t block, int frameMs, int samples, F f) {
  BlockWalk walk(block, in.size());
  for (auto _ : state) {
    f(in.data() + walk.next());
    benchmark::ClobberMemory();
  }
  frame_counters(state, frameMs, samples);
}

}  // namespace bench
