#!/usr/bin/env bash
# hot_path.sh LIBRARY: names the members that, before their first return, use the stack other than to read arguments
# that lie there, call, or broadcast a constant, and fails if there are any.
# hot_path.sh --counts LIBRARY: prints how many instructions each family's member of one 256-bit argument has up to its
# first return. They depend on the compiler: hot_path_counts.txt is of Clang 14.
set -euo pipefail

if [ "$1" = --counts ]; then
    families=$(dirname "$0")/../include/quevar/families.def
    rows='QUEVAR_FAMILY(base, mark, tier, shape, A, R, P, ...)=base##mark tier A R P;'
    # A row as words: name, tier if there is one, three element types. The widest of these decides the width.
    { clang -E -P -x c -D "$rows" "$families" | tr -s ';\n' '\n '
      echo
      echo disassembly
      objdump -d --no-show-raw-insn "$2"; } | awk '
        /^ *disassembly$/ { listing = 1; next }
        !listing && NF {
            tier = $2 ~ /^_/ ? $2 : ""
            member[++families] = "__quevar_" $1 ($(NF - 2) $(NF - 1) $NF ~ /64/ ? 4 : 8) tier
            next
        }
        /^[0-9a-f]+ </ { open = /<__quevar_/; name = $2; gsub(/[<>:]/, "", name); next }
        open && NF { count[name]++ }
        /\tret/ { open = 0 }
        END {
            for (f = 1; f <= families; f++) {
                print member[f], count[member[f]]
                if (!count[member[f]]) missing++
            }
            exit missing > 0 || !families
        }'
    exit
fi

objdump -d --no-show-raw-insn "$1" | awk '
    /^[0-9a-f]+ </ { open = /<__quevar_/; name = $2; gsub(/[<>:]/, "", name); members += open; next }
    !open { next }
    /\tret/ { open = 0; next }
    /\(%rsp\),/ { next }
    /%rsp|%rbp|\tpush|\tpop|\tcall/ { print name ":" $0; bad++ }
    # The filler of width 3 may be one.
    /broadcast.*\(%rip\)/ && name !~ /3(_native|_half|_rm)?$/ { print name ":" $0; bad++ }
    END { print members " members, " bad + 0 " instructions that do not belong on an ordinary path"; exit bad > 0 || !members }'
