// Benchmark main: attaches the library first so tables and kernels are in
// place, then runs the registered benchmarks.
#include <benchmark/benchmark.h>

#include "frame/attach.h"

int main(int argc, char** argv) {
  qbo::LibraryAttach(qbo::NativePlatform(), qbo::DefaultFramework(), nullptr);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  qbo::LibraryDetach(qbo::NativePlatform(), qbo::DefaultFramework());
  return 0;
}
