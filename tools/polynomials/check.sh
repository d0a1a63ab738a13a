#!/usr/bin/env bash
# check.sh [FOLDER]: reads the polynomials of the float families and of rsqrt out of the source, by default src, has
# Sollya compute their errors, and fails where the comment above a main path does not tell the same figure.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
source=${1:-$here/../../src}
checked=0 wrong=0

# constants FILE BLOCK: the constants of a block, as assignments for Sollya. BLOCK begins the first line, or ends it.
constants() {
    awk -v block="$2" '
        !open && index($0, block) { open = 1; next }
        open && /^};?$|^}[;)]/ { exit }
        open && /\[[0-9]+\] = \{/ { name = $2; sub(/\[.*/, "", name); printf "%s = [|", name; list = 1; n = 0; next }
        list && /^ *};/ { print "|];"; list = 0; next }
        list { match($0, /0x[0-9A-F]+/); printf "%s%s", n++ ? ", " : "", substr($0, RSTART, RLENGTH); next }
        open && match($0, /[a-z_0-9]+(\{| = )0x[0-9A-F]+/) {
            split(substr($0, RSTART, RLENGTH), part, /\{| = /)
            print part[1] " = " part[2] ";"
        }' "$1"
}

# claim FILE BLOCK COMMENT EXPRESSION: the file must have the comment, completed by the error that EXPRESSION gives.
claim() {
    local tenths figure
    tenths=$({
        constants "$source/$1" "$2" | grep -E '^(c|p|[abdnp][0-9]|c[0-9]) = '
        echo "print($4); quit;"
    } | cat "$here/errors.sollya" - | sollya --flush 2>/dev/null | tail -1)
    [[ $tenths =~ ^-[0-9]+$ ]] || { echo "$1: $2: Sollya says '$tenths'"; wrong=$((wrong + 1)); return; }
    figure="$((tenths / 10)).$((-tenths % 10))"
    checked=$((checked + 1))
    if grep -qF "// $3 2^$figure" "$source/$1"; then
        echo "$1: $3 2^$figure"
    else
        echo "$1: computed, but not in its comments: $3 2^$figure"
        wrong=$((wrong + 1))
    fi
}

claim explog/exp/expf.cpp 'struct TableAndQuarticConstants' \
    'e^r ~ 1 + r + r^2 c(r) for |r| <= ln(2)/8: relative error' \
    'relative_error(1 + _x_ + _x_^2 * poly(c), exp(_x_), [-log(2)/8; log(2)/8])'
claim explog/exp/expf.cpp 'struct CubicConstants' \
    'e^r ~ c(r) for |r| <= ln(2)/2: relative error' \
    'relative_error(poly(c), exp(_x_), [-log(2)/2; log(2)/2])'
claim explog/exp/exp2f.cpp 'struct TableAndQuadraticConstants' \
    '2^r ~ 1 + r (c1 + c2 r) for |r| <= 1/128: relative error' \
    'relative_error(1 + _x_ * (c1 + c2 * _x_), 2^_x_, [-1/128; 1/128])'
claim explog/exp/exp2f.cpp 'struct CubicConstants' \
    '2^r ~ c(r) for |r| <= 1/2: relative error' \
    'relative_error(poly(c), 2^_x_, [-1/2; 1/2])'
claim explog/exp/exp10f.cpp 'struct TableAndQuadraticConstants' \
    '10^r ~ 1 + r (c1 + c2 r) for |r| <= log10(2)/256: relative error' \
    'relative_error(1 + _x_ * (c1 + c2 * _x_), 10^_x_, [-log10(2)/256; log10(2)/256])'
claim explog/exp/exp10f.cpp 'struct CubicConstants' \
    '2^r ~ c(r) for |r| <= 1/2: relative error' \
    'relative_error(poly(c), 2^_x_, [-1/2; 1/2])'

third='[-1/3; 1/3]'
claim explog/log/logf.cpp 'struct TwoPartLn2Constants' \
    'ln(1 + f) ~ f + f^2 c(f) for |f| <= 1/3: relative error' \
    "relative_error(_x_ + _x_^2 * poly(c), log1p(_x_), $third)"
claim explog/log/logf.cpp 'struct Degree8Constants' \
    'ln(1 + f) ~ f + f^2 c(f), of degree 8, for |f| <= 1/3: relative error' \
    "relative_error(_x_ + _x_^2 * poly(c), log1p(_x_), $third)"
claim explog/log/logf.cpp 'struct Degree5Constants' \
    'ln(1 + f) ~ f + f^2 c(f), of degree 5, for |f| <= 1/3: relative error' \
    "relative_error(_x_ + _x_^2 * poly(c), log1p(_x_), $third)"
claim explog/log/log2f.cpp 'struct TableAndCubicConstants' \
    'log2(1 + f/c) ~ f + f p(f) for |f| <= 1/119: error' \
    'absolute_error(_x_ + _x_ * poly(p), log2(1 + _x_ / c), [-1/119; 1/119])'
claim explog/log/log2f.cpp 'struct QuinticConstants' \
    'log2(1 + f) ~ f c(f) for |f| <= 1/3: relative error' \
    "relative_error(_x_ * poly(c), log2(1 + _x_), $third)"
claim explog/log/log10f.cpp 'struct TableAndCubicConstants' \
    'log10(1 + f/c) ~ f + f p(f) for |f| <= 1/473: error' \
    'absolute_error(_x_ + _x_ * poly(p), log10(1 + _x_ / c), [-1/473; 1/473])'
claim explog/log/log10f.cpp 'struct QuinticConstants' \
    'log10(1 + f) ~ f c(f) for |f| <= 1/3: relative error' \
    "relative_error(_x_ * poly(c), log10(1 + _x_), $third)"

# What rounding adds to pi/2 for n up to 3183 is less than 2^-11.
half_turn='[-pi/2 - 2^-11; pi/2 + 2^-11]'
for family in sinf cosf sincosf; do
    claim circular/$family.cpp ', degree_9)' \
        'sin r ~ r + r^3 rest(r^2), degree_9, for |r| <= pi/2: relative error' \
        "relative_error(odd_poly([|p4, p3, p2, p1, 1|]), sin(_x_), $half_turn)"
    claim circular/$family.cpp ', degree_5)' \
        'sin r ~ p0 r + r^3 rest(r^2), degree_5, for |r| <= pi/2: relative error' \
        "relative_error(odd_poly([|p2, p1, p0|]), sin(_x_), $half_turn)"
done
claim circular/sinf_core.hpp 'struct LargeConstants' \
    'sin r - r ~ r (a1 r^2 + a2 r^4) for |r| <= pi/256: error' \
    'absolute_error(_x_^3 * (a1 + a2 * _x_^2), sin(_x_) - _x_, [-pi/256; pi/256])'
claim circular/sinf_core.hpp 'struct LargeConstants' \
    'cos r - 1 ~ b1 r^2 + b2 r^4 for |r| <= pi/256: error' \
    'absolute_error(_x_^2 * (b1 + b2 * _x_^2), cos(_x_) - 1, [-pi/256; pi/256])'
claim circular/tanf.cpp 'struct Constants' \
    'tan r ~ r (n0 + n1 r^2) / (d0 + d1 r^2 + d2 r^4) for |r| <= pi/4: relative error' \
    'relative_error(_x_ * (n0 + n1 * _x_^2) / (d0 + d1 * _x_^2 + d2 * _x_^4), tan(_x_), [-pi/4 - 2^-12; pi/4 + 2^-12])'

claim elementwise/rsqrtf.cpp 'struct FloatConstants' \
    '(1 + e)^(-1/2) ~ 1 + e c(e) for -0.0086 <= e <= 0.0008: relative error' \
    'relative_error(1 + _x_ * poly(c), 1 / sqrt(1 + _x_), [-0.0086; 0.0008])'
claim elementwise/rsqrt.cpp 'struct QuarticConstants' \
    '(1 - e)^(-1/2) ~ 1 + e c(e) for |e| <= 2^-10.4: relative error' \
    'relative_error(1 + _x_ * poly(c), 1 / sqrt(1 - _x_), [-2^-10.4; 2^-10.4])'
claim elementwise/rsqrt.cpp 'struct QuadraticConstants' \
    '(1 - e)^(-1/2) ~ c(e) for |e| <= 2^-10.4: relative error' \
    'relative_error(poly(c), 1 / sqrt(1 - _x_), [-2^-10.4; 2^-10.4])'

echo "$checked polynomials, $wrong claims wrong"
[ "$wrong" = 0 ]
