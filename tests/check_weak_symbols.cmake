# Fails when a per-level object defines a weak or unique symbol outside its
# level namespace (vsps::<code>::): such a symbol would be kept once for all
# levels by the linker, so one level's code would run at the others.
find_program(NM nm REQUIRED)
set(bad "")
foreach(obj IN LISTS OBJECTS)
  string(REGEX MATCH "vsps_[a-z0-9]+_(mx|m7|u8|n8|y8|e9|l9)\\.dir" m "${obj}")
  set(code ${CMAKE_MATCH_1})
  execute_process(COMMAND ${NM} -C --defined-only ${obj} OUTPUT_VARIABLE out)
  string(REGEX MATCHALL "[0-9a-f]+ [WVu] [^\n]+" weak "${out}")
  foreach(line IN LISTS weak)
    if(NOT line MATCHES "vsps::${code}::")
      string(APPEND bad "\n  ${obj}: ${line}")
    endif()
  endforeach()
endforeach()
if(bad)
  message(FATAL_ERROR "shared symbols outside the level namespace:${bad}")
endif()
