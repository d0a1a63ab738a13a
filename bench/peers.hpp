// What each operation is measured over and against: one line a base.
#ifndef QUEVAR_BENCH_PEERS_HPP
#define QUEVAR_BENCH_PEERS_HPP

#include <cmath>
#include <cstddef>
#include <sleef.h>

// SLEEF exports these without declaring them.
extern "C" {
__m128 Sleef_ldexpf4_avx2128(__m128, __m128i);
__m256 Sleef_ldexpf8_avx2(__m256, __m256i);
__m128i Sleef_expfrexpf4_avx2128(__m128);
__m256i Sleef_expfrexpf8_avx2(__m256);
__m128i Sleef_ilogbf4_avx2128(__m128);
__m256i Sleef_ilogbf8_avx2(__m256);
}

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
    Loose loose;    // the one nearest to 3.5 ulps, the peer of families that promise no more than 4
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

// Two ints beside two doubles fill half of the register that SLEEF takes; its frexp is two functions.
constexpr auto sleef_ldexp = [](auto x, auto n) {
    if constexpr (sizeof n == 8) return Sleef_ldexpd2_avx2128(x, __m128i{(long long)n});
    else return SLEEF(ldexp, )(x, n);
};
constexpr auto sleef_frexp = [](auto x) {
    struct {
        decltype(x) x;
        decltype(SLEEF(expfrexp, )(x)) y;
    } both{SLEEF(frfrexp, )(x), SLEEF(expfrexp, )(x)};
    return both;
};

// The C library has no roots: a power to the inverse.
constexpr auto libm_rootn = [](auto x, auto n) { return LIBM(pow)(x, 1 / (decltype(x))n); };

constexpr auto libm_rcbrt = [](auto x) { return 1 / LIBM(cbrt)(x); };

constexpr auto libm_lgamma_r = [](auto x, int *sign) {
    if constexpr (sizeof x == 4) return ::lgammaf_r(x, sign);
    else return ::lgamma_r(x, sign);
};

#define PEERS(base, ...) template <> constexpr auto peers<#base> = Peers(__VA_ARGS__);
// clang-format off
PEERS(sqrt,  {0.01, 100}, {},        NAN, SLEEF(sqrt, ),     SLEEF(sqrt, u35),  LIBM(sqrt))
PEERS(fma,   {-10, 10},   {-10, 10}, NAN, SLEEF(fma, ),      SLEEF(fma, ),      LIBM(fma))
PEERS(fmod,  {-100, 100}, {1, 10},   1e9, SLEEF(fmod, ),     SLEEF(fmod, ),     LIBM(fmod))
PEERS(remainder, {-100, 100}, {1, 10}, 1e9, SLEEF(remainder, ), SLEEF(remainder, ), LIBM(remainder))
PEERS(remquo, {-100, 100}, {1, 10},  1e9, None{},            None{},            LIBM(remquo))
PEERS(ceil,  {-100, 100}, {},        NAN, SLEEF(ceil, ),     SLEEF(ceil, ),     LIBM(ceil))
PEERS(floor, {-100, 100}, {},        NAN, SLEEF(floor, ),    SLEEF(floor, ),    LIBM(floor))
PEERS(trunc, {-100, 100}, {},        NAN, SLEEF(trunc, ),    SLEEF(trunc, ),    LIBM(trunc))
PEERS(rint,  {-100, 100}, {},        NAN, SLEEF(rint, ),     SLEEF(rint, ),     LIBM(rint))
PEERS(nearbyint, {-100, 100}, {},    NAN, SLEEF(rint, ),     SLEEF(rint, ),     LIBM(nearbyint))
PEERS(round, {-100, 100}, {},        NAN, SLEEF(round, ),    SLEEF(round, ),    LIBM(round))
PEERS(fabs,  {-100, 100}, {},        NAN, SLEEF(fabs, ),     SLEEF(fabs, ),     LIBM(fabs))
PEERS(copysign, {-10, 10}, {-10, 10}, NAN, SLEEF(copysign, ), SLEEF(copysign, ), LIBM(copysign))
PEERS(fmax,  {-10, 10},   {-10, 10}, NAN, SLEEF(fmax, ),     SLEEF(fmax, ),     LIBM(fmax))
PEERS(fmin,  {-10, 10},   {-10, 10}, NAN, SLEEF(fmin, ),     SLEEF(fmin, ),     LIBM(fmin))
PEERS(ldexp, {1, 1000},   {-20, 20}, NAN, sleef_ldexp,       sleef_ldexp,       LIBM(ldexp))
PEERS(frexp, {1, 1000},   {},        NAN, sleef_frexp,       sleef_frexp,       LIBM(frexp))
PEERS(ilogb, {1, 1000},   {},        NAN, SLEEF(ilogb, ),    SLEEF(ilogb, ),    LIBM(ilogb))
PEERS(logb,  {1, 1000},   {},        NAN, None{},            None{},            LIBM(logb))
PEERS(modf,  {-100, 100}, {},        NAN, SLEEF(modf, ),     SLEEF(modf, ),     LIBM(modf))
PEERS(nextafter, {-10, 10}, {-10, 10}, NAN, SLEEF(nextafter, ), SLEEF(nextafter, ), LIBM(nextafter))
PEERS(fdim,  {-10, 10},   {-10, 10}, NAN, SLEEF(fdim, ),     SLEEF(fdim, ),     LIBM(fdim))
PEERS(exp,   {-80, 80},   {},        NAN, SLEEF(exp, u10),   SLEEF(exp, u10),   LIBM(exp))
PEERS(exp2,  {-120, 120}, {},        NAN, SLEEF(exp2, u10),  SLEEF(exp2, u35),  LIBM(exp2))
PEERS(exp10, {-36, 36},   {},        NAN, SLEEF(exp10, u10), SLEEF(exp10, u35), LIBM(exp10))
PEERS(log,   {0.01, 100}, {},        NAN, SLEEF(log, u10),   SLEEF(log, u35),   LIBM(log))
PEERS(log2,  {0.01, 100}, {},        NAN, SLEEF(log2, u10),  SLEEF(log2, u35),  LIBM(log2))
PEERS(log10, {0.01, 100}, {},        NAN, SLEEF(log10, u10), SLEEF(log10, u10), LIBM(log10))
PEERS(pow,   {0.01, 100}, {-10, 10}, NAN, SLEEF(pow, u10),   SLEEF(pow, u10),   LIBM(pow))
PEERS(powr,  {0.01, 100}, {-10, 10}, NAN, SLEEF(pow, u10),   SLEEF(pow, u10),   LIBM(pow))
PEERS(pown,  {0.01, 100}, {-10, 10}, NAN, None{},            None{},            LIBM(pow))
PEERS(rootn, {0.01, 100}, {2, 20},   NAN, None{},            None{},            libm_rootn)
PEERS(cbrt,  {-100, 100}, {},        NAN, SLEEF(cbrt, u10),  SLEEF(cbrt, u35),  LIBM(cbrt))
PEERS(rcbrt, {-100, 100}, {},        NAN, None{},            None{},            libm_rcbrt)
PEERS(hypot, {-100, 100}, {-100, 100}, NAN, SLEEF(hypot, u05), SLEEF(hypot, u35), LIBM(hypot))
PEERS(tan,   {-100, 100}, {},        1e6, SLEEF(tan, u10),   SLEEF(tan, u35),   LIBM(tan))
PEERS(erf,   {-4, 4},     {},        NAN, SLEEF(erf, u10),   SLEEF(erf, u10),   LIBM(erf))
PEERS(erfc,  {-2, 9},     {},        NAN, SLEEF(erfc, u15),  SLEEF(erfc, u15),  LIBM(erfc))
PEERS(tgamma, {0.5, 20},  {},        NAN, SLEEF(tgamma, u10), SLEEF(tgamma, u10), LIBM(tgamma))
PEERS(lgamma, {0.5, 20},  {},        NAN, SLEEF(lgamma, u10), SLEEF(lgamma, u10), LIBM(lgamma))
PEERS(lgammar, {0.5, 20}, {},        NAN, None{},            None{},            libm_lgamma_r)
PEERS(sinpi, {-100, 100}, {},        4e15, SLEEF(sinpi, u05), SLEEF(sinpi, u05), None{})
PEERS(cospi, {-100, 100}, {},        4e15, SLEEF(cospi, u05), SLEEF(cospi, u05), None{})
PEERS(tanpi, {-100, 100}, {},        4e15, None{},           None{},            None{})
PEERS(asin,  {-1, 1},     {},        NAN, SLEEF(asin, u10),  SLEEF(asin, u35),  LIBM(asin))
PEERS(acos,  {-1, 1},     {},        NAN, SLEEF(acos, u10),  SLEEF(acos, u35),  LIBM(acos))
PEERS(asinpi, {-1, 1},    {},        NAN, None{},            None{},            None{})
PEERS(acospi, {-1, 1},    {},        NAN, None{},            None{},            None{})
PEERS(expm1, {-10, 10},   {},        NAN, SLEEF(expm1, u10), SLEEF(expm1, u10), LIBM(expm1))
PEERS(log1p, {-0.9, 100}, {},        NAN, SLEEF(log1p, u10), SLEEF(log1p, u10), LIBM(log1p))
PEERS(sinh,  {-10, 10},   {},        NAN, SLEEF(sinh, u10),  SLEEF(sinh, u35),  LIBM(sinh))
PEERS(cosh,  {-10, 10},   {},        NAN, SLEEF(cosh, u10),  SLEEF(cosh, u35),  LIBM(cosh))
PEERS(tanh,  {-5, 5},     {},        NAN, SLEEF(tanh, u10),  SLEEF(tanh, u35),  LIBM(tanh))
PEERS(asinh, {-100, 100}, {},        NAN, SLEEF(asinh, u10), SLEEF(asinh, u10), LIBM(asinh))
PEERS(acosh, {1.01, 100}, {},        NAN, SLEEF(acosh, u10), SLEEF(acosh, u10), LIBM(acosh))
PEERS(atanh, {-0.99, 0.99}, {},      NAN, SLEEF(atanh, u10), SLEEF(atanh, u10), LIBM(atanh))
PEERS(sin,   {-100, 100}, {},        1e9, SLEEF(sin, u10),  SLEEF(sin, u35),   LIBM(sin))
PEERS(cos,   {-100, 100}, {},        1e9, SLEEF(cos, u10),  SLEEF(cos, u35),   LIBM(cos))
PEERS(sincos, {-100, 100}, {},       1e9, SLEEF(sincos, u10), SLEEF(sincos, u35), None{})
PEERS(sincosreg, {-100, 100}, {},    1e9, SLEEF(sincos, u10), SLEEF(sincos, u35), None{})
PEERS(atan,  {-10, 10},   {},        NAN, SLEEF(atan, u10), SLEEF(atan, u35),  LIBM(atan))
PEERS(atanpi, {-10, 10},  {},        NAN, None{},           None{},            None{})
PEERS(atan2, {-10, 10},   {-10, 10}, NAN, SLEEF(atan2, u10), SLEEF(atan2, u35), LIBM(atan2))
PEERS(atan2pi, {-10, 10}, {-10, 10}, NAN, None{},           None{},            None{})
// clang-format on
#undef PEERS

} // namespace quevar_bench

#endif
