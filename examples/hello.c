/* The smallest program: initialise, report the level, call one primitive.
 * Plain C99 against the shared library. */
#include <stdio.h>

#include "vsps.h"

int main(void) {
  VspStatus st = legacy90vspscInit(); /* optional: the first call would do it */
  const VspLibraryVersion* v = legacy90vspscGetLibVersion();
  Vsp32s x[3] = {1, 65536, 2147483647};
  printf("%s %s (init status %d)\n", v->Name, v->Version, (int)st);

  /* 2^30 / sqrt(x), in place; Q30 results */
  st = legacy90vspsInvSqrt_32s_I(x, 3);
  if (st != vspStsNoErr) {
    fprintf(stderr, "InvSqrt failed: %d\n", (int)st);
    return 1;
  }
  printf("InvSqrt: %ld %ld %ld\n", (long)x[0], (long)x[1], (long)x[2]);
  return x[0] == 1073709056 && x[1] == 4194176 && x[2] == 23170 ? 0 : 1;
}
