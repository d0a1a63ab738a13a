// What each operation is measured over and against: one line a base.
#ifndef QUEVAR_BENCH_PEERS_HPP
#define QUEVAR_BENCH_PEERS_HPP

#include <cmath>
#include <cstddef>
#include <sleef.h>

namespace quevar_bench {

struct None {};

// The SLEEF function of a name and an accuracy (u10: 1.0 ulp; empty where the name has none), for one
// xmm or ymm of float or double.
#define SLEEF(function, accuracy)                                                                            \
    [](auto x, auto... rest) {                                                                               \
        if constexpr (sizeof x[0] == 4 && sizeof x == 16)                                                    \
            return Sleef_##function##f4_##accuracy##avx2128(x, rest...);                                     \
        else if constexpr (sizeof x[0] == 4) return Sleef_##function##f8_##accuracy##avx2(x, rest...);       \
        else if constexpr (sizeof x == 16) return Sleef_##function##d2_##accuracy##avx2128(x, rest...);      \
        else return Sleef_##function##d4_##accuracy##avx2(x, rest...);                                       \
    }

// The C library's function. Like quevar's, it may take a last argument that points to a second result.
#define LIBM(function)                                                                                       \
    [](auto x, auto... rest) {                                                                               \
        if constexpr (sizeof x == 4) return ::function##f(x, rest...);                                       \
        else return ::function(x, rest...);                                                                  \
    }

struct Range {
    double low = 1, high = 1000;
};

template <class Close, class Loose, class Libm> struct Peers {
    Range x, y;     // arguments are uniform in these: ordinary ones, which stay in the main path; z is as x
    double special; // an x that leaves the main path
    Close close;    // the SLEEF function nearest to 1 ulp
    Loose loose;    // the one nearest to 3.5 ulps, the peer of families that promise no more than 2
    Libm libm;

    constexpr Peers(Range x, Range y, double special, Close close, Loose loose, Libm libm)
        : x(x), y(y), special(special), close(close), loose(loose), libm(libm) {}
};

template <size_t Size> struct Name {
    char text[Size];
    constexpr Name(const char (&literal)[Size]) {
        for (size_t i = 0; i < Size; ++i) text[i] = literal[i];
    }
};

template <Name base> constexpr auto peers = Peers(Range{}, Range{}, NAN, None{}, None{}, None{});

#define PEERS(base, ...) template <> constexpr auto peers<#base> = Peers(__VA_ARGS__);
// clang-format off
PEERS(fdim,  {-10, 10},   {-10, 10}, NAN, SLEEF(fdim, ),     SLEEF(fdim, ),     LIBM(fdim))
PEERS(exp,   {-80, 80},   {},        NAN, SLEEF(exp, u10),   SLEEF(exp, u10),   LIBM(exp))
PEERS(exp2,  {-120, 120}, {},        NAN, SLEEF(exp2, u10),  SLEEF(exp2, u35),  LIBM(exp2))
PEERS(exp10, {-36, 36},   {},        NAN, SLEEF(exp10, u10), SLEEF(exp10, u35), LIBM(exp10))
PEERS(log,   {0.01, 100}, {},        NAN, SLEEF(log, u10),   SLEEF(log, u35),   LIBM(log))
PEERS(log2,  {0.01, 100}, {},        NAN, SLEEF(log2, u10),  SLEEF(log2, u35),  LIBM(log2))
PEERS(log10, {0.01, 100}, {},        NAN, SLEEF(log10, u10), SLEEF(log10, u10), LIBM(log10))
// clang-format on
#undef PEERS

} // namespace quevar_bench

#endif
