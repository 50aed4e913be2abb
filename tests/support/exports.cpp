#include "tests/support/exports.h"

namespace vt {

int ExportInfo::index_of(std::string_view param) const {
  for (std::size_t k = 0; k < params.size(); ++k)
    if (params[k].name == param) return static_cast<int>(k);
  return -1;
}

const std::vector<ExportInfo>& all_exports() {
  static const std::vector<ExportInfo> table = {
#define VSPS_FN(ret, name, params, args) detail::make_info(#name, true, #params, &name),
#define VSPS_SERVICE(ret, name, params, args) detail::make_info(#name, false, #params, &name),
#include "vsps_functions.h"
#undef VSPS_FN
#undef VSPS_SERVICE
  };
  return table;
}

const ExportInfo* find_export(std::string_view name) {
  for (const ExportInfo& e : all_exports())
    if (e.name == name) return &e;
  return nullptr;
}

std::size_t component_size(Elem e) {
  switch (e) {
    case Elem::U8:
      return 1;
    case Elem::S16:
    case Elem::Short:
      return 2;
    case Elem::S32:
    case Elem::U32:
    case Elem::F32:
    case Elem::C32F:
    case Elem::C32S:
    case Elem::Int:
    case Elem::Float:
      return 4;
    case Elem::F64:
    case Elem::Double:
    case Elem::Pointer:
      return 8;
    case Elem::Opaque:
      return 1;
  }
  return 1;
}

}  // namespace vt
