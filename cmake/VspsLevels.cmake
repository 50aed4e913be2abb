# The seven processor levels and the per-level compilation of variant sources.
#
# vsps_add_family(<name> [VARIANT_SOURCES <files...>] [GENERIC_SOURCES <files...>]
#                  [ONCE_SOURCES <files...>])
#   compiles VARIANT_SOURCES once per level into object libraries
#   vsps_<name>_<code> (namespace vsps::<code>, VSPS_LEVEL=<n>);
#   GENERIC_SOURCES (exports whose code gains nothing from a level's
#   instruction set) only at level 0, into vsps_<name>_mx: the dispatch
#   tables point all seven entries of their exports at that one object;
#   ONCE_SOURCES (tables, level-independent helpers) once into
#   vsps_<name>_once. All objects go into the shared and static libraries.
#   The exports a generic source defines are found by their definitions
#   (a line starting "VspStatus legacy90vsps...(") and listed in
#   <build>/generated/vsps_generic_exports.h for the dispatch tables.

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

# Unity build of the variant sources: per family and level, one compilation
# unit includes every variant source, so the library and intrinsics headers
# are parsed once per level, not once per source and level (the bulk of the
# library's compile time). Generic and once sources stay one object each.
# The sources of a family's unit share one scope: file-local names
# (anonymous namespaces) must not repeat within a family's variant sources.
# OFF gives one object per source and level (tools/level-objects.py compares
# those; edit-compile cycles rebuild one source instead of the unit).
option(VSPS_UNITY_BUILD "Compile each family's variant sources of a level as one unit" ON)

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
  cmake_parse_arguments(F "" "" "VARIANT_SOURCES;GENERIC_SOURCES;ONCE_SOURCES" ${ARGN})
  foreach(src IN LISTS F_GENERIC_SOURCES)
    set(path ${CMAKE_CURRENT_SOURCE_DIR}/${src})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${path})
    file(READ ${path} text)
    # A definition starts a line with the return type of the list entry.
    string(REGEX MATCHALL "\n(VspStatus|const VspLibraryVersion ?\\*) *legacy90vsps[A-Za-z0-9_]+\\(" defs "${text}")
    if(NOT defs)
      message(FATAL_ERROR "${path}: a generic source defines no export")
    endif()
    foreach(d IN LISTS defs)
      string(REGEX MATCH "legacy90vsps[A-Za-z0-9_]+" n "${d}")
      set_property(GLOBAL APPEND PROPERTY VSPS_GENERIC_EXPORTS ${n})
    endforeach()
  endforeach()
  if(F_VARIANT_SOURCES OR F_GENERIC_SOURCES)
    foreach(level IN LISTS VSPS_LEVELS)
      list(GET VSPS_LEVEL_CODES ${level} code)
      set(sources ${F_VARIANT_SOURCES})
      if(level EQUAL 0)
        list(APPEND sources ${F_GENERIC_SOURCES})
      endif()
      if(NOT sources)
        continue()
      endif()
      set(t vsps_${name}_${code})
      add_library(${t} OBJECT ${sources})
      vsps_object_common(${t})
      target_compile_definitions(${t} PRIVATE VSPS_LEVEL=${level} VSPS_NS=${code})
      target_compile_options(${t} PRIVATE ${VSPS_FLAGS_${code}} ${VSPS_VARIANT_COMMON_FLAGS})
      if(VSPS_UNITY_BUILD)
        set_target_properties(${t} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE BATCH UNITY_BUILD_BATCH_SIZE 0)
        if(F_GENERIC_SOURCES)
          set_source_files_properties(${F_GENERIC_SOURCES} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
        endif()
      endif()
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

# Writes <build>/generated/vsps_generic_exports.h: one line per export of a
# generic source, VSPS_GENERIC_<name> defined as VSPS_PROBE (core/dispatch.cpp
# tests it by the preprocessor). Call after every family is added.
function(vsps_write_generic_exports)
  get_property(names GLOBAL PROPERTY VSPS_GENERIC_EXPORTS)
  list(SORT names)
  set(text "// Generated by cmake/VspsLevels.cmake: the exports compiled once (level 0)\n")
  string(APPEND text "// and shared by the seven entries of their dispatch tables.\n")
  foreach(n IN LISTS names)
    string(APPEND text "#define VSPS_GENERIC_${n} VSPS_PROBE\n")
  endforeach()
  set(out ${PROJECT_BINARY_DIR}/generated/vsps_generic_exports.h)
  file(WRITE ${out}.tmp "${text}")
  configure_file(${out}.tmp ${out} COPYONLY)
  list(LENGTH names count)
  message(STATUS "vsps: ${count} exports compiled once for all levels")
endfunction()
