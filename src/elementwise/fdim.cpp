// fdim: the positive difference, x - y where x > y and +0 elsewhere.
#include "frame/frame.hpp"

namespace quevar::fdim {
QUEVAR_INLINE_BEGIN

struct Fdim {
    template <class V> static auto main(V x, V y) { return flagged(keep(x > y, x - y), unordered(x, y)); }

    // Of two NaNs y wins.
    template <class T> static void rare(const T *x, const T *y, T *r) { *r = quiet(is_nan(*y) ? *y : *x); }
};

QUEVAR_EXPORT(fdim, f, , binary, f32, f32, void, Fdim)
QUEVAR_EXPORT(fdim, , , binary, f64, f64, void, Fdim)

QUEVAR_INLINE_END
} // namespace quevar::fdim
