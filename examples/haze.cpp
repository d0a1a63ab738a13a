// Runs the kernels of haze.cl over a view of real terrain, on quevar and on the C library, checks every
// result of a built-in against MPFR, and writes the picture.
//
//     haze elevation.png picture.png
#include "host.hpp"

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

// Sizes in km, heights in m. The picture is the mean of 2 by 2 pixels.
constexpr int columns = 2560, rows = 1120, pixels = columns * rows;

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

int main(int argc, char **argv) {
    if (argc != 3) fail("needs an elevation map and a name for the picture", argv[0]);
    const view v{terrain(argv[1])};
    const float *distance = v.distance.data(), *height = v.height.data(), *slope = v.slope.data();
    const float *sky = v.sky.data();

    heading(std::to_string(columns) + " x " + std::to_string(rows) + " pixels");
    constexpr float stops = 4, thinning = 1 / 380.0f, fog_top = 330, fog_extinction = 0.02f;
    const plane sun =
        run("sunlight", pixels, builtin("exp2f", mpfr_exp2, [&](size_t i) { return stops * slope[i]; }),
            BOTH(sunlight), slope, stops);
    const plane haze =
        run("density", pixels, builtin("expf", mpfr_exp, [&](size_t i) { return -thinning * height[i]; }),
            BOTH(density), height, thinning);

    struct colour {
        const char *transmittance, *dark_grains;
        float extinction, ground, air;
    };
    constexpr colour colours[] = {{"transmittance, red", "dark_grains, red", 0.03f, 0.30f, 0.72f},
                                  {"transmittance, green", "dark_grains, green", 0.05f, 0.36f, 0.86f},
                                  {"transmittance, blue", "dark_grains, blue", 0.10f, 0.12f, 1.10f}};
    std::vector<plane> dark;
    for (const auto &[name, next, extinction, ground, air] : colours) {
        const auto depth = [&, extinction = extinction](size_t i) {
            const float fog = std::max(fog_top - height[i], 0.0f);
            return -(extinction * distance[i] * haze[i] + fog_extinction * fog);
        };
        const plane clear = run(name, pixels, builtin("expf", mpfr_exp, depth), BOTH(transmittance), distance,
                                haze.data(), extinction, height, fog_top, fog_extinction);
        const auto light = [&, ground = ground, air = air](size_t i) {
            return -(ground * sun[i] * clear[i] + air * sky[i] * (1 - clear[i]));
        };
        dark.push_back(run(next, pixels, builtin("expf", mpfr_exp, light), BOTH(dark_grains), sun.data(),
                           ground, sky, air, clear.data()));
    }

    std::vector<uint16_t> picture;
    for (int row = 0; row < rows; row += 2)
        for (int column = 0; column < columns; column += 2)
            for (const plane &d : dark) {
                const float *p = &d[row * columns + column];
                picture.push_back(65535 * (1 - (p[0] + p[1] + p[columns] + p[columns + 1]) / 4));
            }
    write_picture(argv[2], columns / 2, picture);
    if (!within_bounds) fail("a result is farther from the exact value than its bound", argv[0]);
}
