// atan and atanf: the arctangent.
#include "atan_core.hpp"
#include "atanf_core.hpp"

namespace quevar::atan {
QUEVAR_INLINE_BEGIN

using namespace invcircular;

// atan x is atan w + o, with w = x and o = 0 up to 1, w = -1/x and o = +-pi/2 beyond. A NaN takes the second
// way and comes out with its sign flipped.
template <class V> struct Reduced {
    V w, o;

    Reduced(V x, V reciprocal) {
        const auto &k = constants_for(x);
        const V a = x & k.magnitude;
        const auto small = a <= k.one;
        w = select(small, x, reciprocal ^ k.sign);
        o = select(small, V{}, k.half_pi) ^ (x ^ a);
    }
};

// Worst: 0x3F80BAD6, 1.00570178, gives 0x3F49CA2B, wanted 0x3F49CA29: 2.4656 ulps.
struct DivisionF {
    template <class V> static V main(V x) {
        const V one = constantsf.one;
        const auto [w, o] = Reduced<V>(x, one / x);
        const auto [z, z2, even, odd] = RadiansHalvesF<V>(w);
        return fma(w, fma(z, fma(z, even, odd), one), o);
    }
};

template <class T> struct Infinite {
    template <class V> static auto infinite(V x) {
        const auto &k = constants_for(x);
        return (x & k.magnitude) == k.infinity;
    }
    // The steps toward the reciprocal make NaN of an infinity.
    [[gnu::noinline]] static void rare(const T *x, T *r) {
        const f64 half_pi = 0x3FF921FB54442D18_f64;
        *r = (T)(*x > 0 ? half_pi : -half_pi);
    }
};

// Worst: 0x307FF752, 9.31199229e-10, gives 0x307FE897, wanted 0x307FF752: 3771 ulps. The polynomial's
// constant term is not 1.
struct EstimateF : Infinite<f32> {
    template <class V> static auto main(V x) {
        const auto [w, o] = Reduced<V>(x, reciprocal(x));
        return flagged(fma(w, radians_nativef(w), o), infinite(x));
    }
};

// atan(j/4)
using Rows = table<f64, 1, 32>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/atan_rows.inc"
}};
struct TableConstants {
    slot<f64> shifter{0x4318000000000000}; // 1.5 * 2^50: rounds to 1/4
    slot<i64> index{31};
    slot<f64> big{0x401F800000000000};   // 7.875
    slot<f64> limit{0x47F0000000000000}; // 2^128: divides infinities too
    slot<f64> a6{0x3FB2E9B9F5C4FE97};    // 0.073878881933519089
    slot<f64> a5{0xBFB74257C46790CC};    // -0.090856061411218991
    slot<f64> a4{0x3FBC71BFEFF916A0};    // 0.11111068352428299
    slot<f64> a3{0xBFC249248EEF04DA};    // -0.14285714129622457
    slot<f64> a2{0x3FC999999998741E};    // 0.19999999999791468
    slot<f64> a1{0xBFD555555555554D};    // -0.33333333333333287
};
QUEVAR_CONSTANTS(TableConstants, table_constants){};

// atan a = atan b + atan w with w = (a - b)/(1 + a b) and b the multiple of 1/4 nearest to a; from 7.875 on
// atan a = pi/2 + atan w with w = -1/a. The polynomial is for |w| to 0.127, within 2^-52.9 of atan w.
// Worst: 0x3FC00058EC541050, 0.12501060046645529, gives 0x3FBFD669B6D479F0, wanted 0x3FBFD669B6D479F3:
// 2.6343 ulps. There row and rest have opposite signs, and their sum has finer places than the row.
struct Table {
    template <class V> static V main(V x) {
        const auto &c = constants_for(x);
        const auto &k = read_for(x, table_constants);
        const V a = x & c.magnitude;
        const V n = a + k.shifter, b = n - k.shifter;
        const auto big = a >= k.big;
        const V w = select(big, c.minus_one, a - b) / select(big, min(a, k.limit), fma(b, a, c.one));
        const auto [row] = fetch(rows, as_int(n) & k.index);
        const V z = w * w, z2 = z * z, wz = w * z;
        const V c1 = fma(z, k.a6, k.a5), c2 = fma(z, k.a4, k.a3), c3 = fma(z, k.a2, k.a1);
        const V p = fma(z2, fma(z2, c1, c2), c3);
        return (select(big, c.half_pi, row) + fma(wz, p, w)) ^ (x ^ a);
    }
};

// The estimate is that of x as a float. A NaN keeps what a float keeps of it, wherever the compiler puts the
// operands.
// Worst: 0x3EBFFFFBDA2E3FF9, 1.9073448604724193e-06, gives 0x3EBFFFFBD8E3BDBE, wanted 0x3EBFFFFBDA2E154E:
// 2.165e7 ulps. The polynomial's constant term is not 1.
struct Estimate : Infinite<f64> {
    static constexpr int in_turn_after_mask = 4;

    template <class V> static auto main(V x) {
        const V r = convert<f64>(reciprocal_estimate(convert<f32>(x)));
        const V e = fnma(r, x, constants.one);
        const auto [w, o] = Reduced<V>(x, fma_in_order(r, fma(e, e, e), r));
        return flagged(fma(w, radians_native(w), o), infinite(x));
    }
};

QUEVAR_EXPORT(atan, f, , unary, f32, f32, void, DivisionF)
QUEVAR_EXPORT(atan, f, _native, unary, f32, f32, void, EstimateF)
QUEVAR_EXPORT(atan, , , unary, f64, f64, void, Table)
QUEVAR_EXPORT(atan, , _native, unary, f64, f64, void, Estimate)

QUEVAR_INLINE_END
} // namespace quevar::atan
