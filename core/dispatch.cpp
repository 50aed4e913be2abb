// Exported dispatch stubs and their tables, generated from the list of
// exports. Each stub reads the processor level and jumps, arguments
// untouched, to entry level+1 of its own eight-entry table: entry 0 is the
// initialisation trampoline (level -1), entries 1..7 the variants of levels
// 0..6. The trampoline runs legacy90vspscInit and re-enters through the
// table, so the first call of a primitive returns that primitive's result.
#include "core/cpu_state.h"
#include "core/level_map.h"
#include "core/variants.h"

namespace vsps::dispatch {
namespace {

inline int table_index() { return current_level() + 1; }

#define VSPS_SERVICE(ret, name, params, args)
#define VSPS_FN(ret, name, params, args)                                                                      \
  ret name##_init_trampoline params;                                                                          \
  using name##_fn = ret(*) params;                                                                            \
  constexpr name##_fn name##_table[8] = {name##_init_trampoline,           &vsps::VSPS_NS_FOR_LEVEL_0::name,  \
                                         &vsps::VSPS_NS_FOR_LEVEL_1::name, &vsps::VSPS_NS_FOR_LEVEL_2::name,  \
                                         &vsps::VSPS_NS_FOR_LEVEL_3::name, &vsps::VSPS_NS_FOR_LEVEL_4::name,  \
                                         &vsps::VSPS_NS_FOR_LEVEL_5::name, &vsps::VSPS_NS_FOR_LEVEL_6::name}; \
  ret name##_init_trampoline params {                                                                         \
    legacy90vspscInit();                                                                                      \
    return name##_table[table_index()] args;                                                                  \
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
