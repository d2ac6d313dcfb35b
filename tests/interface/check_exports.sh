#!/usr/bin/env bash
# The shared library must export exactly the ryx* routines declared in the
# public headers: nothing missing, nothing extra (internal own* routines and
# C++ symbols stay hidden). Also reports declared routines that no test calls.
set -euo pipefail
lib=$1 incdir=$2 testdir=$3
declared=$(mktemp) exported=$(mktemp) called=$(mktemp)
trap 'rm -f "$declared" "$exported" "$called"' EXIT

grep -h -o -E '^RYXAPI[^(]*\bryx[A-Za-z0-9_]+\s*\(' "$incdir"/ryxcore.h "$incdir"/ryxcore/*.h \
  | grep -o -E 'ryx[A-Za-z0-9_]+\s*\($' | tr -d '( ' | sort -u >"$declared"
nm -D --defined-only "$lib" | awk '$2 ~ /^[TtWwi]$/ {print $3}' | sort -u >"$exported"

status=0
missing=$(comm -23 "$declared" "$exported")
extra=$(comm -13 "$declared" "$exported" | grep -v -E '^(_init|_fini)$' || true)
if [ -n "$missing" ]; then echo "declared but not exported:"; echo "$missing"; status=1; fi
if [ -n "$extra" ]; then echo "exported but not declared:"; echo "$extra"; status=1; fi

grep -rhoE '\bryx[A-Za-z0-9_]+\b' "$testdir" | sort -u >"$called"
untested=$(comm -23 "$declared" "$called")
if [ -n "$untested" ]; then echo "declared routines that no test names:"; echo "$untested"; status=1; fi

n=$(wc -l <"$declared")
echo "exported names: $n declared, $(wc -l <"$exported") exported"
exit $status
