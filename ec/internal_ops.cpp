// The per-level table of ec/internal_ops.h: the transform steps of
// legacy90vspsSubbandAnalysis_32f32fc and legacy90vspsSubbandSynthesis_32fc32f
// without the windowing, folding and overlap-add.
#include "ec/internal_ops.h"

#include "ec/rfft.h"
#include "ec/subband_common.h"

namespace vsps::VSPS_NS {

namespace {
VspStatus forward(VspsSubbandProcessState_32f* state, Vsp8u* work, Vsp32fc* bins) {
  auto* h = ec::formatted_header<vsps::ec::SubbandHeader32f>(state);
  if (h == nullptr) return vspStsErr;
  const ec::Rfft32f f = ec::rfft_32f(h->tables, ec::order_of(h->fftLen));
  auto* a = reinterpret_cast<Vsp32fc*>(vsps::ec::align16(work));
  ec::bit_reverse_32fc(a, f.rev, f.m);
  ec::cfft_32f<false>(a, f.stage, f.m);
  ec::pack_forward_32f(a, f, bins);
  return vspStsNoErr;
}

VspStatus inverse(VspsSubbandProcessState_32f* state, const Vsp32fc* bins, Vsp8u* work) {
  auto* h = ec::formatted_header<vsps::ec::SubbandHeader32f>(state);
  if (h == nullptr) return vspStsErr;
  const int n = h->fftLen;
  const ec::Rfft32f f = ec::rfft_32f(h->tables, ec::order_of(n));
  auto* a = reinterpret_cast<Vsp32fc*>(vsps::ec::align16(work));
  ec::unpack_inverse_32f(bins, f, a);
  ec::cfft_32f<true>(a, f.stage, f.m);
  auto* v = reinterpret_cast<Vsp32f*>(a);
  const Vsp32f invN = 1.0f / static_cast<Vsp32f>(n);
  for (int j = 0; j < n; ++j) v[j] = v[j] * invN;
  return vspStsNoErr;
}
}  // namespace

const EcTransformOps kEcTransformOps = {&forward, &inverse};

}  // namespace vsps::VSPS_NS
