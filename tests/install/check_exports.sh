#!/usr/bin/env bash
# Compares the dynamic symbols a shared library defines with the functions
# declared DSP_API in the public headers. Usage: check_exports.sh LIB INCLUDE_DIR
set -euo pipefail
lib=$1 include=$2
exported=$(nm -D --defined-only "$lib" | awk '$2 ~ /^[TW]$/ {print $3}' | sort -u)
# Declarations start their line with DSP_API and name the function before "(".
declared=$(grep -hE '^[[:space:]]*DSP_API[[:space:]]' "$include"/*.h |
           sed -E 's/^[^(]*[^A-Za-z0-9_(]([A-Za-z_][A-Za-z0-9_]*)[[:space:]]*\(.*/\1/' | sort -u)
if [ "$exported" != "$declared" ]; then
  echo "exported but not declared:"; comm -23 <(echo "$exported") <(echo "$declared")
  echo "declared but not exported:"; comm -13 <(echo "$exported") <(echo "$declared")
  exit 1
fi
echo "exports match headers: $(echo "$exported" | wc -l) functions"
