// Prices calls on a stock index at the close of every month, at many strikes and maturities, with the kernels
// of options.cl, and checks every price against the same formula in MPFR.
//
//     options index.txt
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

constexpr int strikes = 64, maturities = 24;
constexpr float rate = 0.03f; // of interest: an assumption, as the list has none

struct options {
    plane spot, strike, volatility, years;

    // Each close with the volatility of the year before it; strikes from 0.7 to 1.33 of it; up to two years.
    explicit options(const std::vector<double> &close) {
        for (size_t month = 12; month < close.size(); month++) {
            double sum = 0, squares = 0;
            for (size_t m = month - 11; m <= month; m++) {
                const double gain = std::log(close[m] / close[m - 1]);
                sum += gain, squares += gain * gain;
            }
            for (int option = 0; option < strikes * maturities; option++) {
                spot.push_back(close[month]);
                volatility.push_back(std::sqrt(12 * (squares - sum * sum / 12) / 11));
                strike.push_back(close[month] * (70 + option % strikes) / 100);
                years.push_back((option / strikes + 1) / 12.0);
            }
        }
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

int main(int argc, char **argv) {
    if (argc != 2) fail("needs a list of closing prices", argv[0]);
    FILE *const file = fopen(argv[1], "r");
    if (!file) fail("cannot be read", argv[1]);
    std::vector<double> closes;
    for (char line[200]; fgets(line, sizeof line, file);)
        if (double close; sscanf(line, "%*d-%*d %lf", &close) == 1) closes.push_back(close);
    fclose(file);
    if (closes.size() < 13) fail("needs more than a year of closing prices", argv[1]);

    const options o(closes);
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

    const size_t last = count - strikes * maturities + strikes * 11 + 30; // a year, at the money
    printf("Last close %.2f, volatility of the year before %.1f %%, interest %.0f %%: "
           "a call at %.2f in a year is worth %.2f.\n",
           spot[last], 100 * volatility[last], 100 * rate, strike[last], call[last]);
    if (!within_bounds) fail("a result is farther from the exact value than its bound", argv[0]);
}
