// Division of 32-bit integers through a reciprocal in double. No lane traps: a divisor of zero and an
// overflow give NaN or a number out of range, and these convert to what families.def says.
#include "frame/frame.hpp"

namespace quevar::intdiv {
QUEVAR_INLINE_BEGIN

struct Constants {
    slot<f64> two{0x4000000000000000};
    slot<f64> above_two{0x4000000000000200}; // 2 + 2^-42
    slot<f64> shifter{0x4338000000000000};   // 1.5 * 2^52
};
QUEVAR_CONSTANTS(Constants, constants){};

// x/y with a relative error in [0, 2^-41], never negative because of above_two. Exact quotients never fall
// short; others never reach the next integer, as |x| is at most 2^32.
template <class V> V divide(V x, V y) {
    const auto &k = constants;
    const V r0 = convert<f64>(reciprocal_estimate(convert<f32>(y)));
    const V r1 = r0 * fnma(y, r0, k.two);
    const V e = fnma(r1, y, k.above_two);
    return e * (x * r1);
}

template <int L> auto quotient(vec<i32, 4, L> x, vec<i32, 4, L> y) {
    return truncated_to_i32(divide(convert<f64>(x), convert<f64>(y)));
}
template <int L> auto quotient(vec<u32, 4, L> x, vec<u32, 4, L> y) {
    using D = vec<f64, 4, L>;
    const D shifter = constants.shifter;
    // n stands in the low bits of the shifter's significand.
    const auto to_double = [shifter](auto n) {
        return as_float(as_int(convert<u64>(n)) | as_int(shifter)) - shifter;
    };
    const D q = round<toward_zero>(divide(to_double(x), to_double(y)));
    return as_uint(low_words(q + shifter));
}
// In two halves, as a register holds four doubles.
template <int First, class T> vec<T, 4> half(vec<T, 8> n) { return {frame::slice<First, 4>(n.v)}; }
template <class T> vec<T, 8> quotient(vec<T, 8> x, vec<T, 8> y) {
    return {frame::concat(quotient(half<0>(x), half<0>(y)).v, quotient(half<4>(x), half<4>(y)).v)};
}

struct Quotient {
    template <class V> static auto main(V x, V y) { return quotient(x, y); }
};
struct Remainder {
    template <class V> static auto main(V x, V y) { return x - quotient(x, y) * y; }
};
struct Both {
    template <class V> static auto main(V x, V y) {
        const V q = quotient(x, y);
        return two(q, x - q * y);
    }
};

QUEVAR_EXPORT(idiv, , , binary, i32, i32, void, Quotient)
QUEVAR_EXPORT(irem, , , binary, i32, i32, void, Remainder)
QUEVAR_EXPORT(idivrem, , , binary_pair, i32, i32, void, Both)
QUEVAR_EXPORT(udiv, , , binary, u32, u32, void, Quotient)
QUEVAR_EXPORT(urem, , , binary, u32, u32, void, Remainder)
QUEVAR_EXPORT(udivrem, , , binary_pair, u32, u32, void, Both)

QUEVAR_INLINE_END
} // namespace quevar::intdiv
