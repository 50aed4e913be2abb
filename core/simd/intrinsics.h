// The intrinsics of the level being compiled, from the narrowest compiler
// header that declares them. <immintrin.h> declares every extension up to
// AVX-512 and costs about a second of compile time per source; the SSE
// headers below it cost a few hundredths. Levels 5-6 (AVX, AVX2) need it;
// levels 1-4 take the header of their highest extension, which includes the
// lower ones.
#pragma once

#if defined(__AVX__)
#include <immintrin.h>
#elif defined(__SSE4_1__)
#include <smmintrin.h>
#elif defined(__SSSE3__)
#include <tmmintrin.h>
#elif defined(__SSE3__)
#include <pmmintrin.h>
#elif defined(__SSE2__)
#include <emmintrin.h>
#endif
