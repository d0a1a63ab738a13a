// tgammaf: the gamma function.
#include "frame/frame.hpp"

namespace quevar::tgammaf {
QUEVAR_INLINE_BEGIN

// gamma(8k + f), f in [0, 1), as c (f^2 + a0 f + b0) ... (f^2 + a5 f + b5): rows of c, unused, a0, b0 ... a5, b5. Row 0
// is gamma(2 + f), and row 5 gamma(40 + f) times `rescale`.
using Blocks = table<f64, 14, 6>;
QUEVAR_CONSTANTS(Blocks, blocks) = {{
    {0x3EE21AD881741977, 0, 0x4009EFD1BA0CB3B4, 0x400E17D2F0535C02, 0x3FFFB35378FF4822, 0x4010689240F7FAC8,
     0x3FD9CE68F695B198, 0x40148F8E197396AC, 0xBFF8C30AC900DA03, 0x401C601959F1249C, 0xC01032270413B896,
     0x402563147DDCCF8D, 0xC01F171A4C0D6827, 0x4033406D0480A21C},
    {0x3FE6F6DB91D0D4CC, 0, 0x4006222BAE0B793B, 0x4000542098F53CFC, 0x4002452733473EDA, 0x40032C1309AD6C81,
     0x3FF545828F7B73C5, 0x40099C905A249B75, 0xBFBBD210578764DF, 0x4012B972AE0E533D, 0xC0010EF3326FDDB3,
     0x401D7331E19BD2E1, 0xC01492B817F99C0F, 0x402A06807295EF57},
    {0x41E9B2B73795ED57, 0, 0x4000131002867596, 0x3FF14E07DA5E9983, 0x3FFAA362D5D1B6F2, 0x3FF53B76BF81E2C0,
     0x3FEEB1F345BC2769, 0x3FFE62FF83456F73, 0xBFC3BBE6E7F3316F, 0x4007E33478A114C4, 0xBFFCB6985697DB6D,
     0x4014051E0269A3DC, 0xC0115BEE3BFC3B3B, 0x40229D4227468EDB},
    {0x44329D5B5167C6C3, 0, 0x3FFAF7BD498384DE, 0x3FE879AF3243D8C1, 0x3FF62AD8B4D1C3D2, 0x3FEEC7DEBB14CE1E,
     0x3FE8943CBBB4B727, 0x3FF6DA9ED737707E, 0xBFCB39D466E11756, 0x4002A29E9E0C782C, 0xBFFABCADCD004C32,
     0x401017B79BA80BCB, 0xC00FADE97C097EC9, 0x401E941DC3C4DE80},
    {0x46AFF4CA9B0DDDF0, 0, 0x3FF7ECB3A0E8FE5C, 0x3FE35852DF14E200, 0x3FF3815A8516316B, 0x3FE8C7610359F642,
     0x3FE4CE76DA1B5783, 0x3FF2E43139CBF563, 0xBFD0524DB460BC4E, 0x3FFF96DC3474A606, 0xBFF9ABD8FCC000C3,
     0x400BCF750EC16173, 0xC00DD89969A4195B, 0x401AC14E02EA701C},
    {0x3FF0000000000000, 0, 0x3FF5DCE4D8193097, 0x3FE0368AE288F6BF, 0x3FF1B0D8C4974FFA, 0x3FE513AE4215A70C,
     0x3FE231DEB11D847A, 0x3FF068851118AB46, 0xBFD251ECAFD7E935, 0x3FFBF7C7BB46BF7D, 0xBFF8FB450194CAEA,
     0x4008F960F7141B8B, 0xC00C9658E030A6C4, 0x40183BA08134397B},
}};

struct Constants {
    slot<f64> least{0x37F0000000000000};       // 2^-128: up to it the result is infinite
    slot<f64> top{0x4041852200000000};         // 35.04010009765625: from it on
    slot<f64> below{0xC045800000000000};       // -43: below it the result is 0
    slot<f64> normal{0x3810000000000000};      // 2^-126
    slot<f64> last{0x4045800000000000};        // 43: from it on all lanes are special
    slot<f64> shifter{0x4330000000000000};     // 2^52: the last bit of a sum is that of a whole number
    slot<f64> odd_shifter{0x4330000000000001}; // 2^52 + 1: that bit the other way round
    slot<f64> one{0x3FF0000000000000};
    slot<f64> two{0x4000000000000000};
    slot<f64> magnitude{0x7FFFFFFFFFFFFFFF};
    slot<f64> rescale_limit{0xC044000000000000}; // -40
    slot<f64> rescale{0x368954EAEDBCC440};       // 5.546450927971236e-46
    slot<i32> block_start{0xFFFFFFF8};

    // gamma(y) on the quarters of [1, 2): the point that y is counted from, next to the minimum in the second
    // quarter, and the coefficients from the highest.
    row_slot_of_4_doubles centre{0x3FF0000000000000, 0x3FF762D86356BE40, 0x3FF0000000000000,
                                 0x3FF0000000000000};
    row_slot_of_4_doubles h[8] = {
        {0xBFD9909648921868, 0xBFB421236426936C, 0xBF94730B51795867, 0xBF7746A85137617E},
        {0x3FE96FFEEEA8520F, 0x3FAF237514F36691, 0x3FBF4203E3816C7B, 0x3FA96E37D09735F3},
        {0xBFEE3720F7720B4D, 0xBFB7E7F83A546EBE, 0xBFD59D31BE3AB42A, 0xBFC6F0E707560916},
        {0x3FEF4857A010CA3B, 0x3FC496A01A545163, 0x3FE3C90CC8F09147, 0x3FDB262D949175BE},
        {0xBFED0800D93449B8, 0xBFC0BADE710A10B9, 0xBFE85B427DBD23E4, 0xBFE3C24AC40AC0BB},
        {0x3FEFA648D144911C, 0x3FDB6C5465BBEF1F, 0x3FEE65557AB26771, 0x3FEC56A80A977CA5},
        {0xBFE2788CCD545AA4, 0xBDEE86A39D8452EB, 0xBFE245971DF735B8, 0xBFE1C1AEDFB25495},
        {0x3FEFFFFFFFE9209E, 0x3FEC56DC82A39AA2, 0x3FEFFC613AE7FBC8, 0x3FEFEE1E644B2022},
    };

    // sin(pi v)/(pi v) - 1 in z = v^2: a product of linear and quadratic factors.
    slot<f64> s0{0x3E90FC992FF39E13}; // 2.5312174041370274e-7
    slot<f64> s1{0xBEC144B2760626E2}; // -2.058547508625216e-6
    slot<f64> s2{0xC026FB0D377656CC}; // -11.490335210033116
    slot<f64> s3{0x405541D7ABECEFCA}; // 85.02878854883525
    slot<f64> s4{0x3FFFB15F95A22324}; // 1.9808040471127208
    slot<f64> s5{0x406CE58F4A41C6E7}; // 231.17374146315635
    slot<f64> s6{0xC023D59A47DBFCD3}; // -9.917192693332629
    slot<f64> s7{0x404453786302C61E}; // 40.65211141238636
};
QUEVAR_CONSTANTS(Constants, constants){};

// All steps in double, each rounded. With a = |x| = n + f:
//   a >= 2   gamma(a) is the block's polynomial G(f) times the climb (a - 1) ... (a - m) from the block's start
//   a < 2    gamma(y) = H(y), y = a or a + 1
//   x < 0    gamma(x) = -pi/(sin(pi x) x gamma(-x))
// The terms that do not apply are 1, and one quotient serves all. Of gamma, G misses less than 2^-34 of it (2^-32.9
// from 40 on, where results are 0) and H, on the quarters of [1, 2), 2^-32.3, 2^-34.9, 2^-37.1 and 2^-39.
//
// Worst: 0x3F9642BC, 1.17391157, gives 0x3F6CEEFD, wanted 0x3F6CEEFC: 0.5027 ulp.
struct Gamma {
    static constexpr int bytes = 8;

    template <class D> static D block(D a, D n) {
        const D f = a - n, square = f * f;
        const auto &&row = fetch(blocks, truncated_to_i32(a) >> 3);
        D g = row.column[0];
#pragma clang loop unroll(full)
        for (int i = 2; i < 14; i += 2) g = g * ((row.column[i] * f + square) + row.column[i + 1]);
        return g;
    }
    // (a - 1) (a - 2) ... as long as the factors are not below the block's start; 1 below 2.
    template <class D> static D climb(D a, const Constants &k) {
        const D one = k.one, start = max(convert<f64>(truncated_to_i32(a) & k.block_start), k.two);
        D product = one, factor = a;
#pragma clang loop unroll(full)
        for (int i = 0; i < 7; i++) {
            factor = factor - one;
            product = product * select(factor >= start, factor, one);
        }
        return product;
    }
    template <class D> static D between_one_and_two(D y, typename D::mask normal, const Constants &k) {
        const auto quarter = row_slot_of_4_doubles::words_of(as_int(y) >> 50);
        const D t = keep(normal, y - k.centre[quarter]); // 1 + x is 1 for a denormal x
        D h = k.h[0][quarter];
#pragma clang loop unroll(full)
        for (int i = 1; i < 8; i++) h = h * t + k.h[i][quarter];
        return h;
    }
    // sin(pi a)/pi without its sign.
    template <class D> static D sine(D a, const Constants &k) {
        const D nearest = (a + k.shifter) - k.shifter;
        const D v = (a - nearest) & k.magnitude, z = v * v;
        const D first = ((z * k.s0 + k.s1) * z) * ((z + k.s2) * z + k.s3);
        return (first * ((z + k.s4) * z + k.s5)) * (z * (z + k.s6) + k.s7) * v + v;
    }

    template <class V> static auto main(V x) { return flagged(x, all_lanes(convert<f64>(x))); }
    template <class V> static auto settle(V x, V) {
        const auto &k = constants;
        const auto wide = convert<f64>(x);
        using D = std::remove_cv_t<decltype(wide)>;
        const D one = k.one, a = min(wide & k.magnitude, k.last), n = round<toward_zero>(a);
        const D y = a + keep(a < one, one);
        const D value = select(a >= k.two, block(a, n), between_one_and_two(y, a >= k.normal, k));
        const D product = climb(a, k), s = sine(a, k);
        const auto negative = wide < D{};
        const D numerator = select(negative, one, value * product);
        const D denominator = select(negative, ((max(a, one) * s) * value) * product, min(a, one));
        const D r = (numerator / denominator) * select(wide < k.rescale_limit, D(k.rescale), one);
        // Below 0 the sign is that of the parity of n.
        const D even = as_float(as_int(n + k.odd_shifter) << 63);
        const auto ordinary = (a > k.least) & (wide < k.top) & (wide >= k.below) & ~(negative & (a == n));
        return flagged(convert<f32>(r ^ (even & wide)), ~ordinary);
    }

    [[gnu::noinline]] static void rare(const f32 *x, f32 *r) {
        const f32 zero = at_run_time(0.0f), big = at_run_time(0x1p100f), small = at_run_time(0x1p-100f);
        const u32 sign = as_uint(*x) & format<f32>::sign, magnitude = as_uint(*x) & ~format<f32>::sign;
        const f32 a = as_float(magnitude);
        if (magnitude >= format<f32>::exponent) {
            *r = as_uint(*x) == 0xFF800000 ? zero / zero : *x + *x;
        } else if (magnitude == 0) {
            *r = as_float(sign | as_uint(1.0f)) / zero;
        } else if (magnitude <= 0x00200000) { // 2^-128
            *r = as_float(sign | as_uint(big)) * big;
        } else if (!sign) { // from top on
            *r = big * big;
        } else if (a >= 0x1p23f || a == (f32)(i32)a) { // a pole
            *r = zero / zero;
        } else { // underflow
            const bool odd = (i32)a & 1;
            *r = (odd ? small : -small) * small;
        }
    }
};

QUEVAR_EXPORT(tgamma, f, , unary, f32, f32, void, Gamma)

QUEVAR_INLINE_END
} // namespace quevar::tgammaf
