#!/usr/bin/env bash
# build-and-test.sh PRESET [CMAKE ARGUMENT...]
# Configures, builds and tests one preset. A step that passes says little; one
# that fails shows all that it said.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
shift
mkdir -p build
log=build/$preset.log

or_show_log() {
  "$@" >"$log" 2>&1 || {
    cat "$log"
    echo "Failed: $*" >&2
    exit 1
  }
}

echo "Building ($preset)"
or_show_log cmake --preset "$preset" "$@"
or_show_log cmake --build --preset "$preset"
echo "Testing ($preset)"
or_show_log ctest --preset "$preset" --stop-on-failure --no-tests=error \
  --parallel "$(nproc)"
grep 'tests passed' "$log"
