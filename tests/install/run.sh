#!/bin/sh
# usage: run.sh BUILD_DIR
# Installs the build into a temporary prefix and uses it from there: through find_package, through
# pkg-config, and from GCC. CC and CXX name the Clang to use.
set -eu
build=$1
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

export CC="${CC:-clang}" CXX="${CXX:-clang++}"

cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/prefix" # what is installed must not remember where

echo "== find_package"
cmake -S "$here" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/cmake" >/dev/null
"$work/cmake/values_c"
"$work/cmake/members_cpp"

echo "== pkg-config"
PKG_CONFIG_PATH=$(dirname "$(find "$work/prefix" -name quevar.pc)")
export PKG_CONFIG_PATH
flags="$(pkg-config --cflags quevar) -O2 -Wall -Werror"
libs="$(pkg-config --libs quevar) -Wl,-rpath,$(pkg-config --variable=libdir quevar)"
# The flags are lists of words.
# shellcheck disable=SC2086
{
    "$CC" $flags "$here/values.c" -o "$work/values_c" $libs
    "$CXX" -std=c++20 $flags "$here/members.cpp" -o "$work/members_cpp" $libs
    "$work/values_c"
    "$work/members_cpp"

    echo "== members.h declares what quevar.h declares"
    for compile in "$CC -x c" "$CXX -x c++" "gcc -x c" "g++ -x c++"; do
        printf '#include <quevar/members.h>\n#include <quevar/quevar.h>\n' | $compile $flags -fsyntax-only -
    done

    echo "== GCC"
    gcc $flags "$here/values.c" -o "$work/values_gcc" $libs
    "$work/values_gcc"
    if gcc $flags -DWIDE_RESULT "$here/values.c" -o "$work/wide" $libs 2>"$work/message"; then
        echo "GCC compiled a call whose result it cannot receive" >&2
        exit 1
    fi
    for member in fdimf16 fdim8; do
        if ! grep -q "__quevar_$member.*GCC cannot receive" "$work/message"; then
            cat "$work/message" >&2
            exit 1
        fi
    done
}
echo "== passed"
