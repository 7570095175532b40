#!/usr/bin/env bash
# Runs clang-tidy over the product's sources, two at a time. It needs the
# compile commands of the sanitize preset, so build that first.
set -euo pipefail
cd "$(dirname "$0")/.."

[[ -e build/sanitize/compile_commands.json ]] || {
  echo "Build first: scripts/build-and-test.sh sanitize" >&2
  exit 1
}
git ls-files -z -- 'src/*.cpp' |
  xargs -0 -n 4 -P 2 clang-tidy -p build/sanitize --quiet 2>/dev/null
