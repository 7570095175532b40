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
  keys/{trusted-keys.list,test-key-public.key} linked/mixer.{elf,sections})
before=$(sha256sum "${inputs[@]}")
for input in "${inputs[@]}"; do
  lint 2 definitions/gen_1.8.def "${linked[@]}" --sarif "$input"
  grep -q "$input: is an input of this command" err || die "$(<err)"
done
[[ $(sha256sum "${inputs[@]}") == "$before" ]] || die "an input is gone"

# Two addons in the wrong order: files of their own in 1.5, 4 GiB elsewhere.
python3 - definitions/addon_modules.def <<'SWAP'
import re, sys
head, mixer, reverb, rest = re.split(r'(?m)^(?=module )', open(sys.argv[1]).read())
open(sys.argv[1], 'w').write(head + reverb + mixer + rest)
SWAP
lint 0 definitions/gen_1.5.def "${linked[@]}" --strict
for generation in 1.8 2.5 3.0; do
  lint 1 "definitions/gen_$generation.def" "${linked[@]}"
  grep -q '^definitions/addon_modules.def:[0-9]*:1: error: .*\[load-overlap\]$' \
    out || die "$(cat out)"
done
cp "$sample"/definitions/addon_modules.def definitions

# What the builder refuses with the image half done, lint refuses in its words.
agree() {  # agree STATUS WHY: of lint and the builder, and in the same words
  local status=0 words
  lint "$1" definitions/gen_1.8.def "${linked[@]}" --disable addon-alignment
  "$builder" build 0 0 0 1 0 0 0 0 "$PWD/definitions/gen_1.8.def" \
    "$PWD/src/audio_config.h" "$PWD/keys/trusted-keys.list" "$PWD/" fw.elfs \
    made.man made >made.log || status=$?
  [[ $1 == $((status != 0)) ]] || die "$2: the builder ends with $status"
  words=$(sed -n 's/^Error: //p' made.log)
  grep -qF "error: $words" out || [[ -z $words ]] || die "$2: $(cat out)"
}
agree 0 'nothing wrong'
sed -i '/ \.text/s/2[*][*]12/2**2/' linked/mixer.sections
agree 1 'an addon on a word'
cp "$sample"/linked/mixer.sections linked
touch definitions/nothing.def
sed -i '1i include nothing.def' definitions/gen_1.8.def
agree 1 'a lost text'
cp "$sample"/definitions/gen_1.8.def definitions
rm -f made* definitions/nothing.def

# A warning, an error, and both forms of output.
sed -i 's/^version_major 2$/version_major 70000/' definitions/base_modules.def
lint 0 definitions/gen_1.8.def "${linked[@]}" --sarif found.sarif
[[ $(<out) == 'definitions/base_modules.def:43:15: warning: '* ]] ||
  die "$(cat out)"
lint 1 definitions/gen_1.8.def --strict
lint 0 definitions/gen_1.8.def --strict --disable number-cut
lint 1 definitions/gen_1.8.def --strict --json
[[ $(jq -r '.findings[].rule' out) == number-cut ]] || die "$(cat out)"
mv found.sarif in_file.sarif
lint 0 definitions/gen_1.8.def "${linked[@]}" --sarif -
mv out found.sarif
cmp found.sarif in_file.sarif
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
lint 2 definitions/gen_1.8.def --sarif ''
lint 2 definitions/gen_1.8.def --json --sarif -
lint 2 definitions/gen_1.8.def --key-list nothing.list
git_state=$(ls)
sed -i 's/^sched_cap /sched_caps /' definitions/addon_modules.def
lint 2 definitions/gen_1.8.def --elf-list nothing.elfs
grep -q 'number-cut' out || die "$(cat out)"
mkfifo pipe  # nobody writes into it
lint 2 pipe
lint 2 definitions/gen_1.8.def --elf-list pipe
grep -q '^tova_fw: pipe: this is a pipe' err || die "$(cat err)"
for tables in pipe:fw.h fw.h:pipe; do
  printf '%s\n' "$PWD"/{fw.h,"${tables%:*}","${tables#*:}"} >elfs
  lint 2 definitions/gen_1.8.def --elf-list elfs
  grep -q "$PWD/pipe: this is a pipe" err || die "$(cat err)"
done
rm pipe elfs
grep -q '^tova_fw: ' err || die "$(cat err)"
[[ $(ls) == "$git_state" ]] || die "something was written: $(ls)"
