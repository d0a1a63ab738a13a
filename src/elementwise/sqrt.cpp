// sqrt: the square root.
#include "frame/frame.hpp"

namespace quevar::square_root {
QUEVAR_INLINE_BEGIN

struct Exact {
    template <class V> static V main(V x) { return sqrt(x); }
};

// No lane is treated apart: 0 and +inf give NaN.
struct Native {
    template <class V> static V main(V x) { return x * rsqrt_estimate(x); }
};

struct Constants {
    slot<i32> least{0x80800000}; // the positive normal numbers are ordinary
    slot<i32> range{0xFEFFFFFF};
};
QUEVAR_CONSTANTS(Constants, constants){};

struct Half {
    template <class V> static auto main(V x) {
        return flagged(Native::main(x), (as_int(x) - constants.least) > constants.range);
    }
    static void rare(const f32 *x, f32 *r) { *r = __builtin_sqrtf(*x); }
};

// The estimate is that of x as a float, which cuts the range to that of float. Of a NaN it keeps the upper
// bits alone.
struct DoubleNative {
    template <class V> static V main(V x) {
        return multiply_in_order(convert<f64>(rsqrt_estimate(convert<f32>(x))), x);
    }
};

QUEVAR_EXPORT(sqrt, f, , unary, f32, f32, void, Exact)
QUEVAR_EXPORT(sqrt, f, _native, unary, f32, f32, void, Native)
QUEVAR_EXPORT(sqrt, f, _half, unary, f32, f32, void, Half)
QUEVAR_EXPORT(sqrt, , , unary, f64, f64, void, Exact)
QUEVAR_EXPORT(sqrt, , _native, unary, f64, f64, void, DoubleNative)

QUEVAR_INLINE_END
} // namespace quevar::square_root
