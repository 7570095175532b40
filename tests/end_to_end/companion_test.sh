#!/usr/bin/env bash
# companion_test.sh BUILDER TOVA_FW
# The companion on the sample firmware: what it prints, where, and its status.
# shellcheck source=tests/end_to_end/companion_run.sh
source "$(dirname "$0")/companion_run.sh"
"$root/scripts/run-sample.sh" "$builder" "$work/made" >/dev/null
cd "$work/made"

run() {  # run STATUS ARGUMENT...: leaves the outputs in the files out and err
  local status=0
  "$tool" "${@:2}" >../out 2>../err || status=$?
  [[ $status == "$1" ]] || die "${*:2}: status $status, not $1: $(cat ../err)"
}

has() {  # has FILE TEXT: one of the lines, blanks squeezed
  grep -qFx -- "$2" <(tr -s ' ' <"../$1") || die "no line '$2' in: $(cat "../$1")"
}

# The sample's files are known by their content, and nothing is wrong in them.
known=(gen-*/firmware.{man,man.ext,pkg} gen-1.5/firmware{.man.signed,*.bin}
  gen-{1.8,2.5,3.0}/firmware.bin gen-1.5/{flash.img,package.bin} "$keys"/*.key)
run 0 show "${known[@]}"
if grep -q problems ../out || [[ -s ../err ]]; then
  die "the sample has problems: $(cat ../out ../err)"
fi
run 0 show gen-1.8/firmware.bin
has out ' header_offset 0x1800 the signer puts 2048 bytes in front'
has out ' mixer 5a3c0004-7b1e-4c52-9d40-1f2e3d4c5b04 loadable 1 1 1 0x10008000 1'
run 0 show gen-1.5/firmware.man.signed
hash=$("$builder" hash_key pub "$keys/test-key-public.key" |
  grep -o '0x[0-9a-f][0-9a-f]' | tr -d '\n' | sed 's/0x//g')
has out " public_key_hash $hash"
run 0 show --script "$root/examples/audio_firmware/flash.script" \
  gen-1.5/flash.img
has out ' 19 bin 0x1000 4096 firmware.man.signed, in the partition table'

# The others of a call are shown, too; no form shows what isn't there.
run 2 show nothing gen-1.8/firmware.d gen-1.8/firmware.man . /dev/full
has out 'gen-1.8/firmware.man: manifest of generation 1.8, 96 bytes'
for file in nothing gen-1.8/firmware.d . /dev/full; do
  grep -q "^tova_fw: $file: " ../err || die "no word about $file"
done
head -c 700 gen-1.5/firmware.man >../cut
run 0 show ../cut
has out ' at 0x2b8: only 0 of 6 module entries can be shown'
# A pipe has no places to go to.
"$tool" show <(cat gen-3.0/firmware.bin) | grep 'generation 3.0' >/dev/null ||
  die "a pipe isn't read"
# A big file is read in pieces: there is no memory for all of it. A build with
# sanitizers can't run with so little.
truncate -s 256M gen-3.0/firmware.bin
limited() { (ulimit -v 100000 && "$tool" "$@"); }
if limited --version >../out 2>&1; then
  limited show --json gen-3.0/firmware.bin >../out || die "no memory for 256 MiB"
fi
rm gen-3.0/firmware.bin

# Wrong words, and outputs that can't be written.
run 2 show --as nothing gen-1.8/firmware.man
has err "Try 'tova_fw show --help'."
run 2 show
run 2 nothing
run 2
status=0
"$tool" show gen-1.8/firmware.man >/dev/full 2>../err || status=$?
[[ $status == 2 ]] || die "status $status on a full disk"
has err 'tova_fw: standard output: cannot be written'
status=0
"$tool" show gen-1.8/firmware.man >&- 2>../err || status=$?
[[ $status == 2 ]] || die "status $status with a closed standard output"
status=0
python3 -c 'import os, subprocess, sys
read, write = os.pipe()
os.close(read)
sys.exit(subprocess.run(sys.argv[1:], stdout=write).returncode)' \
  "$tool" show gen-1.8/firmware.man 2>../err || status=$?
[[ $status == 2 && ! -s ../err ]] || die "a reader that went: $(<../err)"
run 0 --version
run 0 show --help
has out 'Example: tova_fw show --long firmware.bin firmware.man'

# Colour for whom it is meant.
run 0 show gen-1.8/firmware.man
! grep -q $'\033' ../out || die "colour in a file"
run 0 show --color=always gen-1.8/firmware.man
grep -q $'\033' ../out || die "no colour"
