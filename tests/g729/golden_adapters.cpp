// Golden adapters of the G.729 family: the high-pass filter's state block
// travels through each seq, initialised with the standard coefficient set of
// the seq's scale factor.
#include "tests/g729/g729_test_util.h"
#include "tests/support/golden_runner.h"

namespace {
const g729t::V16 kPreCoeff = {4096, 7807, -3733, 1899, -3798, 1899};     // Q12, scale factor 12
const g729t::V16 kPostCoeff = {8192, 15836, -7667, 7699, -15398, 7699};  // Q13, scale factor 13
}  // namespace

VT_GOLDEN_ADAPTER(legacy90vspsHighPassFilter_G729_16s_ISfs) {
  vt::GoldenAdapter a;
  a.bind = [](vt::Call& call, const vt::GoldenCase& gc, vt::SeqContext& seq) {
    int size = 0;
    legacy90vspsHighPassFilterSize_G729(&size);
    call.bytes("pState", static_cast<std::size_t>(size));
    auto state = call.buf<Vsp8u>("pState");
    if (seq.first) {
      const g729t::V16& coeff = gc.arg_int("scaleFactor") == 13 ? kPostCoeff : kPreCoeff;
      legacy90vspsHighPassFilterInit_G729(coeff.data(), state.data());
    } else {
      std::copy(seq.state.begin(), seq.state.end(), state.begin());
    }
  };
  a.after = [](vt::Call& call, const vt::GoldenCase&, vt::SeqContext& seq, std::vector<std::string>&) {
    auto state = call.buf<Vsp8u>("pState");
    seq.state.assign(state.begin(), state.end());
  };
  return a;
}
