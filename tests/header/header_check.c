/* The public header compiles as strict C99 with every warning, and a C
 * compiler sees the stated layout and values (checked at compile time: a
 * false condition gives an array of negative size). */
#include <stddef.h>

#include "vsps.h"

#define VSPS_CHECK(name, cond) typedef char vsps_check_##name[(cond) ? 1 : -1]

VSPS_CHECK(sizes, sizeof(Vsp8u) == 1 && sizeof(Vsp16s) == 2 && sizeof(Vsp32s) == 4 && sizeof(Vsp32f) == 4 &&
                      sizeof(Vsp64f) == 8 && sizeof(VspStatus) == 4);
VSPS_CHECK(complex,
           sizeof(Vsp32fc) == 8 && offsetof(Vsp32fc, im) == 4 && sizeof(Vsp32sc) == 8 && offsetof(Vsp32sc, im) == 4);
VSPS_CHECK(version, offsetof(VspLibraryVersion, build) == 12 && offsetof(VspLibraryVersion, targetCpu) == 16 &&
                        offsetof(VspLibraryVersion, Name) == 24 && offsetof(VspLibraryVersion, BuildDate) == 40 &&
                        sizeof(VspLibraryVersion) == 48);
VSPS_CHECK(errors, vspStsErr == -2 && vspStsBadArgErr == -5 && vspStsSizeErr == -6 && vspStsRangeErr == -7 &&
                       vspStsNullPtrErr == -8 && vspStsBadIndexErr == -11 && vspStsLSFRangeErr == -12 &&
                       vspStsOutOfRangeErr == -13 && vspStsFIRLenErr == -119);
VSPS_CHECK(warnings, vspStsLPCUnstable == 12 && vspStsLsfLowClamped == 13 && vspStsLsfHighClamped == 14 &&
                         vspStsLsfBothClamped == 15 && vspStsForeignCpu == 20 && vspStsNoCpuFeatures == 36);
VSPS_CHECK(rates, vspRate4750 == 0 && vspRate5150 == 1 && vspRate5900 == 3 && vspRate6700 == 6 && vspRate7400 == 7 &&
                      vspRate7950 == 8 && vspRate10200 == 11 && vspRate12200 == 12 && vspRateDTX == 25);

int vsps_header_check_c(void) { return (int)sizeof(VspLibraryVersion) + vspStsNoErr; }
