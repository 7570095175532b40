# Sourced by the tests of the CMake module: the sample firmware, a folder to work
# in, and the log of the last step in it.
# shellcheck shell=bash
# shellcheck disable=SC2034 # of those that source it
sample=$(realpath "$(dirname "$0")/../../examples/audio_firmware")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
generator=

die() {
  echo "FAILED${generator:+ ($generator)}: $1" >&2
  tail -n 40 "$work/log" >&2
  exit 1
}
told() {  # told TEXT: the log says so, wherever its lines are wrapped
  tr -s ' \n' ' ' <"$work/log" | grep -F -- "$1" >/dev/null ||
    die "not told: $1"
}
