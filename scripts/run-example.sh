#!/usr/bin/env bash
# Builds the library and runs the example program.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-packages.sh g++ cmake make
cmake -S . -B build/example -DCMAKE_BUILD_TYPE=Release -DRYX_TESTS=OFF >/dev/null
cmake --build build/example --target ryx_example -j"$(nproc)" >/dev/null
./build/example/ryx_example
