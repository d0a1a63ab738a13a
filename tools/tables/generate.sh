#!/usr/bin/env bash
# Makes the committed tables anew: generate.sh [FOLDER], by default the source tree. Needs Sollya.
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
table explog/exp/tables/exp_rare_rows.inc 2 powers_of_two 'powers_of_two(64, true, D, as_double)'
table circular/tables/reductionf_rows.inc 4 circularf 'reduction_rows()'
table circular/tables/sinf_rows.inc 4 circularf 'sine_rows()'
table circular/tables/tanf_rows.inc 12 tanf 'expansion_rows()'
table explog/log/tables/log2f_rows.inc 2 logarithms 'reciprocals(2, 92, 1, 0)'
table explog/log/tables/log10f_rows.inc 2 logarithms 'reciprocals(10, 111, 0x3E9A2100, 0xB64AF600)'
table explog/log/tables/logf_rare_rows.inc 3 logarithms 'rare(exp(1), 128, 1, -19 - _x_)'
table explog/log/tables/log2f_rare_rows.inc 3 logarithms 'rare(2, 2048, 0x43B8AA40, -14)'
table explog/log/tables/log10f_rare_rows.inc 3 logarithms 'rare(10, 128, 0x42DE5C00, -20 - _x_)'
table elementwise/tables/rsqrt_rare_rows.inc 1 roots 'reciprocal_roots()'
