#!/usr/bin/env bash
# Installs what the transform benchmark needs: Google Benchmark and FFTW 3
# (the peer it is timed against; the library itself never links FFTW).
set -euo pipefail
cd "$(dirname "$0")/../.."
scripts/setup-packages.sh libbenchmark-dev libfftw3-dev
