/* European call options after Black and Scholes. Every kernel maps sixteen options per work-item. */
#pragma OPENCL FP_CONTRACT OFF

static float16 moneyness(float16 spot, float16 strike) { return log(spot / strike); }

static float16 deviation(float16 volatility, float16 years) { return sqrt(volatility * volatility * years); }

static float16 discount(float16 years, float rate) { return exp(-rate * years); }

static float16 bell(float16 d) { return exp(-0.5f * d * d); }

/* The normal distribution: Abramowitz and Stegun 26.2.17, within 7.5e-8. */
static float16 normal(float16 d) {
    const float16 t = 1 / (1 + 0.2316419f * fabs(d));
    const float16 sum =
        t * (0.31938153f + t * (-0.356563782f + t * (1.781477937f + t * (-1.821255978f + t * 1.330274429f))));
    const float16 tail = 0.3989422804f * bell(d) * sum;
    return d < 0 ? tail : 1 - tail;
}

kernel void price(global const float *spot, global const float *strike, global const float *volatility,
                  global const float *years, float rate, global float *call) {
    const size_t i = get_global_id(0);
    const float16 s = vload16(i, spot), k = vload16(i, strike), t = vload16(i, years);
    const float16 sigma = deviation(vload16(i, volatility), t);
    const float16 d = (moneyness(s, k) + rate * t) / sigma + 0.5f * sigma;
    vstore16(s * normal(d) - k * discount(t, rate) * normal(d - sigma), i, call);
}

/* The steps of it that are built-ins, by themselves. */
kernel void moneyness_step(global const float *spot, global const float *strike, global float *result) {
    const size_t i = get_global_id(0);
    vstore16(moneyness(vload16(i, spot), vload16(i, strike)), i, result);
}

kernel void deviation_step(global const float *volatility, global const float *years, global float *result) {
    const size_t i = get_global_id(0);
    vstore16(deviation(vload16(i, volatility), vload16(i, years)), i, result);
}

kernel void discount_step(global const float *years, float rate, global float *result) {
    const size_t i = get_global_id(0);
    vstore16(discount(vload16(i, years), rate), i, result);
}

kernel void bell_step(global const float *moneyness, global const float *deviation, global float *result) {
    const size_t i = get_global_id(0);
    vstore16(bell(vload16(i, moneyness) / vload16(i, deviation)), i, result);
}
