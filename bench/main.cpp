// vpath_bench: what the library costs beside the least that the same answers could cost.
//
//     vpath_bench [--benchmark_filter=REGEX] [--benchmark_out=FILE --benchmark_out_format=json]
//
// Prints one line per measure: the library's figure, then each baseline's with the ratio of the
// library to it. scripts/bench builds and runs it.
#include <benchmark/benchmark.h>

#include <cstdio>

#include "goals.h"
#include "measures.h"

namespace {

// The figures are in the label, which support/rounds.cpp writes.
class OneLinePerMeasure : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        goals.take(runs);
        for (const Run& run : runs) {
            failed = failed || run.error_occurred;
            std::printf("%-36s %s\n", run.run_name.function_name.c_str(),
                        run.error_occurred ? ("FAILED: " + run.error_message).c_str()
                                           : run.report_label.c_str());
        }
        std::fflush(stdout);
    }

    GoalSheet goals;
    bool failed = false;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    // What counts on a heap that nothing has crumbled yet comes first.
    RegisterEditMeasures();
    RegisterLoadMeasures();
    RegisterLookupMeasures();
    RegisterMemoryMeasures();
    RegisterRefreshMeasures();
    RegisterClassWalkMeasures();
    RegisterCacheMeasures();
    RegisterDiskMeasures();
    RegisterRealTreeMeasures();
    OneLinePerMeasure reporter;
    const size_t measures = benchmark::RunSpecifiedBenchmarks(&reporter);
    if (measures == 0) return 2;  // the filter names none
    reporter.goals.print();
    return reporter.failed ? 1 : 0;
}
