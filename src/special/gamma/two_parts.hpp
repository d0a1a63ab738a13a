// Numbers held as the unevaluated sum of two doubles, in vectors.
#pragma once

#include "frame/frame.hpp"

namespace quevar {
QUEVAR_INLINE_BEGIN

template <class D> struct TwoParts { D high, low; };

// a + b, exactly.
template <class D> TwoParts<D> exact_sum(D a, D b) {
    const D sum = a + b, part = sum - a;
    return {sum, (a - (sum - part)) + (b - part)};
}
// p s.
template <class D> TwoParts<D> operator*(TwoParts<D> p, D s) {
    const D product = p.high * s;
    return {product, fma(p.low, s, fms(p.high, s, product))};
}
// p s + c, the product of a double rounded.
template <class D> TwoParts<D> multiply_add(D p, D s, D high, D low) {
    const TwoParts<D> sum = exact_sum(high, p * s);
    return {sum.high, sum.low + low};
}
template <class D> TwoParts<D> multiply_add(TwoParts<D> p, D s, D high, D low) {
    const TwoParts<D> product = p * s, sum = exact_sum(high, product.high);
    return {sum.high, sum.low + (product.low + low)};
}

// The value rounded, and whether all numbers that differ from it by no more than `bound` round to the same.
template <class D> auto rounded(TwoParts<D> value, D bound) {
    const D least = value.high + (value.low - bound), most = value.high + (value.low + bound);
    return outcome<D, none, decltype(least == most)>{most, {}, least == most};
}

QUEVAR_INLINE_END
} // namespace quevar
