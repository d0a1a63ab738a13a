#!/usr/bin/env bash
# Runs OpenCL C kernels on quevar and on the C library: haze over real terrain, prices of options, a picture
# of interfering waves. Checks every result. Installs what is missing (Debian).
set -euo pipefail
cd "$(dirname "$0")"
. tools/packages.sh
need clang cmake ninja-build libmpfr-dev libpng-dev

build=${QUEVAR_BUILD:-build}
cmake -S . -B "$build/demo" -G Ninja -DQUEVAR_DEVELOPER=OFF -DQUEVAR_EXAMPLES=ON >/dev/null
cmake --build "$build/demo" --target haze options waves
"$build/demo/examples/haze" examples/jacksboro.png "$build/haze.png"
"$build/demo/examples/options"
"$build/demo/examples/waves" "$build/waves.png"
echo
echo "The pictures are $build/haze.png and $build/waves.png."
