# companion_run.sh: sourced by the tests of whole runs of the companion, with
# their arguments BUILDER TOVA_FW. Leaves both as full paths in builder and
# tool, the tree in root, the sample's keys in keys, and in work a folder that
# goes when the test ends.
# shellcheck shell=bash disable=SC2034 # for the one that sources it
set -euo pipefail

builder=$(realpath "$1")
tool=$(realpath "$2")
root=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../..")
keys=$root/examples/audio_firmware/keys
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

die() {
  echo "FAILED: $1" >&2
  exit 1
}
