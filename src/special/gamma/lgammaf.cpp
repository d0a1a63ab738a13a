// lgammaf and lgammarf: the logarithm of the gamma function's magnitude, and the sign beside it.
#include "lgammaf_scalar.hpp"

namespace quevar::lgammaf {
QUEVAR_INLINE_BEGIN

struct Special {
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) { *r = value(*x); }
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r, i32 *sign) {
        *r = value(*x);
        *sign = sign_of_gamma(*x);
    }
};

struct Constants {
    slot<f64> zero{0};
    slot<f64> one{0x3FF0000000000000};
    slot<f64> two{0x4000000000000000};
    slot<f64> four{0x4010000000000000};
    slot<f64> half{0x3FE0000000000000};
    slot<f64> last{0x40BFFFFFFFFFFFFF};     // below 8192
    slot<f64> stirling{0x40C0000000000000}; // 8192
    slot<f64> overflow{0x478895F1C0000000};
    slot<i32> first_quarter{4 * 1023};
    slot<i32> last_quarter{3};
    slot<f64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<u64> significand{0x000FFFFFFFFFFFFF};
    slot<u64> eight_bits{0xFF};
    slot<u64> shifter{0x4330000000000000};          // 2^52
    slot<f64> shifter_and_bias{0x43300000000003FF}; // 2^52 + 1023
    slot<f64> ln2{0x3FE62E42FEFA39EF};              // 0.69314718055994529
    slot<f64> c[5] = {
        0xBFC5555555555555, // -1/6
        0x3FC999999999999A, // 1/5
        0xBFD0000000000000, // -1/4
        0x3FD5555555555555, // 1/3
        0xBFE0000000000000, // -1/2
    };
    slot<f64> half_ln_2pi{0x3FED67F1C864BEB5}; // 0.91893853320467278
    slot<f64> relative{0x3CF0000000000000};    // 2^-48
    slot<f64> absolute{0x3D70000000000000};    // 2^-40
};
QUEVAR_CONSTANTS(Constants, constants){};

// The positive side in double: the steps of the scalar form, fused where that is faster, with a bound of the difference
// from the scalar form's value before that is rounded. Where both ends of the interval round to one number, that is the
// result. The other lanes, next to the zeros at 1 and 2 and one of thousands elsewhere, and those of negative x, are
// computed one by one.
//
// Of lgamma the pieces miss, before 2, less than 2^-34 of it, on [2, 4) 2^-30.8, from 4 on 2^-32.
// Worst: 0xC1100003, -9.00000286, gives 0xBD199C54, wanted 0xBD199C53: 0.5071 ulp.
struct Vector : Special {
    static constexpr int bytes = 8;

    template <class D> struct Bounded { D value, bound; };

    // Of lgamma(z), 1 <= z < 8192. O and E have terms up to 120 before 4, where they cancel: the largest difference
    // found is 2^-43, an eighth of `absolute`.
    template <class D> static Bounded<D> core(D z, const Constants &k) {
        const auto quarters = high_words(z) >> 18;
        using I = std::remove_cv_t<decltype(quarters)>;
        const I quarter = quarters - k.first_quarter;
        const I row = select(quarter > k.last_quarter, k.last_quarter, quarter) + (quarter >> 2);
        const auto [centre, scale, o9, o7, o5, o3, o1, e10, e8, e6, e4, e2, e0, unused] = fetch(pieces, row);
        const D t = (z - centre) * scale, v = t * t;
        const D odd = fma(fma(fma(fma(o9, v, o7), v, o5), v, o3), v, o1);
        const D even = fma(fma(fma(fma(fma(e10, v, e8), v, e6), v, e4), v, e2), v, e0);
        const D factor = select((z >= k.two) & (z < k.four), z - k.two, k.one);
        const D g = fma(t, odd, even);
        const D bound = fma(g & k.magnitude, k.relative, k.absolute);
        return {g * factor, bound * (factor & k.magnitude)};
    }

    // ln y of a positive float y, off by less than 2^-50 of the larger of 1 and itself.
    template <class D> static D log(D y, const Constants &k) {
        const auto bits = as_uint(y);
        const auto i = (bits >> 44) & k.eight_bits;
        const D exponent = as_float((bits >> 52) | k.shifter) - k.shifter_and_bias;
        const D m = as_float((bits & k.significand) | as_uint(D(k.one)));
        const auto [r] = fetch(reciprocals, i);
        const auto [high, low] = fetch(logs, i);
        const D u = fms(m, r, k.one); // exact
        const D tail = fma(u * u, polynomial(u, k.c), low);
        return (fma(exponent, k.ln2, high) + u) + tail;
    }

    template <class V> static auto main(V x) { return flagged(x, all_lanes(convert<f64>(x))); }
    template <class V> static auto settle(V x, V) {
        const auto &k = constants;
        const auto wide = convert<f64>(x);
        using D = std::remove_cv_t<decltype(wide)>;
        const D z = wide + keep(wide < k.one, D(k.one));
        const auto [g, core_bound] = core(max(min(z, k.last), k.one), k);
        const D l = log(wide, k);
        const D stirling = fma(wide - k.half, l, k.half_ln_2pi) - wide;
        const D r = select(wide >= k.stirling, stirling, g - keep(wide < k.one, l));
        const D bound = fma(r & k.magnitude, k.relative, core_bound);
        const V low = convert<f32>(r - bound), high = convert<f32>(r + bound);
        const auto settled = convert<i64>(low == high) & (wide > k.zero) & (wide < k.overflow);
        return flagged(high, ~settled);
    }
};
struct WithSign : Vector {
    template <class V> static auto main(V x) {
        return flagged(x, typename V::template with<i32>{}, all_lanes(convert<f64>(x)));
    }
    template <class V, class I> static auto settle(V x, V r, I) {
        const auto value = Vector::settle(x, r);
        return flagged(value.first, I::splat(1), value.special);
    }
};

QUEVAR_EXPORT(lgamma, f, , unary, f32, f32, void, Vector)
QUEVAR_EXPORT(lgammar, f, , unary_pointer, f32, f32, i32, WithSign)

QUEVAR_INLINE_END
} // namespace quevar::lgammaf
