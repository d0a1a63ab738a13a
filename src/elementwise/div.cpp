// div: the quotient x / y.
#include "frame/frame.hpp"

namespace quevar::div {
QUEVAR_INLINE_BEGIN

struct Division {
    template <class V> static V main(V x, V y) { return x / y; }
};

struct Constants {
    slot<i32> magnitude{0x7FFFFFFF};
    slot<i32> least{0x00800000}; // the smallest normal number
    slot<i32> range{0x7DFFFFFF}; // from it to 2^126, where the reciprocal is normal
};
QUEVAR_CONSTANTS(Constants, constants){};

// Worst found on a Zen 5: 0x4098F7FA / 0x4098F7FF, 4.7802705764770508 / 4.7802729606628418: 5290 ulp.
struct ReciprocalEstimate {
    // The mask drops the sign of y, and makes magnitudes below `least` greater than all others.
    template <class V> static auto main(V x, V y) {
        const auto &k = constants;
        return flagged(x * reciprocal_estimate(y), ((as_int(y) - k.least) & k.magnitude) > k.range);
    }
    static void rare(const f32 *x, const f32 *y, f32 *r) { *r = *x / *y; }
};

QUEVAR_EXPORT(div, f, , binary, f32, f32, void, Division)
QUEVAR_EXPORT(div, f, _rm, binary, f32, f32, void, Division)
QUEVAR_EXPORT(div, f, _native, binary, f32, f32, void, ReciprocalEstimate)
QUEVAR_EXPORT(div, f, _half, binary, f32, f32, void, ReciprocalEstimate)
QUEVAR_EXPORT(div, , , binary, f64, f64, void, Division)
QUEVAR_EXPORT(div, , _native, binary, f64, f64, void, Division)

QUEVAR_INLINE_END
} // namespace quevar::div
