// Prices calls over a grid of strikes, maturities and volatilities with the kernels of options.cl, and checks
// every price against the same formula in MPFR.
#include "host.hpp"

#define KERNELS(prefix)                                                                                      \
    void prefix##price(const float *spot, const float *strike, const float *volatility, const float *years,  \
                       float rate, float *call);                                                             \
    void prefix##moneyness_step(const float *spot, const float *strike, float *result);                      \
    void prefix##deviation_step(const float *volatility, const float *years, float *result);                 \
    void prefix##discount_step(const float *years, float rate, float *result);                               \
    void prefix##bell_step(const float *moneyness, const float *deviation, float *result);
extern "C" {
KERNELS()
KERNELS(scalar_)
}

constexpr int strikes = 64, maturities = 24, volatilities = 128;
constexpr float price_today = 100, rate = 0.03f; // the rate of interest is that of a year

struct options {
    plane spot, strike, volatility, years;

    // Strikes from 70 to 133, maturities from one month to two years, volatilities from 5 % to 68.5 %.
    options() {
        for (int v = 0; v < volatilities; v++)
            for (int month = 1; month <= maturities; month++)
                for (int k = 0; k < strikes; k++) {
                    spot.push_back(price_today);
                    strike.push_back(70 + k);
                    volatility.push_back((10 + v) * 0.005);
                    years.push_back(month / 12.0);
                }
    }
    static constexpr int index(int strike, int month, int per_mille) {
        return ((per_mille / 5 - 10) * maturities + month - 1) * strikes + strike - 70;
    }

    // spot N(d) - strike exp(-rate years) N(d - sigma), in ulps of the spot price.
    long exact(mpfr_t call, size_t i) const {
        mpfr_t sigma, d, k;
        mpfr_inits2(64, sigma, d, k, nullptr);
        mpfr_set_flt(sigma, years[i], MPFR_RNDN);
        mpfr_sqrt(sigma, sigma, MPFR_RNDN);
        mpfr_mul_d(sigma, sigma, volatility[i], MPFR_RNDN);
        mpfr_set_flt(k, rate, MPFR_RNDN);
        mpfr_mul_d(k, k, -years[i], MPFR_RNDN);
        mpfr_exp(k, k, MPFR_RNDN);
        mpfr_mul_d(k, k, strike[i], MPFR_RNDN);

        mpfr_d_div(d, spot[i], k, MPFR_RNDN);
        mpfr_log(d, d, MPFR_RNDN);
        mpfr_div(d, d, sigma, MPFR_RNDN);
        mpfr_div_2ui(call, sigma, 1, MPFR_RNDN);
        mpfr_add(d, d, call, MPFR_RNDN);

        const auto normal = [](mpfr_t p, const mpfr_t x) {
            mpfr_div_d(p, x, -std::sqrt(2.0), MPFR_RNDN);
            mpfr_erfc(p, p, MPFR_RNDN);
            mpfr_div_2ui(p, p, 1, MPFR_RNDN);
        };
        mpfr_sub(sigma, d, sigma, MPFR_RNDN);
        normal(sigma, sigma);
        mpfr_mul(k, k, sigma, MPFR_RNDN);
        normal(d, d);
        mpfr_mul_d(d, d, spot[i], MPFR_RNDN);
        mpfr_sub(call, d, k, MPFR_RNDN);
        mpfr_clears(sigma, d, k, nullptr);
        return std::ilogb(spot[i]) - 23;
    }
};

int main(int, char **argv) {
    const options o;
    const size_t count = o.spot.size();
    const float *spot = o.spot.data(), *strike = o.strike.data();
    const float *volatility = o.volatility.data(), *years = o.years.data();

    heading(std::to_string(count) + " options");
    const plane moneyness =
        run("moneyness", count, builtin("logf", mpfr_log, [&](size_t i) { return spot[i] / strike[i]; }),
            BOTH(moneyness_step), spot, strike);
    const plane deviation =
        run("deviation", count,
            builtin("sqrtf", mpfr_sqrt, [&](size_t i) { return volatility[i] * volatility[i] * years[i]; }),
            BOTH(deviation_step), volatility, years);
    run("discount", count, builtin("expf", mpfr_exp, [&](size_t i) { return -rate * years[i]; }),
        BOTH(discount_step), years, rate);
    run("bell", count,
        builtin("expf", mpfr_exp,
                [&](size_t i) {
                    const float d = moneyness[i] / deviation[i];
                    return -0.5f * d * d;
                }),
        BOTH(bell_step), moneyness.data(), deviation.data());

    // In ulps of the spot price: the normal distribution's own 7.5e-8, of the spot and of strikes up to 1.33
    // times it, can come to 3; the rest is for the rounding of each step.
    const plane call =
        run("price (ulps of spot)", count, {10, [&](mpfr_ptr value, size_t i) { return o.exact(value, i); }},
            BOTH(price), spot, strike, volatility, years, rate);

    constexpr int example = options::index(110, 12, 200);
    printf("At a price of %.0f today, a volatility of %.0f %% and interest of %.0f %%, "
           "a call at %.0f in a year is worth %.2f.\n",
           spot[example], 100 * volatility[example], 100 * rate, strike[example], call[example]);
    if (!within_bounds) fail("a result is farther from the exact value than its bound", argv[0]);
}
