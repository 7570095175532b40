#!/usr/bin/env bash
# tidy.sh [CHECKS]
# Runs clang-tidy over every source, with the compile commands of the sanitize
# preset and what its build makes. CHECKS are added to those of .clang-tidy:
# scripts/lint.sh leaves out the analyzer, which takes as long as all others,
# and the look at every identifier.
# When the whole of it last ran: docs/platforms.md.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh sanitize
# Those for Windows alone need its headers.
git ls-files -z --cached --others --exclude-standard -- 'src/*.cpp' \
  ':!src/*_windows.cpp' |
  xargs -0 -n 4 -P "$(nproc)" \
    clang-tidy -p build/sanitize --quiet --checks="${1:-}" 2>/dev/null
