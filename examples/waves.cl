/* Waves of one length from several sources. Every kernel maps sixteen points per work-item. */
#pragma OPENCL FP_CONTRACT OFF

/* A wave dies away as it travels. */
kernel void amplitude(global const float *distance, float damping, global float *amplitude) {
    const size_t i = get_global_id(0);
    vstore16(exp(-damping * vload16(i, distance)), i, amplitude);
}

kernel void in_phase(global const float *distance, float wave_number, global float *cosine) {
    const size_t i = get_global_id(0);
    vstore16(cos(wave_number * vload16(i, distance)), i, cosine);
}

kernel void quadrature(global const float *distance, float wave_number, global float *sine) {
    const size_t i = get_global_id(0);
    vstore16(sin(wave_number * vload16(i, distance)), i, sine);
}

/* The sum over the sources of amplitude times wave: called for the cosines, then for the sines. */
kernel void superpose(global const float *amplitude, global const float *wave, int sources, int items,
                      global float *sum) {
    const size_t i = get_global_id(0);
    float16 total = 0;
    for (int source = 0; source < sources; source++)
        total += vload16(i + source * items, amplitude) * vload16(i + source * items, wave);
    vstore16(total, i, sum);
}

/* What stays dark of a colour that is brightest where the phase of the sum is that of (c, s). */
kernel void dark(global const float *cosine, global const float *sine, float c, float s, global float *dark) {
    const size_t i = get_global_id(0);
    const float16 x = vload16(i, cosine), y = vload16(i, sine);
    vstore16(exp(-(sqrt(x * x + y * y) + (c * x + s * y))), i, dark);
}
