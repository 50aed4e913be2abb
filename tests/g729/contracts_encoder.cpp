// Contracts of the G.729 pitch-lag coder and taming test, whose random
// scalars depend on each other; the other encoder steps are rows in
// contracts.txt.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract.h"

namespace {

int64_t pick(std::mt19937& rng, int64_t lo, int64_t hi) {
  return lo + static_cast<int64_t>(rng() % static_cast<uint32_t>(hi - lo + 1));
}

}  // namespace

VT_CONTRACT(legacy90vspsEncodePitchLag_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .scalar("T0", 62)
        .scalar("frac", -1)
        .scalar("refLag", 60)
        .scalar("subframe", 1)
        .out("pDstIndex", 1);
  };
  c.checks = {vt::bad("subframe", 2, vspStsRangeErr), vt::bad("frac", 2, vspStsRangeErr),
              vt::bad("T0", 145, vspStsRangeErr), vt::bad("refLag", 18, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    const int64_t ref = pick(rng, 20, 143);
    call.scalar("refLag", ref).scalar("subframe", pick(rng, 0, 1)).scalar("frac", pick(rng, -1, 1));
    call.scalar("T0", std::min<int64_t>(144, std::max<int64_t>(19, ref + pick(rng, -6, 5))));
  };
  return c;
}

VT_CONTRACT(legacy90vspsTamingTest_G729_32s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .scalar("T0", 60)
        .scalar("frac", 1)
        .in("pExcErr", std::vector<Vsp32s>{16384, 16384, 16384, 16384})
        .out("pDstFlag", 1);
  };
  c.checks = {vt::bad("T0", 18, vspStsRangeErr), vt::bad("T0", 145, vspStsRangeErr),
              vt::bad("frac", 2, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    const int64_t t0 = pick(rng, 19, 144);
    call.scalar("T0", t0).scalar("frac", t0 == 144 ? pick(rng, -1, 0) : pick(rng, -1, 1));
  };
  return c;
}
