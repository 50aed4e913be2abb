// The plain scalar model of G.711: compression and expansion per sample as
// the ITU-T G.191 g711 module computes them (segment found by a shifting
// loop, expansion computed rather than looked up). Benchmarks only.
#pragma once

#include <cstdint>

namespace model::g711 {

void alaw_compress(const int16_t* lin, uint8_t* log, int n);
void ulaw_compress(const int16_t* lin, uint8_t* log, int n);
void alaw_expand(const uint8_t* log, int16_t* lin, int n);
void ulaw_expand(const uint8_t* log, int16_t* lin, int n);

}  // namespace model::g711
