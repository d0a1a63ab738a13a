// From a family's steps to its six exported members: how lanes are taken from the parameters and put in the
// result at each width, the test for special lanes, and the lane loop.
//
// A family is a class with
//
//     main(x...)          template over the working vector; straight-line. Gives the result, or two(first, second),
//                         or flagged(result..., special) with the mask of the lanes that it leaves to the others.
//     settle(x..., r...)  optional; run only if some lane is special: a vector fix-up or stage. Takes main's results
//                         and gives flagged(results..., the lanes that remain).
//     prepare(x)          optional: a first half of settle, which then takes what this gives as a last argument. Wide
//                         members run the halves of two parts side by side, as each waits on its own steps.
//     settles_alone       optional: the results that settle gives in special lanes do not depend on main's, which is
//                         left out where all lanes are special.
//     rare(x..., r...)    pointers to one lane of each argument and result; called for each lane that remains. It may
//                         leave a result alone.
//     in_turn             optional, true: the ordinary path of wide members computes one part after another, because
//                         the registers do not hold what main needs for two at once. Main reads its constants by
//                         `read_for`.
//     in_turn_after_mask  optional, 2 or 4: the same for members of so many parts or more, once the mask of all parts is
//                         tested. For families whose mask takes few steps.
//     in_order_in_memory  optional, true: members whose values lie in memory begin a part when the mask of the part before
//                         is complete. It saves vector registers and takes integer ones.
//     bytes               optional: size of the widest element that main works on, where neither argument nor result
//                         is as wide.
#pragma once

#include <string_view>
#include <tuple>

#define QUEVAR_PURE // a promise to callers, of which the definitions make no use
#include "quevar/quevar.h"

#include "barriers.hpp"
#include "vec.hpp"

namespace quevar {
QUEVAR_INLINE_BEGIN

struct none {};

// What a step gives: one or two results, and the mask of the lanes whose results come from elsewhere.
template <class First, class Second = none, class Special = none> struct outcome {
    First first;
    Second second;
    Special special;
};
template <class A, class B, class M> outcome(A, B, M) -> outcome<A, B, M>;
template <class A, class B> outcome<A, B> two(A first, B second) { return {first, second, {}}; }
template <class A, class M> outcome<A, none, M> flagged(A value, M special) { return {value, {}, special}; }
template <class A, class B, class M> outcome<A, B, M> flagged(A first, B second, M special) {
    return {first, second, special};
}

// The mask of a main path that leaves every lane to settle and rare. The ordinary path of such a member is a
// jump.
template <class V> typename V::mask all_lanes(V) { return ~typename V::mask{}; }

namespace frame {

// ---- The working form of width W: `parts` vectors of `lanes` lanes of elements up to `bytes` long ----

template <int W, int Bytes> struct working {
    static constexpr int lanes = Bytes == 4 ? (W >= 8 ? 8 : 4) : (W >= 3 ? 4 : 2);
    static constexpr int live = W < 3 && W < lanes ? W : lanes;
    static constexpr int parts = W > lanes ? W / lanes : 1;
    template <class T> using vector = vec<T, lanes, live>;
};

template <class V, int P> struct parts { V part[P]; };

template <int N, class F> void for_each_part(F f) {
    with_indices<N>([&]<int... P>(indices<P...>) { (f(std::integral_constant<int, P>{}), ...); });
}

// K lanes from lane First of a raw vector, and two raw vectors side by side.
template <int First, int K, class Raw> auto slice(Raw x) {
    return with_indices<K>([x]<int... I>(indices<I...>) {
        return __builtin_shufflevector(x, x, (First + I)...);
    });
}
template <class Raw> auto concat(Raw a, Raw b) {
    return with_indices<2 * sizeof(Raw) / sizeof(a[0])>(
        [ a, b ]<int... I>(indices<I...>) { return __builtin_shufflevector(a, b, I...); });
}

// ---- Parameters to parts ----

// Width 1 is broadcast, lanes 0 and 1 are copied into spare lanes at width 2, and lane 3 is the filler at
// width 3.
template <class T, int W, class Work, class... Raw> auto take(T filler, Raw... raw) {
    using V = typename Work::template vector<T>;
    parts<V, Work::parts> x;
    if constexpr (W == 1) {
        x.part[0] = V::splat(raw...);
    } else if constexpr (W == 2 && Work::lanes == 4) {
        x.part[0].v = __builtin_shufflevector(raw..., raw..., 0, 1, 0, 1);
    } else if constexpr (W == 3) {
        x.part[0].v = __builtin_shufflevector(raw..., V::splat(filler).v, 0, 1, 2, 4);
    } else {
        const std::tuple all{raw...};
        constexpr int lanes = W / sizeof...(Raw);
        for_each_part<Work::parts>([&](auto p) {
            constexpr int first = p * Work::lanes;
            x.part[p].v = slice<first % lanes, Work::lanes>(std::get<first / lanes>(all));
        });
    }
    return x;
}

// ---- Parts to results ----

template <int W, class V, int P> auto single(parts<V, P> r) {
    if constexpr (W == 1) return r.part[0].v[0];
    else if constexpr (P == 1) return slice<0, (W == 3 ? 4 : W)>(r.part[0].v);
    else if constexpr (P == 2) return concat(r.part[0].v, r.part[1].v);
    else return concat(concat(r.part[0].v, r.part[1].v), concat(r.part[2].v, r.part[3].v));
}

// Each vector of a pair is returned in a register of its own, as the low lanes of one 256-bit half of the
// result.
template <int W, class V, int P> auto pair(parts<V, P> a, parts<V, P> b) {
    using T = typename V::element;
    static_assert(P <= 2 && sizeof(typename V::raw) >= 16, "no pair of this form goes in registers");
    if constexpr (W == 1 && std::is_integral_v<T>) {
        return (std::conditional_t<std::is_signed_v<T>, i64, u64>)((u64)(u32)a.part[0].v[0] |
                                                                   (u64)(u32)b.part[0].v[0] << 32);
    } else if constexpr (W == 1) {
        typename vec<T, 16 / sizeof(T)>::raw packed{};
        packed[0] = a.part[0].v[0];
        packed[1] = b.part[0].v[0];
        return packed;
    } else if constexpr (P == 2) {
        return concat(concat(a.part[0].v, a.part[1].v), concat(b.part[0].v, b.part[1].v));
    } else if constexpr (sizeof(typename V::raw) == 32) {
        return concat(a.part[0].v, b.part[0].v);
    } else {
        return concat(concat(a.part[0].v, a.part[0].v), concat(b.part[0].v, b.part[0].v));
    }
}

// ---- Values in memory: no alignment but the element's, and the bytes of the form, no more ----

template <class Raw, class T> void store_raw(T *p, Raw x) {
    struct [[gnu::packed, gnu::may_alias]] unaligned {
        Raw raw;
    };
    reinterpret_cast<unaligned *>(p)->raw = x;
}
template <class Raw, class T> Raw load_raw(const T *p) {
    struct [[gnu::packed, gnu::may_alias]] unaligned {
        Raw raw;
    };
    return reinterpret_cast<const unaligned *>(p)->raw;
}

template <int W, class T, int P, int N, int L> void store(T *p, parts<vec<T, N, L>, P> x) {
    if constexpr (W == 1) *p = x.part[0].v[0];
    else if constexpr (P == 1) store_raw(p, slice<0, (W == 2 ? 2 : N)>(x.part[0].v));
    else for_each_part<P>([&](auto i) { store_raw(p + i * N, x.part[i].v); });
}
template <int W, class T, int P> void store(T *, parts<none, P>) {}
template <int W, class Work, class T> auto load(const T *p) {
    using V = typename Work::template vector<T>;
    parts<V, Work::parts> x;
    if constexpr (W == 1) x.part[0] = V::splat(*p);
    else if constexpr (W == 2) x = take<T, W, Work>(T{}, load_raw<typename vec<T, 2>::raw>(p));
    else
        for_each_part<Work::parts>(
            [&](auto i) { x.part[i].v = load_raw<typename V::raw>(p + i * Work::lanes); });
    return x;
}

// ---- A step over all parts, and the special mask ----

template <class T, int N, int L> outcome<vec<T, N, L>> as_outcome(vec<T, N, L> r) { return {r, {}, {}}; }
template <class A, class B, class M> outcome<A, B, M> as_outcome(outcome<A, B, M> o) { return o; }

template <class> constexpr bool is_none = false;
template <int P> constexpr bool is_none<parts<none, P>> = true;

template <int P, class A, class B, class M>
auto outcome_parts(outcome<A, B, M>) -> outcome<parts<A, P>, parts<B, P>, parts<M, P>>;

template <int P, bool Together = false, class Step, class... X> auto over_parts(Step step, parts<X, P>... x) {
    decltype(outcome_parts<P>(as_outcome(step(x.part[0]...)))) out;
    for_each_part<P>([&](auto p) {
        // Four parts at once would not fit the registers, unless only their masks are wanted.
        if constexpr (p == 2 && !Together) (begin_after(x.part[p], out.first.part[p - 1]), ...);
        const auto o = as_outcome(step(x.part[p]...));
        out.first.part[p] = o.first;
        out.second.part[p] = o.second;
        out.special.part[p] = o.special;
    });
    return out;
}

// The same, one part complete before the next begins; the special mask as bits, which take no vector
// register.
template <int P, class Step, class... X> auto over_parts_in_turn(Step step, parts<X, P>... x) {
    using Out = decltype(outcome_parts<P>(as_outcome(step(x.part[0]...))));
    outcome<decltype(Out::first), decltype(Out::second), unsigned> out{};
    for_each_part<P>([&](auto p) {
        if constexpr (p > 0) {
            (begin_after(x.part[p], out.first.part[p - 1]), ...);
            if constexpr (!is_none<decltype(Out::special)>) (begin_after(x.part[p], out.special), ...);
            if constexpr (!is_none<decltype(Out::second)>)
                (begin_after(x.part[p], out.second.part[p - 1]), ...);
        }
        const auto o = as_outcome(step(x.part[p]...));
        out.first.part[p] = o.first;
        out.second.part[p] = o.second;
        if constexpr (!is_none<decltype(Out::special)>)
            out.special |= sign_bits(o.special) << p * decltype(o.special)::lanes;
    });
    return out;
}

template <class M, int P> unsigned joined_mask(const parts<M, P> &special) {
    unsigned mask = 0;
    for_each_part<P>([&](auto p) { mask |= sign_bits(special.part[p]) << p * M::lanes; });
    return mask;
}
// Whether a lane is special. Apart: each part's mask becomes bits before they are joined, which takes no
// vector registers. The compiler would join the masks first if it recognised them.
template <bool Apart, class M, int P> bool any_special(parts<M, P> special) {
    if constexpr (Apart) {
        for (M &m : special.part) m = unrecognised(m);
        return joined_mask(special) != 0;
    } else {
        M any = special.part[0];
        for_each_part<P>([&](auto p) { any = any | special.part[p]; });
        return sign_bits(any) != 0;
    }
}
template <bool, int P> bool any_special(const parts<none, P> &) { return false; }
template <bool> bool any_special(unsigned mask) { return mask != 0; }
template <class M> bool all_set(M special) { return sign_bits(special) == (1u << M::live) - 1; }

// ---- Special lanes ----

// The lanes of an argument or result as an array, for the rare path to point into.
template <class V, int P> struct lane_array {
    using T = typename V::element;
    alignas(64) T lane[P * V::lanes];

    explicit lane_array(const parts<V, P> &x) { store<P * V::lanes>(lane, x); }
    parts<V, P> reload() const {
        parts<V, P> x;
        for_each_part<P>([&](auto p) { x.part[p].v = load_raw<typename V::raw>(lane + p * V::lanes); });
        return x;
    }
};
template <int P> struct lane_array<none, P> {
    explicit lane_array(const parts<none, P> &) {}
    parts<none, P> reload() const { return {}; }
};

template <class F, class... Lane> void lane_loop(unsigned mask, Lane *...lane) {
    for (; mask; mask &= mask - 1) {
        const int i = __builtin_ctz(mask);
        F::rare(lane + i...);
    }
}

// ---- The member ----

template <class... T> using types = std::tuple<std::type_identity<T>...>;
template <int K, class Types> using type_at = typename std::tuple_element_t<K, Types>::type;

template <class F, class Row, int W> struct member {
    using A = typename Row::A;
    using R = typename Row::R;
    using Arguments = typename Row::arguments;
    static constexpr bool has_pointer = !std::is_void_v<typename Row::P>;
    using Second = std::conditional_t<has_pointer, typename Row::P, none>; // what the pointer addresses
    static constexpr int bytes = [] {
        if constexpr (requires { F::bytes; }) return F::bytes;
        else return (int)(sizeof(A) > sizeof(R) ? sizeof(A) : sizeof(R));
    }();
    using Work = working<W, bytes>;
    static constexpr int P = Work::parts;

    static constexpr bool after_mask = [] {
        if constexpr (requires { F::in_turn_after_mask; }) return P >= F::in_turn_after_mask;
        else return false;
    }();

    // ---- Main path and special lanes, on parts ----

    template <class... V> static auto main(const parts<V, P> &...x) {
        return over_parts<P, after_mask>([](auto... v) { return F::main(v...); }, x...);
    }

    template <class... V> static constexpr bool has_prepare = requires(V... x) { F::prepare(x...); };
    template <class... V> static auto prepare(V... x) {
        if constexpr (has_prepare<V...>) return F::prepare(x...);
        else return none{};
    }
    template <class... V>
    static constexpr bool has_settle = [] {
        using Out = decltype(as_outcome(F::main(std::declval<V>()...)));
        if constexpr (has_prepare<V...>) return true;
        else if constexpr (std::is_same_v<decltype(Out::second), none>) return requires(V... x, Out o) {
                F::settle(x..., o.first);
            };
        else return requires(V... x, Out o) {
                F::settle(x..., o.first, o.second);
            };
    }();
    // settle with those of its arguments that it takes.
    template <class Out, class Prepared, class... V>
    static Out settle(const Out &out, const Prepared &prepared, V... x) {
        constexpr bool one = std::is_same_v<decltype(out.second), none>;
        if constexpr (one && has_prepare<V...>) return F::settle(x..., out.first, prepared);
        else if constexpr (one) return F::settle(x..., out.first);
        else if constexpr (has_prepare<V...>) return F::settle(x..., out.first, out.second, prepared);
        else return F::settle(x..., out.first, out.second);
    }

    // What main gave is dropped, and so not computed, if all lanes are special and settle does not need it.
    template <class... Out> static void keep_if_needed(Out &...out) {
        if constexpr (requires { F::settles_alone; }) {
            const bool all = (int(all_set(out.special)) & ...);
            const auto keep = [all](auto &o) {
                const auto main = o;
                o.first.v = {};
                if constexpr (!std::is_same_v<decltype(o.second), none>) o.second.v = {};
                if (!all) {
                    o.first = unrecognised(main.first);
                    if constexpr (!std::is_same_v<decltype(o.second), none>)
                        o.second = unrecognised(main.second);
                }
            };
            (keep(out), ...);
        }
    }
    // Keeps the steps of settle behind those of main: mixed, they would not fit the registers.
    template <class X, class Out> static void begin_after_main(X &x, const Out &out) {
        begin_after(x, out.first);
        if constexpr (!std::is_same_v<decltype(out.second), none>) begin_after(x, out.second);
    }
    // main and settle for one part; of several parts only for those that need a settle.
    template <class... V> static auto main_and_settle(V... x) {
        auto out = as_outcome(F::main(x...));
        if constexpr (P > 1)
            if (!sign_bits(out.special)) return out;
        keep_if_needed(out);
        if constexpr (has_prepare<V...>) (begin_after_main(x, out), ...);
        return settle(out, prepare(x...), x...);
    }
    template <class... V> [[gnu::noinline]] static auto main_and_settle_apart(V... x) {
        return main_and_settle(x...);
    }
    // The same for two parts.
    template <class V> [[gnu::noinline]] static auto main_and_settle_two(V x, V y) {
        auto a = as_outcome(F::main(x)), b = as_outcome(F::main(y));
        if (!sign_bits(a.special) || !sign_bits(b.special)) {
            a = main_and_settle_apart(x), b = main_and_settle_apart(y);
        } else {
            keep_if_needed(a, b);
            begin_after_main(x, a), begin_after_main(x, b);
            begin_after_main(y, a), begin_after_main(y, b);
            const auto first = prepare(x);
            const auto second = prepare(y);
            a = settle(a, first, x), b = settle(b, second, y);
        }
        return outcome<parts<decltype(a.first), 2>, parts<decltype(a.second), 2>,
                       parts<decltype(a.special), 2>>{
            {{a.first, b.first}}, {{a.second, b.second}}, {{a.special, b.special}}};
    }
    template <class... V> static auto settled(const parts<V, P> &...x) {
        if constexpr (P == 1) {
            return over_parts<1>([](auto... v) { return main_and_settle(v...); }, x...);
        } else if constexpr (has_prepare<V...>) {
            decltype(main(x...)) out;
            for_each_part<P / 2>([&](auto p) {
                const auto two = main_and_settle_two(x.part[2 * p]..., x.part[2 * p + 1]...);
                for_each_part<2>([&](auto i) {
                    out.first.part[2 * p + i] = two.first.part[i];
                    out.second.part[2 * p + i] = two.second.part[i];
                    out.special.part[2 * p + i] = two.special.part[i];
                });
            });
            return out;
        } else {
            return over_parts<P>([](auto... v) { return main_and_settle_apart(v...); }, x...);
        }
    }
    // main, settle and the lane loop.
    template <class... V> static auto all_paths(const parts<V, P> &...x) {
        auto out = [&] {
            if constexpr (has_settle<V...>) return settled(x...);
            else return main(x...);
        }();
        if constexpr (!is_none<decltype(out.special)>) {
            if (const unsigned mask = joined_mask(out.special)) {
                lane_array first(out.first);
                lane_array second(out.second);
                if constexpr (is_none<decltype(out.second)>)
                    lane_loop<F>(mask, lane_array(x).lane..., first.lane);
                else lane_loop<F>(mask, lane_array(x).lane..., first.lane, second.lane);
                out.first = first.reload();
                out.second = second.reload();
            }
        }
        return out;
    }
    // The same without the lane loop, if there is a settle: that leaves few lanes, and the compiler needs no
    // frame for lane arrays.
    template <class... V> static auto all_but_loop(const parts<V, P> &...x) {
        if constexpr (has_settle<V...>) {
            return settled(x...);
        } else {
            const auto out = all_paths(x...);
            return outcome{out.first, out.second, parts<none, P>{}};
        }
    }

    // ---- In registers. raw: the parameters as they come, a pointer last ----

    using Result = decltype([] {
        if constexpr (!Row::pair) return single<W>(parts<typename Work::template vector<R>, P>{});
        else if constexpr (P <= 2) return pair<W>(parts<typename Work::template vector<R>, P>{}, {});
    }());

    // Argument K takes as many of the parameters as its value has vectors.
    template <int K>
    static constexpr int vectors = [] {
        const int bytes = W * (int)sizeof(type_at<K, Arguments>);
        return bytes > 32 ? bytes / 32 : 1;
    }();
    template <int K>
    static constexpr int first_vector = [] {
        if constexpr (K == 0) return 0;
        else return first_vector<K - 1> + vectors<K - 1>;
    }();
    template <int K, class All> static auto argument(const All &all) {
        using T = type_at<K, Arguments>;
        return with_indices<vectors<K>>([&]<int... I>(indices<I...>) {
            return take<T, W, Work>(std::is_same_v<T, A> ? T(Row::filler) : T(1),
                                    std::get<first_vector<K> + I>(all)...);
        });
    }
    template <class Path, class... Raw> static auto on_arguments(Path path, Raw... raw) {
        const std::tuple all{raw...};
        return with_indices<std::tuple_size_v<Arguments>>([&]<int... K>(indices<K...>) {
            return path(argument<K>(all)...);
        });
    }

    template <class... Raw> static auto ordinary(Raw... raw) {
        return on_arguments(
            [](const auto &...x) {
                if constexpr (P > 1 && requires { F::in_turn; })
                    return over_parts_in_turn<P>([](auto... v) { return F::main(v...); }, x...);
                else return main(x...);
            },
            raw...);
    }
    template <class Out> static bool any_special(const Out &out) {
        return frame::any_special<(P == 4 && !after_mask)>(out.special);
    }
    // What is returned when no lane is special; out is what `ordinary` gave.
    template <class Out, class... Raw> static Result give_ordinary(const Out &out, Raw... raw) {
        if constexpr (after_mask) {
            const auto results = on_arguments(
                [](auto... x) {
                    // Nothing that the mask was made of is kept for this.
                    ((x.part[0] = unrecognised(x.part[0])), ...);
                    return over_parts_in_turn<P>(
                        [](auto... v) {
                            const auto o = as_outcome(F::main(v...));
                            return outcome{o.first, o.second, none{}};
                        },
                        x...);
                },
                raw...);
            return give(results, raw...);
        } else {
            return give(out, raw...);
        }
    }
    template <class Out, class... Raw> static Result give(const Out &out, Raw... raw) {
        if constexpr (Row::pair) {
            return pair<W>(out.first, out.second);
        } else {
            if constexpr (has_pointer)
                store<W>((Second *)std::get<sizeof...(Raw) - 1>(std::tuple{raw...}), out.second);
            return single<W>(out.first);
        }
    }
    // Where lanes remain for the loop after a settle, that starts over once more.
    template <class... Raw> [[gnu::noinline, gnu::cold]] static Result special(Raw... raw) {
        const auto out = on_arguments([](const auto &...x) { return all_but_loop(x...); }, raw...);
        if (frame::any_special<false>(out.special)) [[unlikely]]
            [[clang::musttail]] return remaining(raw...);
        return give(out, raw...);
    }
    template <class... Raw> [[gnu::noinline, gnu::cold]] static Result remaining(Raw... raw) {
        return give(on_arguments([](const auto &...x) { return all_paths(x...); }, raw...), raw...);
    }

    // ---- In memory: the result goes to r, arguments are blocks, a pointer comes last ----

    // The main path part by part, as not all would fit the registers at once. Says whether a lane is special.
    template <class... Block> static bool ordinary_in_memory(R *r, const Block &...block) {
        return on_blocks(
            [r](Second *second, auto... x) {
                using Part = working<Work::lanes, bytes>;
                unsigned special = 0; // as bits, which take no vector register from the next part
                for_each_part<P>([&](auto p) {
                    constexpr int first = p * Work::lanes;
                    const auto part = [&](auto lanes) {
                        auto v = load<Work::lanes, Part>(lanes + first);
                        if constexpr (p > 0 && requires { F::in_order_in_memory; })
                            begin_after(v.part[0], special);
                        return v;
                    };
                    const auto out = over_parts<1>([](auto... v) { return F::main(v...); }, part(x)...);
                    store<Work::lanes>(r + first, out.first);
                    if constexpr (Row::pair) store<Work::lanes>(r + W + first, out.second);
                    else store<Work::lanes>(second + first, out.second);
                    if constexpr (!is_none<decltype(out.special)>)
                        special |= frame::any_special<true>(out.special);
                });
                return special != 0;
            },
            block...);
    }
    template <class... Block> [[gnu::noinline, gnu::cold]] static R *special_in_memory(R *r, Block... block) {
        return on_blocks(
            [r](Second *second, auto... x) {
                const auto out = all_paths(load<W, Work>(x)...);
                store<W>(r, out.first);
                if constexpr (Row::pair) store<W>(r + W, out.second);
                else store<W>(second, out.second);
                // If the compiler knew what comes back it would return that itself, after a call, instead of
                // jumping.
                return unrecognised(r);
            },
            block...);
    }
    // Calls path with the pointer for second results and the first lane of each block.
    template <class Path, class... Block> static auto on_blocks(Path path, const Block &...block) {
        return with_indices<std::tuple_size_v<Arguments>>([&]<int... K>(indices<K...>) {
            const std::tuple<const Block *...> all{&block...};
            Second *second = nullptr;
            if constexpr (has_pointer) second = (Second *)*std::get<sizeof...(Block) - 1>(all);
            return path(second, (const type_at<K, Arguments> *)std::get<K>(all)...);
        });
    }
};

} // namespace frame

// ---- Export lines ----

// What families.def says of a family, for the frame.
#define QUEVAR_ELEMENT(T, W, v) T
#define QUEVAR_IS_PAIR_single false
#define QUEVAR_IS_PAIR_pair true
#define QUEVAR_ROW(base, mark, tier, shape, A_, R_, P_, filler_, bound)                                      \
    struct base##_##mark##tier {                                                                             \
        using A = A_;                                                                                        \
        using R = R_;                                                                                        \
        using P = P_;                                                                                        \
        using arguments = frame::types<QUEVAR_VECTORS(shape, QUEVAR_ELEMENT, A_, 0)>;                        \
        static constexpr A filler = filler_;                                                                 \
        static constexpr bool pair = QUEVAR_CAT(QUEVAR_IS_PAIR_, QUEVAR_SHAPE_RESULTS(shape));               \
    };
namespace rows {
#define QUEVAR_FAMILY QUEVAR_ROW
#include "quevar/families.def"
#undef QUEVAR_FAMILY
} // namespace rows

QUEVAR_INLINE_END
} // namespace quevar

// Defines the six members of a family: QUEVAR_EXPORT(exp, f, _native, unary, f32, f32, void, Family).
//
// A member computes the main path and returns. Where a lane is special it jumps to a function of its own with
// the same parameters, which starts over: they still lie where the caller put them, and the ordinary path
// needs no frame.
//
// A result pointer is passed on with a type that promises more alignment than there is; nothing counts on it.
#pragma clang diagnostic ignored "-Walign-mismatch"
#define QUEVAR_EXPORT(base, mark, tier, shape, A, R, P, ...)                                                 \
    QUEVAR_MEMBERS(QUEVAR_DEFINE, QUEVAR_DEFINE_MEMORY, shape, A, R, P, base, mark, tier, __VA_ARGS__)

#define QUEVAR_MEMBER(W, base, mark, tier, ...)                                                              \
    quevar::frame::member<__VA_ARGS__, quevar::rows::base##_##mark##tier, W>
#define QUEVAR_ARGUMENT_NAMES(names, W, shape, A, P)                                                         \
    QUEVAR_VECTORS(shape, names, A, W) QUEVAR_POINTER(shape, QUEVAR_POINTER_NAME, P, W)

#define QUEVAR_DEFINE(W, shape, A, R, P, base, mark, tier, ...)                                              \
    extern "C" [[gnu::visibility("default")]] QUEVAR_SIGNATURE(W, shape, A, R, P,                            \
                                                               QUEVAR_NAME(base, mark, tier, W)) {           \
        using m = QUEVAR_MEMBER(W, base, mark, tier, __VA_ARGS__);                                           \
        const auto out = m::ordinary(QUEVAR_ARGUMENT_NAMES(QUEVAR_NAMES, W, shape, A, P));                   \
        if (m::any_special(out)) [[unlikely]]                                                                \
            [[clang::musttail]] return m::special(QUEVAR_ARGUMENT_NAMES(QUEVAR_NAMES, W, shape, A, P));      \
        return m::give_ordinary(out, QUEVAR_ARGUMENT_NAMES(QUEVAR_NAMES, W, shape, A, P));                   \
    }

// A result in memory is declared as what it is to the processor, a block whose address comes and goes.
// musttail is not for blocks passed by value: Clang 14 copies them over the return address.
#define QUEVAR_DEFINE_MEMORY(W, shape, A, R, P, base, mark, tier, ...)                                       \
    [[gnu::visibility("default")]] quevar_##R *memory_##base##mark##W##tier(                                 \
        quevar_##R *r, QUEVAR_VECTORS(shape, QUEVAR_PARAMETER_MEMORY, A, W)                                  \
                           QUEVAR_POINTER(shape, QUEVAR_POINTER_PARAMETER, P,                                \
                                          W)) asm(QUEVAR_STRING(QUEVAR_NAME(base, mark, tier, W)));          \
    quevar_##R *memory_##base##mark##W##tier(quevar_##R *r,                                                  \
                                             QUEVAR_VECTORS(shape, QUEVAR_PARAMETER_MEMORY, A, W)            \
                                                 QUEVAR_POINTER(shape, QUEVAR_POINTER_PARAMETER, P, W)) {    \
        using m = QUEVAR_MEMBER(W, base, mark, tier, __VA_ARGS__);                                           \
        if (m::ordinary_in_memory(r, QUEVAR_ARGUMENT_NAMES(QUEVAR_NAMES_MEMORY, W, shape, A, P)))            \
            [[unlikely]]                                                                                     \
            return m::special_in_memory(r, QUEVAR_ARGUMENT_NAMES(QUEVAR_NAMES_MEMORY, W, shape, A, P));      \
        return r;                                                                                            \
    }
#define QUEVAR_STRING(name) QUEVAR_STRING_(name)
#define QUEVAR_STRING_(name) #name
