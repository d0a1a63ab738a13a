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
            awk -v n="$2" '{ row = row (NR % n == 1 ? "{" : ", ") "0x" $1 } NR % n == 0 { print row "},"; row = "" }'
    } >"$out/$1"
}

table explog/tables/exp2f_rows.inc 2 powers_of_two 'powers_of_two(64, false, SG, as_single)'
table explog/tables/exp10f_rows.inc 2 powers_of_two 'powers_of_two(128, false, SG, as_single)'
table explog/tables/exp_rare_rows.inc 2 powers_of_two 'powers_of_two(64, true, D, as_double)'
