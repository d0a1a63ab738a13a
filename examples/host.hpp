// What the hosts of the example kernels share: running a kernel on quevar and on the C library, checking
// every result against MPFR, and writing a picture.
#pragma once
#include <mpfr.h>
#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

// What the language leaves to its host. Every kernel maps sixteen lanes per work-item.
static size_t work_item;
size_t get_global_id(unsigned) { return work_item; }

using plane = std::vector<float>;

[[noreturn]] static void fail(const char *what, const char *which) {
    fprintf(stderr, "%s: %s\n", which, what);
    exit(2);
}

static constexpr double bound(std::string_view operation) {
#define QUEVAR_FAMILY(base, mark, tier, shape, A, R, P, filler, bound)                                       \
    if (operation == #base #mark #tier) return bound;
#include "quevar/families.def"
    throw "no such operation";
}

struct errors {
    double quevar = 0, scalar = 0;
    void include(errors e) { quevar = std::max(quevar, e.quevar), scalar = std::max(scalar, e.scalar); }
};

// The largest error that a result may have, and a function that sets the exact value of lane i and returns
// the exponent of the unit in which errors count.
struct check {
    double bound;
    std::function<long(mpfr_ptr value, size_t i)> exact;
};

static errors largest(const check &check, const plane &quevar, const plane &scalar) {
    const auto range = [&](size_t first, size_t last) {
        errors worst;
        mpfr_t value, scratch;
        mpfr_inits2(64, value, scratch, nullptr);
        for (size_t i = first; i < last; i++) {
            const long unit = check.exact(value, i);
            const auto error = [&](float result) {
                mpfr_sub_d(scratch, value, result, MPFR_RNDN);
                mpfr_mul_2si(scratch, scratch, -unit, MPFR_RNDN);
                return mpfr_nan_p(scratch) ? INFINITY : std::fabs(mpfr_get_d(scratch, MPFR_RNDN));
            };
            worst.include({error(quevar[i]), error(scalar[i])});
        }
        mpfr_clears(value, scratch, nullptr);
        return worst;
    };
    errors other;
    std::thread half([&] { other = range(0, quevar.size() / 2); });
    errors worst = range(quevar.size() / 2, quevar.size());
    half.join();
    worst.include(other);
    return worst;
}

// The function f of the argument that each lane has, in ulps, against the bound of the operation; a correctly
// rounded result is within half an ulp.
static check builtin(std::string_view operation, int (*f)(mpfr_t, const mpfr_t, mpfr_rnd_t), auto argument) {
    return {std::max(0.5, bound(operation)), [=](mpfr_ptr value, size_t i) {
                mpfr_set_flt(value, argument(i), MPFR_RNDN);
                f(value, value, MPFR_RNDN);
                return mpfr_zero_p(value) ? -149l : std::max(-149l, long(mpfr_get_exp(value)) - 24);
            }};
}

// One pass over all lanes, in ns a lane: the best of a few, in processor time, so that other programs do not
// count.
static double time(size_t lanes, auto kernel) {
    double best = INFINITY;
    for (int n = 0; n < 5; n++) {
        const std::clock_t start = std::clock();
        for (work_item = 0; work_item < lanes / 16; work_item++) kernel();
        best = std::min(best, double(std::clock() - start));
    }
    return best * 1e9 / CLOCKS_PER_SEC / lanes;
}

static void heading(const std::string &what) {
    printf("\n%-34s    million a second           largest error in ulps\n", what.c_str());
    printf("kernel                   quevar  C library    times      quevar    bound  C library\n");
}

static bool within_bounds = true;

// Runs a kernel both ways on multiples of sixteen lanes, checks every result and prints a row of the table.
template <class... Kernel, class... Given>
static plane run(const char *name, size_t lanes, const check &check, void (*quevar)(Kernel...),
                 void (*scalar)(Kernel...), const Given &...given) {
    plane result(lanes), reference(lanes);
    const double ns = time(lanes, [&] { quevar(given..., result.data()); });
    const double scalar_ns = time(lanes, [&] { scalar(given..., reference.data()); });
    const errors worst = largest(check, result, reference);
    printf("%-22s %8.0f %10.0f %8.1f %11.4f %8.4f %10.4f\n", name, 1e3 / ns, 1e3 / scalar_ns, scalar_ns / ns,
           worst.quevar, check.bound, worst.scalar);
    within_bounds &= worst.quevar <= check.bound;
    return result;
}
#define BOTH(kernel) kernel, scalar_##kernel

inline void write_picture(const char *file, int width, const std::vector<uint16_t> &picture) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = width, image.height = picture.size() / 3 / width;
    image.format = PNG_FORMAT_LINEAR_RGB;
    if (!png_image_write_to_file(&image, file, true, picture.data(), 0, nullptr)) fail(image.message, file);
}
