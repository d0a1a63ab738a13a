// From floating point to integers under a rounding mode, with or without saturation.
#include "frame/frame.hpp"

namespace quevar::to_integer {
QUEVAR_INLINE_BEGIN

struct F32Constants {
    slot<i32> magnitude{0x7FFFFFFF};
    slot<i32> exponent{0x7F800000};
    slot<i32> exponent_31{0x4F000000};
    slot<f32> two_31{0x4F000000};
    slot<f32> two_32{0x4F800000};
};
QUEVAR_CONSTANTS(F32Constants, f32_constants){};

struct F64Constants {
    slot<i64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<i64> significand{0x000FFFFFFFFFFFFF};
    slot<i64> leading_bit{0x0010000000000000};
    slot<i64> exponent_52{0x433};
    slot<f64> two_52{0x4330000000000000};
    slot<f64> two_32{0x41F0000000000000};
    slot<f64> two_63{0x43E0000000000000};
    slot<f64> two_64{0x43F0000000000000};
    slot<f64> greatest_i32{0x41DFFFFFFFC00000}; // 2147483647
    slot<f64> greatest_u32{0x41EFFFFFFFE00000}; // 4294967295
    slot<i64> least_i32{0xFFFFFFFF80000000};
    slot<i64> least_i64{0x8000000000000000};
    slot<i64> greatest_i64{0x7FFFFFFFFFFFFFFF};
};
QUEVAR_CONSTANTS(F64Constants, f64_constants){};

template <class V> const auto &constants_of(V) {
    if constexpr (std::is_same_v<typename V::element, f32>) return f32_constants;
    else return f64_constants;
}
template <class V> V magnitude_of(V x) { return as_float(as_int(x) & constants_of(x).magnitude); }

// Below, r is a whole number. With saturation NaN is already 0, and so is what is negative if the target is
// unsigned. Without saturation unsigned targets are given |r|.

template <bool Saturate, class V> auto to(V r, i32) {
    if constexpr (!Saturate) return to_i32(r);
    else if constexpr (std::is_same_v<typename V::element, f32>)
        return to_i32(r) ^ (r >= f32_constants.two_31); // from 0x80000000 to 0x7FFFFFFF
    else return to_i32(min(r, f64_constants.greatest_i32));
}

template <bool Saturate, int N, int L> auto to(vec<f32, N, L> r, u32) {
    const auto &k = f32_constants;
    // From 2^31 to 2^32 the significand, 8 bits further up, is the integer without its leading bit; that bit,
    // 0x80000000, is what the conversion gives for numbers out of its range.
    const auto upper = (as_int(r) & k.exponent) == k.exponent_31;
    const auto n = to_i32(r) | keep(upper, as_int(r) << 8);
    if constexpr (Saturate) return as_uint(n | (r >= k.two_32));
    else return as_uint(n);
}
template <bool Saturate, int N, int L> auto to(vec<f64, N, L> r, u32) {
    const auto &k = f64_constants;
    if constexpr (Saturate) return as_uint(low_words(min(r, k.greatest_u32) + k.two_52));
    else return as_uint(low_words(select(r < k.two_32, as_int(r + k.two_52), k.least_i32)));
}

// 0 <= r < 2^64
template <class V> auto to_64_bits(V r) {
    const auto &k = f64_constants;
    const auto low = as_int(r + k.two_52) & k.significand;
    const auto shift = as_int(as_uint(r) >> 52) - k.exponent_52;
    const auto high = shift_left((as_int(r) & k.significand) | k.leading_bit, shift);
    return select(r < k.two_52, low, high);
}
template <bool Saturate, int N, int L> auto to(vec<f64, N, L> r, i64) {
    const auto &k = f64_constants;
    const auto magnitude = magnitude_of(r);
    const auto negative = r < vec<f64, N, L>{};
    const auto n = negate_where(negative, to_64_bits(magnitude));
    if constexpr (Saturate) return select(magnitude < k.two_63, n, negative ^ k.greatest_i64);
    else return select(magnitude < k.two_63, n, k.least_i64);
}
template <bool Saturate, int N, int L> auto to(vec<f64, N, L> r, u64) {
    const auto &k = f64_constants;
    const auto n = to_64_bits(r);
    if constexpr (Saturate) return as_uint(n | (r >= k.two_64));
    else return as_uint(select(r < k.two_64, n, k.least_i64));
}

template <class I, rounding_mode M, bool Saturate> struct ToInteger {
    template <class V> static auto main(V x) {
        using Wide = std::conditional_t<sizeof(I) == 8, f64, typename V::element>;
        auto r = convert<Wide>(round<M>(x));
        if constexpr (std::is_unsigned_v<I>) r = Saturate ? max(r, decltype(r){}) : magnitude_of(r);
        else if constexpr (Saturate) r = keep(r == r, r);
        return to<Saturate>(r, I{});
    }
};

#define QUEVAR_TO(I, mode, M, sat, Saturate)                                                                 \
    QUEVAR_EXPORT(cvtfpto##I##mode##sat, f, , unary, f32, I, void, ToInteger<I, M, Saturate>)                \
    QUEVAR_EXPORT(cvtfpto##I##mode##sat, , , unary, f64, I, void, ToInteger<I, M, Saturate>)
#define QUEVAR_TO_ALL(mode, M)                                                                               \
    QUEVAR_TO(i32, mode, M, nosat, false)                                                                    \
    QUEVAR_TO(u32, mode, M, nosat, false)                                                                    \
    QUEVAR_TO(i64, mode, M, nosat, false)                                                                    \
    QUEVAR_TO(u64, mode, M, nosat, false)                                                                    \
    QUEVAR_TO(i32, mode, M, sat, true)                                                                       \
    QUEVAR_TO(u32, mode, M, sat, true)                                                                       \
    QUEVAR_TO(i64, mode, M, sat, true)                                                                       \
    QUEVAR_TO(u64, mode, M, sat, true)
QUEVAR_TO_ALL(rte, to_nearest)
QUEVAR_TO_ALL(rtn, downward)
QUEVAR_TO_ALL(rtp, upward)
QUEVAR_TO_ALL(rtz, toward_zero)

QUEVAR_INLINE_END
} // namespace quevar::to_integer
