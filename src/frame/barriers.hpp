// Compiler barriers: empty assembly through which a value passes, so that the compiler knows nothing of it
// afterwards. None is an instruction; each costs what the compiler could have done with its knowledge.
#pragma once

#include "vec.hpp"

namespace quevar {
QUEVAR_INLINE_BEGIN

// x as the processor will find it. Arithmetic on it is not folded, so it is done under the caller's rounding
// mode and with the processor's choice of NaN. Cost: the constant is loaded and the operation executed.
template <scalar T> T at_run_time(T x) {
    asm volatile("" : "+x"(x));
    return x;
}

// A value that the compiler does not recognise as x: it can neither merge what is computed from the two nor
// rewrite masks it would see through. Cost: such steps are done twice.
template <class T> T *unrecognised(T *p) {
    asm("" : "+r"(p));
    return p;
}
template <class V> V unrecognised(V x) {
    asm("" : "+x"(x.v));
    return x;
}

// Both values are complete before any use of either, which bounds how many registers are in use at once.
// Cost: the steps before and after are not interleaved.
template <class V> void complete_both(V &a, V &b) { asm("" : "+x"(a.v), "+x"(b.v)); }

// Nothing that depends on x begins before r, and the integer, are complete. Reason and cost as above.
template <class X, class R> void begin_after(X &x, const R &r) { asm("" : "+x"(x.v) : "x"(r.v)); }
template <class X> void begin_after(X &x, unsigned n) { asm("" : "+x"(x.v) : "r"(n)); }

// k, as the compiler must read it for x alone: what it reads for another part of a wide member is not kept in
// registers for this one. Cost: an address in a register, and a load for each use.
template <class K, class V> const K &read_for(V x, const K &k) {
    const K *p = &k;
    asm("" : "+r"(p) : "x"(x.v));
    return *p;
}

QUEVAR_INLINE_END
} // namespace quevar
