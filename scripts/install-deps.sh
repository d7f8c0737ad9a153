#!/usr/bin/env bash
# Installs what building and testing libdsp needs, from Debian's packages,
# when the machine lacks it. Pass "bench" to add the benchmark peers.
set -euo pipefail

need=()
have_cmd() { command -v "$1" >/dev/null 2>&1; }
have_pkg() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'install ok installed'; }

have_cmd cmake || need+=(cmake)
have_cmd ninja || need+=(ninja-build)
have_cmd g++ || need+=(g++)
have_cmd clang++ || need+=(clang)
have_cmd pkg-config || need+=(pkgconf)
have_cmd nm || need+=(binutils)
have_pkg libgtest-dev || need+=(libgtest-dev)
have_pkg libgmock-dev || need+=(libgmock-dev)
# clang's sanitizer runtime, for the clang build under sanitizers
ls /usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.asan-x86_64.a >/dev/null 2>&1 ||
  [ "$(uname -m)" != x86_64 ] || need+=(libclang-rt-14-dev)

if [ "${1:-}" = bench ]; then
  for p in libbenchmark-dev libfftw3-dev libkissfft-dev; do
    have_pkg "$p" || need+=("$p")
  done
fi

if [ ${#need[@]} -gt 0 ]; then
  echo "installing: ${need[*]}"
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq --no-install-recommends "${need[@]}" >/dev/null
fi
