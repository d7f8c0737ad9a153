#!/usr/bin/env bash
# Builds and runs the benchmarks with the peer libraries installed.
# Extra arguments go to the benchmark binary (e.g. --benchmark_filter=FFT).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh bench
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DLIBDSP_BUILD_BENCH=ON \
      -DLIBDSP_BUILD_TESTS=OFF -DLIBDSP_BUILD_EXAMPLES=OFF >/dev/null
cmake --build build/bench -j "$(nproc)" --target libdsp_bench
./build/bench/bench/libdsp_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true "$@"
