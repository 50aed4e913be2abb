// The only process-wide state of the library: the processor level, the
// probed and enabled feature masks, written once by the initialisation.
//
// Atomics with acquire/release ordering: on x86-64 both are plain moves (no
// lock, no interlocked instruction), yet the first-call race is free of data
// races in the C++ memory model. Threads that race through the first call
// may each run the initialisation; they all store the same values.
#pragma once

#include <atomic>
#include <cstdint>

namespace vsps {

extern std::atomic<int32_t> g_cpu_level;      // -1 until initialised, then 0..6
extern std::atomic<uint64_t> g_enabled_mask;  // probed mask restricted to the level

inline int32_t current_level() { return g_cpu_level.load(std::memory_order_acquire); }
inline uint64_t enabled_mask() { return g_enabled_mask.load(std::memory_order_acquire); }

// The cached probe result (runs the probe on first use).
uint64_t probed_feature_mask();
// The value of VSPS_CPU_MASK read by the initialisation (all ones if unset).
uint64_t restrict_mask();

// Internal hooks for tests and benchmarks; not exported from the shared
// library. force_level stores a level and enabled mask as the
// initialisation would; reset_initialisation puts the library back in its
// first-call state (level -1, probe not run).
void force_level(int32_t level, uint64_t enabledMask);
void reset_initialisation();

}  // namespace vsps
