// erfcf: the complementary error function.
#include "erfc.hpp"

namespace quevar::erfcf {
QUEVAR_INLINE_BEGIN

using namespace erfc;

// 2^48 times what they name.
using Rows = GridRows<f32, 645>;
QUEVAR_CONSTANTS(Rows, rows) = {{
#include "tables/erfcf_rows.inc"
}};
using NativeRows = GridRows<f32, 323>;
QUEVAR_CONSTANTS(NativeRows, native_rows) = {{
#include "tables/erfcf_native_rows.inc"
}};

constexpr u32 bound = 0x4120DDFB; // 10.0541945: the last argument whose result is not zero
constexpr u32 last = 0x41210000;  // 10.0625

QUEVAR_CONSTANTS(FrameConstants<f32>,
                 frame_constants){.one = 0x3F800000, .scale = 0x27800000 /* 2^-48 */, .bound = bound};

struct Special {
    // NaN and what is not below the bound.
    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        if (is_nan(*x)) *r = *x * *x;
        else if (exponent_field(*x) == format<f32>::field_max) *r = 0;
        else if (as_uint(*x) == bound) *r = 0x00000001_f32;
        else *r = (f32)underflow();
    }
};

constexpr u32 shifter = 0x48000000; // 2^17: steps of 1/64
struct QuarticConstants {
    GridConstants<f32> grid{.sign = 0x80000000, .last = last, .shifter = shifter};
    slot<f32> a[4] = {
        0x3E08A7CA, // 0.133452564
        0xBEAACF22, // -0.333611548
        0x3F2AAAA6, // 0.666666389
        0xBF7FFFFC, // -0.999999762
    };
    slot<f32> b[2] = {
        0x3F005B36, // 0.501391768
        0xBEAB4EDB, // -0.334585994
    };
};
QUEVAR_CONSTANTS(QuarticConstants, quartic){};

// For |d| <= 1/128 the series leaves a relative 2^-25.8 of the result.
// Worst: 0x40943F9D, 4.63276529, gives 0x2E7A2748, wanted 0x2E7A2746: 1.615 ulps.
struct TableAndQuartic : Special {
    template <class V> static auto main(V x) {
        return step_from_grid<shifter>(
            x, quartic.grid, frame_constants, rows, [](V value, V derivative, V w, V d) {
                const V y = fma(w, polynomial(w, quartic.a), polynomial(w, quartic.b) * (d * d));
                return fnma(fma(derivative, y, derivative), d, value);
            });
    }
};

constexpr u32 native_shifter = 0x48800000; // 2^18: steps of 1/32
struct CubicConstants {
    GridConstants<f32> grid{.sign = 0x80000000, .last = last, .shifter = native_shifter};
    slot<f32> a[3] = {
        0xBEAB6147, // -0.334726542
        0x3F2B4F03, // 0.669174373
        0xBF7FFF8B, // -0.999993026
    };
};
QUEVAR_CONSTANTS(CubicConstants, cubic){};

// For |d| <= 1/64 the series leaves a relative 2^-15.3 of the result.
// Worst: 0x41073FFF, 8.45312405, gives 0x09FF6563, wanted 0x09FF66F7: 404.2 ulps.
struct TableAndCubic : Special {
    template <class V> static auto main(V x) {
        return step_from_grid<native_shifter>(
            x, cubic.grid, frame_constants, native_rows, [](V value, V derivative, V w, V d) {
                return fnma(fma(derivative, w * polynomial(w, cubic.a), derivative), d, value);
            });
    }
};

QUEVAR_INLINE_END

QUEVAR_EXPORT(erfc, f, , unary, f32, f32, void, TableAndQuartic)
QUEVAR_EXPORT(erfc, f, _native, unary, f32, f32, void, TableAndCubic)

} // namespace quevar::erfcf
