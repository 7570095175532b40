#!/usr/bin/env bash
# lint_test.sh BUILDER TOVA_FW
# lint as a whole process: statuses, files, options, and the working directory,
# which the definition moves; and what the builder says to the same definition.
set -euo pipefail

builder=$(realpath "$1")
tool=$(realpath "$2")
sample=$(realpath "$(dirname "$0")/../../examples/audio_firmware")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'echo "FAILED in line $LINENO" >&2' ERR
cp -r "$sample"/{definitions,linked,src,keys} "$work"
cd "$work"

die() {
  echo "FAILED: $1" >&2
  exit 1
}
lint() {  # lint STATUS ARGUMENT...: leaves the outputs in the files out and err
  local status=0
  "$tool" lint "${@:2}" >out 2>err || status=$?
  [[ $status == "$1" ]] || die "${*:2}: status $status, not $1: $(cat out err)"
}
for elf in base_fw mixer reverb meter; do
  printf '../linked/%s\n' $elf.{elf,sections,symbols}
done >fw.elfs
linked=(--header src/audio_config.h --elf-list fw.elfs
  --key-list keys/trusted-keys.list)

for generation in 1.5 1.8 2.5 3.0; do
  lint 0 "definitions/gen_$generation.def" "${linked[@]}" --strict
  [[ ! -s out && ! -s err ]] || die "$(cat out err)"
done
lint 0 gen_1.8.def --default-dir definitions
inputs=(definitions/{gen_1.8,base_modules}.def "${linked[@]:1:1}" fw.elfs
  keys/trusted-keys.list)
before=$(sha256sum "${inputs[@]}")
for input in "${inputs[@]}"; do
  lint 2 definitions/gen_1.8.def "${linked[@]}" --sarif "$input"
  grep -q "$input: is an input of this command" err || die "$(<err)"
done
[[ $(sha256sum "${inputs[@]}") == "$before" ]] || die "an input is gone"

# A warning, an error, and both forms of output.
sed -i 's/^version_major 2$/version_major 70000/' definitions/base_modules.def
lint 0 definitions/gen_1.8.def "${linked[@]}" --sarif found.sarif
[[ $(<out) == 'definitions/base_modules.def:43:15: warning: '* ]] ||
  die "$(cat out)"
lint 1 definitions/gen_1.8.def --strict
lint 0 definitions/gen_1.8.def --strict --disable number-cut
lint 1 definitions/gen_1.8.def --strict --json
[[ $(jq -r '.findings[].rule' out) == number-cut ]] || die "$(cat out)"
[[ $(jq -r '.runs[0].results[].locations[].physicalLocation
    .artifactLocation.uri' found.sarif) == definitions/base_modules.def ]] ||
  die "$(cat found.sarif)"
lint 1 definitions/gen_1.8.def --strict --color=always
[[ $(tail -n 1 out | tr -d '\033') == *'^~~~~'* ]] || die "$(cat out)"

# The builder's own words, at the statement that it refuses.
sed -i 's/^sched_caps 2 1 4/sched_cap 2 1 4/' definitions/addon_modules.def
lint 1 definitions/gen_1.8.def "${linked[@]}"
words=$("$builder" build 0 0 0 1 0 0 0 0 "$PWD/definitions/gen_1.8.def" \
  "$PWD/src/audio_config.h" "" "$PWD/" fw.elfs fw.man fw |
  sed -n 's/^Error: [0-9]*: //p' || true)
grep -qF "definitions/addon_modules.def:19:1: error: $words; did you mean \
'sched_caps'? [refused]" out || die "$(cat out)"

# Trouble is told apart from findings, and beside them.
lint 2 nothing.def
lint 2 definitions
lint 2
lint 2 definitions/gen_1.8.def --disable nonsense
lint 2 definitions/gen_1.8.def --disable refused
lint 2 definitions/gen_1.8.def --header nothing.h
lint 2 definitions/gen_1.8.def --sarif nowhere/found.sarif
git_state=$(ls)
sed -i 's/^sched_cap /sched_caps /' definitions/addon_modules.def
lint 2 definitions/gen_1.8.def --elf-list nothing.elfs
grep -q 'number-cut' out || die "$(cat out)"
grep -q '^tova_fw: ' err || die "$(cat err)"
[[ $(ls) == "$git_state" ]] || die "something was written: $(ls)"
