// erff: the error function.
#include "grid.hpp"

namespace quevar::erff {
QUEVAR_INLINE_BEGIN

using namespace error_functions;

using Rows = GridRows<f32, 504>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/erff_rows.inc"
}};

constexpr u32 shifter = 0x47800000; // 2^16: steps of 1/128

struct CubicConstants {
    GridConstants<f32> grid{
        .sign = 0x80000000,
        .last = 0x407B8000, // 3.9296875, where erf is 1
        .shifter = shifter,
    };
    slot<f32> tiny{0x2F800000}; // 2^-32
    slot<f32> c2{0xBEAAAADE};   // -0.333334863
};
QUEVAR_CONSTANTS(CubicConstants, cubic){};

// c (d + d^2 (-d/3 - r)): of the cubic term the part without r, which counts near zero. For |d| <= 1/256 it
// leaves a relative 2^-25.5 of the result. A NaN is clamped to the last point, where d is 0, and comes back
// with d. The square of a tiny d would be denormal and is left out.
// Worst: 0x3B61B9F3, 0.00344431098, gives 0x3B7EB436, wanted 0x3B7EB434: 1.929 ulps.
struct TableAndCubic {
    template <class V> static auto main(V x) {
        const auto &k = cubic;
        const auto g = to_grid(x, k.grid);
        const V d = g.clamped - g.point;
        const V d_or_nan = min(d, g.magnitude), d_not_tiny = keep(g.clamped > k.tiny, d);
        const V v = fma(d_not_tiny * d_not_tiny, fms(d_or_nan, k.c2, g.point), d_or_nan);
        const auto [value, derivative] = rows_of<shifter>(rows, g.shifted);
        return fma(derivative, v, value) | g.sign;
    }
};

struct PolynomialConstants {
    slot<f32> sign{0x80000000};
    slot<f32> one{0x3F800000};
    slot<f32> limit{0x40D74E66}; // 6.72832012: the square from which on the result is 1
    slot<f32> c[6] = {
        0xB78F18F8, // -1.70585554e-05
        0x39F00702, // 0.000457815884
        0xBBAF8D5D, // -0.00535742799
        0x3D175FFF, // 0.0369567834
        0xBE34718D, // -0.176214412
        0x3F87F527, // 1.06216896
    };
};
QUEVAR_CONSTANTS(PolynomialConstants, native){};

// erf(x)/x as the square of a polynomial in x^2: below the limit to a relative 1.6e-4. From there on 1 is
// within 2.4e-4.
// Worst: 0x40260278, 2.59390068, gives 0x3F800000, wanted 0x3F7FF000: 4096 ulps.
struct SquaredPolynomial {
    template <class V> static auto main(V x) {
        const auto &k = native;
        const V q = x * x, p = polynomial(q, k.c);
        return select(q >= k.limit, (x & k.sign) | k.one, p * p * x);
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(erf, f, , unary, f32, f32, void, TableAndCubic)
QUEVAR_EXPORT(erf, f, _native, unary, f32, f32, void, SquaredPolynomial)

} // namespace quevar::erff
