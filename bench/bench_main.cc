// Benchmark main: attaches the library first so tables and kernels are in
// place, runs the registered benchmarks, and for the per-frame jobs
// (Frame/<job>/<size>/<temperature>/<side>) prints peer time / our time.
// With --benchmark_repetitions the table takes each side's median, which
// with --benchmark_enable_random_interleaving shrugs off a noisy moment
// that would otherwise land on one side only.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "frame/attach.h"
#include "frame/kernel_table.h"

namespace {

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& r : runs) {
      std::string name = r.benchmark_name();
      if (name.rfind("Frame/", 0) != 0) continue;
      const bool median = r.run_type == Run::RT_Aggregate && r.aggregate_name == "median";
      if (r.run_type != Run::RT_Iteration && !median) continue;
      const std::string suffix = "/real_time";
      if (median) name.resize(name.size() - std::string("_median").size());
      if (name.size() > suffix.size() && name.ends_with(suffix)) {
        name.resize(name.size() - suffix.size());
      }
      const std::size_t side = name.rfind('/');
      Row& row = rows_[name.substr(6, side - 6)];
      const double us = r.GetAdjustedRealTime();
      if (name.compare(side + 1, std::string::npos, "ours") == 0) {
        row.ours = us;
      } else {
        row.peer = us;
        row.peer_name = name.substr(side + 1);
      }
    }
  }
  void PrintRatios() const {
    if (rows_.empty()) return;
    std::printf("\nour level %s; ratio = peer time / our time (above 1: ours is faster)\n",
                qbo::KernelLevelName(qbo::CurrentKernelLevel()));
    std::printf("%-34s %10s %10s %7s  %s\n", "job/size/temperature", "ours us", "peer us",
                "ratio", "peer");
    for (const auto& [key, row] : rows_) {
      std::printf("%-34s %10.1f %10.1f %7.2f  %s\n", key.c_str(), row.ours, row.peer,
                  row.ours > 0 ? row.peer / row.ours : 0.0, row.peer_name.c_str());
    }
  }

 private:
  struct Row {
    double ours = 0, peer = 0;
    std::string peer_name;
  };
  std::map<std::string, Row> rows_;
};

}  // namespace

int main(int argc, char** argv) {
  qbo::LibraryAttach(qbo::NativePlatform(), qbo::DefaultFramework(), nullptr);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios();
  benchmark::Shutdown();
  qbo::LibraryDetach(qbo::NativePlatform(), qbo::DefaultFramework());
  return 0;
}
