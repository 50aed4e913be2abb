// The per-level table of g729/internal_ops.h.
#include "g729/internal_ops.h"

#include "speech/lpc/lsp_root_search.h"

namespace vsps::VSPS_NS {

namespace {
const lsp::ChebyshevForm& form_of(int form) {
  return form == 0 ? lsp::kChebyshevQ11 : (form == 1 ? lsp::kChebyshevQ10 : lsp::kChebyshevAmrQ10);
}
int16_t chebyshev_one(int16_t x, const int16_t* f, int form) { return lsp::chebyshev(x, f, form_of(form)); }
void chebyshev_n(const int16_t* x, int n, const int16_t* f, int form, int16_t* y) {
#if defined(VSPS_CHEBYSHEV_MANY)
  lsp::chebyshev_many(x, n, f, form_of(form), y);
#else
  for (int k = 0; k < n; ++k) y[k] = lsp::chebyshev(x[k], f, form_of(form));
#endif
}
}  // namespace

const LspSearchOps kLspSearchOps = {&chebyshev_one, &chebyshev_n};

}  // namespace vsps::VSPS_NS
