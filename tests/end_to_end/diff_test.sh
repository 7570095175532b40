#!/usr/bin/env bash
# diff_test.sh BUILDER COMPANION
# What tova_fw diff tells of planted differences: in the bytes of images, in
# the linker's output that they are made from, in dates, keys and folders.
# Each case lists by hand all that must be told, and which of it is an echo.
# shellcheck source=tests/end_to_end/companion_run.sh
source "$(dirname "$0")/companion_run.sh"
sample=$root/examples/audio_firmware

# build FOLDER LINKED GENERATION ELF...: the sample from that linker output.
build() {
  local elf
  mkdir -p "$work/$1"
  for elf in "${@:4}"; do
    printf '%s\n' "$2/$elf".{elf,sections,symbols}
  done >"$work/list.elfs"
  cp "$work/list.elfs" "$work/$1/firmware.elfs"
  "$builder" build 10 ff 3 1 4 0 27 2048 "$sample/definitions/gen_$3.def" \
    "$sample/src/audio_config.h" "$keys/trusted-keys.list" \
    "$work/$1/" firmware.elfs firmware.man firmware >"$work/log"
  rm "$work/$1/firmware.elfs"
  # As if both had been built in one place.
  sed -i "s|$work/$1/|/out/|" "$work/$1/firmware.pkg"
}
elfs=(base_fw mixer reverb meter)
linked=$sample/linked
build old-1.5 "$linked" 1.5 "${elfs[@]}"
build old "$linked" 1.8 "${elfs[@]}"
build fewer "$linked" 1.8 base_fw mixer reverb

# One function more at the end of the mixer, of 44 bytes 0x5a.
cp -r "$linked" "$work/linked"
sed -i '/\.text\.mixer/s/000000bc/000000e8/' "$work/linked/mixer.sections"
printf 'Z%.0s' {1..44} | dd of="$work/linked/mixer.elf" bs=1 \
  seek=$((0x10bc)) conv=notrunc status=none
build added "$work/linked" 1.8 "${elfs[@]}"
build added-1.5 "$work/linked" 1.5 "${elfs[@]}"

# A page more, which moves the constants behind it.
sed -i -e '/\.text\.mixer/s/000000e8/000010bc/' \
  -e '/\.rodata\.mixer/s/10009000/1000a000/g' "$work/linked/mixer.sections"
build grown "$work/linked" 1.8 "${elfs[@]}"

WORK=$work COMPANION=$tool BUILDER=$builder ROOT=$root \
  python3 "$root/tests/end_to_end/diff_cases.py"
