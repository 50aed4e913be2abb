// Contract of the G.729 pitch-lag decoder (its index range depends on the
// subframe); the other codec steps are rows in contracts.txt.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract.h"

namespace {

// Random integer in lo..hi.
int64_t pick(std::mt19937& rng, int64_t lo, int64_t hi) {
  return lo + static_cast<int64_t>(rng() % static_cast<uint32_t>(hi - lo + 1));
}

}  // namespace

VT_CONTRACT(legacy90vspsDecodePitchLag_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.scalar("index", 20).scalar("subframe", 1).scalar("erased", 0);
    call.inout("pSrcDstOldT0", std::vector<Vsp16s>{60}).inout("pSrcDstT0", std::vector<Vsp16s>{60});
    return call.out("pDstFrac", 1);
  };
  c.checks = {
      vt::bad("subframe", 2, vspStsRangeErr), vt::bad("index", 32, vspStsRangeErr),
      vt::bad("index", -1, vspStsRangeErr),
      vt::custom(
          "old T0 18", {"pSrcDstOldT0"}, [](vt::Call& k) { k.buf<Vsp16s>("pSrcDstOldT0")[0] = 18; }, vspStsRangeErr),
      vt::custom(
          "T0 145", {"pSrcDstT0"}, [](vt::Call& k) { k.buf<Vsp16s>("pSrcDstT0")[0] = 145; }, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    const int64_t sf = pick(rng, 0, 1);
    call.scalar("subframe", sf).scalar("erased", pick(rng, 0, 1)).scalar("index", pick(rng, 0, sf ? 31 : 255));
    call.buf<Vsp16s>("pSrcDstOldT0")[0] = static_cast<Vsp16s>(pick(rng, 19, 144));
    call.buf<Vsp16s>("pSrcDstT0")[0] = static_cast<Vsp16s>(pick(rng, 19, 144));
  };
  return c;
}
