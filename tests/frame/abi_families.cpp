// The families of abi_families.def, on the frame of the real ones.
#include "abi_families.hpp"
#include "frame/frame.hpp"

namespace quevar {

namespace rows {
#define QUEVAR_FAMILY QUEVAR_ROW
#include "abi_families.def"
#undef QUEVAR_FAMILY
} // namespace rows

namespace {

template <class V> V constant(int c) {
    if constexpr (std::is_arithmetic_v<V>) return V(c);
    else return V::splat(c);
}
template <class V, class... X> V weighted(const form::Weights &w, V x, X... more) {
    V sum = constant<V>(w[3]) + constant<V>(w[0]) * x;
    int k = 1;
    ((sum = sum + constant<V>(w[k++]) * more), ...);
    return sum;
}
template <class R, class T, int N, int L> vec<R, N, L> to(vec<T, N, L> x) {
    return {__builtin_convertvector(x.v, typename vec<R, N, L>::raw)};
}

template <class Row, bool Settles> struct Linear {
    using A = typename Row::A;
    using R = typename Row::R;
    using Second = std::conditional_t<Row::pair, R, typename Row::P>;
    static constexpr int results = std::is_void_v<Second> ? 1 : 2;

    template <class V, class... Y> static auto main(V x, Y... y) {
        const auto r = to<R>(weighted(form::first, x, to<A>(y)...));
        const auto special = x > V::splat(form::rare_above);
        if constexpr (results == 2)
            return flagged(r, to<Second>(weighted(form::second, x, to<A>(y)...)), special);
        else if constexpr (form::has_special(sizeof(A), sizeof(R))) return flagged(r, special);
        else return r;
    }

    template <class V> static auto settle(V x, V y, V r) requires(Settles) {
        const auto settled = x > V::splat(form::settled_above);
        const auto left = (x > V::splat(form::rare_above)) & ~settled;
        if constexpr (results == 1)
            return flagged(select(settled, weighted(form::settled_first, x, y), r), left);
        else // one argument, and two results in y and r
            return flagged(select(settled, weighted(form::settled_first, x), y),
                           select(settled, weighted(form::settled_second, x), r), left);
    }

    template <class... X> static void rare(X *...lane) {
        constexpr int arguments = sizeof...(X) - results;
        A x[4] = {A(*lane)...};
        for (int k = arguments; k < 4; ++k) x[k] = 0;
        if (x[0] > form::left_alone_above) return;
        const std::tuple all{lane...};
        *std::get<arguments>(all) = R(weighted(form::rare_first, x[0], x[1], x[2]));
        if constexpr (results == 2)
            *std::get<arguments + 1>(all) = Second(weighted(form::rare_second, x[0], x[1], x[2]));
    }
};

} // namespace

#define QUEVAR_FAMILY(base, mark, tier, shape, A, R, P, filler, bound)                                       \
    QUEVAR_EXPORT(base, mark, tier, shape, A, R, P, Linear<rows::base##_##mark##tier, sizeof #tier != 1>)
#include "abi_families.def"

} // namespace quevar
