// The clock of the tool's speed figures.
#pragma once

namespace vsps::tool {

// Processor time of the calling thread in ns where the system has such a
// clock: speed figures then leave out the time the thread waits descheduled
// on a loaded machine. Elsewhere the steady clock.
double thread_cpu_ns();

}  // namespace vsps::tool
