#!/usr/bin/env bash
# tables_test.sh BUILDER TOVA_FW
# tables on the sample firmware and on ELFs of many kinds: the same images as by
# GNU binutils; and where the files go, and what is refused.
set -euo pipefail

builder=$(realpath "$1")
tool=$(realpath "$2")
root=$(realpath "$(dirname "$0")/../..")
sample=$root/examples/audio_firmware
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'echo "FAILED in line $LINENO" >&2' ERR
"$root/tests/end_to_end/tables_elfs.py" "$builder" "$tool"
cp -r "$sample"/{definitions,linked,src,keys} "$work"
cd "$work"
elfs=(linked/{base_fw,mixer,reverb,meter}.elf)

die() {
  echo "FAILED: $1" >&2
  exit 1
}
tables() {  # tables STATUS ARGUMENT...: leaves the troubles in the file err
  local status=0
  "$tool" tables "${@:2}" >out 2>err || status=$?
  [[ $status == "$1" && ! -s out ]] || die "${*:2}: $status: $(cat out err)"
}

# All generations, from the tables that GNU binutils made with the sample, and
# those that they print here.
tables 0 "${elfs[@]}" -o ours/of/elfs
for elf in "${elfs[@]}"; do
  name=$(basename "$elf" .elf)
  LC_ALL=C objdump -h "$elf" >"$name.sections"
  LC_ALL=C nm "$elf" >"$name.symbols"
  printf '%s\n' "$PWD/$elf" "$PWD/$name".{sections,symbols} >>gnu.elfs
  printf '%s\n' "$PWD/$elf" "$PWD/linked/$name".{sections,symbols} >>made.elfs
done
cp ours/of/elfs/firmware.elfs ours.elfs
grep -qFx "$PWD/ours/of/elfs/mixer.symbols" ours.elfs
images=0
for generation in 1.5 1.8 2.5 3.0; do
  for list in made gnu ours; do
    mkdir "$list-$generation"
    cp $list.elfs "$list-$generation/fw.elfs"
    "$builder" build 10 ff 0 1 4 0 27 0 "$PWD/definitions/gen_$generation.def" \
      "$PWD/src/audio_config.h" "$PWD/keys/trusted-keys.list" \
      "$PWD/$list-$generation/" fw.elfs fw.man fw >log || die "$(tail -n 3 log)"
    for file in "$list-$generation"/*; do
      case $file in
        *.man | *.pkg | *.elfs | *.d) continue ;;  # they hold dates and paths
      esac
      cmp "$file" "made-$generation/${file##*/}"
      images=$((images + 1))
    done
    "$tool" diff --ignore-dates "$list-$generation/fw.man" \
      "made-$generation/fw.man"
  done
done
((images >= 36)) || die "$images files compared"

# Names, and where they go.
mkdir twins
cp linked/mixer.elf twins/base_fw.elf
tables 0 linked/base_fw.elf twins/base_fw.elf -o named --name first
[[ $(cd named && echo ./*) == \
  './base_fw.sections ./base_fw.symbols ./firmware.elfs ./first.sections ./first.symbols' ]]
tables 0 linked/base_fw.elf twins/base_fw.elf -o twins --list here.list
[[ $(ls twins/*-2*) == "twins/base_fw-2.sections
twins/base_fw-2.symbols" && ! -e twins/firmware.elfs ]]
[[ $(sed -n 5p here.list) == "$PWD/twins/base_fw-2.sections" ]]

# What can't be is told, and what was there stays.
cp -r named before
printf 'no ELF' >broken.elf
tables 2 broken.elf linked/mixer.elf -o named --name first --name other
grep -qx 'tova_fw: broken.elf: it is no ELF' err
cmp before/first.symbols named/first.symbols
cmp before/firmware.elfs named/firmware.elfs
[[ -s named/other.symbols ]]
mkdir 'a b'
cp linked/mixer.elf 'a b'
tables 2 'a b/mixer.elf' -o named
grep -q "an ELF list can't hold the blank in this path" err
tables 2 linked/mixer.elf -o broken.elf
grep -q 'broken.elf: cannot be made: ' err
tables 2 linked/mixer.elf -o /proc/none
tables 2 linked/mixer.elf
tables 2 -o named
cp linked/mixer.elf mixer.sections
tables 2 mixer.sections -o .
grep -q 'mixer.sections: is an input of this command' err
cmp linked/mixer.elf mixer.sections

# Any bytes: cut at each place of the headers, and with each byte changed.
for at in $(seq 1 7 400); do
  head -c "$at" linked/mixer.elf >cut.elf
  "$tool" tables cut.elf -o cut 2>/dev/null && die "a cut ELF is taken: $at"
done
python3 - linked/mixer.elf <<'PYTHON'
import sys
elf = bytearray(open(sys.argv[1], "rb").read())
table = int.from_bytes(elf[32:36], "little")
for n, place in enumerate([*range(16, 52), *range(table, len(elf), 3)]):
    for value in (0, 0xFF) if place < 52 else (0xFF,):
        old, elf[place] = elf[place], value
        open(f"damaged-{n}-{value}.elf", "wb").write(elf)
        elf[place] = old
PYTHON
status=0
"$tool" tables damaged-*.elf -o damaged 2>err || status=$?
[[ $status == 2 && -s err ]] || die "damaged ELFs end with $status"
grep -v '^tova_fw: damaged-' err && die 'another trouble'
echo 'Tables are those of GNU binutils'
