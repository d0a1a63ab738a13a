#!/usr/bin/env bash
# Builds quevar and passes all its tests. Installs what is missing (Debian).
set -euo pipefail
cd "$(dirname "$0")"
. tools/packages.sh
need clang cmake ninja-build libgtest-dev libbenchmark-dev libmpfr-dev libgmp-dev libsleef-dev pkg-config python3 gcc g++ binutils

build=${QUEVAR_BUILD:-build}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$build"
ctest --test-dir "$build" --output-on-failure "$@"
