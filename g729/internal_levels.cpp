// Level-indexed table of the G.729 internal entry points.
#include "g729/internal_ops.h"

namespace vsps {

const LspSearchOps& lsp_search_ops(int level) {
  static const LspSearchOps* const kByLevel[7] = VSPS_PER_LEVEL_ADDRESSES(kLspSearchOps);
  return *kByLevel[level < 0 ? 0 : (level > 6 ? 6 : level)];
}

}  // namespace vsps
