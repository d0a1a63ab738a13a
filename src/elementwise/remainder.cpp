// fmod, remainder, remquo: x - n y, where n is x / y truncated, or rounded to nearest with ties to even.
#include "frame/frame.hpp"

namespace quevar::remainder {
QUEVAR_INLINE_BEGIN

// Ordinary are quotients that one rounding spoils by no more than 1, and y whose multiples neither overflow
// nor leave the normal numbers. The last four are compared in the high word.
template <class T> struct Constants {
    using Bits = unsigned_bits<T>;
    slot<T> magnitude, sign;
    slot<T> upper; // what of y has an exact product with n
    slot<T> half, one;
    slot<Bits> exponents_apart;
    slot<Bits> least;
    slot<Bits> fmod_range, remainder_range;
};
QUEVAR_CONSTANTS(Constants<f32>, single) = {0x7FFFFFFF, 0x80000000, 0xFFFFF000, 0x3F000000, 0x3F800000,
                                            11,         0x8C000000, 0xF28FFFFF, 0xED7FFFFF};
QUEVAR_CONSTANTS(Constants<f64>, double_) = {0x7FFFFFFFFFFFFFFF, 0x8000000000000000, 0xFFFFFFFFF8000000,
                                             0x3FE0000000000000, 0x3FF0000000000000, 25ul << 32,
                                             0x8330000000000000, 0xFCBFFFFF00000000, 0xFB1FFFFF00000000};

// ---- Special lanes ----

// A magnitude other than 0, infinity and NaN, denormals too, as significand 2^(field - bias).
template <class V> struct Unpacked {
    using T = typename V::element;
    using F = format<T>;
    static constexpr int up = F::digits + 1; // raises denormals to normal numbers
    typename V::mask denormal, pattern, field;
    V significand;

    explicit Unpacked(V x) : denormal(x < V::splat(as_float(F::significand + 1))) {
        pattern = as_int(select(denormal, x * V::splat(T(1ul << up)), x));
        field = as_int(as_uint(pattern) >> F::digits) - (denormal & V::mask::splat(up));
        significand = as_float(pattern & V::mask::splat(F::significand)) | V::splat(T(1));
    }
    // r 2^(field - bias), for r a multiple of the last place of the significand.
    V scaled(V r) const {
        const V unit = as_float(pattern & V::mask::splat(F::exponent));
        return r * unit * select(denormal, V::splat(1 / T(1ul << up)), V::splat(T(1)));
    }
};

enum Rounding { truncated, nearest };

// The remainder of any lanes but those of `invalid`, and of the quotient the low 31 bits with its sign. Long
// division in big digits: r <- r 2^k - n y takes k bits of the quotient away exactly, as long as n is so near
// to r 2^k / y that the difference stays below y, though it need not have the sign of r.
template <Rounding R, class V> [[gnu::noinline]] static auto reduce(V x, V y) {
    using T = typename V::element;
    using F = format<T>;
    using I = typename V::mask;
    const I zero{}, one = I::splat(1);
    const V sign = V::splat(as_float(F::sign)), ax = x & ~sign, ay = y & ~sign;
    const Unpacked<V> a(ax), b(ay);
    const V m = b.significand, reciprocal = V::splat(T(1)) / m;
    const I apart = a.field - b.field, most = I::splat(F::digits - 3);
    V r = a.significand;
    I n = zero, left = apart;
    do {
        const I k = select(left > most, most, left);
        const V scale = as_float((k + I::splat(F::bias)) << F::digits);
        const V digit = round<to_nearest>(r * (reciprocal * scale));
        r = fnma(digit, m, r * scale);
        const V magic = V::splat(T(3ul << (F::digits - 1))); // leaves digit in the low bits
        n = shift_left(n, k) + (as_int(digit + magic) - as_int(magic));
        left = left - k;
    } while (sign_bits(zero - left));
    if constexpr (R == truncated) {
        r = r + keep(r < V{}, m);
    } else {
        const V twice = (r + r) & ~sign;
        const I further = (twice > m) | ((twice == m) & ((n & one) == one)),
                negative = as_int(r & sign) < zero;
        r = r - keep(further, m | (r & sign));
        n = n + keep(further, negative | one);
    }
    r = keep(~(r == V{}), r); // rounding downward, a difference of 0 is -0
    // x is below half of y, and maybe so far below that its steps went wrong.
    const I none = (apart < I::splat(-1)) | (ay == V::splat(as_float(F::exponent)));
    n = keep(~none, n & I::splat(0x7FFFFFFF));
    return two(select(none, ax, b.scaled(r)) ^ (x & sign),
               convert<i32>(negate_where(as_int((x ^ y) & sign) < zero, n)));
}

// 0 / 0, infinity / y, NaN
template <class V> static auto invalid(V x, V y) { return ~(x - x == V{}) | (y == V{}) | unordered(y, y); }
template <class T> static void settle_invalid(T x, T y, T *r) {
    using F = format<T>;
    *r = is_nan(x) || is_nan(y) ? multiply_in_order(x, y) : as_float(F::sign | F::exponent | F::quiet);
}

template <class V, class T, class Range>
static auto special(V ax, V ay, const Constants<T> &k, const Range &range) {
    constexpr int to_field = format<T>::digits % 32;
    const auto a = as_uint(ax), b = as_uint(ay);
    return high_word_greater(subtract_words(a >> to_field, b >> to_field), k.exponents_apart) |
           high_word_greater(subtract_words(b, k.least), range);
}

// The same as whole lanes, to select by: an ordinary lane keeps what main gave, which follows the rounding
// mode.
template <class V, class T, class Range>
static auto special_lanes(V x, V y, const Constants<T> &k, const Range &range) {
    return special(x & k.magnitude, y & k.magnitude, k, range) < typename V::mask{};
}

// ---- Families ----

template <class T, const Constants<T> &k> struct Fmod {
    template <class V> static auto main(V x, V y) {
        const V ax = x & k.magnitude, ay = y & k.magnitude, s = x & k.sign;
        const auto apart = special(ax, ay, k, k.fmod_range);
        const V n = round<toward_zero>(x / y);
        V r = fnma(y ^ s, n, ax);
        r = r + keep(r < V{}, ay); // n was 1 too large
        return flagged(r | s, apart);
    }
    template <class V> static auto settle(V x, V y, V r) {
        const auto apart = special_lanes(x, y, k, k.fmod_range);
        return flagged(select(apart, reduce<truncated>(x, y).first, r), apart & invalid(x, y));
    }
    static void rare(const T *x, const T *y, T *r) { settle_invalid(*x, *y, r); }
};

template <class T, const Constants<T> &k> struct Remquo {
    template <class V> static auto main(V x, V y) {
        const V ax = x & k.magnitude, ay = y & k.magnitude;
        const auto apart = special(ax, ay, k, k.remainder_range);
        const V n = round<nearby>(x / y);
        const V upper = y & k.upper, lower = y - upper;
        const V r = fnma(lower, n, fnma(n, upper, x));
        const auto beyond = (r & k.magnitude) > ay * k.half; // n was rounded from a tie that is none
        const V nearer = select(beyond, r - (ay | (r & k.sign)), r);
        const V signed_zero = keep(nearer == V{}, x & k.sign);
        const V quotient = n + (keep(beyond, V(k.one)) | ((r ^ y) & k.sign));
        return flagged(nearer | signed_zero, to_i32(quotient), apart);
    }
    template <class V, class I> static auto settle(V x, V y, V r, I n) {
        const auto apart = special_lanes(x, y, k, k.remainder_range);
        const auto o = reduce<nearest>(x, y);
        return flagged(select(apart, o.first, r), select(convert<i32>(apart), o.second, n),
                       apart & invalid(x, y));
    }
    static void rare(const T *x, const T *y, T *r, i32 *n) {
        settle_invalid(*x, *y, r);
        *n = 0;
    }
};

template <class T, const Constants<T> &k> struct Remainder {
    template <class V> static auto main(V x, V y) {
        const auto o = Remquo<T, k>::main(x, y);
        return flagged(o.first, o.special);
    }
    template <class V> static auto settle(V x, V y, V r) {
        const auto apart = special_lanes(x, y, k, k.remainder_range);
        return flagged(select(apart, reduce<nearest>(x, y).first, r), apart & invalid(x, y));
    }
    static void rare(const T *x, const T *y, T *r) { settle_invalid(*x, *y, r); }
};

QUEVAR_EXPORT(fmod, f, , binary, f32, f32, void, Fmod<f32, single>)
QUEVAR_EXPORT(fmod, , , binary, f64, f64, void, Fmod<f64, double_>)
QUEVAR_EXPORT(remainder, f, , binary, f32, f32, void, Remainder<f32, single>)
QUEVAR_EXPORT(remainder, , , binary, f64, f64, void, Remainder<f64, double_>)
QUEVAR_EXPORT(remquo, f, , binary_pointer, f32, f32, i32, Remquo<f32, single>)
QUEVAR_EXPORT(remquo, , , binary_pointer, f64, f64, i32, Remquo<f64, double_>)

QUEVAR_INLINE_END
} // namespace quevar::remainder
