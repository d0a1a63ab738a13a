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
    "The exit status is 1 if a family's error exceeds its bound in families.def.\n";

struct Options {
    bool exhaustive = false, markdown = false;
    int samples = 0, width = 0;
    std::vector<std::string> names;

    bool covers(int w) const { return width == 0 || width == w; }
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
    Worst worst(const Family &family) const {
        Worst w;
        for (const auto &m : meter)
            if (m && Meter::worse(family, m->worst(), w)) w = m->worst();
        return w;
    }
};

Worst measure_sample(const Family &family, const Options &options) {
    const auto list = sample(family, options.samples ? options.samples : 20000);
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
    return meters.worst(family);
}

bool can_walk(const Family &family) { return family.a == Type::f32 && family.arguments() == 1; }

Worst measure_all_floats(const Family &family, const Options &options) {
    constexpr std::uint64_t chunk = 1 << 14, threads = 2, share = (1ull << 32) / threads;
    const int width = options.width ? options.width : 16;
    Worst worst[threads];
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
            worst[k] = meters.worst(family);
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
    return Meter::worse(family, worst[1], worst[0]) ? worst[1] : worst[0];
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
    // Negative if there is none.
    double of(const Family &family) const {
        const std::string tier = family.tier;
        const auto row = rows.find(family.base);
        if (tier == "_native" || row == rows.end()) return -1;
        return tier == "_half" ? 8192 : row->second[family.r == Type::f64];
    }
};

void print_markdown_row(const Family &family, const Worst &w, bool walked, const Bounds &bounds) {
    const double opencl = bounds.of(family);
    const bool meets = opencl == 0 ? !w.misrounded : w.error <= opencl;
    char asked[32] = "", bound[32] = "exact";
    if (opencl >= 0) std::snprintf(asked, sizeof asked, "%g%s", opencl, meets ? "" : " **not met**");
    if (family.bound != 0) std::snprintf(bound, sizeof bound, "%g", family.bound);
    std::printf("| `%s%s` | %s | %.4g | %s | %s | %s | %s |\n", family.base, family.mark,
                *family.tier ? family.tier : "default", w.error, walked ? "all" : "sampled",
                arguments_of(family, w).c_str(), bound, asked);
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
        std::puts("| Function | Tier | Error (ulp) | Arguments | Largest at | Bound | OpenCL C |\n"
                  "|---|---|---|---|---|---|---|");
    for (const Family *family : list) {
        if (!is_float(family->r) || !reference(family->base, false)) {
            ++unmeasured;
            continue;
        }
        const bool walk = options.exhaustive && can_walk(*family);
        const Worst w = walk ? measure_all_floats(*family, options) : measure_sample(*family, options);
        const bool exceeds = Meter::exceeds(*family, w);
        if (options.markdown) print_markdown_row(*family, w, walk, bounds);
        if (!options.markdown || exceeds) print_row(*family, w, exceeds);
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
