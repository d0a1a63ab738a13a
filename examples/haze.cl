/* Light in a hazy landscape. Every kernel maps sixteen pixels per work-item. */
#pragma OPENCL FP_CONTRACT OFF

/* A slope turned to the sun gains as many photographic stops as one turned away loses. */
kernel void sunlight(global const float *slope, float stops, global float *sun) {
    const size_t i = get_global_id(0);
    vstore16(exp2(stops * vload16(i, slope)), i, sun);
}

/* Haze thins exponentially with height. */
kernel void density(global const float *height, float thinning, global float *haze) {
    const size_t i = get_global_id(0);
    vstore16(exp(-thinning * vload16(i, height)), i, haze);
}

/* What is left of the light after its way through haze, and through fog where the ground lies below the
 * top of it. */
kernel void transmittance(global const float *distance, global const float *haze, float extinction,
                          global const float *height, float fog_top, float fog_extinction,
                          global float *clear) {
    const size_t i = get_global_id(0);
    const float16 fog = fdim((float16)fog_top, vload16(i, height));
    const float16 depth = extinction * vload16(i, distance) * vload16(i, haze) + fog_extinction * fog;
    vstore16(exp(-depth), i, clear);
}

/* The share of film grains that stay dark: each grain needs one photon, and photons come at random. */
kernel void dark_grains(global const float *sun, float ground, global const float *sky, float air,
                        global const float *clear, global float *dark) {
    const size_t i = get_global_id(0);
    const float16 t = vload16(i, clear);
    const float16 light = ground * vload16(i, sun) * t + air * vload16(i, sky) * (1 - t);
    vstore16(exp(-light), i, dark);
}
