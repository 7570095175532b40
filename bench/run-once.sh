#!/usr/bin/env bash
# Builds the benchmarks and runs each once, briefly, so that they can't rot. The
# figures mean nothing here.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

scripts/set-up.sh build bench
scripts/build.sh release -DTOVA_BENCH=ON
quietly bench build/release/bench/hash_bench --benchmark_min_time=0.01
quietly bench build/release/bench/big_number_bench --benchmark_min_time=0.01
quietly bench build/release/bench/reader_bench --benchmark_min_time=0.01
quietly bench bench/compare.sh build/release/src/driver/tova_fw_builder 1 1
echo "The benchmarks run"
