#!/usr/bin/env bash
# Builds the argument fuzzer (clang 14, libFuzzer with AddressSanitizer and
# UndefinedBehaviorSanitizer; x86-64 only) over the routine table of
# tests/hostile and runs it.
#   scripts/fuzz.sh [seconds] [--ci]
# seconds: run time (default 60). --ci: fixed seed, new inputs kept only in
# the build tree. Findings are written to build/fuzz/ as crash-* files; add
# them to tests/hostile/corpus once fixed. Prints executions per second.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
ci=${2:-}
[ "$(uname -m)" = x86_64 ] || { echo "fuzz: x86-64 only, skipped"; exit 0; }
scripts/setup-packages.sh clang-14 libclang-rt-14-dev cmake make

export CCACHE_DIR=${CCACHE_DIR:-$HOME/.cache/ryxcore-ccache}
out=${RYX_BUILD_ROOT:-build}/fuzz
# Without the function-type check: the allocators are one routine under
# several exported names (aliases of another pointer type) by design.
san="-fsanitize=address,undefined -fno-sanitize=function -fno-sanitize-recover=all -fno-omit-frame-pointer"
shim="-include $PWD/tests/hostile/clang14_compat.h"
mkdir -p "$out"
start=$SECONDS
# The library with coverage instrumentation, as a static archive.
cmake -S . -B "$out/lib" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DRYX_TESTS=ON -DRYX_EXAMPLES=OFF \
  -DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14 \
  "-DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link $san $shim" >"$out/build.log" 2>&1 ||
  { cat "$out/build.log"; exit 1; }
cmake --build "$out/lib" -j"$(nproc)" --target ryxcore_static >>"$out/build.log" 2>&1 ||
  { tail -40 "$out/build.log"; exit 1; }
# The harness: the table, its rows, the allocator hook and the entry, one
# object per file, compiled side by side.
cxx=clang++-14
command -v ccache >/dev/null && cxx="ccache clang++-14"
mkdir -p "$out/obj"
objs=() pids=()
for f in tests/hostile/routine_table.cpp tests/hostile/rows_*.cpp tests/hostile/alloc_hook.cpp \
         tests/hostile/fuzz_entry.cpp; do
  o="$out/obj/$(basename "$f" .cpp).o"
  objs+=("$o")
  $cxx -std=c++20 -O1 -g -fsanitize=fuzzer-no-link $san $shim -ffp-contract=off \
    -Iinclude -Isrc -Itests/support -Itests/hostile -c "$f" -o "$o" >>"$out/build.log" 2>&1 &
  pids+=($!)
done
for p in "${pids[@]}"; do wait "$p" || { tail -40 "$out/build.log"; exit 1; }; done
clang++-14 -fsanitize=fuzzer $san "${objs[@]}" "$out/lib/libryxcore_static.a" -lpthread -o "$out/ryx_fuzz" \
  >>"$out/build.log" 2>&1 || { tail -40 "$out/build.log"; exit 1; }
echo "fuzz: built in $((SECONDS - start)) s"

mkdir -p "$out/corpus"
seed=()
[ "$ci" = --ci ] && seed=(-seed=1)
export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
log="$out/fuzz.log"
set +e
"$out/ryx_fuzz" "${seed[@]}" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2560 -print_final_stats=1 \
  -artifact_prefix="$out/" "$out/corpus" tests/hostile/corpus >"$log" 2>&1
rc=$?
set -e
execs=$(grep -oE 'stat::number_of_executed_units: *[0-9]+' "$log" | grep -oE '[0-9]+$' || echo 0)
speed=$(grep -oE 'stat::average_exec_per_sec: *[0-9]+' "$log" | grep -oE '[0-9]+$' || echo 0)
echo "fuzz: $execs executions in ${seconds} s, $speed per second, exit $rc"
if [ "$rc" -ne 0 ]; then
  grep -E 'hostile:|ERROR|SUMMARY|Test unit written' "$log" | head -20
  exit 1
fi
