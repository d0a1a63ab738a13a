#ifndef QUEVAR_BENCH_SUMMARY_HPP
#define QUEVAR_BENCH_SUMMARY_HPP

#include <benchmark/benchmark.h>
#include <map>
#include <string>
#include <vector>

namespace quevar_bench {

inline constexpr char seconds_per_lane[] = "per_lane"; // the counter of every benchmark

// Prints the medians of all repetitions as one markdown table, a line for each family and width, below the
// processor, the compiler and the versions of the peers.
class Summary : public benchmark::BenchmarkReporter {
public:
    // The lines of the table in their order; those without a measurement are left out. An empty call is
    // measured once for all families of a form.
    struct Line {
        std::string family, form, width;
    };
    std::vector<Line> lines;

    bool ReportContext(const Context &) override;
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;

private:
    std::map<std::string, double> medians; // nanoseconds per lane by family or form/width/what
};

} // namespace quevar_bench

#endif
