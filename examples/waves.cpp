// Draws the interference of damped waves from several sources with the kernels of waves.cl, the phase as
// colour, and checks every result of a built-in against MPFR.
//
//     waves picture.png
#include "host.hpp"

#define KERNELS(prefix)                                                                                      \
    void prefix##amplitude(const float *distance, float damping, float *amplitude);                          \
    void prefix##in_phase(const float *distance, float wave_number, float *cosine);                          \
    void prefix##quadrature(const float *distance, float wave_number, float *sine);                          \
    void prefix##superpose(const float *amplitude, const float *wave, int sources, int items, float *sum);   \
    void prefix##dark(const float *cosine, const float *sine, float c, float s, float *dark);
extern "C" {
KERNELS()
KERNELS(scalar_)
}

// Lengths in pixels.
constexpr int columns = 1280, rows = 720, pixels = columns * rows;
constexpr float wave_number = 0.11f, damping = 0.006f;
constexpr struct { float x, y; } sources[] = {{250, 190}, {420, 560}, {690, 300}, {980, 520}, {1090, 140}};
constexpr int count = std::size(sources);

int main(int argc, char **argv) {
    if (argc != 2) fail("needs a name for the picture", argv[0]);
    plane distances;
    for (const auto &[x, y] : sources)
        for (int i = 0; i < pixels; i++) distances.push_back(std::hypot(i % columns - x, i / columns - y));
    const float *distance = distances.data();

    heading(std::to_string(count) + " waves, " + std::to_string(columns) + " x " + std::to_string(rows) +
            " pixels");
    const plane strength = run("amplitude", distances.size(),
                               builtin("expf", mpfr_exp, [&](size_t i) { return -damping * distance[i]; }),
                               BOTH(amplitude), distance, damping);
    const auto phase = [&](size_t i) { return wave_number * distance[i]; };
    const plane cosine = run("in_phase", distances.size(), builtin("cosf", mpfr_cos, phase), BOTH(in_phase),
                             distance, wave_number);
    const plane sine = run("quadrature", distances.size(), builtin("sinf", mpfr_sin, phase), BOTH(quadrature),
                           distance, wave_number);

    plane x(pixels), y(pixels);
    for (work_item = 0; work_item < pixels / 16; work_item++) {
        superpose(strength.data(), cosine.data(), count, pixels / 16, x.data());
        superpose(strength.data(), sine.data(), count, pixels / 16, y.data());
    }

    std::vector<uint16_t> picture(3 * pixels);
    constexpr struct {
        const char *name;
        float c, s; // at phases of 0, 0.8 and 1.6
    } colours[] = {
        {"dark, red", 1, 0}, {"dark, green", 0.69671f, 0.71736f}, {"dark, blue", -0.0292f, 0.99957f}};
    for (int colour = 0; colour < 3; colour++) {
        const auto [name, c, s] = colours[colour];
        const auto light = [&, c = c, s = s](size_t i) {
            return std::sqrt(x[i] * x[i] + y[i] * y[i]) + (c * x[i] + s * y[i]);
        };
        const plane unlit = run(name, pixels, builtin("expf", mpfr_exp, [&](size_t i) { return -light(i); }),
                                BOTH(dark), x.data(), y.data(), c, s);
        for (int i = 0; i < pixels; i++) picture[3 * i + colour] = 65535 * (1 - unlit[i]);
    }
    write_picture(argv[1], columns, picture);
    if (!within_bounds) fail("a result is farther from the exact value than its bound", argv[0]);
}
