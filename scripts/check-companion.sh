#!/usr/bin/env bash
# check-companion.sh
# Holds what tova_fw prints for programs to what is promised: its JSON to the
# schemas of docs/schema, also for damaged files, and its completions to what
# the shells make of them. Builds the tools if they aren't yet.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh tool
tools=$PWD/build/tool/src
export PATH=$tools/companion:$PATH
sample=$PWD/examples/audio_firmware
root=$PWD
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
scripts/run-sample.sh "$tools/driver/tova_fw_builder" "$work/made" >/dev/null

die() {
  echo "$*" >&2
  exit 1
}

# JSON of whole files, of files cut anywhere, and of files taken as what they
# are not.
cd "$work"
files=(made/gen-*/* "$sample"/keys/*)
for file in "${files[@]}"; do
  for percent in 99 50 10 2; do
    head -c $(($(stat -c %s "$file") * percent / 100)) "$file" \
      >"cut-$percent-$(basename "$file")"
  done
done
printf '\x24TM1\xff\xff' >marks
files+=(cut-* marks)
show() {  # show NAME ARGUMENT...: unknown files are status 2, and shown
  tova_fw show --json "${@:2}" >"$1.json" 2>/dev/null || [[ $? == 2 ]]
}
show plain "${files[@]}"
show bytes --bytes "${files[@]}"
for format in binary manifest-1.5 metadata extended-manifest \
  package-descriptor key-pair public-key embedded; do
  show "as-$format" --as "$format" "${files[@]}"
done
show troubles nothing made/gen-1.8/firmware.man . marks
show script --script "$sample/flash.script" made/gen-1.5/flash.img
"$root/tests/end_to_end/validate.py" "$root/docs/schema/show.json" ./*.json
rm ./*.json
check() {  # check NAME ARGUMENT...: whatever the answer is
  tova_fw check --json "${@:2}" >"$1.json" 2>/dev/null || [[ $? -le 2 ]]
}
for generation in 1.5 1.8 2.5 3.0; do
  check "check-$generation" "made/gen-$generation"
done
check check-cut cut-*
check check-none nothing
check check-trouble --trust nothing made/gen-1.8
"$root/tests/end_to_end/validate.py" "$root/docs/schema/check.json" ./*.json

# Each file against what is left of it, and folder against folder.
mkdir diffs
diff_json() {  # diff_json OLD NEW: no trouble
  ((number += 1))
  tova_fw diff --json "$1" "$2" >"diffs/$number.json" || [[ $? == 1 ]]
}
number=0
for file in made/gen-*/* "$sample"/keys/*; do
  for percent in 99 50 10 2; do
    diff_json "$file" "cut-$percent-$(basename "$file")"
  done
done
diff_json made/gen-1.8 made/gen-2.5
tova_fw diff --json made/gen-1.8 nothing >diffs/nothing.json 2>/dev/null ||
  [[ $? == 2 ]]
ln -s loop made/gen-2.5/loop
tova_fw diff --json made/gen-1.8 made/gen-2.5 >diffs/loop.json 2>/dev/null ||
  [[ $? == 2 ]]
rm made/gen-2.5/loop
"$root/tests/end_to_end/validate.py" "$root/docs/schema/diff.json" diffs/*.json

map() {  # map OUTPUT ARGUMENT...: of the sample
  tova_fw map --definition "$sample/definitions/gen_1.8.def" \
    --header "$sample/src/audio_config.h" --elf-list made/gen-1.8/firmware.elfs \
    --key-list "$sample/keys/trusted-keys.list" --json "$1" "${@:2}" >/dev/null
}
mkdir map
map map/plain.json --budget sram=50%
sed 's/"size": 2048/"size": 2000/' map/plain.json >old.json
map map/grown.json --baseline old.json
bench=$root/bench/large_inputs.sh
"$bench" rom 100 1000 rom
tova_fw map --definition rom/rom.def --elf-list rom/rom.elfs \
  --json map/no-classes.json
"$root/tests/end_to_end/validate.py" "$root/docs/schema/map.json" map/*.json

mkdir where
where() {  # where OUTPUT ARGUMENT...: whatever the answer is
  tova_fw where --json "${@:2}" 10001010 0x20003000 10003fff 7 >"where/$1" ||
    [[ $? == 1 ]]
}
for generation in 1.5 1.8 3.0; do
  where "$generation.json" "made/gen-$generation"
  where "elfs-$generation.json" "made/gen-$generation" \
    --elf-list "made/gen-$generation/firmware.elfs"
done
where elfs.json --elf-list made/gen-1.5/firmware.elfs
"$root/tests/end_to_end/validate.py" "$root/docs/schema/where.json" where/*.json
# Findings of right and of wrong definitions, of files that nobody can read, and
# of those that name anything; and the papers and editors of lint.
mkdir lint
lint_json() {  # lint_json DEFINITION ARGUMENT...: whatever is found
  local status=0
  ((number += 1))
  tova_fw lint "$@" --json --sarif "lint/$number.sarif" \
    >"lint/$number.json" 2>/dev/null || status=$?
  [[ $status -le 1 ]] || die "lint $*: status $status"
}
linked=(--header "$sample/src/audio_config.h"
  --elf-list "$work/made/gen-1.8/firmware.elfs"
  --key-list "$sample/keys/trusted-keys.list")
for definition in "$sample"/definitions/gen_*.def; do
  lint_json "$definition" "${linked[@]}"
done
mkdir 'odd näme'
for file in "$root"/fuzz/corpus/{definitions,lint,includes,build}/* marks \
  "$root"/docs/lint.md; do
  cp "$file" 'odd näme/t.def'
  lint_json 'odd näme/t.def'
  cat "$sample/definitions/gen_1.8.def" "$file" >'odd näme/t.def'
  lint_json 'odd näme/t.def' --default-dir "$sample/definitions" "${linked[@]}"
done
"$root/tests/end_to_end/validate.py" "$root/docs/schema/lint.json" lint/*.json
"$root/tests/end_to_end/validate.py" "$root/docs/schema/lint-sarif.json" \
  lint/*.sarif
while read -r rule _; do
  grep -qx "### $rule" "$root/docs/lint.md" || die "docs/lint.md lacks $rule"
done < <(tova_fw lint --list-rules)
"$root/editors/check-editors.py" "$(command -v tova_fw)"

# What each shell offers behind a line: all of the words, in any order.
expect() {  # expect SHELL LINE WORD...
  local offered
  offered=$("offer_$1" "$2" | sort | tr '\n' ' ')
  [[ $offered == "$(printf '%s\n' "${@:3}" | sort | tr '\n' ' ')" ]] ||
    die "$1 offers '$offered' behind '$2'"
}

offer_bash() {
  # shellcheck disable=SC2016 # the inner shell's variables
  bash -c '
    source <(tova_fw completion bash)
    read -ra COMP_WORDS <<<"$1"
    [[ $1 != *" " ]] || COMP_WORDS+=("")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _tova_fw
    printf "%s\n" "${COMPREPLY[@]}"' bash "$1"
}

offer_fish() {
  fish --no-config -c "tova_fw completion fish | source
    complete -C '$1'" | cut -f 1
}

# zsh completes on a terminal alone: each word that is offered is told apart by
# a function in place of compadd's.
offer_zsh() {
  # shellcheck disable=SC2016
  zsh -f -c '
    compdef() { :; }
    source <(tova_fw completion zsh)
    compset() { PREFIX=${PREFIX#*=}; }
    compadd() { shift; print -l -- ${(M)@:#$PREFIX*}; }
    _files() { print -l -- $PREFIX*(N); }
    words=(${(z)1})
    [[ $1 != *" " ]] || words+=("")
    CURRENT=${#words}
    PREFIX=${words[CURRENT]}
    _tova_fw' zsh "$1"
}

mkdir shell
cd shell
touch firmware.bin firmware.man
for shell in bash fish zsh; do
  expect "$shell" 'tova_fw sh' show
  expect "$shell" 'tova_fw completion ' bash fish zsh
  expect "$shell" 'tova_fw show --l' --long
  expect "$shell" 'tova_fw show --as k' key-pair
  expect "$shell" 'tova_fw show --color ' auto always never
  expect "$shell" 'tova_fw show --json firmware.b' firmware.bin
  expect "$shell" 'tova_fw show --script firmware.m' firmware.man
done
echo "JSON and completions of tova_fw are as promised"
