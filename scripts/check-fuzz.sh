#!/usr/bin/env bash
# check-fuzz.sh [SECONDS]
# Builds the fuzz targets, replays every input that ever failed, and lets each
# target run for so many seconds (10 without a number).
set -euo pipefail
cd "$(dirname "$0")/.."

mkdir -p build
{
  cmake --preset fuzz && cmake --build --preset fuzz
} >build/fuzz.log 2>&1 || {
  cat build/fuzz.log
  exit 1
}
fuzz/run.sh "${1:-10}"
