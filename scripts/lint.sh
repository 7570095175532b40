#!/usr/bin/env bash
# Everything that is said about the text of the tree without running it:
# clang-format, shellcheck, clang-tidy, who includes whom, and the error texts
# of the papers. clang-tidy takes the compile commands of the sanitize preset and
# what its build makes.
set -euo pipefail
cd "$(dirname "$0")/.."

files() { git ls-files -z --cached --others --exclude-standard -- "$@"; }

files '*.h' '*.cpp' '*.c' | xargs -0 clang-format --dry-run -Werror
files '*.sh' .ci/run | xargs -0 shellcheck -x
scripts/check-rooms.sh
scripts/check-texts.sh

scripts/build.sh sanitize
# Those for Windows alone need its headers.
files 'src/*.cpp' ':!src/*_windows.cpp' ':!src/driver/ground/wide_text.cpp' |
  xargs -0 -n 4 -P "$(nproc)" clang-tidy -p build/sanitize --quiet 2>/dev/null
echo "The texts of the tree hold"
