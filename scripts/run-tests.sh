#!/usr/bin/env bash
# Builds and runs the test suite: x86-64 optimised, i386 optimised
# (-m32 -msse2 -mfpmath=sse), x86-64 under AddressSanitizer with
# UndefinedBehaviorSanitizer, and x86-64 under ThreadSanitizer (the thread
# tests only, to keep its time small). The x86-64 build also runs the
# argument fuzzer for a bounded time (scripts/fuzz.sh; RYX_FUZZ_SECONDS,
# default 60, 0 to skip). All must pass.
#   RYX_BUILDS="x64 i386 sanitize tsan"  choose builds (default: all four)
#   RYX_BUILD_ROOT=build             where the build trees go
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-packages.sh g++ g++-multilib cmake make googletest ccache binutils pkg-config

export CCACHE_DIR=${CCACHE_DIR:-$HOME/.cache/ryxcore-ccache}
# Paths relative to the checkout, so separate checkouts share cached objects.
export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$PWD} CCACHE_NOHASHDIR=1
jobs=$(nproc)
builds=${RYX_BUILDS:-"x64 i386 sanitize tsan"}
root=${RYX_BUILD_ROOT:-build}
passed=0 failed=0

for b in $builds; do
  case $b in
    x64) flags=(-DCMAKE_BUILD_TYPE=Release) ;;
    i386) flags=(-DCMAKE_BUILD_TYPE=Release -DRYX_M32=ON) ;;
    sanitize) flags=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DRYX_SANITIZE=ON) ;;
    tsan) flags=(-DCMAKE_BUILD_TYPE=RelWithDebInfo "-DCMAKE_CXX_FLAGS=-fsanitize=thread"
                 "-DCMAKE_C_FLAGS=-fsanitize=thread" "-DCMAKE_EXE_LINKER_FLAGS=-fsanitize=thread"
                 "-DCMAKE_SHARED_LINKER_FLAGS=-fsanitize=thread") ;;
    *) echo "unknown build $b"; exit 2 ;;
  esac
  echo "== build $b"
  mkdir -p "$root"
  start=$SECONDS
  cmake -S . -B "$root/$b" "${flags[@]}" -DRYX_EXAMPLES=OFF >"$root/$b.log" 2>&1 || { cat "$root/$b.log"; exit 1; }
  if [ "$b" = tsan ]; then
    # Only the thread tests: one program, its Threads suite.
    cmake --build "$root/$b" -j"$jobs" --target test_hostile >>"$root/$b.log" 2>&1 || { tail -60 "$root/$b.log"; exit 1; }
    echo "   built in $((SECONDS - start)) s"
    if TSAN_OPTIONS=halt_on_error=1:report_signal_unsafe=0 "$root/$b/test_hostile" --gtest_filter='Threads*' --gtest_brief=1; then
      passed=$((passed + 1))
    else
      failed=$((failed + 1))
    fi
    echo "   $b: after $((SECONDS - start)) s"
    continue
  fi
  cmake --build "$root/$b" -j"$jobs" >>"$root/$b.log" 2>&1 || { tail -60 "$root/$b.log"; exit 1; }
  echo "   built in $((SECONDS - start)) s"
  if [ "$b" = i386 ]; then scripts/enable-i386.sh; fi
  out=$(mktemp)
  set +e
  (cd "$root/$b" && ASAN_OPTIONS=detect_leaks=1:halt_on_error=1 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
     ctest -j"$jobs" --output-on-failure) | tee "$out"
  rc=${PIPESTATUS[0]}
  set -e
  total=$(grep -oE 'tests failed out of [0-9]+' "$out" | grep -oE '[0-9]+$' || echo 0)
  bad=$(grep -oE '[0-9]+ tests failed' "$out" | grep -oE '^[0-9]+' || echo 0)
  rm -f "$out"
  passed=$((passed + total - bad))
  failed=$((failed + bad))
  echo "   $b: ctest exit $rc after $((SECONDS - start)) s"
  if [ "$rc" -ne 0 ] && [ "$bad" -eq 0 ]; then failed=$((failed + 1)); fi
  if [ "$b" = x64 ] && [ "${RYX_FUZZ_SECONDS:-60}" -gt 0 ]; then
    if scripts/fuzz.sh "${RYX_FUZZ_SECONDS:-60}" --ci; then passed=$((passed + 1)); else failed=$((failed + 1)); fi
  fi
done
echo "tests: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
