// Many threads at once: every export's contract run on distinct buffers and
// state blocks from several threads, compared with the single-thread
// results; and the first-call initialisation raced from many threads. Built
// as its own program (label "concurrency"), run under ThreadSanitizer in CI.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "core/cpu_state.h"
#include "tests/support/contract.h"
#include "tests/support/levels.h"
#include "vsps.h"

namespace {

// Spins until every thread has arrived, so that the calls overlap.
class StartLine {
 public:
  explicit StartLine(int n) : n_(n) {}
  void arrive() {
    ready_.fetch_add(1);
    while (ready_.load() < n_) std::this_thread::yield();
  }

 private:
  int n_;
  std::atomic<int> ready_{0};
};

TEST(Concurrency, FirstCallsRaceThroughTheInitialisation) {
  const int rounds = 50, threads = 8;
  for (int round = 0; round < rounds; ++round) {
    vsps::reset_initialisation();
    StartLine start(threads);
    std::vector<Vsp32s> results(threads);
    std::vector<const VspLibraryVersion*> versions(threads);
    std::vector<std::thread> pool;
    for (int t = 0; t < threads; ++t)
      pool.emplace_back([&, t] {
        start.arrive();
        Vsp32s v = 65536;
        const VspStatus st = legacy90vspsInvSqrt_32s_I(&v, 1);
        results[static_cast<std::size_t>(t)] = st == vspStsNoErr ? v : -1;
        versions[static_cast<std::size_t>(t)] = legacy90vspscGetLibVersion();
      });
    for (auto& th : pool) th.join();
    for (int t = 0; t < threads; ++t) {
      EXPECT_EQ(results[static_cast<std::size_t>(t)], 4194176);
      EXPECT_EQ(versions[static_cast<std::size_t>(t)], versions[0]);
    }
    EXPECT_EQ(vsps::current_level(), vt::highest_supported_level()) << "round " << round;
  }
}

// Every export (stateful tools on their own state blocks, stateless ones on
// their own buffers) called from several threads at once gives exactly the
// bytes and status of the same calls made one after another.
TEST(Concurrency, EveryExportOnDistinctBuffers) {
  legacy90vspscInit();
  const int threads = 6, callsPerThread = 4;
  std::vector<const vt::Contract*> contracts;
  for (const vt::Contract& c : vt::all_contracts())
    if (c.sameAtEveryLevel) contracts.push_back(&c);  // Init re-chooses the level; the version record is a pointer
  ASSERT_GT(contracts.size(), 10u);

  // Each thread's calls: every contract, with random valid inputs of its own.
  std::vector<std::vector<vt::Call>> work(threads);
  for (int t = 0; t < threads; ++t) {
    std::mt19937 rng(static_cast<uint32_t>(1000 + t));
    for (const vt::Contract* c : contracts)
      for (int k = 0; k < callsPerThread; ++k) {
        vt::Call call = c->valid();
        if (c->randomize) c->randomize(call, rng);
        else call.randomize_inputs(rng);
        work[static_cast<std::size_t>(t)].push_back(std::move(call));
      }
  }
  // Single-thread results.
  std::vector<std::vector<std::pair<int64_t, std::vector<std::vector<uint8_t>>>>> expected(threads);
  for (int t = 0; t < threads; ++t)
    for (const vt::Call& call : work[static_cast<std::size_t>(t)]) {
      vt::Call copy = call;
      const int64_t st = copy.invoke();
      expected[static_cast<std::size_t>(t)].emplace_back(st, copy.snapshot());
    }
  // The same calls, all threads at once.
  std::vector<std::vector<std::pair<int64_t, std::vector<std::vector<uint8_t>>>>> got(threads);
  StartLine start(threads);
  std::vector<std::thread> pool;
  for (int t = 0; t < threads; ++t)
    pool.emplace_back([&, t] {
      auto& mine = work[static_cast<std::size_t>(t)];
      start.arrive();
      for (vt::Call& call : mine) {
        const int64_t st = call.invoke();
        got[static_cast<std::size_t>(t)].emplace_back(st, call.snapshot());
      }
    });
  for (auto& th : pool) th.join();
  for (int t = 0; t < threads; ++t)
    for (std::size_t k = 0; k < expected[static_cast<std::size_t>(t)].size(); ++k)
      EXPECT_TRUE(got[static_cast<std::size_t>(t)][k] == expected[static_cast<std::size_t>(t)][k])
          << work[static_cast<std::size_t>(t)][k].describe() << " in thread " << t;
}

}  // namespace
