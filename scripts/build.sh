#!/usr/bin/env bash
# build.sh [--test] PRESET [CMAKE ARGUMENT...]
# Configures and builds one preset and, with --test, runs its tests. A step that
# passes says little; one that fails shows all that it said.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

test=
if [[ ${1:-} == --test ]]; then
  test=yes
  shift
fi
preset=${1:?usage: build.sh [--test] PRESET [CMAKE ARGUMENT...]}
shift

echo "Configuring ($preset), log in build/$preset-configure.log"
quietly "$preset-configure" cmake --preset "$preset" "$@"
echo "Building ($preset), log in build/$preset-build.log"
quietly "$preset-build" cmake --build --preset "$preset"
if [[ -n $test ]]; then
  echo "Testing ($preset), log in build/$preset-test.log"
  quietly "$preset-test" ctest --preset "$preset" --stop-on-failure \
    --no-tests=error --parallel "$(nproc)"
  grep 'tests passed' "build/$preset-test.log"
fi
