/* The public header compiles as strict C99 with every warning. */
#include "vsps.h"

int vsps_header_check_c(void) { return (int)sizeof(VspLibraryVersion) + vspStsNoErr; }
