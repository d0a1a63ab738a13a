// fmod, remainder, remquo: x - n y, where n is x / y truncated, or rounded to nearest with ties to even.
#include "frame/frame.hpp"

namespace quevar::remainder {

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

// x = significand 2^exponent, counted from the smallest denormal.
template <class T> struct Unpacked {
    u64 significand;
    int exponent;

    explicit Unpacked(T x) : significand(pattern_of(x) & format<T>::significand), exponent(0) {
        if (const int field = exponent_field(x)) {
            significand |= 1ul << format<T>::digits;
            exponent = field - 1;
        }
    }
};

// x = n y + r for x >= 0 and y > 0; of n the low 64 bits.
template <class T> struct Division {
    T r;
    u64 n;
};

template <class T> static Division<T> divide(T x, T y) {
    if (x < y) return {x, 0};
    const Unpacked<T> a(x), b(y);
    constexpr int digits = format<T>::digits;
    int left = a.exponent - b.exponent, step = left < 63 - digits ? left : 63 - digits;
    u64 n = (a.significand << step) / b.significand, r = (a.significand << step) % b.significand;
    // 63 more bits of n at a time; as r is below the divisor they fit.
    while (left -= step) {
        step = left < 63 ? left : 63;
        u64 next;
        asm("divq %4"
            : "=a"(next), "=d"(r)
            : "a"(r << step), "d"(r >> (64 - step)), "r"(b.significand)
            : "cc");
        n = n << step | next;
    }
    const int e = b.exponent; // 2^e: above the denormals as a field
    const auto unit = e >= digits ? (unsigned_bits<T>)(e - digits + 1) << digits : (unsigned_bits<T>)1 << e;
    return {(T)(i64)r * with_pattern<T>(unit), n};
}

enum Rounding { truncated, nearest };

// Gives the low 31 bits of the quotient with its sign.
template <class T, Rounding R> [[gnu::noinline]] static i32 reduce(T x, T y, T *result) {
    using F = format<T>;
    if (is_nan(x) || is_nan(y)) {
        *result = multiply_in_order(x, y);
        return 0;
    }
    const T ax = with_pattern<T>(pattern_of(x) & ~F::sign), ay = with_pattern<T>(pattern_of(y) & ~F::sign);
    if (ay == 0 || pattern_of(ax) == F::exponent) {
        *result = with_pattern<T>(F::sign | F::exponent | F::quiet);
        return 0;
    }
    auto [r, n] = divide(ax, ay);
    if (R == nearest && (r + r > ay || (r + r == ay && n & 1))) {
        r = r - ay;
        n++;
    }
    *result = with_pattern<T>(pattern_of(r) ^ (pattern_of(x) & F::sign));
    const i32 low = (i32)(n & 0x7FFFFFFF);
    return (x < 0) == (y < 0) ? low : -low;
}

template <class V, class T, class Range>
static QUEVAR_INLINE auto special(V ax, V ay, const Constants<T> &k, const Range &range) {
    constexpr int to_field = format<T>::digits % 32;
    const auto a = unsigned_bits_of(ax), b = unsigned_bits_of(ay);
    return high_word_greater(subtract_words(a >> to_field, b >> to_field), k.exponents_apart) |
           high_word_greater(subtract_words(b, k.least), range);
}

// ---- Families ----

template <class T, const Constants<T> &k> struct Fmod {
    template <class V> static QUEVAR_INLINE auto main(V x, V y) {
        const V ax = x & k.magnitude, ay = y & k.magnitude, s = x & k.sign;
        const auto apart = special(ax, ay, k, k.fmod_range);
        const V n = round<toward_zero>(x / y);
        V r = fnma(y ^ s, n, ax);
        r = r + keep(r < V{}, ay); // n was 1 too large
        return flagged(r | s, apart);
    }
    static void rare(const T *x, const T *y, T *r) { reduce<T, truncated>(*x, *y, r); }
};

template <class T, const Constants<T> &k> struct Remquo {
    template <class V> static QUEVAR_INLINE auto main(V x, V y) {
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
    static void rare(const T *x, const T *y, T *r, i32 *n) { *n = reduce<T, nearest>(*x, *y, r); }
};

template <class T, const Constants<T> &k> struct Remainder {
    template <class V> static QUEVAR_INLINE auto main(V x, V y) {
        const auto o = Remquo<T, k>::main(x, y);
        return flagged(o.first, o.special);
    }
    static void rare(const T *x, const T *y, T *r) { reduce<T, nearest>(*x, *y, r); }
};

QUEVAR_EXPORT(fmod, f, , binary, f32, f32, void, Fmod<f32, single>)
QUEVAR_EXPORT(fmod, , , binary, f64, f64, void, Fmod<f64, double_>)
QUEVAR_EXPORT(remainder, f, , binary, f32, f32, void, Remainder<f32, single>)
QUEVAR_EXPORT(remainder, , , binary, f64, f64, void, Remainder<f64, double_>)
QUEVAR_EXPORT(remquo, f, , binary_pointer, f32, f32, i32, Remquo<f32, single>)
QUEVAR_EXPORT(remquo, , , binary_pointer, f64, f64, i32, Remquo<f64, double_>)

} // namespace quevar::remainder
