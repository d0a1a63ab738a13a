// erf: the error function.
#include "grid.hpp"

namespace quevar::erf {
QUEVAR_INLINE_BEGIN

using namespace error_functions;

using Rows = GridRows<f64, 768>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/erf_rows.inc"
}};

constexpr u64 shifter = 0x42C0000000000000; // 2^45: steps of 1/128

struct Common {
    GridConstants<f64> grid{
        .sign = 0x8000000000000000,
        .last = 0x4017F80000000000, // 5.9921875, where erf is 1
        .shifter = shifter,
    };
    slot<f64> tiny{0x2FF0000000000000}; // 2^-256
};
QUEVAR_CONSTANTS(Common, common){};

// value + c d (1 + y), where series(w, d^2) gives y. A NaN is clamped to the last
// point, where d is 0, and comes back with d. The square of a tiny d would be denormal and is left out.
template <class V, class Series> V step_from_grid(V x, Series series) {
    const auto &k = read_for(x, common);
    const auto g = to_grid(x, k.grid);
    const V d = g.clamped - g.point;
    const V d_or_nan = min(d, g.magnitude), d_not_tiny = keep(g.clamped > k.tiny, d);
    const V y = series(g.point * d, d_not_tiny * d_not_tiny);
    const auto [value, derivative] = rows_of<shifter>(rows, g.shifted);
    const V t = derivative * (d_or_nan ^ g.sign);
    return ((value ^ g.sign) + fma(t, y, t)) | g.sign;
}

// The registers do not hold two parts of a wide member.
struct InTurn {
    static constexpr bool in_turn = true;
};

struct LongConstants {
    slot<f64> e[4] = {
        0xBFA6C16DB05BDEA5, // -0.044444492128545655
        0x3FC1111235A363B1, // 0.13333346957258876
        0xBFD55555555547F6, // -0.3333333333331433
        0x3FE5555555554B0C, // 0.66666666666637431
    };
    slot<f64> f[3] = {
        0xBFC5555800001B4F, // -0.16666698455829951
        0x3FB9999E2BE2F122, // 0.10000027247855717
        0xBFD5555555555555, // -0.33333333333333331
    };
    slot<f64> g[3] = {
        0x3FCC71CA1C71EB57, // 0.2222225798503483
        0xBFD9999C2BE2DDA8, // -0.40000061307679369
        0x3FDFFFFFFFFFD4CD, // 0.4999999999993861
    };
};
QUEVAR_CONSTANTS(LongConstants, long_series){};

// For |d| <= 1/256 the series leaves a relative 2^-52.6 of the result at 1/256, where the step is longest
// beside it, and less further on.
// Worst: 0x3F7000D01914C147, 0.0039070252253597454, gives 0x3F720EBC1AF89257, wanted 0x3F720EBC1AF8925A:
// 2.532 ulps.
struct LongSeries : InTurn {
    template <class V> static auto main(V x) {
        return step_from_grid(x, [x](V w, V q) {
            const auto &k = read_for(x, long_series);
            const V w2 = w * w;
            const V a = polynomial(w, k.e);
            const V b = fma(q, fma(w, k.f[0], k.f[1]), k.f[2]);
            const V c = fma(w, polynomial(w, k.g), b);
            return fma(q, c, fms(w2, a, w));
        });
    }
};

struct ShortConstants {
    slot<f64> a[2] = {
        0x3FE55557BBBBDCA6, // 0.66666781107678186
        0xBFF0000180001429, // -1.0000014305126206
    };
    slot<f64> b[2] = {
        0x3FE0000400005666, // 0.5000019073510884
        0xBFD5555C88892F64, // -0.33333504994947405
    };
};
QUEVAR_CONSTANTS(ShortConstants, short_series){};

// Likewise to 2^-34.2.
// Worst: 0x3F6C5BFFC9568E3E, 0.0034618373708370778, gives 0x3F6FFFFFC421D065, wanted 0x3F6FFFFFC4269D90:
// 3.147e5 ulps.
struct ShortSeries : InTurn {
    template <class V> static auto main(V x) {
        return step_from_grid(x, [x](V w, V q) {
            const auto &k = read_for(x, short_series);
            return fma(q, polynomial(w, k.b), w * polynomial(w, k.a));
        });
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(erf, , , unary, f64, f64, void, LongSeries)
QUEVAR_EXPORT(erf, , _native, unary, f64, f64, void, ShortSeries)

} // namespace quevar::erf
