// The public header compiles as C++ with -Wall -Wextra -Wpedantic, and its
// types have the stated layout.
#include <cstddef>

#include "vsps.h"

static_assert(sizeof(Vsp8u) == 1 && sizeof(Vsp16s) == 2 && sizeof(Vsp32s) == 4 && sizeof(Vsp32u) == 4);
static_assert(sizeof(Vsp32f) == 4 && sizeof(Vsp64f) == 8 && sizeof(VspStatus) == 4);
static_assert(sizeof(Vsp32fc) == 8 && offsetof(Vsp32fc, im) == 4);
static_assert(sizeof(Vsp32sc) == 8 && offsetof(Vsp32sc, im) == 4);
// Version record: four 32-bit integers, 4 characters, three pointers.
static_assert(offsetof(VspLibraryVersion, major) == 0 && offsetof(VspLibraryVersion, minor) == 4);
static_assert(offsetof(VspLibraryVersion, majorBuild) == 8 && offsetof(VspLibraryVersion, build) == 12);
static_assert(offsetof(VspLibraryVersion, targetCpu) == 16 && offsetof(VspLibraryVersion, Name) == 24);
static_assert(offsetof(VspLibraryVersion, Version) == 32 && offsetof(VspLibraryVersion, BuildDate) == 40);
static_assert(sizeof(VspLibraryVersion) == 48);

int vsps_header_check_cxx() { return vspStsNoErr; }
