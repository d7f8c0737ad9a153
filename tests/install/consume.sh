#!/usr/bin/env bash
# Installs the built tree into a scratch prefix and builds a C and a C++
# program against it, once through the CMake package and once through
# pkg-config. Usage: consume.sh BUILD_DIR SOURCE_DIR CC CXX
set -euo pipefail
build=$1 here=$2 cc=$3 cxx=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

cmake --install "$build" --prefix "$prefix" >/dev/null

echo "== CMake package"
cmake -S "$here/consumer" -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
      -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
cmake --build "$work/cmake" >/dev/null
"$work/cmake/consumer_c"
"$work/cmake/consumer_cxx"

echo "== pkg-config"
pcdir=$(dirname "$(find "$prefix" -name libdsp.pc | head -n 1)")
export PKG_CONFIG_PATH=$pcdir
libdir=$(pkg-config --variable=libdir libdsp)
"$cc" -std=c11 -Wall -Wextra -Werror "$here/consumer/main.c" $(pkg-config --cflags --libs libdsp) -o "$work/pc_c"
"$cxx" -std=c++17 -Wall -Wextra -Werror "$here/consumer/main.cpp" $(pkg-config --cflags --libs libdsp) -o "$work/pc_cxx"
LD_LIBRARY_PATH=$libdir "$work/pc_c"
LD_LIBRARY_PATH=$libdir "$work/pc_cxx"

# The SONAME carries the major version.
soname=$(objdump -p "$libdir/libdsp.so" | awk '/SONAME/ {print $2}')
[ "$soname" = "libdsp.so.2" ] || { echo "unexpected SONAME $soname"; exit 1; }
echo "installed tree OK (SONAME $soname)"
