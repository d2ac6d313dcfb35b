#!/usr/bin/env bash
# Builds the library and the example programs (one per subsystem, from
# examples/) and runs them in order. Build progress is shown as it goes;
# at the end it says where the library and header are and how to link.
#   RYX_EXAMPLE_BUILD=build/example   where the build tree goes
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-packages.sh g++ cmake make
build=${RYX_EXAMPLE_BUILD:-build/example}
jobs=$(nproc)

echo "== configuring in $build"
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DRYX_TESTS=OFF >"$build.configure.log" 2>&1 \
  || { cat "$build.configure.log"; exit 1; }
echo "== building the library and the examples ($jobs jobs; first build takes a minute or two)"
start=$SECONDS
# One line per compiled file with its percentage, so a long build shows it moves.
set +e  # the filter finds nothing to show when all is built
cmake --build "$build" --target ryx_examples -j"$jobs" 2>&1 | tee "$build.build.log" \
  | grep --line-buffered -E '^\[ *[0-9]+%\] (Building|Linking)' \
  | sed -u -E 's#^(\[ *[0-9]+%\]) Building (C|CXX) object .*/([^/]+)\.o$#\1 compiling \3#; s#^(\[ *[0-9]+%\]) Linking .* ([^ ]+)$#\1 linking \2#'
rc=${PIPESTATUS[0]}
set -e
[ "$rc" -eq 0 ] || { tail -40 "$build.build.log"; exit 1; }
echo "   built in $((SECONDS - start)) s"

# Run in the order of the guide: frame, vector, 16-bit, transforms, FIR,
# then any example added since.
order=(errors vector_float vector_int16 statistics_math convert_companding real_fft_tone fast_convolution
       dft_goertzel_dct convolution_correlation fir_lowpass fir_decimator iir_biquad lms_identify
       generate_tone_noise resample_median wavelet_roundtrip)
mapfile -t all < <(cd examples && ls -1 ./*.c | sed 's#^\./##; s#\.c$##')
for name in "${all[@]}"; do
  [[ " ${order[*]} " == *" $name "* ]] || order+=("$name")
done
for name in "${order[@]}"; do
  exe=$build/ryx_example_$name
  [ -x "$exe" ] || continue
  echo
  echo "== examples/$name.c"
  "$exe"
done

lib=$(cd "$build" && ls libryxcore.so.*.*.* | head -1)
cat <<MSG

== where things are
   library: $build/$lib (SONAME ${lib%.*.*}, link name $build/libryxcore.so)
   header:  include/ryxcore.h (includes include/ryxcore/*.h)
   link:    cc app.c -Iinclude -L$build -lryxcore -Wl,-rpath,\$PWD/$build
   install: cmake --install $build --prefix /opt/ryxcore   (CMake package and pkg-config file)
   guide:   docs/guide.md
MSG
