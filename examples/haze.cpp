// Runs the kernels of haze.cl over a view of real terrain, on quevar and on the C library, checks every
// result of a built-in against MPFR, and writes the picture.
//
//     haze elevation.png picture.png
#include <mpfr.h>
#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <thread>
#include <vector>

// ---- The kernels, and what the language leaves to its host ----

static size_t work_item;
size_t get_global_id(unsigned) { return work_item; }

#define KERNELS(prefix)                                                                                      \
    void prefix##sunlight(const float *slope, float stops, float *sun);                                      \
    void prefix##density(const float *height, float thinning, float *haze);                                  \
    void prefix##transmittance(const float *distance, const float *haze, float extinction,                   \
                               const float *height, float fog_top, float fog_extinction, float *clear);      \
    void prefix##dark_grains(const float *sun, float ground, const float *sky, float air,                    \
                             const float *clear, float *dark);
extern "C" {
KERNELS()
KERNELS(scalar_)
}

static constexpr double bound(std::string_view operation) {
#define QUEVAR_FAMILY(base, mark, tier, shape, A, R, P, filler, bound)                                       \
    if (operation == #base #mark #tier) return bound;
#include "quevar/families.def"
    return 0;
}

// ---- Terrain and view ----

// Sizes in km, heights in m. The picture is the mean of 2 by 2 pixels.
constexpr int columns = 2560, rows = 1120, pixels = columns * rows;
using plane = std::vector<float>;

[[noreturn]] static void fail(const char *what, const char *which) {
    fprintf(stderr, "%s: %s\n", which, what);
    exit(2);
}

struct terrain {
    static constexpr double west_east = 0.0744, north_south = 0.0927; // 3 arc-seconds at 36.6 degrees north
    int width, depth;
    std::vector<uint16_t> metres;

    explicit terrain(const char *file) {
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        if (!png_image_begin_read_from_file(&image, file)) fail(image.message, file);
        image.format = PNG_FORMAT_LINEAR_Y;
        width = image.width, depth = image.height;
        metres.resize(size_t(width) * depth);
        if (!png_image_finish_read(&image, nullptr, metres.data(), 0, nullptr)) fail(image.message, file);
    }
    bool contains(double x, double y) const {
        return x >= west_east && y >= north_south && x < (width - 2) * west_east &&
               y < (depth - 2) * north_south;
    }
    double height(double x, double y) const {
        const double column = x / west_east, row = y / north_south;
        const int i = int(column), j = int(row);
        const uint16_t *north = &metres[j * width + i], *south = north + width;
        return std::lerp(std::lerp(north[0], north[1], column - i), std::lerp(south[0], south[1], column - i),
                         row - j);
    }
    // Rises where the ground faces the south-west, where the sun is.
    double slope(double x, double y) const {
        const double eastward = height(x + west_east / 2, y) - height(x - west_east / 2, y);
        const double southward = height(x, y + north_south / 2) - height(x, y - north_south / 2);
        return (eastward / west_east - southward / north_south) / 1000;
    }
};

struct view {
    plane distance = plane(pixels, INFINITY), height = plane(pixels), slope = plane(pixels),
          sky = plane(pixels);

    // From above the plain in the south-east, one column of pixels after the other from the foreground to
    // the ridges that stand out behind it.
    explicit view(const terrain &land) {
        constexpr double eye_x = 31, eye_y = 34, eye = 1500, heading = -0.78, opening = 0.9, relief = 2;
        constexpr double focal = columns / opening, horizon = rows * 0.2;
        for (int row = 0; row < rows; row++)
            std::fill_n(&sky[row * columns], columns, 0.55 + 0.45 * std::min(1.0, row / horizon));
        for (int column = 0; column < columns; column++) {
            const double angle = heading + (column - columns / 2) / focal;
            int top = rows;
            for (double t = 2; t < 50; t += 0.01) {
                const double x = eye_x + t * std::sin(angle), y = eye_y - t * std::cos(angle);
                if (!land.contains(x, y)) continue;
                const double z = land.height(x, y);
                const int row = std::max(0, int(horizon + focal * relief * (eye - z) / (1000 * t)));
                for (; top > row; top--) {
                    const int i = (top - 1) * columns + column;
                    distance[i] = t, height[i] = z, slope[i] = land.slope(x, y);
                }
            }
        }
    }
};

// ---- Runs and checks ----

struct errors {
    double quevar = 0, scalar = 0;
    void include(errors e) { quevar = std::max(quevar, e.quevar), scalar = std::max(scalar, e.scalar); }
};

using function = int (*)(mpfr_t, const mpfr_t, mpfr_rnd_t);

static double ulps(float result, const mpfr_t exact, mpfr_t scratch) {
    if (std::isnan(result)) return INFINITY;
    if (mpfr_zero_p(exact)) return result == 0 ? 0 : INFINITY;
    mpfr_sub_d(scratch, exact, result, MPFR_RNDN);
    mpfr_mul_2si(scratch, scratch, std::min(149l, 24 - long(mpfr_get_exp(exact))), MPFR_RNDN);
    return std::fabs(mpfr_get_d(scratch, MPFR_RNDN));
}

static errors largest(function f, auto argument, const plane &quevar, const plane &scalar) {
    const auto range = [&](int first, int last) {
        errors worst;
        mpfr_t exact, x, scratch;
        mpfr_inits2(64, exact, x, scratch, nullptr);
        for (int i = first; i < last; i++) {
            mpfr_set_flt(x, argument(i), MPFR_RNDN);
            f(exact, x, MPFR_RNDN);
            worst.include({ulps(quevar[i], exact, scratch), ulps(scalar[i], exact, scratch)});
        }
        mpfr_clears(exact, x, scratch, nullptr);
        return worst;
    };
    errors other;
    std::thread half([&] { other = range(0, pixels / 2); });
    errors worst = range(pixels / 2, pixels);
    half.join();
    worst.include(other);
    return worst;
}

// One pass over all pixels, in ns a pixel: the best of a few, in processor time, so that other programs do
// not count.
static double time(auto kernel) {
    double best = INFINITY;
    for (int n = 0; n < 5; n++) {
        const std::clock_t start = std::clock();
        for (work_item = 0; work_item < pixels / 16; work_item++) kernel();
        best = std::min(best, double(std::clock() - start));
    }
    return best * 1e9 / CLOCKS_PER_SEC / pixels;
}

static bool within_bounds = true;

// Runs a kernel both ways, checks every result against f of the argument that its pixel has, and prints a row
// of the table.
template <class... Kernel, class... Given>
static plane run(const char *name, const char *builtin, function f, auto argument, void (*quevar)(Kernel...),
                 void (*scalar)(Kernel...), const Given &...given) {
    plane result(pixels), reference(pixels);
    const double ns = time([&] { quevar(given..., result.data()); });
    const double scalar_ns = time([&] { scalar(given..., reference.data()); });
    const errors worst = largest(f, argument, result, reference);
    printf("%-22s %8.0f %10.0f %8.1f %11.4f %8.4f %10.4f\n", name, 1e3 / ns, 1e3 / scalar_ns, scalar_ns / ns,
           worst.quevar, bound(builtin), worst.scalar);
    within_bounds &= worst.quevar <= bound(builtin);
    return result;
}
#define BOTH(kernel) kernel, scalar_##kernel

int main(int argc, char **argv) {
    if (argc != 3) fail("needs an elevation map and a name for the picture", argv[0]);
    const view v{terrain(argv[1])};
    const float *distance = v.distance.data(), *height = v.height.data(), *slope = v.slope.data();
    const float *sky = v.sky.data();

    printf("%d x %d pixels    million pixels a second           largest error in ulps\n", columns, rows);
    printf("kernel                   quevar  C library    times      quevar    bound  C library\n");
    constexpr float stops = 4, thinning = 1 / 380.0f, fog_top = 330, fog_extinction = 0.02f;
    const plane sun = run(
        "sunlight", "exp2f", mpfr_exp2, [&](int i) { return stops * slope[i]; }, BOTH(sunlight), slope,
        stops);
    const plane haze = run(
        "density", "expf", mpfr_exp, [&](int i) { return -thinning * height[i]; }, BOTH(density), height,
        thinning);

    struct colour {
        const char *transmittance, *dark_grains;
        float extinction, ground, air;
    };
    constexpr colour colours[] = {{"transmittance, red", "dark_grains, red", 0.03f, 0.30f, 0.72f},
                                  {"transmittance, green", "dark_grains, green", 0.05f, 0.36f, 0.86f},
                                  {"transmittance, blue", "dark_grains, blue", 0.10f, 0.12f, 1.10f}};
    std::vector<plane> dark;
    for (const auto &[name, next, extinction, ground, air] : colours) {
        const plane clear = run(
            name, "expf", mpfr_exp,
            [&, extinction = extinction](int i) {
                const float fog = std::max(fog_top - height[i], 0.0f);
                return -(extinction * distance[i] * haze[i] + fog_extinction * fog);
            },
            BOTH(transmittance), distance, haze.data(), extinction, height, fog_top, fog_extinction);
        dark.push_back(run(
            next, "expf", mpfr_exp,
            [&, ground = ground, air = air](int i) {
                return -(ground * sun[i] * clear[i] + air * sky[i] * (1 - clear[i]));
            },
            BOTH(dark_grains), sun.data(), ground, sky, air, clear.data()));
    }

    std::vector<uint16_t> picture;
    for (int row = 0; row < rows; row += 2)
        for (int column = 0; column < columns; column += 2)
            for (const plane &d : dark) {
                const float *p = &d[row * columns + column];
                picture.push_back(65535 * (1 - (p[0] + p[1] + p[columns] + p[columns + 1]) / 4));
            }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = columns / 2, image.height = rows / 2;
    image.format = PNG_FORMAT_LINEAR_RGB;
    if (!png_image_write_to_file(&image, argv[2], true, picture.data(), 0, nullptr))
        fail(image.message, argv[2]);
    if (!within_bounds) fail("a result is farther from the exact value than its bound", argv[0]);
}
