// sqrt: the square root.
#include "frame/frame.hpp"

namespace quevar::square_root {
QUEVAR_INLINE_BEGIN

struct SquareRoot {
    template <class V> static V main(V x) { return sqrt(x); }
};

// No lane is treated apart: 0 and +inf give NaN. Worst found on a Zen 5: 0x386F97EE, 5.7123535952996463e-05:
// 4148 ulp.
struct RsqrtEstimate {
    template <class V> static V main(V x) { return x * rsqrt_estimate(x); }
};

struct Constants {
    slot<i32> least{0x80800000}; // the positive normal numbers are ordinary
    slot<i32> range{0xFEFFFFFF};
};
QUEVAR_CONSTANTS(Constants, constants){};

struct RsqrtEstimateOfNormal {
    template <class V> static auto main(V x) {
        return flagged(RsqrtEstimate::main(x), (as_int(x) - constants.least) > constants.range);
    }
    static void rare(const f32 *x, f32 *r) { *r = __builtin_sqrtf(*x); }
};

// The estimate is that for x converted to float: right in the range of float alone, and of a NaN's payload
// only the upper bits remain. Worst found on a Zen 5: 0x3FEDF2FCFDC150E2, 0.93591165124464859: 2.225e12 ulp.
struct RsqrtEstimateInFloat {
    template <class V> static V main(V x) {
        return multiply_in_order(convert<f64>(rsqrt_estimate(convert<f32>(x))), x);
    }
};

QUEVAR_EXPORT(sqrt, f, , unary, f32, f32, void, SquareRoot)
QUEVAR_EXPORT(sqrt, f, _native, unary, f32, f32, void, RsqrtEstimate)
QUEVAR_EXPORT(sqrt, f, _half, unary, f32, f32, void, RsqrtEstimateOfNormal)
QUEVAR_EXPORT(sqrt, , , unary, f64, f64, void, SquareRoot)
QUEVAR_EXPORT(sqrt, , _native, unary, f64, f64, void, RsqrtEstimateInFloat)

QUEVAR_INLINE_END
} // namespace quevar::square_root
