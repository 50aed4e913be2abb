// Contracts of the GSM-AMR encoder's codebook search and gain quantisation.
#include "tests/gsmamr/amr_test_util.h"
#include "tests/support/contract.h"

namespace {

constexpr int kSpeechModes[] = {0, 1, 3, 6, 7, 8, 11, 12};

std::vector<vt::Check> bad_speech_modes() {
  std::vector<vt::Check> v;
  for (int m : amrt::kInvalidModes) v.push_back(vt::bad("mode", m, vspStsRangeErr));
  v.push_back(vt::bad("mode", 25, vspStsRangeErr));
  return v;
}

std::vector<vt::Check> bad_subframes() {
  return {vt::bad("subframe", -1, vspStsRangeErr), vt::bad("subframe", 4, vspStsRangeErr)};
}

int gain_state_size() {
  int n = 0;
  legacy90vspsGainQuantStateSize_GSMAMR(&n);
  return n;
}

// Speech-like vector of one subframe at a random level.
void random_vec(vt::Call& call, const char* name, std::mt19937& rng) {
  const auto x = amrt::random_speech(rng, 40);
  auto b = call.buf<Vsp16s>(name);
  for (std::size_t i = 0; i < b.size() && i < x.size(); ++i) b[i] = x[i];
}

}  // namespace

VT_CONTRACT(legacy90vspsFixedCodebookSearch_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pTarget2", 40).in("pImp", 40).in("pLtpResidual", 40).scalar("T0", 25).scalar("sharpGain", 9000);
    call.scalar("subframe", 2).out("pDstCode", 40).out("pDstFiltCode", 40).out("pDstIndex", 10).scalar("mode", 12);
    call.buf<Vsp16s>("pImp")[0] = 4096;
    return call;
  };
  c.checks = {vt::bad("T0", 16, vspStsRangeErr), vt::bad("T0", 145, vspStsRangeErr)};
  for (const vt::Check& k : bad_subframes()) c.checks.push_back(k);
  for (const vt::Check& k : bad_speech_modes()) c.checks.push_back(k);
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    random_vec(call, "pTarget2", rng);
    random_vec(call, "pLtpResidual", rng);
    auto h = call.buf<Vsp16s>("pImp");
    h[0] = 4096;
    for (int i = 1; i < 40; ++i) h[i] = static_cast<Vsp16s>(h[i - 1] * (static_cast<int>(rng() % 1801) - 900) / 1000);
    call.scalar("T0", 18 + static_cast<int64_t>(rng() % 126));
    call.scalar("sharpGain", static_cast<int64_t>(rng() % 13018));
    call.scalar("subframe", static_cast<int64_t>(rng() % 4));
    call.scalar("mode", kSpeechModes[rng() % 8]);
  };
  return c;
}

VT_CONTRACT(legacy90vspsQuantPitchGain_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .scalar("gainPitch", 12000)
        .scalar("gpLimit", 32767)
        .out("pDstGain", 1)
        .out("pDstIndex", 1)
        .scalar("mode", 8);
  };
  for (int m : {0, 1, 3, 6, 7, 11, 25, -1}) c.checks.push_back(vt::bad("mode", m, vspStsRangeErr));
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.scalar("gainPitch", static_cast<int64_t>(rng() % 20000));
    call.scalar("gpLimit", rng() % 2 ? 32767 : 15565);
    call.scalar("mode", rng() % 2 ? 8 : 12);
  };
  return c;
}

VT_CONTRACT(legacy90vspsGainQuantStateSize_GSMAMR) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).out("pSize", 1); };
  return c;
}

VT_CONTRACT(legacy90vspsGainQuantInit_GSMAMR) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).bytes("pState", gain_state_size(), 3); };
  return c;
}

VT_CONTRACT(legacy90vspsGainQuant_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pTarget", 40).in("pTarget2", 40).in("pFiltAdapt", 40).in("pFiltCode", 40).in("pCode", 40);
    call.in("pResidual", 40).in("pAdapt", 40).in("pCoeff", std::vector<Vsp16s>{20000, 10, 15000, 9});
    call.scalar("gainPitch", 9000).scalar("gpLimit", 32767);
    call.inout("pSrcDstPastQuaEn", std::vector<Vsp16s>{-14336, -14336, -14336, -14336, -2381, -2381, -2381, -2381});
    call.bytes("pState", gain_state_size(), 1);
    legacy90vspsGainQuantInit_GSMAMR(call.buf<Vsp8u>("pState").data());
    call.out("pDstGains", 4).out("pDstIndex", 2).scalar("subframe", 1).scalar("mode", 8);
    return call;
  };
  for (const vt::Check& k : bad_subframes()) c.checks.push_back(k);
  for (const vt::Check& k : bad_speech_modes()) c.checks.push_back(k);
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    for (const char* v : {"pTarget", "pTarget2", "pFiltAdapt", "pFiltCode", "pResidual", "pAdapt"})
      random_vec(call, v, rng);
    auto code = call.buf<Vsp16s>("pCode");
    for (auto& x : code) x = 0;
    for (int k = 0; k < 4; ++k) code[rng() % 40] = rng() % 2 ? 8191 : -8192;
    auto co = call.buf<Vsp16s>("pCoeff");
    co[0] = static_cast<Vsp16s>(16384 + rng() % 16384);
    co[1] = static_cast<Vsp16s>(static_cast<int>(rng() % 30) - 10);
    co[2] = static_cast<Vsp16s>(static_cast<int>(rng() % 65536) - 32768);
    co[3] = static_cast<Vsp16s>(static_cast<int>(rng() % 30) - 10);
    for (auto& e : call.buf<Vsp16s>("pSrcDstPastQuaEn"))
      e = static_cast<Vsp16s>(-14336 + static_cast<int>(rng() % 20000));
    call.scalar("gainPitch", static_cast<int64_t>(rng() % 19662));
    call.scalar("gpLimit", rng() % 2 ? 32767 : 15565);
    call.scalar("subframe", static_cast<int64_t>(rng() % 4));
    call.scalar("mode", kSpeechModes[rng() % 8]);
  };
  return c;
}
