#!/usr/bin/env bash
# hot_path.sh LIBRARY: names the members that, before their first return, use the stack other than to read arguments
# that lie there, call, or broadcast a constant, and fails if there are any.
set -euo pipefail
objdump -d --no-show-raw-insn "$1" | awk '
    /^[0-9a-f]+ </ { open = /<__quevar_/; name = $2; gsub(/[<>:]/, "", name); members += open; next }
    !open { next }
    /\tret/ { open = 0; next }
    /\(%rsp\),/ { next }
    /%rsp|%rbp|\tpush|\tpop|\tcall/ { print name ":" $0; bad++ }
    # The filler of width 3 may be one.
    /broadcast.*\(%rip\)/ && name !~ /3(_native|_half|_rm)?$/ { print name ":" $0; bad++ }
    END { print members " members, " bad + 0 " instructions that do not belong on an ordinary path"; exit bad > 0 || !members }'
