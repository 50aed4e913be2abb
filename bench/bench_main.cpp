// Benchmarks run at the level chosen by the initialisation; set
// VSPS_CPU_MASK to run a lower level (see bench/run-levels.sh).
#include <benchmark/benchmark.h>

#include "vsps.h"

int main(int argc, char** argv) {
  legacy90vspscInit();
  benchmark::AddCustomContext("vsps level", legacy90vspscGetLibVersion()->Name);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
