#!/usr/bin/env bash
# Installs what the tests need, builds everything and runs the whole test
# suite. Arguments go to CMake, such as -DTOVA_WERROR=ON.
set -euo pipefail
cd "$(dirname "$0")"

scripts/set-up.sh build companion test
scripts/build.sh --test release "$@"
