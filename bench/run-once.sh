#!/usr/bin/env bash
# Builds the benchmarks and runs each once, briefly, so that they can't rot. The
# figures mean nothing here.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

scripts/set-up.sh build bench
scripts/build.sh release -DTOVA_BENCH=ON
for bench in hash big_number reader; do
  quietly bench "build/release/bench/${bench}_bench" --benchmark_min_time=0.01
done
quietly bench bench/compare.sh build/release/src/driver/tova_fw_builder 1 1
echo "The benchmarks run"
