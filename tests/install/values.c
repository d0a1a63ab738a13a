/* Calls fdim in every form in which it is passed, and takes second results. GCC leaves out the members whose result it cannot
 * receive, unless WIDE_RESULT is defined; then it must refuse to compile. */
#include <quevar/quevar.h>
#include <stdio.h>

#ifdef __clang__
#define WIDE_RESULT
#endif

typedef union {
    float lane[16];
    quevar_f32x2 x2;
    quevar_f32x3 x3;
    quevar_f32x4 x4;
    quevar_f32x8 half[2];
    quevar_f32x16 x16;
} single;

typedef union {
    double lane[16];
    quevar_f64x2 x2;
    quevar_f64x3 x3;
    quevar_f64x4 half[4];
    quevar_f64x8 x8;
    quevar_f64x16m x16;
} twice;

#define EXPECT(lanes, r, member, call)                                                                       \
    do {                                                                                                     \
        (r).member = call;                                                                                   \
        for (int i = 0; i < (lanes); ++i)                                                                    \
            if ((r).lane[i] != (i % 2 ? 0 : i + 1)) {                                                        \
                printf("%s: lane %d is %g\n", #call, i, (double)(r).lane[i]);                                \
                ++failures;                                                                                  \
            }                                                                                                \
    } while (0)

int main(void) {
    int failures = 0;
    single a, b, r;
    twice x, y, s;
    for (int i = 0; i < 16; ++i) {
        x.lane[i] = a.lane[i] = i + 1;
        y.lane[i] = b.lane[i] = i % 2 ? 100 : 0;
    }

    EXPECT(1, r, lane[0], __quevar_fdimf1(a.lane[0], b.lane[0]));
    EXPECT(2, r, x2, __quevar_fdimf2(a.x2, b.x2));
    EXPECT(3, r, x3, __quevar_fdimf3(a.x3, b.x3));
    EXPECT(4, r, x4, __quevar_fdimf4(a.x4, b.x4));
    EXPECT(8, r, half[0], __quevar_fdimf8(a.half[0], b.half[0]));
    EXPECT(1, s, lane[0], __quevar_fdim1(x.lane[0], y.lane[0]));
    EXPECT(2, s, x2, __quevar_fdim2(x.x2, y.x2));
    EXPECT(3, s, x3, __quevar_fdim3(x.x3, y.x3));
    EXPECT(4, s, half[0], __quevar_fdim4(x.half[0], y.half[0]));
    EXPECT(16, s, x16, __quevar_fdim16(x.x16, y.x16));
#ifdef WIDE_RESULT
    EXPECT(16, r, x16, __quevar_fdimf16(a.half[0], a.half[1], b.half[0], b.half[1]));
    EXPECT(8, s, x8, __quevar_fdim8(x.half[0], x.half[1], y.half[0], y.half[1]));
#endif

    /* A second result through a pointer, and both of a pair. */
    quevar_f32x8 sine, cosine;
    sine = __quevar_sincosf8(a.half[0], &cosine);
    const quevar_f32x1_pair one = __quevar_sincosregf1(a.lane[0]);
    if (quevar_f32x1_first(one) != sine[0] || quevar_f32x1_second(one) != cosine[0]) ++failures;
#ifdef __clang__
    const quevar_f32x8_pair both = __quevar_sincosregf8(a.half[0]);
    for (int i = 0; i < 8; ++i)
        if (quevar_f32x8_first(both)[i] != sine[i] || quevar_f32x8_second(both)[i] != cosine[i]) ++failures;
#endif
    return failures != 0;
}
