#include "summary.hpp"
#include <cmath>
#include <cstdio>
#include <fstream>
#include <gnu/libc-version.h>
#include <sleef.h>

namespace quevar_bench {
namespace {

std::string processor() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with("model name")) return line.substr(line.find(": ") + 2);
    return "unknown";
}

void cell(double value, int decimals) {
    if (std::isnan(value)) std::printf(" |"); // no such peer, or filtered out
    else std::printf(" %.*f |", decimals, value);
}

} // namespace

bool Summary::ReportContext(const Context &) {
    std::printf("Processor: %s. Compiler: %s. SLEEF %d.%d.%d, GNU C library %s.\n\n", processor().c_str(),
                __VERSION__, SLEEF_VERSION_MAJOR, SLEEF_VERSION_MINOR, SLEEF_VERSION_PATCHLEVEL,
                gnu_get_libc_version());
    return true;
}

void Summary::ReportRuns(const std::vector<Run> &runs) {
    for (const Run &run : runs) {
        if (run.run_type == Run::RT_Aggregate ? run.aggregate_name != "median" : run.repetitions > 1)
            continue;
        auto counter = run.counters.find(seconds_per_lane);
        if (counter != run.counters.end()) medians[run.run_name.function_name] = counter->second * 1e9;
    }
}

void Summary::Finalize() {
    std::puts(
        "Nanoseconds per lane, and how many times as long the peers take: as measured, and in brackets\n"
        "net of an empty function called in the same way. No bracket: what one of the two takes beyond\n"
        "that is less than a fifth of it, so the work is hidden behind the call.\n\n"
        "| family | lanes | quevar | empty | SLEEF | C library | SLEEF / quevar | C library / quevar "
        "| one special | all special |\n"
        "|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|");
    for (const Line &line : lines) {
        auto time = [&](const std::string &who, const std::string &rest) {
            auto found = medians.find(who + "/" + rest);
            return found == medians.end() ? NAN : found->second;
        };
        const double quevar = time(line.family, line.width + "/quevar"),
                     sleef = time(line.family, line.width + "/sleef"), libm = time(line.family, "1/libm"),
                     empty = time(line.form, line.width + "/empty"),
                     empty_scalar = time(line.form, "1/empty");
        if (std::isnan(quevar)) continue;
        auto ratio = [&](double peer, double peer_empty) {
            if (std::isnan(peer)) return std::printf(" |");
            std::printf(" %.2f", peer / quevar);
            const double rest = quevar - empty, peer_rest = peer - peer_empty;
            if (rest >= 0.2 * empty && peer_rest >= 0.2 * peer_empty)
                std::printf(" (%.2f)", peer_rest / rest);
            return std::printf(" |");
        };
        std::printf("| %s | %s |", line.family.c_str(), line.width.c_str());
        for (double nanoseconds : {quevar, empty, sleef, libm}) cell(nanoseconds, 3);
        ratio(sleef, empty);
        ratio(libm, empty_scalar);
        for (const char *what : {"/one_special", "/all_special"})
            cell(time(line.family, line.width + what), 3);
        std::puts("");
    }
}

} // namespace quevar_bench
