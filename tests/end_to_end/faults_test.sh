#!/usr/bin/env bash
# faults_test.sh TOOL
# Outputs that can't be written, inputs that change while they are read, and
# interrupts. An output that fails is no failure of the run, unless the run
# reads it again. Whatever happens, nothing else is created, and no input is
# changed.
set -euo pipefail

tool=$(realpath "$1")
root=$(realpath "$(dirname "$0")/../..")
sample=$root/examples/audio_firmware
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir in lists
"$root/scripts/run-sample.sh" "$tool" "$work/made" >/dev/null
mv made/gen-1.5/{firmware.bin,firmware.man,firmware.man.signed,flash.img,\
package.bin} in
mv made/gen-1.5/firmware.elfs made/rom/rom.elfs lists
rm -r made
printf 'bin in/package.bin\nbin in/flash.img\n' >in/parts
printf 'bin package.bin\noffset 8000\nsha flash.img\n' >in/script
truncate -s 4M in/large
echo 'bin in/large' >in/large.pkg
echo 'bin /dev/stdin' >in/stdin.pkg
echo "bin $work" >in/folder.pkg
printf 'dd 1\noffset 7fffffffffff0000\n' >in/far

die() {
  echo "FAILED: $1" >&2
  exit 1
}
trap 'echo "FAILED in line $LINENO" >&2' ERR
inputs() { find in "$sample" -type f -exec sha256sum {} +; }
inputs >inputs_before
trap '' XFSZ  # writing beyond `ulimit -f` fails, as on a full disk

build() {  # build GENERATION DIR BINARY [CSS_HEADER_SIZE]: a command line
  echo "build 10 ff 3 1 4 0 27 ${4:-2048} $sample/definitions/gen_$1.def
    $sample/src/audio_config.h $sample/keys/trusted-keys.list
    $work/$2 ../lists/firmware.elfs $3.man $3"
}

expect() {  # expect STATUS LAST_LINE FILES ARGUMENT...: runs in the folder out
  local status=0
  mkdir -p out
  "$tool" "${@:4}" >log 2>&1 || status=$?
  [[ $status == "$1" ]] || die "${*:4}: status $status, not $1"
  [[ $2 == '*' || "$(tail -n 1 log)" == "$2" ]] ||
    die "${*:4}: ends with $(tail -n 1 log)"
  [[ $(cd out && echo ./*) == "$3" ]] || die "${*:4}: made $(cd out && echo ./*)"
  rm -r out
}

# The folder isn't there, or the disk is full from the first byte on.
unaligned='Error: preload size not aligned to page size'
pair=$sample/keys/test-key-pair.key
for output in out/none/x /dev/full; do
  expect 0 Finished './*' asm in/parts "$output"
  expect 0 '*' './*' make_hex in/flash.img "$output" 64
  expect 0 '*' './*' write_c in/flash.img "$output"
  expect 0 '*' './*' sign debug "$pair" in/firmware.man "$output"
done
expect 0 Finished './*' build_img in/script in/ out/none/x
expect 0 '*' './*' split in/flash.img out/none/a out/none/b
expect 0 '*' './*' buildrom "$sample/definitions/rom.def" "$work/out/" \
  ../lists/rom.elfs none/x
for generation in 1.5:251 1.8:251 2.5:251 3.0:0; do
  last='*'
  [[ ${generation#*:} == 0 ]] || last=$unaligned
  # shellcheck disable=SC2046
  expect "${generation#*:}" "$last" './*' \
    $(build "${generation%:*}" out/ none/x)
done

# The outputs of a build are there before its definitions are read.
# shellcheck disable=SC2046
expect 251 "Error: Failed to open image defs file : $sample/definitions/gen_4.def" \
  './firmware.bin ./firmware.man ./firmware.man.ext' $(build 4 out/ firmware)

# Of the four outputs of split, the texts come first: the second one is there
# while the opening of the first binary waits for a reader.
mkdir out
mkfifo out/a.bin
"$tool" split in/flash.img out/a out/b >log &
pid=$!
for _ in {1..100}; do
  [[ ! -e out/b.hex ]] || break
  sleep 0.1
done
[[ -e out/b.hex ]] || {
  kill "$pid"
  die 'split opens the first binary ahead of the second text'
}
cat out/a.bin >read_from_pipe
wait "$pid"
[[ $(stat -c %s read_from_pipe) == $(stat -c %s out/b.bin) ]] ||
  die "the banks differ in length"
rm -r out read_from_pipe

# The disk is full in the middle: what was written stays, and stays right.
(
  ulimit -f 32
  expect_kept() {  # expect_kept FILE WHOLE: 32 blocks of 1024 bytes
    [[ $(stat -c %s "$1") == 32768 ]] || die "$1 has $(stat -c %s "$1") bytes"
    cmp "$1" <(head -c 32768 "$2")
    rm "$1"
  }
  "$tool" asm in/parts x >log
  expect_kept x <(cat in/package.bin in/flash.img)
  "$tool" write_c in/flash.img x >log
  [[ $(stat -c %s x) == 32768 ]] || die 'the array is not cut'
  rm x
  status=0
  mkdir out
  # shellcheck disable=SC2046
  "$tool" $(build 1.8 out/ firmware) >log || status=$?
  [[ $status:$(tail -n 1 log) == "251:$unaligned" ]] || die 'a cut image passes'
  rm -r out
)
status=0
"$tool" build_img in/far '' x >log || status=$?
[[ $status == 251 ]] || die "an offset of 8 EiB ends with $status"
grep -qx 'Error: Offset out of range: 9223372036854710272' log
rm x

# A binary of 2 GiB and more, mostly a hole: the hash takes it as one message.
# shellcheck disable=SC2046
expect 251 'Error: ZelError zelsSHA256Update failed 0xfffffff1 (-15)' \
  './firmware.bin ./firmware.man ./firmware.man.ext' \
  $(build 1.8 out/ firmware 1879048192)

# The binary goes to the disk ahead of the manifest, which is seen where both
# have one name: of an image so small that nothing of it went there earlier, the
# manifest's first words, 6 and 161, are what stays. The configurations leave
# the manifest less padding than would be written at once.
mkdir out
head -c 3840 "$tool" >small.elf
echo 'Idx Name Size VMA LMA File off Algn' >small.sections
for address in 1000 1300 1600 1900 1c00; do
  echo "0 .$address 300 $address $address 0 2**2"
  echo 'CONTENTS, ALLOC, LOAD, READONLY, CODE'
done >>small.sections
printf '%s\n' 'binary_ver 1.5' 'module small' 'mod_cfg 1'{01..72} 'group text' \
  'section ep .1000' 'section .1'{300,600,900,c00} >small.def
: >small.symbols
: >small.keys
printf '%s\n' "$work"/small.{elf,sections,symbols} >small.elfs
"$tool" build 0 0 0 1 2 3 4 0 small.def small.symbols small.keys "$work/out/" \
  ../small.elfs fw.bin fw >log || die "a small image: $(tail -n 1 log)"
[[ $(head -c 8 out/fw.bin | od -An -tx1) == ' 06 00 00 00 a1 00 00 00' ]] ||
  die 'the binary was written behind the manifest'
rm -r out small.*

# An input without a length, and a folder.
expect 251 'Error: Cannot tell the length of file: /dev/stdin' ./x \
  asm in/stdin.pkg out/x < <(:)
expect 251 "Error: Failed to open file: $work" ./x asm in/folder.pkg out/x

# A manifest and a key out of pipes sign as the files do.
"$tool" sign debug <(cat "$pair") <(cat in/firmware.man) piped >log
cmp piped in/firmware.man.signed
"$tool" verify <(cat piped) >log
rm piped

# A log whose reader has left, or that is closed, is lost alone: none of it goes
# into an output file.
unread() {  # unread: builds, whatever its standard output is
  mkdir out
  # shellcheck disable=SC2046
  "$tool" -v $(build 1.8 out/ firmware) || die "without a reader: status $?"
  sha256sum out/* >made
  rm -r out
}
unread >log
mv made made_before
unread | :
cmp made made_before
unread >&-
cmp made made_before
unread <&- >&- 2>&-
cmp made made_before

# A reader that waits for the tool's output stops it in the middle of a copy:
# 64 KiB fill the pipe.
copy_into_pipe() {  # sets pid; the output is file 3
  rm -f pipe
  mkfifo pipe
  env --default-signal=INT "$tool" asm in/large.pkg pipe >log &
  pid=$!
  exec 3<pipe
  head -c 4096 <&3 >first_bytes
  cmp first_bytes <(head -c 4096 /dev/zero)
}
copy_into_pipe
truncate -s 8192 in/large
copied=$(($(wc -c <&3) + 4096))
wait "$pid" || die "an input that shrinks ends with $?"
[[ $copied -ge 8192 && $copied -lt 4194304 ]] || die "$copied bytes copied"
truncate -s 4M in/large
copy_into_pipe
truncate -s 5M in/large
[[ $(($(wc -c <&3) + 4096)) == 4194304 ]] || die 'more copied than was told'
wait "$pid" || die "an input that grows ends with $?"
truncate -s 4M in/large

# Ctrl-C in the middle of a copy, and while the definitions are read.
copy_into_pipe
kill -INT "$pid"
status=0
wait "$pid" || status=$?
[[ $status == 130 ]] || die "interrupted: $status"
exec 3<&-
rm pipe
mkfifo definitions
mkdir out
env --default-signal=INT "$tool" buildrom definitions "$work/out/" \
  ../lists/rom.elfs rom >log &
pid=$!
exec 4>definitions
kill -INT "$pid"
status=0
wait "$pid" || status=$?
[[ $status == 130 ]] || die "interrupted: $status"
[[ $(echo out/*) == 'out/*' ]] || die "made $(echo out/*)"

inputs | cmp - inputs_before
# Dependency files stand beside the ELF lists.
[[ $(cd lists && echo *) == 'firmware.d firmware.elfs rom.d rom.elfs' ]] ||
  die "beside the ELF lists: $(echo lists/*)"
echo 'The faults hold'
