#include "summary.hpp"
#include <cmath>
#include <cstdio>

namespace quevar_bench {

void Summary::ReportRuns(const std::vector<Run> &runs) {
    for (const Run &run : runs) {
        if (run.run_type == Run::RT_Aggregate ? run.aggregate_name != "median" : run.repetitions > 1)
            continue;
        auto counter = run.counters.find(seconds_per_lane);
        if (counter != run.counters.end()) medians[run.run_name.function_name] = counter->second * 1e9;
    }
}

void Summary::Finalize() {
    std::puts("| family | lanes | quevar ns/lane | SLEEF ns/lane | C library ns/lane | SLEEF / quevar "
              "| C library / quevar | one special ns/lane | all special ns/lane |\n"
              "|---|--:|--:|--:|--:|--:|--:|--:|--:|");
    for (const auto &[family, width] : lines) {
        auto time = [&, &family = family](const std::string &rest) {
            auto found = medians.find(family + "/" + rest);
            return found == medians.end() ? NAN : found->second;
        };
        auto cell = [](double value, int decimals) {
            if (std::isnan(value)) std::printf(" |"); // no such peer, or filtered out
            else std::printf(" %.*f |", decimals, value);
        };
        double quevar = time(width + "/quevar"), sleef = time(width + "/sleef"), libm = time("1/libm");
        if (std::isnan(quevar)) continue;
        std::printf("| %s | %s |", family.c_str(), width.c_str());
        for (double nanoseconds : {quevar, sleef, libm}) cell(nanoseconds, 3);
        for (double peer : {sleef, libm}) cell(peer / quevar, 2);
        for (const char *what : {"/one_special", "/all_special"}) cell(time(width + what), 3);
        std::puts("");
    }
}

} // namespace quevar_bench
