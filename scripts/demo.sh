#!/usr/bin/env bash
# Builds the library and runs the demo program.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build/demo -G Ninja -DCMAKE_BUILD_TYPE=Release -DLIBDSP_BUILD_TESTS=OFF >/dev/null
log=build/demo/build.log
cmake --build build/demo -j "$(nproc)" --target dsp_demo >"$log" 2>&1 || { cat "$log"; exit 1; }
./build/demo/examples/dsp_demo
