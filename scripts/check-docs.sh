#!/usr/bin/env bash
# Runs every command and builds every definition that the papers show. The
# word behind the language of a fenced block says what is done with it:
#
#   sh run         runs, in a fresh copy of the tree, from where the block
#                  before it has gone to, and must end with 0
#   LANG file=F    is written to the file F of that copy
#   text output    is what the block before it printed; three dots at the end of
#                  a line stand for any text
#   text demo      is what ./run-demo.sh prints behind its building
#   def check      builds, behind a small image that it goes on with
#   def lint R...  has findings of these rules alone, or none, behind a small
#                  image; with the word elfs first, with the ELFs of the sample
#   sh ci          runs elsewhere in CI: its lines stand in .ci/run or a script
#
# Blocks of plain text and diagrams are left alone; anything else is an error,
# so that no command goes unchecked.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

scripts/build.sh tool
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
# Installed in a place of its own, which CMake has to be told.
export TOVA_PREFIX=$copy/prefix
quietly install cmake --install build/tool --prefix "$TOVA_PREFIX"
export PATH=$TOVA_PREFIX/bin:$PATH

die() {
  echo "$document:$start: $1" >&2
  exit 1
}

run_block() {
  echo "pwd >'$copy/place'" >>"$copy/block"
  (cd "$(cat "$copy/place")" && bash -euo pipefail "$copy/block") \
    >"$copy/output" 2>&1 || {
    tail -n 20 "$copy/output" >&2
    die "the command fails"
  }
}

compare_output() {
  local pattern
  # Everything but the three dots stands for itself.
  pattern=$(sed 's/[][*?\\]/\\&/g; s/\.\.\.$/*/' "$copy/block")
  # shellcheck disable=SC2053 # a pattern on purpose
  [[ $(tr -d '\0' <"$copy/output") == $pattern ]] || {
    cat "$copy/output" >&2
    die "the output is another one, as above"
  }
}

# The image that a checked block goes on with has one module, which is still
# open, and all ELFs of the sample. It stands in the sample's folder, since
# paths of keys are taken from there.
check_definition() {
  local sample=$copy/tree/examples/audio_firmware
  local dir=$sample/checked
  rm -rf "$dir"
  mkdir "$dir"
  {
    printf '%s\n' 'binary_ver 3.0' 'module l frame' 'group bss' \
      'section .bss.gain' 'uuid 00000000-0000-0000-0000-000000000000'
    cat "$copy/block"
  } >"$dir/checked.def"
  for elf in base_fw mixer reverb meter; do
    printf '%s\n' "$sample/linked/$elf".{elf,sections,symbols}
  done >"$dir/elfs"
  tova_fw_builder build 0 0 0 1 0 0 0 0 "$dir/checked.def" \
    "$sample/src/audio_config.h" "$sample/keys/trusted-keys.list" "$dir/" \
    elfs manifest image >"$copy/output" 2>&1 || {
    tail -n 5 "$copy/output" >&2
    die "the definition doesn't build"
  }
}

# The findings in the block's lines, by the rules that the block names.
check_lint() {
  local rules=${info#def lint} sample=$copy/tree/examples/audio_firmware
  local elfs=() found
  if [[ $rules == ' elfs'* ]]; then
    rules=${rules# elfs}
    for elf in base_fw mixer reverb meter; do
      printf '%s\n' "$sample/linked/$elf".{elf,sections,symbols}
    done >"$copy/elfs"
    elfs=(--elf-list "$copy/elfs")
  fi
  {
    printf '%s\n' 'binary_ver 3.0' 'max_data 0' 'module l frame' \
      'uuid 3F0C6D1E-52A7-4B8E-9C11-7A60B2D4E9FF' 'group bss' \
      '  section .bss.gain'
    cat "$copy/block"
  } >"$copy/linted.def"
  tova_fw lint "$copy/linted.def" "${elfs[@]}" --json >"$copy/output" || true
  found=$(jq -r '.findings[] | select(.file | endswith(".def")) |
    select(.line > 6) | " " + .rule' "$copy/output" | sort -u | tr -d '\n')
  [[ $found == "$rules" ]] || {
    cat "$copy/output" >&2
    die "the findings are '$found'"
  }
}

check_in_ci() {
  local line
  while IFS= read -r line; do
    line=${line%%  *#*}
    [[ -z $line ]] ||
      grep -hv '^ *#' .ci/run ./*/*.sh tests/*/*.sh |
        grep -F -- "$line" >/dev/null ||
      die "not run in CI: $line"
  done <"$copy/block"
}

do_block() {
  case $info in
    'sh run') run_block ;;
    *' file='*)
      mkdir -p "$(dirname "$copy/tree/${info#* file=}")"
      cp "$copy/block" "$copy/tree/${info#* file=}"
      ;;
    'text output') compare_output ;;
    'text demo')
      scripts/run-sample.sh "$TOVA_PREFIX/bin/tova_fw_builder" build/demo \
        "$TOVA_PREFIX/bin/tova_fw" >"$copy/output"
      compare_output
      ;;
    'def check') check_definition ;;
    'def lint'*) check_lint ;;
    'sh ci') check_in_ci ;;
    text | mermaid) ;;
    *) die "say what to do with a block of '$info'" ;;
  esac
}

count=0
while IFS= read -r document; do
  rm -rf "$copy/tree"
  mkdir "$copy/tree"
  echo "$copy/tree" >"$copy/place"
  git ls-files -z --cached --others --exclude-standard |
    xargs -0 cp --parents -t "$copy/tree"
  number=0
  info=
  while IFS= read -r line; do
    ((number += 1))
    if [[ $line != '```'* ]]; then
      [[ -z $info ]] || printf '%s\n' "$line" >>"$copy/block"
    elif [[ -z $info ]]; then
      info=${line#'```'}
      info=${info:-none}
      start=$number
      : >"$copy/block"
    else
      do_block
      info=
      ((count += 1))
    fi
  done <"$document"
  info=
done < <(git ls-files --cached --others --exclude-standard '*.md')
echo "$count blocks of the papers hold"
