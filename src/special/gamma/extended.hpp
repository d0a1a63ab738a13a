// The x87 unit's extended format, 64 bits of significand, in which the scalar forms of the gamma functions compute.
#pragma once

#include "frame/frame.hpp"

namespace quevar {
QUEVAR_INLINE_BEGIN

using f80 = long double;

// A number given by its sign-and-exponent word and its significand: 0x3FFF8000000000000000_f80 is 1.
consteval f80 operator""_f80(const char *literal) {
    u64 word = 0, significand = 0;
    for (const char *c = literal + 2; *c; c++) {
        word = word << 4 | significand >> 60;
        significand = significand << 4 | (u64)(*c <= '9' ? *c - '0' : *c - 'A' + 10);
    }
    f80 x = (f80)significand;
    for (int e = (int)(word & 0x7FFF) - 16383 - 63; e != 0; e += e < 0 ? 1 : -1) x *= e < 0 ? 0.5L : 2.0L;
    return word & 0x8000 ? -x : x;
}

// c0 x^n + c1 x^(n-1) + ... from an array.
template <class T, int N> f80 horner(f80 x, const T (&c)[N]) {
    f80 p = c[0];
#pragma clang loop unroll(full)
    for (int i = 1; i < N; i++) p = p * x + c[i];
    return p;
}

// Calls f with the unit's precision set to extended. It may have been set otherwise, which is undone afterwards.
// f writes its result to memory: the compiler moves no such call past the setting.
template <class F> void in_full_precision(F f) {
    unsigned short mode;
    asm volatile("fnstcw %0" : "=m"(mode));
    const unsigned short full = mode | 0x0300;
    if (mode == full) return f();
    asm volatile("fldcw %0" : : "m"(full) : "memory");
    f();
    asm volatile("fldcw %0" : : "m"(mode) : "memory");
}

QUEVAR_INLINE_END
} // namespace quevar
