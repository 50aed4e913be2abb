// The canceller's filter-bank prototype: a root-raised-cosine pulse.
#pragma once

#include "vsps.h"

namespace vsps::codecs::echo {

// Writes windowLen values of a root-raised-cosine pulse (roll-off 1, period
// N = 2^order samples) centred in the window, scaled so that analysis and
// synthesis at hop frameSize have unit gain (sum of w^2 = frameSize). Its
// square-magnitude response is a Nyquist filter for the channel spacing and
// it is band-limited to +-1/N cycles per sample, so at hop N/2 the bank
// rebuilds its input within 45 dB (the aliasing left by truncation to 4N).
void root_nyquist_prototype(int order, int windowLen, int frameSize, Vsp32f* window);

}  // namespace vsps::codecs::echo
