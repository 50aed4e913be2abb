// Thread-count services: deliberately inert (the library runs in the
// caller's thread); both report the number 1 as their return value.
#include "vsps.h"

extern "C" VSPS_API VspStatus VSPS_CALL legacy90vspscGetNumThreads(int* pNumThr) {
  if (pNumThr == nullptr) return vspStsNullPtrErr;
  *pNumThr = 1;
  return 1;
}

extern "C" VSPS_API VspStatus VSPS_CALL legacy90vspscSetNumThreads(int /*numThr*/) { return 1; }
