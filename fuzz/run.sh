#!/bin/sh
# fuzz/run.sh SECONDS [TARGET...]
# Builds the fuzz targets and runs these, or all.
#
# Each target first replays its seeds and every input that ever failed, then
# fuzzes for SECONDS (0: replay alone). A failing input is left in
# fuzz/regressions/TARGET: mend the fault, and commit the input beside it.
# What the fuzzer learns is kept under the build folder for the next run.
set -eu

seconds=${1:?seconds per target}
shift
here=$(cd "$(dirname "$0")" && pwd)
build=$here/../build/fuzz
"$here/../scripts/build.sh" fuzz
# shellcheck disable=SC2046 # one target a word
[ $# -gt 0 ] || set -- $(cd "$here/corpus" && ls)

# An input below 64 KiB may take 10 seconds and 512 MiB at the most.
limits="-max_len=65536 -timeout=10 -rss_limit_mb=512 -malloc_limit_mb=512"
export ASAN_OPTIONS="quarantine_size_mb=16:detect_leaks=1:${ASAN_OPTIONS:-}"

failed=
for target in "$@"; do
  regressions=$here/regressions/$target
  learnt=$build/corpus/$target
  log=$build/fuzz_$target.log
  mkdir -p "$regressions" "$learnt"
  fuzz() {
    # shellcheck disable=SC2086
    "$build/fuzz/fuzz_$target" $limits -artifact_prefix="$regressions/" "$@" \
      "$here/corpus/$target" "$regressions" >>"$log" 2>&1
  }
  : >"$log"
  if fuzz -runs=0 && { [ "$seconds" -eq 0 ] ||
       fuzz -max_total_time="$seconds" -print_final_stats=1 "$learnt"; }; then
    echo "$target: $(grep 'cov:' "$log" | tail -n 1)"
  else
    failed="$failed $target"
    echo "$target: FAILED, see $log"
    tail -n 40 "$log"
  fi
done
[ -z "$failed" ] || { echo "Failed:$failed"; exit 1; }
