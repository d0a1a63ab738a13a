// fmod, remainder, remquo: x - n y, where n is x / y truncated, or rounded to nearest with ties to even.
#include "frame/frame.hpp"

namespace quevar::remainder {
QUEVAR_INLINE_BEGIN

// Ordinary are lanes whose rounded quotient x / y is wrong by at most 1 as a whole number, and y whose
// multiples neither overflow nor leave the normal numbers. The last four constants are compared in the high
// word.
template <class T> struct Constants {
    using Bits = unsigned_bits<T>;
    slot<T> magnitude, sign;
    slot<T> upper; // cuts y to as many bits as have an exact product with n
    slot<T> half, one;
    slot<Bits> exponents_apart; // by how much the exponent of x may exceed that of y
    slot<Bits> least_y;
    slot<Bits> fmod_range, remainder_range;
};
QUEVAR_CONSTANTS(Constants<f32>, float_constants){
    .magnitude{0x7FFFFFFF},
    .sign{0x80000000},
    .upper{0xFFFFF000},
    .half{0x3F000000},
    .one{0x3F800000},
    .exponents_apart{11},
    .least_y{0x8C000000},         // 2^-103
    .fmod_range{0xF28FFFFF},      // to 1.125 * 2^126
    .remainder_range{0xED7FFFFF}, // to 2^116
};
QUEVAR_CONSTANTS(Constants<f64>, double_constants){
    .magnitude{0x7FFFFFFFFFFFFFFF},
    .sign{0x8000000000000000},
    .upper{0xFFFFFFFFF8000000},
    .half{0x3FE0000000000000},
    .one{0x3FF0000000000000},
    .exponents_apart{25ul << 32},
    .least_y{0x8330000000000000},         // 2^-972
    .fmod_range{0xFCBFFFFF00000000},      // to 2^1024
    .remainder_range{0xFB1FFFFF00000000}, // to 2^998
};

template <class V, class T, class Range>
static auto outside_main(V abs_x, V abs_y, const Constants<T> &k, const Range &range) {
    constexpr int to_field = format<T>::digits % 32; // the exponent fields then end the high words
    const auto a = as_uint(abs_x), b = as_uint(abs_y);
    return high_word_greater(subtract_words(a >> to_field, b >> to_field), k.exponents_apart) |
           high_word_greater(subtract_words(b, k.least_y), range);
}
// The same with the mask in all bits of a lane. Lanes outside it keep in settle what main gave.
template <class V, class T, class Range>
static auto lanes_outside_main(V x, V y, const Constants<T> &k, const Range &range) {
    return outside_main(x & k.magnitude, y & k.magnitude, k, range) < typename V::mask{};
}

// ---- Special lanes ----

// A positive number, denormals too, as significand 2^(field - bias) with the significand in [1, 2).
template <class V> struct Unpacked {
    using T = typename V::element;
    using F = format<T>;
    static constexpr int lift = F::digits + 1; // a denormal times 2^lift is normal
    typename V::mask denormal, lifted, field;
    V significand;

    explicit Unpacked(V x) : denormal(x < V::splat(as_float(F::significand + 1))) {
        lifted = as_int(select(denormal, x * V::splat(T(1ul << lift)), x));
        field = as_int(as_uint(lifted) >> F::digits) - (denormal & V::mask::splat(lift));
        significand = as_float(lifted & V::mask::splat(F::significand)) | V::splat(T(1));
    }
    // r 2^(field - bias), exact for a multiple r of the significand's last place that is below 2.
    V scaled(V r) const {
        const V power = as_float(lifted & V::mask::splat(F::exponent));
        return r * power * select(denormal, V::splat(1 / T(1ul << lift)), V::splat(T(1)));
    }
};

enum Rounding { truncated, nearest };

// The remainder, and the low 31 bits of the quotient with its sign; meaningless in the lanes of
// `no_remainder`.
//
// It is long division of the significands, digits - 3 bits of the quotient a step: where r is what remains
// and k the number of bits, digit = round(r 2^k / divisor), r becomes r 2^k - digit divisor, and the quotient
// 2^k as large plus the digit. The rounded reciprocal makes the digit wrong by less than 1, so that |r| stays
// below the divisor, though r need not have the sign of x; hence the product and the difference are exact in
// one fused step. In lanes that are done before others k is 0, which changes r by a multiple of the divisor
// at most.
template <Rounding R, class V> [[gnu::noinline]] static auto long_division(V x, V y) {
    using T = typename V::element;
    using F = format<T>;
    using I = typename V::mask;
    const I zero{}, one = I::splat(1);
    const V sign = V::splat(as_float(F::sign)), abs_x = x & ~sign, abs_y = y & ~sign;
    const Unpacked<V> dividend(abs_x), divisor(abs_y);
    const V d = divisor.significand, reciprocal = V::splat(T(1)) / d;
    const I exponents_apart = dividend.field - divisor.field, most = I::splat(F::digits - 3);
    V r = dividend.significand;
    I quotient = zero, bits_left = exponents_apart;
    do {
        const I k = select(bits_left > most, most, bits_left);
        const V two_to_k = as_float((k + I::splat(F::bias)) << F::digits);
        const V digit = round<to_nearest>(r * (reciprocal * two_to_k));
        r = fnma(digit, d, r * two_to_k);
        const V shifter = V::splat(T(3ul << (F::digits - 1))); // leaves the digit in the low bits
        quotient = shift_left(quotient, k) + (as_int(digit + shifter) - as_int(shifter));
        bits_left = bits_left - k;
    } while (sign_bits(zero - bits_left));
    if constexpr (R == truncated) {
        r = r + keep(r < V{}, d);
    } else {
        // One step toward 0 if |r| is more than half of d, or just half and the quotient is odd.
        const V twice = (r + r) & ~sign;
        const I further = (twice > d) | ((twice == d) & ((quotient & one) == one)),
                negative = as_int(r & sign) < zero;
        r = r - keep(further, d | (r & sign));
        quotient = quotient + keep(further, negative | one);
    }
    r = keep(~(r == V{}), r); // rounding downward, a difference of 0 is -0
    // If x is below half of y the quotient is 0. Its one step may have gone wrong, and y may be infinite.
    const I below_half = (exponents_apart < I::splat(-1)) | (abs_y == V::splat(as_float(F::exponent)));
    quotient = keep(~below_half, quotient & I::splat(0x7FFFFFFF));
    return two(select(below_half, abs_x, divisor.scaled(r)) ^ (x & sign),
               convert<i32>(negate_where(as_int((x ^ y) & sign) < zero, quotient)));
}

// x is infinite or NaN, or y is 0 or NaN.
template <class V> static auto no_remainder(V x, V y) {
    return ~(x - x == V{}) | (y == V{}) | unordered(y, y);
}
template <class T> static T nan_result(T x, T y) {
    using F = format<T>;
    return is_nan(x) || is_nan(y) ? multiply_in_order(x, y) : as_float(F::sign | F::exponent | F::quiet);
}

// ---- Families ----

template <class T, const Constants<T> &k> struct Fmod {
    template <class V> static auto main(V x, V y) {
        const V abs_x = x & k.magnitude, abs_y = y & k.magnitude, sign = x & k.sign;
        const auto special = outside_main(abs_x, abs_y, k, k.fmod_range);
        const V n = round<toward_zero>(x / y);
        V r = fnma(y ^ sign, n, abs_x);
        r = r + keep(r < V{}, abs_y); // the division was rounded up to a whole number
        return flagged(r | sign, special);
    }
    template <class V> static auto settle(V x, V y, V r) {
        const auto special = lanes_outside_main(x, y, k, k.fmod_range);
        return flagged(select(special, long_division<truncated>(x, y).first, r),
                       special & no_remainder(x, y));
    }
    static void rare(const T *x, const T *y, T *r) { *r = nan_result(*x, *y); }
};

template <class T, const Constants<T> &k> struct Remquo {
    template <class V> static auto main(V x, V y) {
        const V abs_x = x & k.magnitude, abs_y = y & k.magnitude;
        const auto special = outside_main(abs_x, abs_y, k, k.remainder_range);
        const V n = round<nearby>(x / y);
        const V upper = y & k.upper, lower = y - upper;
        const V r = fnma(lower, n, fnma(n, upper, x));
        // The division was rounded to a half of an odd number, or over it: the next n is nearer.
        const auto beyond = (r & k.magnitude) > abs_y * k.half;
        const V nearer = select(beyond, r - (abs_y | (r & k.sign)), r);
        const V signed_zero = keep(nearer == V{}, x & k.sign);
        const V quotient = n + (keep(beyond, V(k.one)) | ((r ^ y) & k.sign));
        return flagged(nearer | signed_zero, to_i32(quotient), special);
    }
    template <class V, class I> static auto settle(V x, V y, V r, I n) {
        const auto special = lanes_outside_main(x, y, k, k.remainder_range);
        const auto divided = long_division<nearest>(x, y);
        return flagged(select(special, divided.first, r), select(convert<i32>(special), divided.second, n),
                       special & no_remainder(x, y));
    }
    static void rare(const T *x, const T *y, T *r, i32 *n) {
        *r = nan_result(*x, *y);
        *n = 0;
    }
};

template <class T, const Constants<T> &k> struct Remainder {
    template <class V> static auto main(V x, V y) {
        const auto o = Remquo<T, k>::main(x, y);
        return flagged(o.first, o.special);
    }
    template <class V> static auto settle(V x, V y, V r) {
        const auto special = lanes_outside_main(x, y, k, k.remainder_range);
        return flagged(select(special, long_division<nearest>(x, y).first, r), special & no_remainder(x, y));
    }
    static void rare(const T *x, const T *y, T *r) { *r = nan_result(*x, *y); }
};

QUEVAR_EXPORT(fmod, f, , binary, f32, f32, void, Fmod<f32, float_constants>)
QUEVAR_EXPORT(fmod, , , binary, f64, f64, void, Fmod<f64, double_constants>)
QUEVAR_EXPORT(remainder, f, , binary, f32, f32, void, Remainder<f32, float_constants>)
QUEVAR_EXPORT(remainder, , , binary, f64, f64, void, Remainder<f64, double_constants>)
QUEVAR_EXPORT(remquo, f, , binary_pointer, f32, f32, i32, Remquo<f32, float_constants>)
QUEVAR_EXPORT(remquo, , , binary_pointer, f64, f64, i32, Remquo<f64, double_constants>)

QUEVAR_INLINE_END
} // namespace quevar::remainder
