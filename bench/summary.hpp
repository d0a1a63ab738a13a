#ifndef QUEVAR_BENCH_SUMMARY_HPP
#define QUEVAR_BENCH_SUMMARY_HPP

#include <benchmark/benchmark.h>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace quevar_bench {

inline constexpr char seconds_per_lane[] = "per_lane"; // the counter of every benchmark

// Prints the medians of all repetitions as one markdown table, a line for each family and width.
class Summary : public benchmark::BenchmarkReporter {
public:
    // Family and width of each line, in the order of the table; those without a measurement are left out.
    std::vector<std::pair<std::string, std::string>> lines;

    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;

private:
    std::map<std::string, double> medians; // nanoseconds per lane by family/width/what
};

} // namespace quevar_bench

#endif
