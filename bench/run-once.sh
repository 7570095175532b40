#!/usr/bin/env bash
# Builds the benchmarks and runs each once, briefly, so that they can't rot. The
# figures mean nothing here.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

scripts/set-up.sh build companion bench
scripts/build.sh release -DTOVA_BENCH=ON
quietly bench build/release/bench/hash_bench --benchmark_min_time=0.01
quietly bench build/release/bench/big_number_bench --benchmark_min_time=0.01
quietly bench build/release/bench/reader_bench --benchmark_min_time=0.01
quietly bench bench/compare.sh build/release/src/driver/tova_fw_builder 1 1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
bench/large_lint.sh 10 2 100 "$work"
quietly bench build/release/src/companion/tova_fw lint "$work/top.def" \
  --elf-list "$work/large.elfs"
echo "The benchmarks run"
