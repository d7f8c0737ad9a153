#!/usr/bin/env bash
# Builds libdsp and runs the whole test suite twice: an optimised build with
# g++, and a build under AddressSanitizer + UndefinedBehaviorSanitizer (leak
# detection on) with clang. Both compilers build with -Werror.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

jobs=$(nproc)
run_suite() {
  local dir=$1; shift
  cmake -S . -B "$dir" -G Ninja -DLIBDSP_WERROR=ON -DLIBDSP_BUILD_STATIC=ON "$@" >/dev/null
  cmake --build "$dir" -j "$jobs"
  ctest --test-dir "$dir" -j "$jobs" --output-on-failure
}

echo "== optimised build (g++)"
run_suite build/release -DCMAKE_BUILD_TYPE=Release -DCMAKE_C_COMPILER=gcc -DCMAKE_CXX_COMPILER=g++

echo "== sanitizer build (clang, ASan + UBSan + LSan)"
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:strict_string_checks=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
run_suite build/sanitize -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLIBDSP_SANITIZE=ON \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++
