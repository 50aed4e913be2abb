# Reads the list of exports (include/vsps_functions.h and the family lists
# include/vsps/<family>.h it includes, in its order) and writes the Windows
# export definition file and a plain list of names (one per line).
#
# vsps_read_exports(<out-var>): the exported names, in list order.
function(vsps_read_exports out_var)
  file(READ ${PROJECT_SOURCE_DIR}/include/vsps_functions.h umbrella)
  string(REGEX MATCHALL "#include \"vsps/[A-Za-z0-9_]+\\.h\"" lists "${umbrella}")
  set(text "${umbrella}")
  foreach(inc IN LISTS lists)
    string(REGEX MATCH "vsps/[A-Za-z0-9_]+\\.h" list_file "${inc}")
    file(READ ${PROJECT_SOURCE_DIR}/include/${list_file} family)
    string(APPEND text "${family}")
    set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
                 ${PROJECT_SOURCE_DIR}/include/${list_file})
  endforeach()
  set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
               ${PROJECT_SOURCE_DIR}/include/vsps_functions.h)
  # Drop comments so that names mentioned in prose do not count.
  string(REGEX REPLACE "/\\*([^*]|\\*+[^*/])*\\*+/" "" text "${text}")
  string(REGEX MATCHALL "VSPS_(FN|SERVICE)\\([^,]*,[ \t\r\n]*legacy90vsps[A-Za-z0-9_]+" entries "${text}")
  set(names "")
  foreach(e IN LISTS entries)
    string(REGEX MATCH "legacy90vsps[A-Za-z0-9_]+" n "${e}")
    list(APPEND names ${n})
  endforeach()
  set(${out_var} ${names} PARENT_SCOPE)
endfunction()

function(vsps_write_export_files def_file names_file)
  vsps_read_exports(names)
  list(LENGTH names count)
  set(def "LIBRARY vsps\nEXPORTS\n")
  set(plain "")
  foreach(n IN LISTS names)
    string(APPEND def "    ${n}\n")
    string(APPEND plain "${n}\n")
  endforeach()
  file(WRITE ${def_file}.tmp "${def}")
  file(WRITE ${names_file}.tmp "${plain}")
  configure_file(${def_file}.tmp ${def_file} COPYONLY)
  configure_file(${names_file}.tmp ${names_file} COPYONLY)
  message(STATUS "vsps: ${count} exports in the list")
endfunction()
