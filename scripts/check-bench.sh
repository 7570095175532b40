#!/usr/bin/env bash
# Builds the benchmarks and runs each once, briefly, so that they can't rot. The
# figures mean nothing here.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/set-up.sh build bench
mkdir -p build
{
  cmake --preset release -DTOVA_BENCH=ON
  cmake --build --preset release
  build/release/bench/hash_bench --benchmark_min_time=0.01
  build/release/bench/big_number_bench --benchmark_min_time=0.01
  build/release/bench/reader_bench --benchmark_min_time=0.01
  bench/compare.sh build/release/src/driver/tova_fw_builder 1 1
} >build/bench.log 2>&1 || {
  cat build/bench.log
  exit 1
}
echo "The benchmarks run"
