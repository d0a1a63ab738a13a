#!/usr/bin/env bash
# Makes the committed tables anew: generate.sh [FOLDER], by default the source tree. Needs Sollya, and mpmath for Python.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
out=${1:-$here/../../src}

# table FILE COLUMNS SCRIPT CALL: the numbers that CALL prints, as rows of so many patterns.
table() {
    mkdir -p "$(dirname "$out/$1")"
    {
        echo "// Made by tools/tables/generate.sh from $3.sollya: $4"
        sollya --flush <<<"execute(\"$here/$3.sollya\"); $4; quit;" | sed -n "s/^0x//p" | tr a-f A-F |
            awk -v n="$2" '{ row = row (NR % n == 1 % n ? "{" : ", ") "0x" $1 } NR % n == 0 { print row "},"; row = "" }'
    } >"$out/$1"
}

table explog/exp/tables/exp2f_rows.inc 2 powers_of_two 'powers_of_two(64, false, SG, as_single)'
table explog/exp/tables/exp10f_rows.inc 2 powers_of_two 'powers_of_two(128, false, SG, as_single)'
table circular/tables/tanf_rows.inc 12 tanf 'expansion_rows()'
table explog/log/tables/log2f_rows.inc 2 logarithms 'reciprocals(2, 92, 1, 0, singles)'
table explog/log/tables/log10f_rows.inc 2 logarithms 'reciprocals(10, 111, 0x3E9A2100, 0xB64AF600, singles)'
table explog/log/tables/logf_rare_rows.inc 3 logarithms 'rare(exp(1), 128, 1, -19 - _x_, singles)'
table explog/log/tables/log2f_rare_rows.inc 3 logarithms 'rare(2, 2048, 0x43B8AA40, -14, singles)'
table explog/log/tables/log10f_rare_rows.inc 3 logarithms 'rare(10, 128, 0x42DE5C00, -20 - _x_, singles)'
table circular/tables/reductionf_rows.inc 4 circular 'reduction_rows(256, 54, 32)'
table circular/tables/reduction_rows.inc 4 circular 'reduction_rows(2048, 883, 64)'
table circular/tables/sinf_rows.inc 4 circular 'sine_rows()'
table circular/tables/sin_rows.inc 4 circular 'sine_rows_double(512, RZ, 0)'
table circular/tables/sin_rare_rows.inc 4 circular 'sine_rows_double(64, RN, -0)'
table circular/tables/four_over_pi.inc 1 circular 'four_over_pi_pieces()'
table circular/tables/tan_rows.inc 12 tan 'expansion_rows()'
table ../tests/circular/tables/near_multiples.inc 1 circular 'near_multiples()'
table elementwise/tables/rsqrt_rare_rows.inc 1 roots 'reciprocal_roots()'

# gamma FILE TABLE: what gamma.py prints.
gamma() {
    mkdir -p "$out/special/gamma/tables"
    {
        echo "// Made by tools/tables/generate.sh from gamma.py: $2"
        python3 "$here/gamma.py" "$2"
    } >"$out/special/gamma/tables/$1"
}

gamma reciprocals.inc reciprocals
gamma lgammaf_pieces.inc lgammaf_pieces
gamma lgammaf_logs.inc lgammaf_logs
gamma lgamma_binades.inc lgamma_binades
gamma lgamma_zeros.inc lgamma_zeros
gamma lgamma_logs.inc lgamma_logs
gamma tgamma_blocks.inc tgamma_blocks
gamma tgamma_quarters.inc tgamma_quarters
gamma lgamma_eighths.inc lgamma_eighths
table tables/log_rows.inc 1 plain_double 'log_rows(exp(1), -0, 0)'
table tables/exp_rows.inc 1 plain_double 'exp_rows()'
table explog/power/tables/powf_rare_log_rows.inc 3 powf 'rare_log_rows()'
table explog/power/tables/powf_rare_exp_rows.inc 2 powf 'rare_exp_rows()'
table explog/power/tables/pownf_inverse_rows.inc 4 powf 'inverse_rows()'
table explog/power/tables/logarithm_rows.inc 2 power 'logarithms()'
table explog/power/tables/power_rows.inc 1 power 'whole_powers()'
table explog/power/tables/split_power_rows.inc 2 power 'split_powers()'
table explog/power/tables/first_step_rows.inc 3 power 'first_step()'
table explog/power/tables/second_step_rows.inc 3 power 'second_step()'
table explog/power/tables/third_step_rows.inc 3 power 'third_step()'
table explog/power/tables/long_reciprocal_rows.inc 1 power 'long_reciprocals()'
table explog/power/tables/long_logarithm_rows.inc 2 power 'long_logarithms()'
table special/hypot/tables/hypot_seed_rows.inc 1 roots 'coarse_reciprocal_roots()'
table special/cbrt/tables/cbrtf_rows.inc 4 roots 'cube_roots(1/3, singles)'
table special/cbrt/tables/cbrt_rows.inc 4 roots 'cube_roots(1/3, doubles)'
table special/cbrt/tables/rcbrtf_rows.inc 4 roots 'cube_roots(-1/3, singles)'
table special/cbrt/tables/rcbrt_rows.inc 4 roots 'cube_roots(-1/3, doubles)'
table special/cbrt/tables/cbrt_seed_rows.inc 1 roots 'cut_reciprocal_cube_roots()'
table special/cbrt/tables/rcbrt_seed_rows.inc 1 roots 'coarse_reciprocal_cube_roots()'
table tables/exp2_64_rows.inc 2 powers_of_two 'powers_of_two(64, false, D, as_double)'
table tables/exp2_64_relative_rows.inc 2 powers_of_two 'powers_of_two(64, true, D, as_double)'
table tables/exp2_128_rows.inc 2 powers_of_two 'powers_of_two(128, false, D, as_double)'
table tables/log_two_part_rows.inc 2 logarithms 'reciprocals(exp(1), 512, 0x3FE62E42FEFA0000, 0x3D7CF79ABC9E0000, doubles)'
table tables/log_rare_rows.inc 3 logarithms 'rare(exp(1), 2048, 1, -43 - _x_, doubles)'
table explog/log/tables/log2_rows.inc 2 logarithms 'reciprocals(2, 369, 1, 0, doubles)'
table explog/log/tables/log10_rows.inc 2 logarithms 'reciprocals(10, 222, 0x3FD34413509F0000, 0x3D7E7FBCC47C0000, doubles)'
table explog/log/tables/log2_rare_rows.inc 3 logarithms 'middles()'
table explog/log/tables/log10_rare_rows.inc 3 logarithms 'rare(10, 128, 0x3FDBC00000000000, -44 - _x_, doubles)'
table explog/log/tables/log2_plain_rows.inc 1 plain_double 'log_rows(2, 0, -0)'
table explog/log/tables/log10_plain_rows.inc 1 plain_double 'log_rows(10, 0, -0)'
table explog/log/tables/log1pf_rows.inc 2 logarithms 'reciprocals(exp(1), 128, 0x3F317200, 0x35BFBE00, {.form = SG, .write_out = print_single, .bias = 127, .unit = 2^(-15)})'
table explog/exp/tables/expm1f_rows.inc 2 significands 'two_part(64, 2^(-11), singles)'
table explog/exp/tables/expm1f_32_rows.inc 1 significands 'rounded(32, singles)'
table explog/exp/tables/expm1_rows.inc 2 significands 'two_part(128, 2^(-25), doubles)'
table explog/exp/tables/expm1_128_rows.inc 1 significands 'rounded(128, doubles)'
table hyperbolic/tables/tanhf_rows.inc 4 tanhf 'cubic_rows()'
table hyperbolic/tables/tanh_rows.inc 16 tanh 'polynomial_rows()'
table hyperbolic/tables/sinh_rows.inc 2 hyperbolic 'sinh_rows()'
table hyperbolic/tables/cosh_rows.inc 2 hyperbolic 'cosh_rows()'
table invcircular/tables/atan_rows.inc 1 arctangent 'arctangent_rows()'
table invcircular/tables/atan2_rare_rows.inc 2 arctangent 'arctangent2_rare_rows()'
table special/erf/tables/erff_rows.inc 2 erf 'erf_rows(1/128, 504, SG)'
table special/erf/tables/erf_rows.inc 2 erf 'erf_rows(1/128, 768, D)'
table special/erf/tables/erfcf_rows.inc 2 erf 'erfc_rows(1/64, 645, 2^48, SG)'
table special/erf/tables/erfcf_native_rows.inc 2 erf 'erfc_rows(1/32, 323, 2^48, SG)'
table special/erf/tables/erfc_rows.inc 2 erf 'erfc_rows(1/128, 3488, 2^128, D)'
table special/erf/tables/erfc_native_rows.inc 2 erf 'erfc_rows(1/64, 1744, 2^128, D)'
