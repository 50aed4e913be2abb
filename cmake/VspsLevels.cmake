# The seven processor levels and the per-level compilation of variant sources.
#
# vsps_add_family(<name> VARIANT_SOURCES <files...> [ONCE_SOURCES <files...>])
#   compiles VARIANT_SOURCES once per level into object libraries
#   vsps_<name>_<code> (namespace vsps::<code>, VSPS_LEVEL=<n>) and
#   ONCE_SOURCES (tables, level-independent code) once into vsps_<name>_once.
#   All objects go into the shared and static libraries.

set(VSPS_LEVEL_CODES mx m7 u8 n8 y8 e9 l9)
# Explicit flag lists: the x86-64-vN names do not match the levels (level 4
# is SSE4.1 only: -msse4.2 would add POPCNT).
set(VSPS_FLAGS_mx -march=x86-64 -mtune=generic)
set(VSPS_FLAGS_m7 -march=x86-64 -msse3)
set(VSPS_FLAGS_u8 -march=x86-64 -mssse3)
set(VSPS_FLAGS_n8 -march=x86-64 -mssse3 -mmovbe)
set(VSPS_FLAGS_y8 -march=x86-64 -msse4.1)
set(VSPS_FLAGS_e9 -march=x86-64 -mavx)
# Level 6 requires FMA of the processor but its code never uses it: FMA
# changes float bits, and gcc 12 fuses vectorised add/subtract pairs of
# products into vfmaddsub/vfmsubadd even with -ffp-contract=off.
set(VSPS_FLAGS_l9 -march=x86-64 -mavx2 -mbmi -mbmi2 -mno-fma)
# Every variant object: no FMA contraction (it changes float bits at level
# 6), full vectoriser.
set(VSPS_VARIANT_COMMON_FLAGS -ffp-contract=off -O3)

set(VSPS_LEVELS "0;1;2;3;4;5;6" CACHE STRING
    "Processor levels to compile (others dispatch to the highest compiled level below them); level 0 is always built")
if(NOT 0 IN_LIST VSPS_LEVELS)
  list(PREPEND VSPS_LEVELS 0)
endif()

# Level -> code of the highest compiled level at or below it.
set(VSPS_DISPATCH_NS_DEFS "")
set(_last mx)
foreach(level RANGE 0 6)
  list(GET VSPS_LEVEL_CODES ${level} code)
  if(${level} IN_LIST VSPS_LEVELS)
    set(_last ${code})
  endif()
  list(APPEND VSPS_DISPATCH_NS_DEFS VSPS_NS_FOR_LEVEL_${level}=${_last})
endforeach()

set_property(GLOBAL PROPERTY VSPS_VARIANT_OBJECT_LIBS "")
set_property(GLOBAL PROPERTY VSPS_ONCE_OBJECT_LIBS "")

function(vsps_object_common target)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
  target_compile_definitions(${target} PRIVATE VSPS_BUILDING)
  target_compile_options(${target} PRIVATE ${VSPS_WARNING_FLAGS} -fno-exceptions -fno-rtti -fno-semantic-interposition)
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden
                                             VISIBILITY_INLINES_HIDDEN ON)
endfunction()

function(vsps_add_family name)
  cmake_parse_arguments(F "" "" "VARIANT_SOURCES;ONCE_SOURCES" ${ARGN})
  if(F_VARIANT_SOURCES)
    foreach(level IN LISTS VSPS_LEVELS)
      list(GET VSPS_LEVEL_CODES ${level} code)
      set(t vsps_${name}_${code})
      add_library(${t} OBJECT ${F_VARIANT_SOURCES})
      vsps_object_common(${t})
      target_compile_definitions(${t} PRIVATE VSPS_LEVEL=${level} VSPS_NS=${code})
      target_compile_options(${t} PRIVATE ${VSPS_FLAGS_${code}} ${VSPS_VARIANT_COMMON_FLAGS})
      set_property(GLOBAL APPEND PROPERTY VSPS_VARIANT_OBJECT_LIBS ${t})
    endforeach()
  endif()
  if(F_ONCE_SOURCES)
    set(t vsps_${name}_once)
    add_library(${t} OBJECT ${F_ONCE_SOURCES})
    vsps_object_common(${t})
    target_compile_options(${t} PRIVATE -march=x86-64 -mtune=generic -ffp-contract=off)
    target_compile_definitions(${t} PRIVATE ${VSPS_DISPATCH_NS_DEFS})
    set_property(GLOBAL APPEND PROPERTY VSPS_ONCE_OBJECT_LIBS ${t})
  endif()
endfunction()
