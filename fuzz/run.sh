#!/usr/bin/env bash
# fuzz/run.sh SECONDS [TARGET...]
# Builds the fuzz targets and runs these, or all, as many at once as there are
# processors.
#
# Each target first replays its seeds and every input that ever failed, then
# fuzzes for SECONDS (0: replay alone). A failing input is left in
# fuzz/regressions/TARGET: mend the fault, and commit the input beside it.
# What the fuzzer learns is kept under the build folder for the next run.
set -euo pipefail

seconds=${1:?seconds per target}
shift
cd "$(dirname "$0")/.."
scripts/build.sh sanitize
# Whole paths, since a target works in a folder of its own.
here=$PWD/fuzz
build=$PWD/build/sanitize
if [[ $# -eq 0 ]]; then
  mapfile -t targets < <(cd "$here/corpus" && ls)
  set -- "${targets[@]}"
fi

# An input below 64 KiB may take 10 seconds and 512 MiB at the most.
limits=(-max_len=65536 -timeout=10 -rss_limit_mb=512 -malloc_limit_mb=512)
export ASAN_OPTIONS="quarantine_size_mb=16:detect_leaks=1:${ASAN_OPTIONS:-}"

run_target() {
  local target=$1
  local regressions=$here/regressions/$target learnt=$build/corpus/$target
  local log=$build/fuzz_$target.log
  mkdir -p "$regressions" "$learnt"
  fuzz() {
    "$build/fuzz/fuzz_$target" "${limits[@]}" \
      -artifact_prefix="$regressions/" "$@" "$here/corpus/$target" \
      "$regressions" >>"$log" 2>&1
  }
  : >"$log"
  if fuzz -runs=0 && { [[ $seconds -eq 0 ]] ||
    fuzz -max_total_time="$seconds" -print_final_stats=1 "$learnt"; }; then
    echo "$target: $(grep 'cov:' "$log" | tail -n 1)"
  else
    echo "$target: FAILED, see $log"
    tail -n 40 "$log"
    return 1
  fi
}

failed=0
running=0
for target in "$@"; do
  if [[ $running -eq $(nproc) ]]; then
    wait -n || failed=1
    running=$((running - 1))
  fi
  run_target "$target" &
  running=$((running + 1))
done
while [[ $running -gt 0 ]]; do
  wait -n || failed=1
  running=$((running - 1))
done
exit "$failed"
