// Compiler barriers: empty assembly through which a value passes, so that the compiler knows nothing of it
// afterwards. None is an instruction; each costs what the compiler could have done with its knowledge.
#pragma once

#include "vec.hpp"

namespace quevar {
QUEVAR_INLINE_BEGIN

// x, as a value that the compiler learns at run time only. Arithmetic on it is left to the processor, under
// the caller's rounding mode and with the processor's choice of NaN. Cost: a load, and the operation itself.
template <scalar T> T at_run_time(T x) {
    asm volatile("" : "+x"(x));
    return x;
}

// x, as a value of which the compiler knows nothing. It cannot merge steps on it with the same steps on x,
// nor rewrite a mask by what it knew of how the mask was made. Cost: such steps are done twice.
template <class T> T *unrecognised(T *p) {
    asm("" : "+r"(p));
    return p;
}
template <class V> V unrecognised(V x) {
    asm("" : "+x"(x.v));
    return x;
}

// The array holds its values in memory, from where they are read; else the compiler would take them from the
// registers that they were stored from. Cost: a store, and a load for each use.
template <class Array> void keep_in_memory(Array &a) { asm("" : "+m"(a)); }

// Both values are complete before any use of either, which bounds how many registers are in use at once.
// Cost: the steps before and after are not interleaved.
template <class V> void complete_both(V &a, V &b) { asm("" : "+x"(a.v), "+x"(b.v)); }

// Steps on x begin only when r, or n, is complete; reason and cost are those of complete_both. The compiler
// also forgets how n was made, so that it does not keep what n was made from.
template <class X, class R> void begin_after(X &x, const R &r) { asm("" : "+x"(x.v) : "x"(r.v)); }
template <class X> void begin_after(X &x, unsigned &n) { asm("" : "+x"(x.v), "+r"(n)); }

// k, to be read anew for x: constants read for one part of a wide member are not kept in registers for the
// next. Cost: an address in a register, and a load for each use.
template <class K, class V> const K &read_for(V x, const K &k) {
    const K *p = &k;
    asm("" : "+r"(p) : "x"(x.v));
    return *p;
}

QUEVAR_INLINE_END
} // namespace quevar
