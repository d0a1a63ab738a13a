#include "harness/arguments.hpp"
#include <cmath>
#include <string_view>

namespace quevar::tool {
namespace {

// Where an operation changes its course, for float and double, in ascending order. Arguments are drawn
// next to these points and evenly between them; both signs.
struct {
    const char *bases; // each between spaces
    std::vector<double> points;
} const thresholds[] = {
    {" exp ", {-745.14, -708.4, -103.98, -87.34, 0, 87.34, 88.73, 709.79}},
    {" exp2 ", {-1075, -1022, -150, -149, -126, 0, 126, 128, 1024}},
    {" exp10 ", {-323.7, -307.7, -45.16, -37.93, 0, 37.93, 38.54, 308.26}},
    {" expm1 ", {-707.71, -86.65, -37, -17.4, -0.5, 0, 0.5, 17.4, 86.65, 88.73, 707.71, 709.79}},
    {" log log2 log10 ",
     {0, 0.5, 2. / 3, 0.70710678118654752, 0.998, 1, 1.002, 4. / 3, 1.4142135623730951, 2}},
    {" pow powr pown rootn ",
     {0, 0.5, 2. / 3, 0.9921875, 1, 1.015625, 4. / 3, 1.4142135623730951, 1.4375, 2, 10}},
    {" log1p ", {-1, -0.5, -1. / 3, -0.29289321881345248, 0, 0.33333333333333333, 0.41421356237309505, 1, 2}},
    {" cbrt rcbrt ", {0, 0.125, 0.25, 0.5, 1, 2, 4, 8}},
    {" hypot ", {0, 8.2e-11, 9.7e-11, 1, 8.6e9, 9.6e9}}, // roots of the least and greatest sums
    {" sin cos sincos sincosreg ",
     {0, 0.7853981633974483, 1.5707963267948966, 3.1415926535897931, 12, 100, 1e4, 1e5, 8388608, 16777216,
      1073741824}},
    {" tan ", {0, 0.7853981633974483, 1.5707963267948966, 3.1415926535897931, 8256, 128000, 1e6}},
    {" sinpi cospi tanpi ",
     {0, 0.25, 0.5, 1, 1.5, 2, 0x1p20, 0x1p22, 0x1p23, 0x1p24, 0x1p31, 0x1p43, 0x1p49, 0x1p51, 0x1p59}},
    {" asin acos asinpi acospi ", {0, 0.5, 0.70710678118654752, 1}},
    {" atan atanpi ", {0, 0.125, 0.375, 1, 2, 7.875, 1e6}},
    {" atanh ", {0, 0x1p-12, 0x1p-9, 0.5, 0.70710678118654752, 1}},
    {" asinh ", {0, 0x1p-11, 0x1p-9, 0.0625, 0.5, 1, 30, 0x1p30}},
    {" acosh ", {1, 1.0000076, 1.0004883, 1.5, 2, 30, 0x1p30}},
    {" sinh cosh ",
     {0, 0.34657359027997264, 1.0397207708399179, 10, 87.34, 88.73, 89.42, 707.7, 710.4758, 710.48}},
    {" tanh ", {0, 0.03125, 0.125, 0.5, 1, 9.02, 10, 19.07, 20}},
    {" erf ", {0, 0.84375, 1.25, 2, 3.92, 6}},
    {" erfc ", {-6, -3.84, 0, 0.5, 2, 9.2, 10.06, 26.55, 27.23}},
    {" tgamma ", {-184, -176, -42, -40, -3, -2, -1, 0, 1, 1.25, 1.5, 1.75, 2, 3, 8, 16, 35.1, 171.7}},
    {" lgamma lgammar ",
     {-512, -15, -8.0000248, -4.9915446, -3.9552943, -3.1435809, -2.7476826, -2.4570247, -2.00000003, -1, 0,
      0.875, 1, 2, 2.25, 4, 512, 8192}},
};
const std::vector<double> ordinary_points = {0, 0.5, 1, 2, 10};

const std::vector<double> &points_of(std::string_view base) {
    for (const auto &row : thresholds)
        if (std::string_view(row.bases).find(" " + std::string(base) + " ") != std::string_view::npos)
            return row.points;
    return ordinary_points;
}

class Sampler {
public:
    Sampler(Type type, const std::vector<double> &points) : type(type), points(points) {}

    std::uint64_t next() { // splitmix64
        std::uint64_t z = state += 0x9E3779B97F4A7C15;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
        z = (z ^ z >> 27) * 0x94D049BB133111EB;
        return z ^ z >> 31;
    }
    std::uint64_t below(std::uint64_t n) { return next() % n; }
    double uniform(double low, double high) {
        return low + (high - low) * (static_cast<double>(next() >> 11) * 0x1p-53);
    }

    std::uint64_t bits(double value) const {
        return type == Type::f32 ? bits_of(static_cast<float>(value)) : bits_of(value);
    }
    std::uint64_t cut(std::uint64_t bits) const { return size_of(type) == 4 ? bits & 0xFFFFFFFF : bits; }
    std::uint64_t sign() const { return size_of(type) == 4 ? 1ull << 31 : 1ull << 63; }
    int fraction_bits() const { return type == Type::f32 ? 23 : 52; }

    std::vector<std::uint64_t> specials() const {
        const std::uint64_t unit = 1ull << fraction_bits(), one = bits(1), infinity = bits(HUGE_VAL);
        const std::uint64_t floats[] = {0,
                                        1,
                                        unit / 2,
                                        unit - 1,
                                        unit,
                                        unit + 1,
                                        bits(0.5),
                                        one - 1,
                                        one,
                                        one + 1,
                                        bits(1.5),
                                        bits(2),
                                        bits(3),
                                        bits(10),
                                        one + unit * (fraction_bits() - 1) + 1, // a half odd
                                        one + unit * fraction_bits() + 1,       // odd
                                        infinity - unit,
                                        infinity - 1,
                                        infinity,
                                        infinity + 1,
                                        infinity + unit / 2 + 1};
        const std::uint64_t integers[] = {0, 1, 2, 3, 7, 126, 1023};
        std::vector<std::uint64_t> list;
        if (is_float(type))
            for (std::uint64_t b : floats) list.insert(list.end(), {b, b | sign()});
        else
            for (std::uint64_t b : integers) list.insert(list.end(), {b, cut(-b), sign() - b, sign() + b});
        return list;
    }

    std::uint64_t neighbour(std::uint64_t bits) { return cut(bits + below(65) - 32); }

    std::uint64_t number() {
        if (!is_float(type)) return cut(below(2) ? next() >> below(64) : -(next() >> below(64)));
        switch (below(4)) {
        case 0:
            return cut(next());
        case 1: { // an ordinary exponent
            std::uint64_t exponent = (bits(1) >> fraction_bits()) - 32 + below(64);
            return exponent << fraction_bits() | (next() & ((1ull << fraction_bits()) - 1)) |
                   (below(2) ? sign() : 0);
        }
        case 2:
            return neighbour(bits(points[below(points.size())]) ^ (below(2) ? sign() : 0));
        default: {
            std::size_t k = below(points.size() - 1);
            return bits(uniform(points[k], points[k + 1])) ^ (below(2) ? sign() : 0);
        }
        }
    }

    // Beside x: independent, of like magnitude, almost equal, or such that x to the power y is a number.
    std::uint64_t beside(std::uint64_t x) {
        switch (below(4)) {
        case 0:
            return number();
        case 1:
            return cut(x ^ (next() & ((4ull << fraction_bits()) - 1)) ^ (below(2) ? sign() : 0));
        case 2:
            return neighbour(x ^ (below(2) ? sign() : 0));
        default:
            return bits(exponent(x));
        }
    }
    // An x whose quotient by y is half an odd number, or next to that: there the remainder changes its sign.
    std::uint64_t near_tie(std::uint64_t y) {
        const double quotient = std::ldexp(2. * static_cast<double>(next() >> (40 + below(24))) + 1, -1);
        return cut(bits(quotient * value_of(type, y)) + below(5) - 2);
    }
    double exponent(std::uint64_t x) {
        double range = type == Type::f32 ? 150 : 1075;
        return uniform(-range, range) / std::log2(std::fabs(value_of(type, x)));
    }

private:
    Type type;
    const std::vector<double> &points;
    std::uint64_t state = 0;
};

} // namespace

std::vector<Arguments> sample(const Family &family, int count) {
    const std::vector<double> &points = points_of(family.base);
    Sampler sampler(family.a, points), integers(Type::i32, points);
    const bool with_int = family.shape == Shape::with_int,
               takes_remainder =
                   family.base == std::string_view("remainder") || family.base == std::string_view("remquo");
    std::vector<Arguments> list;

    const auto specials = sampler.specials();
    for (std::uint64_t x : specials) {
        if (family.arguments() == 1) list.push_back({x});
        else
            for (std::uint64_t y : with_int ? integers.specials() : specials)
                list.push_back({x, y, specials[sampler.below(specials.size())]});
    }
    if (is_float(family.a))
        for (double point : points)
            for (std::uint64_t k = 0; k <= 32; ++k)
                for (std::uint64_t flip : {std::uint64_t{0}, sampler.sign()}) {
                    std::uint64_t x = sampler.cut((sampler.bits(point) ^ flip) + k - 16);
                    list.push_back({x, with_int ? integers.below(5) - 2 & 0xFFFFFFFF : sampler.number(),
                                    sampler.number()});
                }

    for (int i = 0; i < count; ++i) {
        std::uint64_t x = sampler.number(), y, z = sampler.number();
        if (with_int) {
            double n = sampler.exponent(x);
            y = sampler.below(3) || !(std::fabs(n) < 0x1p31) ? integers.number()
                                                             : integers.cut(static_cast<std::int64_t>(n));
        } else {
            y = is_float(family.a) ? sampler.beside(x) : sampler.number();
        }
        if (takes_remainder && sampler.below(2)) x = sampler.near_tie(y);
        // Half of the sums cancel.
        if (family.shape == Shape::ternary && sampler.below(2))
            z = sampler.neighbour(sampler.bits(-value_of(family.a, x) * value_of(family.a, y)));
        list.push_back({x, y, z});
    }
    return list;
}

} // namespace quevar::tool
