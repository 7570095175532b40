#!/usr/bin/env bash
# Runs the tests with clang's coverage counters in build/coverage. Prints the
# lines of the product that they reach, folder by folder, and then every line
# that they don't.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

scripts/set-up.sh build companion test coverage
build=$PWD/build/coverage
profiles=$build/profiles
rm -rf "$profiles"
mkdir -p "$profiles"
quietly coverage-configure cmake -S . -B "$build" -G Ninja \
  -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_CXX_FLAGS='-fprofile-instr-generate -fcoverage-mapping'
quietly coverage-build cmake --build "$build"
# Under valgrind the counters cost minutes, and nothing else is reached.
export LLVM_PROFILE_FILE=$profiles/%p.profraw
quietly coverage-test ctest --test-dir "$build" --output-on-failure \
  --label-exclude slow --exclude-regex ConstantTime --parallel "$(nproc)"

# The runs without room on the disk leave no whole profile.
find "$profiles" -name '*.profraw' >"$profiles/list"
llvm-profdata merge -sparse -failure-mode=all -f "$profiles/list" \
  -o "$profiles/all" 2>"$profiles/remarks"
programs=("$build/src/driver/tova_fw_builder"
  -object "$build/src/companion/tova_fw")
while read -r program; do
  programs+=(-object "$program")
done < <(find "$build/tests" -type f -perm -u+x)
llvm-cov export -format=lcov -instr-profile "$profiles/all" \
  "${programs[@]}" "$PWD/src" >"$profiles/lines" 2>>"$profiles/remarks"

awk -F '[:,]' -v root="$PWD/" '
  /^SF:/ {
    file = substr($2, length(root) + 1)
    split(file, part, "/")
    folder = part[1] "/" part[2]
  }
  /^DA:/ {
    ++lines[folder]
    ++lines["all"]
    if ($3 > 0) {
      ++reached[folder]
      ++reached["all"]
    } else {
      print file ":" $2
    }
  }
  END {
    for (folder in lines) {
      printf "%-18s %5d of %5d lines  %5.1f %%\n", folder, reached[folder],
        lines[folder], 100 * reached[folder] / lines[folder] >"/dev/stderr"
    }
  }' "$profiles/lines" 2>"$profiles/table" >"$profiles/missed"
sort "$profiles/table"
echo
echo "Not reached:"
cat "$profiles/missed"
