# Installs the build tree into a fresh prefix, then builds and runs a C
# program (PROGRAM) against it three ways: find_package(vsps) with the
# shared library, with the static library, and pkg-config (shared, and a
# fully static link with --static). Every link uses the C compiler alone.
#   cmake -DBUILD_DIR=... -DWORK=... -DCONSUMER=... -DPROGRAM=... -DGENERATOR=... -DC_COMPILER=...
#         -P check_install.cmake
cmake_minimum_required(VERSION 3.20)
set(prefix ${WORK}/prefix)
file(REMOVE_RECURSE ${WORK})

function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "${what} failed (${rc}):\n${ARGN}\n${out}\n${err}")
  endif()
  set(run_out "${out}" PARENT_SCOPE)
endfunction()

run("install" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
file(GLOB_RECURSE pc_files ${prefix}/*/vsps.pc)
list(LENGTH pc_files n)
file(GLOB family_lists ${prefix}/include/vsps/vsps/*.h)
if(NOT n EQUAL 1 OR NOT EXISTS ${prefix}/include/vsps/vsps.h OR NOT EXISTS ${prefix}/include/vsps/vsps_functions.h
   OR NOT family_lists OR NOT EXISTS ${prefix}/include/vsps/vsps_codecs.h)
  message(FATAL_ERROR "install layout: expected one vsps.pc and include/vsps/{vsps.h,vsps_functions.h,vsps/*.h,"
                      "vsps_codecs.h}, found ${pc_files} ${family_lists}")
endif()

foreach(kind shared static)
  string(COMPARE EQUAL ${kind} static static)
  run("configure (${kind})" ${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/cmake-${kind} -G ${GENERATOR}
      -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_PREFIX_PATH=${prefix} -DUSE_STATIC=${static} -DPROGRAM=${PROGRAM})
  run("build (${kind})" ${CMAKE_COMMAND} --build ${WORK}/cmake-${kind})
  run("run (find_package, ${kind})" ${WORK}/cmake-${kind}/consumer)
  message(STATUS "find_package, ${kind}: ${run_out}")
endforeach()

find_program(PKG_CONFIG pkg-config REQUIRED)
get_filename_component(pc_dir ${pc_files} DIRECTORY)
get_filename_component(libdir ${pc_dir} DIRECTORY)
set(ENV{PKG_CONFIG_PATH} ${pc_dir})
foreach(pc vsps vsps_codecs)
  run("pkg-config ${pc}" ${PKG_CONFIG} --cflags --libs ${pc})
  string(STRIP "${run_out}" flags)
  if(flags MATCHES "/usr/local" OR NOT flags MATCHES "-l${pc}( |$)" OR NOT flags MATCHES "-I[^ ]*/include/vsps")
    message(FATAL_ERROR "pkg-config --cflags --libs ${pc}: ${flags}")
  endif()
endforeach()
run("pkg-config" ${PKG_CONFIG} --cflags --libs vsps)
string(STRIP "${run_out}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run("pkg-config build" ${C_COMPILER} -std=c99 -Wall -Werror ${PROGRAM} ${flags} -Wl,-rpath,${libdir}
    -o ${WORK}/pc-shared)
run("run (pkg-config, shared)" ${WORK}/pc-shared)
message(STATUS "pkg-config, shared: ${run_out}")
run("pkg-config --static" ${PKG_CONFIG} --static --cflags --libs vsps)
string(STRIP "${run_out}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run("pkg-config static build" ${C_COMPILER} -static -std=c99 -Wall -Werror ${PROGRAM} ${flags} -o ${WORK}/pc-static)
run("run (pkg-config, static)" ${WORK}/pc-static)
message(STATUS "pkg-config, static: ${run_out}")
