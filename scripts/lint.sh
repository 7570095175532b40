#!/usr/bin/env bash
# Everything that is said about the text of the tree without running it:
# clang-format, shellcheck, clang-tidy without what takes long, who includes whom,
# and the error texts of the papers.
set -euo pipefail
cd "$(dirname "$0")/.."

files() { git ls-files -z --cached --others --exclude-standard -- "$@"; }

files '*.h' '*.cpp' '*.c' | xargs -0 clang-format --dry-run -Werror
files '*.sh' .ci/run | xargs -0 shellcheck -x
scripts/check-rooms.sh
scripts/check-texts.sh

scripts/tidy.sh '-clang-analyzer-*,-bugprone-reserved-identifier'
echo "The texts of the tree hold"
