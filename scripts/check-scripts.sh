#!/usr/bin/env bash
# Checks every shell script of the tree with shellcheck.
set -euo pipefail
cd "$(dirname "$0")/.."

{
  git ls-files -z -- '*.sh'
  printf '%s\0' .ci/run
} | xargs -0 shellcheck
