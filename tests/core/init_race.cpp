// First-call initialisation raced from many threads: every thread's first
// call returns its own correct result and all agree on one level. Built for
// ThreadSanitizer in CI.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "core/cpu_state.h"
#include "tests/support/levels.h"
#include "vsps.h"

namespace {

TEST(InitRace, ConcurrentFirstCalls) {
  const int rounds = 50, threads = 8;
  for (int round = 0; round < rounds; ++round) {
    vsps::reset_initialisation();
    std::atomic<int> ready{0};
    std::vector<Vsp32s> results(threads);
    std::vector<int> versions(threads);
    std::vector<std::thread> pool;
    for (int t = 0; t < threads; ++t)
      pool.emplace_back([&, t] {
        ready.fetch_add(1);
        while (ready.load() < threads) {
        }
        Vsp32s v = 65536;
        const VspStatus st = legacy90vspsInvSqrt_32s_I(&v, 1);
        results[static_cast<std::size_t>(t)] = st == vspStsNoErr ? v : -1;
        versions[static_cast<std::size_t>(t)] = legacy90vspscGetLibVersion() != nullptr;
      });
    for (auto& th : pool) th.join();
    for (int t = 0; t < threads; ++t) {
      EXPECT_EQ(results[static_cast<std::size_t>(t)], 4194176);
      EXPECT_TRUE(versions[static_cast<std::size_t>(t)]);
    }
    EXPECT_EQ(vsps::current_level(), vt::highest_supported_level()) << "round " << round;
  }
}

}  // namespace
