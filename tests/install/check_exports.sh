#!/usr/bin/env bash
# Compares the dynamic symbols a shared library defines with the functions
# declared DSP_API in the public headers. Usage: check_exports.sh LIB INCLUDE_DIR
set -euo pipefail
lib=$1 include=$2
exported=$(nm -D --defined-only "$lib" | awk '$2 ~ /^[TW]$/ {print $3}' | sort -u)
declared=$(cat "$include"/*.h | tr '\n' ' ' | grep -oE 'DSP_API[^;(]*\(' |
           sed -E 's/\($//; s/.*[^A-Za-z0-9_]([A-Za-z_][A-Za-z0-9_]*)$/\1/' | sort -u)
if [ "$exported" != "$declared" ]; then
  echo "exported but not declared:"; comm -23 <(echo "$exported") <(echo "$declared")
  echo "declared but not exported:"; comm -13 <(echo "$exported") <(echo "$declared")
  exit 1
fi
echo "exports match headers: $(echo "$exported" | wc -l) functions"
