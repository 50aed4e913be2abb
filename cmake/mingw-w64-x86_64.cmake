# Cross-build of the Windows x64 DLL with MinGW-w64 (Debian g++-mingw-w64-x86-64).
# The posix flavour provides <thread> and <mutex> (GoogleTest needs them).
# When Wine is installed, ctest runs the test programs under it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# Programs and the DLL import only KERNEL32 and msvcrt.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
find_program(WINE_EXE NAMES wine64 wine HINTS /usr/lib/wine)
if(WINE_EXE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${WINE_EXE})
endif()
