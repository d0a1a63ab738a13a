// quevar_accuracy: the largest error of every family in ulps, with its witness.
#include "harness/run.hpp"
#include "meter.hpp"
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <thread>

using namespace quevar::tool;

namespace {

constexpr char usage[] =
    "usage: quevar_accuracy [--quick] [--exhaustive] [--samples N] [--width N] [--markdown] [family...]\n"
    "  --quick       sample the arguments: the default\n"
    "  --exhaustive  walk all floats for float families of one argument; the others are sampled\n"
    "  --samples N   random arguments beside the special ones (20000)\n"
    "  --width N     measure one width; otherwise all when sampling and 16 when walking\n"
    "  --markdown    print the table of docs/accuracy.md\n"
    "The exit status is 1 if a family's error exceeds its bound in families.def, or stays far below it.\n";

struct Options {
    bool exhaustive = false, markdown = false;
    int samples = 0, width = 0;
    std::vector<std::string> names;

    bool covers(int w) const { return width == 0 || width == w; }
    bool complete() const { return samples == 0 && width == 0; }
};

// A bound says what a family does: the worst argument measured must come so near to it.
double looseness_allowed(const Family &family) {
    static const std::map<std::string, double> exceptions = {
        // Bounds for any processor whose estimate has the documented error; the one at hand may do better.
        {"sqrtf_native", 2},  {"sqrtf_half", 2},  {"sqrt_native", 2},  {"inv_native", 3},
        {"rsqrtf_native", 4}, {"rsqrtf_half", 4}, {"rsqrt_native", 8}, {"hypot_native", 4},
    };
    const auto row = exceptions.find(family.name());
    return row == exceptions.end() ? 1.5 : row->second;
}

struct Measured {
    Worst worst;
    bool keeps_to_relaxed = true;

    void include(const Family &family, const Measured &other) {
        if (Meter::worse(family, other.worst, worst)) worst = other.worst;
        keeps_to_relaxed &= other.keeps_to_relaxed;
    }
};

// One meter for each floating-point result that has a reference.
struct Meters {
    std::unique_ptr<Meter> meter[2];

    explicit Meters(const Family &family) {
        const Type type[] = {family.r, family.second()};
        for (int k = 0; k < 2; ++k)
            if (const Reference *r = is_float(type[k]) ? reference(family.base, k) : nullptr)
                meter[k] = std::make_unique<Meter>(family, type[k], *r);
    }
    void add(const Arguments &arguments, std::uint64_t first, std::uint64_t second, int width) {
        if (meter[0]) meter[0]->add(arguments, first, width);
        if (meter[1]) meter[1]->add(arguments, second, width);
    }
    Measured measured(const Family &family) const {
        Measured all;
        for (const auto &m : meter)
            if (m) all.include(family, {m->worst(), m->keeps_to_relaxed()});
        return all;
    }
};

// The worst arguments known, by base: those that comments of the sources name.
std::multimap<std::string, Arguments> read_witnesses() {
    std::ifstream file(QUEVAR_WITNESSES);
    if (!file) throw std::runtime_error("cannot read " QUEVAR_WITNESSES);
    std::multimap<std::string, Arguments> rows;
    for (std::string line, base; std::getline(file, line);) {
        std::istringstream fields(line);
        Arguments arguments{};
        fields >> base >> std::hex;
        for (std::uint64_t &bits : arguments) fields >> bits;
        rows.emplace(base, arguments);
    }
    return rows;
}

Measured measure_sample(const Family &family, const Options &options) {
    auto list = sample(family, options.samples ? options.samples : 20000);
    static const auto witnesses = read_witnesses();
    const auto [begin, end] = witnesses.equal_range(std::string(family.base) + family.mark);
    for (auto row = begin; row != end; ++row) list.push_back(row->second);
    // Most widths agree; what one has shown need not be measured again.
    std::vector<std::array<std::uint64_t, 2>> seen(list.size());
    Meters meters(family);
    bool first_width = true;
    for (int width : widths) {
        if (!options.covers(width)) continue;
        run(family, width, list, [&](std::size_t i, std::uint64_t first, std::uint64_t second) {
            if (first_width || seen[i][0] != first || seen[i][1] != second)
                meters.add(list[i], first, second, width);
            seen[i] = {first, second};
        });
        first_width = false;
    }
    return meters.measured(family);
}

bool can_walk(const Family &family) { return family.a == Type::f32 && family.arguments() == 1; }

Measured measure_all_floats(const Family &family, const Options &options) {
    constexpr std::uint64_t chunk = 1 << 14, threads = 2, share = (1ull << 32) / threads;
    const int width = options.width ? options.width : 16;
    Measured measured[threads];
    std::exception_ptr failure[threads];
    auto walk = [&](std::uint64_t k) {
        try {
            Meters meters(family);
            std::vector<Arguments> list(chunk);
            const auto measure = [&](std::uint64_t begin, std::uint64_t step) {
                for (std::uint64_t i = 0; i < chunk; ++i) list[i] = {begin + i * step};
                run(family, width, list, [&](std::size_t i, std::uint64_t first, std::uint64_t second) {
                    meters.add(list[i], first, second, width);
                });
            };
            // A look at the whole range first: once a large error is known, the small ones need no MPFR.
            measure(k * share, share / chunk);
            for (std::uint64_t begin = k * share; begin < (k + 1) * share; begin += chunk) measure(begin, 1);
            measured[k] = meters.measured(family);
        } catch (...) {
            failure[k] = std::current_exception();
        }
    };
    {
        std::vector<std::jthread> pool;
        for (std::uint64_t k = 0; k < threads; ++k) pool.emplace_back(walk, k);
    }
    for (const auto &f : failure)
        if (f) std::rethrow_exception(f);
    measured[0].include(family, measured[1]);
    return measured[0];
}

std::string arguments_of(const Family &family, const Worst &w) {
    std::string text;
    for (int k = 0; k < family.arguments(); ++k)
        text += (k ? ", " : "") + to_string(family.argument(k), w.arguments[k]);
    return text;
}

// ---- The bounds that OpenCL C asks for ----

struct Bounds {
    std::map<std::string, std::array<double, 2>> rows; // float, double

    Bounds() {
        std::ifstream file(QUEVAR_OPENCL_ULP);
        if (!file) throw std::runtime_error("cannot read " QUEVAR_OPENCL_ULP);
        for (std::string line, base; std::getline(file, line);) {
            std::istringstream fields(line);
            std::array<double, 2> bounds;
            if (line[0] != '#' && fields >> base >> bounds[0] >> bounds[1]) rows[base] = bounds;
        }
    }
    // What it asks of a family, and whether that is met.
    std::string of(const Family &family, const Measured &m) const {
        const std::string tier = family.tier, not_met = " **not met**";
        const auto row = rows.find(family.base);
        if (tier == "_native") return "implementation-defined";
        if (row == rows.end()) return "none";
        if (const Relaxed *asked = relaxed(family.base, tier))
            return asked->text + (m.keeps_to_relaxed ? "" : not_met);
        const double bound = tier == "_half" ? 8192 : row->second[family.r == Type::f64];
        const bool met = bound == 0 ? !m.worst.misrounded : m.worst.error <= bound;
        std::ostringstream text;
        text << bound << (met ? "" : not_met);
        return text.str();
    }
};

void print_markdown_row(const Family &family, const Measured &m, bool walked, const Bounds &bounds) {
    const Worst &w = m.worst;
    char bound[32] = "exact";
    if (family.bound != 0) std::snprintf(bound, sizeof bound, "%g", family.bound);
    std::printf("| `%s%s` | %s | %.4g | %s | %s | %s | %s |\n", family.base, family.mark,
                *family.tier ? family.tier : "default", w.error, walked ? "all" : "sampled",
                arguments_of(family, w).c_str(), bound, bounds.of(family, m).c_str());
}

void print_row(const Family &family, const Worst &w, bool exceeds) {
    const Type type = family.r;
    std::fprintf(
        exceeds ? stderr : stdout, "%-4s %-16s %10.4f ulp, bound %-6g width %2d at %s: got %s, wanted %s\n",
        exceeds ? "FAIL" : "ok", family.name().c_str(), w.error, family.bound, w.width,
        arguments_of(family, w).c_str(), to_string(type, w.got).c_str(), to_string(type, w.wanted).c_str());
}

Options parse(int argc, char **argv) {
    Options o;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        auto number = [&] {
            const std::string text = ++i < argc ? argv[i] : "";
            int n = 0;
            auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), n);
            if (text.empty() || error != std::errc{} || *end || n <= 0)
                throw std::invalid_argument(word + " needs a positive number");
            return n;
        };
        if (word == "--exhaustive") o.exhaustive = true;
        else if (word == "--markdown") o.markdown = true;
        else if (word == "--samples") o.samples = number();
        else if (word == "--width") o.width = number();
        else if (word == "--quick") o.exhaustive = false;
        else if (word[0] == '-') throw std::invalid_argument("unknown option " + word);
        else o.names.push_back(word);
    }
    if (o.width && std::ranges::find(widths, o.width) == std::end(widths))
        throw std::invalid_argument("no members of width " + std::to_string(o.width));
    return o;
}

std::vector<const Family *> choose(const std::vector<std::string> &names) {
    std::vector<const Family *> list;
    for (const Family &family : families())
        if (names.empty() || std::ranges::find(names, family.name()) != names.end()) list.push_back(&family);
    for (const std::string &name : names)
        if (std::ranges::none_of(list, [&](auto *family) { return family->name() == name; }))
            throw std::invalid_argument("no family " + name);
    return list;
}

int measure(const std::vector<const Family *> &list, const Options &options) {
    const Bounds bounds;
    int status = 0, unmeasured = 0;
    if (options.markdown)
        std::puts("| Function | Tier | Error (ulp) | Arguments | Largest at | Bound | OpenCL C asks |\n"
                  "|---|---|---|---|---|---|---|");
    for (const Family *family : list) {
        if (!is_float(family->r) || !reference(family->base, false)) {
            ++unmeasured;
            continue;
        }
        const bool walk = options.exhaustive && can_walk(*family);
        const Measured m = walk ? measure_all_floats(*family, options) : measure_sample(*family, options);
        const bool exceeds = Meter::exceeds(*family, m.worst);
        if (options.complete() && m.worst.error * looseness_allowed(*family) < family->bound) {
            std::fprintf(stderr, "FAIL %-16s no error above %.4g found, bound %g\n", family->name().c_str(),
                         m.worst.error, family->bound);
            status = 1;
        }
        if (options.markdown) print_markdown_row(*family, m, walk, bounds);
        if (!options.markdown || exceeds) print_row(*family, m.worst, exceeds);
        std::fflush(stdout);
        status |= exceeds;
    }
    if (unmeasured)
        std::fprintf(stderr, "%d families not measured: they have no reference here\n", unmeasured);
    return status;
}

} // namespace

int main(int argc, char **argv) try {
    const Options options = parse(argc, argv);
    const auto list = choose(options.names);
    return measure(list, options);
} catch (const std::invalid_argument &error) {
    std::fprintf(stderr, "%s\n%s", error.what(), usage);
    return 2;
} catch (const std::exception &error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
