#!/usr/bin/env bash
# logs_test.sh TOOL
# Runs the sample firmware through every command, and a firmware with much that
# is odd in it, and compares each log as a whole, with and without -v.
# logs/*.txt say what is run and what it tells:
#
#   $ ARGUMENT...  a run; behind it its log
#     |TEXT        a line that is always shown
#   -v|TEXT        a line that -v alone shows
#   = STATUS       ends the log of a run that fails
#   < FILE         the lines of that file stand here
#   # REMARK
#
# These texts were read line by line against the descriptions of formats and
# labels. Hashes were computed anew from the linked ELFs with another SHA-256,
# signatures with d from the key file; places and sizes by hand.
set -euo pipefail

tool=$(realpath "$1")
root=$(realpath "$(dirname "$0")/../..")
logs=$root/tests/end_to_end/logs
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
sample=$root/examples/audio_firmware
cp -r "$sample"/{definitions,keys,linked,src,flash.script} "$work"
cp "$logs"/odd/* "$work/definitions"
cd "$work/definitions"
mkdir ../out
printf '../linked/%s\n' {base_fw,mixer,reverb,meter}.{elf,sections,symbols} \
  >../out/firmware.elfs
head -n 3 ../out/firmware.elfs >../out/rom.elfs

expand() {  # expand FILE: with the files that it names
  local line
  while IFS= read -r line; do
    case $line in
      '< '*) expand "${line#< }" ;;
      '#'*) ;;
      *) printf '%s\n' "$line" ;;
    esac
  done <"$logs/$1"
}

told() {  # told [-v]: runs what stands in the transcript, prints what is said
  local arguments
  sed -n 's/^\$ //p' ../transcript | while read -ra arguments; do
    echo "\$ ${arguments[*]}"
    "$tool" "$@" "${arguments[@]}" 2>&1 |
      sed -e "s|$work|WORK|" -e 's/gen_[1-3]\.[058]\.def/gen_N.def/' \
        -e 's/^\(    date        \)[0-9]\{8\}$/\1DATE/' || echo "= $?"
  done
}

check() {  # check FILE
  expand "$1" >../transcript
  diff -u <(sed -e '/^-v|/d' -e 's/^  |//' ../transcript) <(told)
  diff -u <(sed 's/^\(-v\|  \)|//' ../transcript) <(told -v)
}

# The manifest of the last one is what the commands behind it take, on a fixed
# day, since its hash and signature depend on the day.
for generation in 3.0 2.5 1.8 1.5; do
  check "build_$generation.txt"
done
printf '\x15\x11\x26\x20' |
  dd of=../out/firmware.man bs=1 seek=20 conv=notrunc status=none
check commands.txt
check odd.txt
echo 'The logs hold'
