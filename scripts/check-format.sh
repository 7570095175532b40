#!/usr/bin/env bash
# Fails when a C++ file isn't formatted as .clang-format tells.
set -euo pipefail
cd "$(dirname "$0")/.."

git ls-files -z -- '*.h' '*.cpp' '*.c' |
  xargs -0 clang-format --dry-run -Werror
