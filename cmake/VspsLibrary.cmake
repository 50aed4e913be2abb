# vsps_add_library_pair(<name> HEADERS <public headers...> SOURCES <sources or objects...>)
#   the shared library <name> and the static library <name>_static (output
#   name <name> off Windows) from the same sources, with the aliases
#   vsps::<name> and vsps::<name>_static, the platform's link settings (a
#   self-contained DLL on Windows, no undefined symbols elsewhere) and the
#   install rules into the export set vspsTargets (headers into
#   VSPS_INSTALL_INCLUDEDIR). The static library's
#   users get <NAME>_STATIC defined (upper-case name).
function(vsps_add_library_pair name)
  cmake_parse_arguments(L "" "" "HEADERS;SOURCES" ${ARGN})
  string(TOUPPER ${name} upper)
  add_library(${name} SHARED ${L_SOURCES})
  add_library(${name}_static STATIC ${L_SOURCES})
  foreach(t ${name} ${name}_static)
    set_target_properties(${t} PROPERTIES PUBLIC_HEADER "${L_HEADERS}")
  endforeach()
  target_compile_definitions(${name}_static INTERFACE ${upper}_STATIC)
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  if(WIN32)
    set_target_properties(${name} PROPERTIES PREFIX "" IMPORT_PREFIX "lib")
    target_link_options(${name} PRIVATE -static)
  else()
    set_target_properties(${name}_static PROPERTIES OUTPUT_NAME ${name})
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
  add_library(vsps::${name} ALIAS ${name})
  add_library(vsps::${name}_static ALIAS ${name}_static)
  install(TARGETS ${name} ${name}_static EXPORT vspsTargets
          RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
          PUBLIC_HEADER DESTINATION ${VSPS_INSTALL_INCLUDEDIR})
endfunction()
