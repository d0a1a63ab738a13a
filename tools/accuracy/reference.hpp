// What each operation should give: exactly by MPFR, and nearly but fast by the C library.
#pragma once
#include <mpfr.h>

namespace quevar::tool {

struct Reference {
    const char *base;
    // Sets the result, rounded toward zero, and returns nonzero if that is inexact. An integer argument
    // is given as a number too.
    int (*exact)(mpfr_ptr, const mpfr_t *);
    // The result within some ulps of the type that it is computed in, or null.
    double (*near)(const double *) = nullptr;
    long double (*near_long)(const long double *) = nullptr;

    constexpr Reference(const char *base, int (*exact)(mpfr_ptr, const mpfr_t *))
        : base(base), exact(exact) {}
    template <class F>
    constexpr Reference(const char *base, int (*exact)(mpfr_ptr, const mpfr_t *), F near)
        : base(base), exact(exact), near(near), near_long(near) {}
};

// The reference of the first or the second result of an operation, or null.
const Reference *reference(const char *base, bool second);

} // namespace quevar::tool
