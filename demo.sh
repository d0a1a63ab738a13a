#!/usr/bin/env bash
# Runs OpenCL C kernels over real terrain, on quevar and on the C library, checks every result and leaves a
# picture. Installs what is missing (Debian).
set -euo pipefail
cd "$(dirname "$0")"
. tools/packages.sh
need clang cmake ninja-build libmpfr-dev libpng-dev

build=${QUEVAR_BUILD:-build}
cmake -S . -B "$build/demo" -G Ninja -DQUEVAR_DEVELOPER=OFF -DQUEVAR_EXAMPLES=ON >/dev/null
cmake --build "$build/demo" --target haze
"$build/demo/examples/haze" examples/jacksboro.png "$build/haze.png"
echo "The picture is $build/haze.png."
