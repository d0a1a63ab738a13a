// Steps of float families that work in double.
#pragma once

#include "member.hpp"
#include "operations.hpp"

namespace quevar {
QUEVAR_INLINE_BEGIN

namespace frame {

// 32-bit lanes as they are. 64-bit lanes are masks here: of them the words with the sign.
template <class T, int N, int L> auto narrow(vec<T, N, L> x) {
    if constexpr (sizeof(T) == 4) return x;
    else return high_words(x);
}
inline none narrow(none) { return {}; }
template <class T, int L> vec<T, 4, L> from_two(vec<T, 2, L> x) { return doubled(x); }
inline none from_two(none) { return {}; }
template <class T> vec<T, 8> join(vec<T, 4> a, vec<T, 4> b) {
    return {__builtin_shufflevector(a.v, b.v, 0, 1, 2, 3, 4, 5, 6, 7)};
}
inline none join(none, none) { return {}; }

// Floats as doubles, integers as they are.
template <class T, int N, int L> auto widen(vec<T, N, L> x) {
    if constexpr (std::is_integral_v<T>) return x;
    else return convert<f64>(x);
}

} // namespace frame

// Calls f with floats widened to doubles, and integers as they are; eight lanes go in two halves. f gives
// floats, or an outcome of floats whose mask has 32-bit or 64-bit lanes.
template <class F, int N, int L, class... X> auto in_double(F f, vec<f32, N, L> x, X... more) {
    using namespace frame;
    const auto call = [&](auto... half) {
        const auto o = as_outcome(f(widen(half)...));
        return outcome{narrow(o.first), narrow(o.second), narrow(o.special)};
    };
    const auto unwrap = [](auto o) {
        if constexpr (std::is_same_v<decltype(o.second), none> && std::is_same_v<decltype(o.special), none>)
            return o.first;
        else return o;
    };
    if constexpr (N == 8) {
        const auto half = []<class T, int First>(vec<T, 8> v, std::integral_constant<int, First>) {
            return vec<T, 4>{__builtin_shufflevector(v.v, v.v, First, First + 1, First + 2, First + 3)};
        };
        constexpr std::integral_constant<int, 0> lower;
        constexpr std::integral_constant<int, 4> upper;
        const auto a = call(half(x, lower), half(more, lower)...);
        const auto b = call(half(x, upper), half(more, upper)...);
        return unwrap(outcome{join(a.first, b.first), join(a.second, b.second), join(a.special, b.special)});
    } else if constexpr (L < 4) {
        const auto a = call(lower_two(x), lower_two(more)...);
        return unwrap(outcome{from_two(a.first), from_two(a.second), from_two(a.special)});
    } else {
        return unwrap(call(x, more...));
    }
}

QUEVAR_INLINE_END
} // namespace quevar
