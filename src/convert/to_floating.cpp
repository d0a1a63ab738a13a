// To floating point under a rounding mode: from integers, and from double to float. The processor rounds to
// nearest; a directed mode then moves the result to its neighbour if it lies on the wrong side of the exact
// value.
#include "frame/frame.hpp"

namespace quevar::to_floating {
QUEVAR_INLINE_BEGIN

// From r, rounded to nearest, one step in the direction of M where `wrong` is set.
template <rounding_mode M, class I> auto step(I r, I wrong, I negative) {
    if constexpr (M == downward) return as_float(r + negate_where(negative, wrong));
    else if constexpr (M == upward) return as_float(r - negate_where(negative, wrong));
    else return as_float(r + wrong);
}

// ---- From integers ----

// An integer is cut into pieces of as many bits as a significand holds. A piece becomes a number when it is
// put in the significand of a power of two, and the power subtracted.
struct F32Constants {
    slot<u32> piece{0x007FFFFF};
    slot<f32> scale_0{0x4B000000}; // 2^23: unit 1
    slot<f32> scale_1{0x56800000}; // 2^46: unit 2^23
    slot<f32> scale_2{0x62000000}; // 2^69: unit 2^46
    slot<i32> exponent{0x7F800000};
    slot<i32> half_place{0x0C000000}; // 24 in the exponent: from a power of two to half its last place
    slot<i32> sign{0x80000000};
};
QUEVAR_CONSTANTS(F32Constants, f32_constants){};

struct F64Constants {
    slot<u64> piece{0x000FFFFFFFFFFFFF};
    slot<f64> scale_0{0x4330000000000000}; // 2^52: unit 1
    slot<f64> scale_1{0x4670000000000000}; // 2^104: unit 2^52
    slot<i64> sign{0x8000000000000000};
};
QUEVAR_CONSTANTS(F64Constants, f64_constants){};

template <class F> const auto &constants() {
    if constexpr (std::is_same_v<F, f32>) return f32_constants;
    else return f64_constants;
}

template <class T, int N, int L> auto scaled(vec<T, N, L> piece, const slot<float_of<T>> &scale) {
    const vec<float_of<T>, N, L> s = scale;
    return as_float(as_int(piece) | as_int(s)) - s;
}

template <class F> struct Sum {
    F value, error; // value + error is the sum, exactly

    Sum(F small, F large) : value(small + large), error(small + (large - value)) {}
};

// The result whose magnitude is sum + error, of which sum was rounded to nearest.
template <rounding_mode M, class F> F rounded(F sum, F error, typename F::mask negative) {
    const auto sign = negative & constants<typename F::element>().sign;
    const auto r = as_int(sum) | sign;
    if constexpr (M == to_nearest) return as_float(r);
    else if constexpr (M == toward_zero) return step<M>(r, error < F{}, negative);
    else if constexpr (M == downward) return step<M>(r, as_float(as_int(error) ^ sign) < F{}, negative);
    else return step<M>(r, as_float(as_int(error) ^ sign) > F{}, negative);
}

template <rounding_mode M, class U> auto two_pieces(U x, typename U::mask negative) {
    using F = float_of<typename U::element>;
    const auto &k = constants<F>();
    const Sum sum(scaled(x & k.piece, k.scale_0), scaled(x >> format<F>::digits, k.scale_1));
    return rounded<M>(sum.value, sum.error, negative);
}

template <rounding_mode M, class U, class I> auto three_pieces(U x, I negative) {
    const auto &k = f32_constants;
    const auto words = [](U n) { return as_uint(low_words(n)); };
    const auto f0 = scaled(words(x) & k.piece, k.scale_0);
    const auto f1 = scaled(words(x >> 23) & k.piece, k.scale_1);
    const auto f2 = scaled(words(x >> 46), k.scale_2);
    if constexpr (M == to_nearest) {
        const Sum upper(f1, f2);
        // If f1 + f2 was a tie and went down to the even neighbour, f0 > 0 makes it more than a tie: the
        // neighbour above, whose last bit is 1, is right. f0 is 0 or at least 1; half_place serves as a
        // pattern in between.
        const auto half = (as_int(upper.value) & k.exponent) - k.half_place;
        const auto beyond = (as_int(upper.error) == half) & (as_int(f0) > k.half_place);
        const auto odd = as_int(upper.value) | as_int(as_uint(beyond) >> 31);
        return rounded<M>(as_float(odd) + f0, f0, negative);
    } else {
        const Sum lower(f0, f1), all(lower.value, f2);
        return rounded<M>(all.value, lower.error + all.error, negative);
    }
}

template <class F, rounding_mode M> struct FromInteger {
    template <class V> static auto main(V x) {
        using I = typename V::element;
        if constexpr (sizeof(I) < sizeof(F) && std::is_signed_v<I>) {
            return convert<F>(x);
        } else if constexpr (sizeof(I) < sizeof(F)) {
            return scaled(convert<u64>(x), f64_constants.scale_0);
        } else {
            typename V::mask negative{};
            if constexpr (std::is_signed_v<I>) negative = x < V{};
            const auto magnitude = as_uint(negate_where(negative, x));
            if constexpr (sizeof(I) > sizeof(F)) return three_pieces<M>(magnitude, low_words(negative));
            else return two_pieces<M>(magnitude, negative);
        }
    }
};

// ---- From double to float ----

struct MagnitudeConstants {
    slot<i64> magnitude{0x7FFFFFFFFFFFFFFF};
};
QUEVAR_CONSTANTS(MagnitudeConstants, magnitude_constants){};

template <rounding_mode M> struct ToFloat {
    template <class V> static auto main(V x) {
        const auto r = convert<f32>(x);
        if constexpr (M == to_nearest) return r;
        else return step<M>(as_int(r), convert<i32>(wrong(x, convert<f64>(r))), as_int(r) >> 31);
    }
    // Whether r lies on the wrong side of x; a NaN does not.
    template <class V> static auto wrong(V x, V r) {
        const auto &k = magnitude_constants;
        if constexpr (M == downward) return x < r;
        else if constexpr (M == upward) return r < x;
        else return as_float(as_int(x) & k.magnitude) < as_float(as_int(r) & k.magnitude);
    }
};

#define QUEVAR_FROM(I, mode, M)                                                                              \
    QUEVAR_EXPORT(cvt##I##tofp##mode, f, , unary, I, f32, void, FromInteger<f32, M>)                         \
    QUEVAR_EXPORT(cvt##I##tofp##mode, , , unary, I, f64, void, FromInteger<f64, M>)
#define QUEVAR_FROM_ALL(mode, M)                                                                             \
    QUEVAR_FROM(i32, mode, M)                                                                                \
    QUEVAR_FROM(u32, mode, M)                                                                                \
    QUEVAR_FROM(i64, mode, M)                                                                                \
    QUEVAR_FROM(u64, mode, M)                                                                                \
    QUEVAR_EXPORT(cvtfp64tofp32##mode, , , unary, f64, f32, void, ToFloat<M>)
QUEVAR_FROM_ALL(rte, to_nearest)
QUEVAR_FROM_ALL(rtn, downward)
QUEVAR_FROM_ALL(rtp, upward)
QUEVAR_FROM_ALL(rtz, toward_zero)

QUEVAR_INLINE_END
} // namespace quevar::to_floating
