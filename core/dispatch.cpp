// Exported dispatch stubs and their tables, generated from the list of
// exports. Each stub reads the processor level and jumps, arguments
// untouched, to entry level+1 of its own eight-entry table: entry 0 is the
// initialisation trampoline (level -1), entries 1..7 the variants of levels
// 0..6. The trampoline runs legacy90vspscInit and re-enters through the
// table, so the first call of a primitive returns that primitive's result.
//
// An export of a generic source (compiled once, at level 0) has its seven
// variant entries pointing at the level-0 function: the generated list
// defines VSPS_GENERIC_<name> as VSPS_PROBE for those, and VSPS_LEVEL_NS
// picks the namespace by testing that macro in the preprocessor.
#include "core/cpu_state.h"
#include "core/level_map.h"
#include "core/variants.h"
#include "vsps_generic_exports.h"

#define VSPS_PROBE ~, 1
#define VSPS_SECOND_(a, b, ...) b
#define VSPS_SECOND(...) VSPS_SECOND_(__VA_ARGS__, )
#define VSPS_IS_GENERIC(name) VSPS_SECOND(VSPS_GENERIC_##name, 0)
#define VSPS_CAT_(a, b) a##b
#define VSPS_CAT(a, b) VSPS_CAT_(a, b)
#define VSPS_NS_IF_GENERIC_0(ns) ns
#define VSPS_NS_IF_GENERIC_1(ns) mx
// The namespace of the variant of `name` that serves a level mapped to `ns`.
#define VSPS_LEVEL_NS(name, ns) VSPS_CAT(VSPS_NS_IF_GENERIC_, VSPS_IS_GENERIC(name))(ns)

namespace vsps::dispatch {
namespace {

inline int table_index() { return current_level() + 1; }

#define VSPS_SERVICE(ret, name, params, args)
#define VSPS_FN(ret, name, params, args)                                                         \
  ret name##_init_trampoline params;                                                             \
  using name##_fn = ret(*) params;                                                               \
  constexpr name##_fn name##_table[8] = {name##_init_trampoline,                                 \
                                         &vsps::VSPS_LEVEL_NS(name, VSPS_NS_FOR_LEVEL_0)::name,  \
                                         &vsps::VSPS_LEVEL_NS(name, VSPS_NS_FOR_LEVEL_1)::name,  \
                                         &vsps::VSPS_LEVEL_NS(name, VSPS_NS_FOR_LEVEL_2)::name,  \
                                         &vsps::VSPS_LEVEL_NS(name, VSPS_NS_FOR_LEVEL_3)::name,  \
                                         &vsps::VSPS_LEVEL_NS(name, VSPS_NS_FOR_LEVEL_4)::name,  \
                                         &vsps::VSPS_LEVEL_NS(name, VSPS_NS_FOR_LEVEL_5)::name,  \
                                         &vsps::VSPS_LEVEL_NS(name, VSPS_NS_FOR_LEVEL_6)::name}; \
  ret name##_init_trampoline params {                                                            \
    legacy90vspscInit();                                                                         \
    return name##_table[table_index()] args;                                                     \
  }
#include "vsps_functions.h"
#undef VSPS_FN
#undef VSPS_SERVICE

}  // namespace
}  // namespace vsps::dispatch

extern "C" {
#define VSPS_SERVICE(ret, name, params, args)
#define VSPS_FN(ret, name, params, args) \
  VSPS_API ret VSPS_CALL name params { return vsps::dispatch::name##_table[vsps::dispatch::table_index()] args; }
#include "vsps_functions.h"
#undef VSPS_FN
#undef VSPS_SERVICE
}
