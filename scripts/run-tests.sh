#!/usr/bin/env bash
# Builds and runs the whole test suite three times: x86-64 optimised, i386
# optimised (-m32 -msse2 -mfpmath=sse), and x86-64 under AddressSanitizer
# with UndefinedBehaviorSanitizer. All three must pass.
#   RYX_BUILDS="x64 i386 sanitize"  choose builds (default: all three)
#   RYX_BUILD_ROOT=build             where the build trees go
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-packages.sh g++ g++-multilib cmake make googletest ccache binutils pkg-config

export CCACHE_DIR=${CCACHE_DIR:-$HOME/.cache/ryxcore-ccache}
jobs=$(nproc)
builds=${RYX_BUILDS:-"x64 i386 sanitize"}
root=${RYX_BUILD_ROOT:-build}
passed=0 failed=0

for b in $builds; do
  case $b in
    x64) flags=(-DCMAKE_BUILD_TYPE=Release) ;;
    i386) flags=(-DCMAKE_BUILD_TYPE=Release -DRYX_M32=ON) ;;
    sanitize) flags=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DRYX_SANITIZE=ON) ;;
    *) echo "unknown build $b"; exit 2 ;;
  esac
  echo "== build $b"
  mkdir -p "$root"
  start=$SECONDS
  cmake -S . -B "$root/$b" "${flags[@]}" -DRYX_EXAMPLES=OFF >"$root/$b.log" 2>&1 || { cat "$root/$b.log"; exit 1; }
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
done
echo "tests: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
