#!/usr/bin/env bash
# Builds every benchmark program (bench_<family>, one per folder of bench/),
# runs each with its cases in random interleaving while showing progress,
# and writes bench/report/README.md with ratio tables and plots.
#   RYX_BENCH_BUILD=build/bench   build tree
#   RYX_BENCH_REPS=3              repetitions of each case (fastest counts)
#   RYX_BENCH_MIN_TIME=0.1        seconds per repetition
#   RYX_BENCH_FILTER=.            regular expression of the cases to run
#   RYX_BENCH_MACHINE="..."       what to call this machine in the report
#   RYX_BENCH_OUT=bench/report    where the report goes
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-packages.sh g++ cmake make libbenchmark-dev libfftw3-dev libliquid-dev python3-matplotlib
build=${RYX_BENCH_BUILD:-build/bench}
reps=${RYX_BENCH_REPS:-3}
min_time=${RYX_BENCH_MIN_TIME:-0.1}
filter=${RYX_BENCH_FILTER:-.}
out=${RYX_BENCH_OUT:-bench/report}
runs=$build/report-runs
mkdir -p "$build" "$runs" "$out"

echo "== configuring $build"
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DRYX_BENCH=ON -DRYX_TESTS=OFF -DRYX_EXAMPLES=OFF \
  >"$build.configure.log" 2>&1 || { cat "$build.configure.log"; exit 1; }
mapfile -t programs < <(cd bench && for d in */; do d=${d%/}; [ "$d" != report ] && ls "$d"/*.cpp >/dev/null 2>&1 && echo "bench_$d"; done)
echo "== building ${programs[*]}"
set +e  # the filter finds nothing to show when all is built
cmake --build "$build" --target "${programs[@]}" -j"$(nproc)" 2>&1 | tee "$build.build.log" \
  | grep --line-buffered -E '^\[ *[0-9]+%\] (Building|Linking)' \
  | sed -u -E 's#^(\[ *[0-9]+%\]) Building (C|CXX) object .*/([^/]+)\.o$#\1 compiling \3#; s#^(\[ *[0-9]+%\]) Linking .* ([^ ]+)$#\1 linking \2#'
rc=${PIPESTATUS[0]}
set -e
[ "$rc" -eq 0 ] || { tail -40 "$build.build.log"; exit 1; }

# The machine as the report names it: processor, cores, caches, vector
# extensions, kernel, compiler, load when the runs started.
{
  model=$(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -1)
  flags=$(sed -n 's/^flags[[:space:]]*: //p' /proc/cpuinfo | head -1)
  simd=$(for f in sse2 avx avx2 fma avx512f; do [[ " $flags " == *" $f "* ]] && printf '%s ' "$f"; done)
  echo "- name: ${RYX_BENCH_MACHINE:-$(hostname)}"
  echo "- processor: ${model:-unknown}, $(nproc) logical cores; SIMD: ${simd:-none}"
  caches=$(lscpu 2>/dev/null | sed -n 's/^ *\(L[123][di]*\)\( cache\)\{0,1\}: *\(.*\)/\1 \3/p' | paste -sd, - || true)
  [ -n "$caches" ] || caches="$(sed -n 's/^cache size[[:space:]]*: /per-core cache /p' /proc/cpuinfo | head -1)"
  echo "- caches: ${caches:-not reported}"
  echo "- kernel: $(uname -sr); compiler: $(g++ --version | head -1)"
  echo "- date: $(date -u '+%Y-%m-%d %H:%M UTC'); load average at start: $(cut -d' ' -f1-3 /proc/loadavg)"
  echo "- settings: $reps repetitions of ${min_time} s per case, random interleaving, filter '$filter'"
  load1=$(cut -d' ' -f1 /proc/loadavg)
  if awk -v l="$load1" -v c="$(nproc)" 'BEGIN { exit !(l > c) }'; then
    echo "- note: the machine was shared (load above its core count): expect ratios to move between runs"
  fi
} >"$runs/machine.md"
cat "$runs/machine.md"

i=0
for p in "${programs[@]}"; do
  i=$((i + 1))
  echo "== [$i/${#programs[@]}] $p (one line per finished case)"
  # Console lines go to the terminal as progress; the JSON goes to a file.
  # In random interleaving a case is printed only when all its repetitions
  # are done, so a ticker says that the program is still at work.
  start=$SECONDS
  ( while sleep 30; do echo "   ... $p running for $((SECONDS - start)) s"; done ) &
  ticker=$!
  set +e
  "$build/$p" --benchmark_filter="$filter" --benchmark_enable_random_interleaving=true \
    --benchmark_repetitions="$reps" --benchmark_min_time="$min_time" \
    --benchmark_out="$runs/$p.json" --benchmark_out_format=json 2>&1 \
    | grep --line-buffered -E '^[A-Za-z0-9_]+:[A-Za-z0-9_]+/' \
    | grep --line-buffered -v -E '_(mean|median|stddev|cv) ' | sed -u 's/^/   /'
  rc=${PIPESTATUS[0]}
  set -e
  kill "$ticker" 2>/dev/null || true
  wait "$ticker" 2>/dev/null || true
  [ "$rc" -eq 0 ] || { echo "$p failed (exit $rc)"; exit 1; }
  echo "   $p done in $((SECONDS - start)) s"
done

echo "== writing $out/README.md"
rm -f "$out"/*.png
jsons=()
for p in "${programs[@]}"; do [ -s "$runs/$p.json" ] && jsons+=("$runs/$p.json"); done
# Debian's interpreter, which has Debian's matplotlib (another python3 may come first on PATH).
/usr/bin/python3 bench/report/make_report.py "$out" "$runs/machine.md" "${jsons[@]}"
echo "   $(ls "$out"/*.png | wc -l) plots; open $out/README.md"
