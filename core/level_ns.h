// Set-up shared by the variant sources. Each variant source is compiled once
// per processor level with VSPS_LEVEL (0..6) and VSPS_NS (mx, m7, u8, n8, y8,
// e9, l9) defined, and everything it defines lives in namespace vsps::VSPS_NS,
// so the seven copies never share a symbol. Helpers in headers included by
// variant sources must live in that namespace too (or have internal linkage):
// an inline function with external linkage would be emitted once per level
// and the linker would keep one copy for all of them.
#pragma once

#if !defined(VSPS_NS) || !defined(VSPS_LEVEL)
#error "variant code is compiled once per processor level with VSPS_NS and VSPS_LEVEL defined"
#endif
