// The codec layer's version string (configured from the project version).
#include "vsps_codecs.h"

extern "C" const char* vspscodecGetVersion(void) { return VSPS_CODECS_VERSION; }
