#include "tests/support/golden_rename.h"

#include <algorithm>

namespace vt {

GoldenAdapter renaming_adapter(std::vector<GoldenName> names, std::vector<std::string> ignored,
                               std::vector<std::pair<std::string, int64_t>> fixed) {
  GoldenAdapter a;
  for (const GoldenName& n : names) a.extraNames.push_back(n.golden);
  a.extraNames.insert(a.extraNames.end(), ignored.begin(), ignored.end());
  a.bind = [names, fixed](Call& call, const GoldenCase& gc, SeqContext&) {
    for (const auto& [param, value] : fixed) call.scalar(param, value);
    for (const GoldenName& n : names) {
      if (const std::string* v = gc.arg(n.golden)) {
        if (call.fn().params[static_cast<std::size_t>(call.fn().index_of(n.param))].isPointer)
          fill_from_tokens(call, n.param, {*v}, Role::In);
        else
          call.scalar(n.param, parse_int(*v));
        continue;
      }
      const GoldenArray* in = gc.in(n.golden);
      if (in == nullptr) continue;
      // An output of the same parameter under any name makes it in/out.
      const bool alsoOut = std::any_of(names.begin(), names.end(), [&](const GoldenName& m) {
        return m.param == n.param && gc.out(m.golden) != nullptr;
      });
      fill_from_tokens(call, n.param, in->values, alsoOut ? Role::InOut : Role::In);
    }
    for (const GoldenName& n : names) {
      const GoldenArray* out = gc.out(n.golden);
      if (out == nullptr || call.has(n.param)) continue;
      fill_from_tokens(call, n.param, out->values, Role::Out);
      auto mem = call.buf<uint8_t>(n.param);
      std::fill(mem.begin(), mem.end(), kGuardByte);
    }
  };
  a.after = [names](Call& call, const GoldenCase& gc, SeqContext&, std::vector<std::string>& errors) {
    for (const GoldenName& n : names)
      if (const GoldenArray* out = gc.out(n.golden)) {
        const std::string diff = compare_tokens(call, n.param, out->values, gc);
        if (!diff.empty()) errors.push_back(n.golden + ": " + diff);
      }
  };
  return a;
}

}  // namespace vt
