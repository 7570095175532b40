#!/usr/bin/env bash
# where_test.sh BUILDER TOVA_FW
# where on the sample firmware: the byte that it shows the place of is that of
# the ELF; files and addresses on the command line and in logs; troubles.
set -euo pipefail

builder=$(realpath "$1")
tool=$(realpath "$2")
root=$(realpath "$(dirname "$0")/../..")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'echo "FAILED in line $LINENO" >&2' ERR
"$root/scripts/run-sample.sh" "$builder" "$work/made" >"$work/log"
cd "$work/made"

die() {
  echo "FAILED: $1" >&2
  exit 1
}
where() {  # where STATUS ARGUMENT...: leaves the outputs in the files out, err
  local status=0
  "$tool" where "${@:2}" >out 2>err </dev/null || status=$?
  [[ $status == "$1" ]] || die "${*:2}: status $status, not $1: $(cat out err)"
}
has() {  # has FILE LINE
  grep -qFx -- "$2" "$1" || die "no line '$2' in: $(cat "$1")"
}

# First, middle and last byte of each section with contents.
python3 - "$tool" "$root/examples/audio_firmware/linked" <<'PYTHON'
import subprocess
import sys

tool, linked = sys.argv[1:]
for generation in ("1.5", "1.8", "2.5", "3.0"):
    count = 0
    for name in ("base_fw", "mixer", "reverb", "meter"):
        elf = open(f"{linked}/{name}.elf", "rb").read()
        rows = open(f"{linked}/{name}.sections").read().split("\n")
        for row, flags in zip(rows, rows[1:]):
            words = row.split()
            if not row[:3].strip().isdigit() or "LOAD" not in flags:
                continue
            size, vma, offset = (int(words[i], 16) for i in (2, 3, 5))
            for at in {0, size // 2, size - 1} if size else ():
                found = subprocess.run(
                    [tool, "where", f"gen-{generation}", "--elf-list",
                     f"gen-{generation}/firmware.elfs", hex(vma + at)],
                    capture_output=True, text=True, check=True).stdout
                line = found.rstrip("\n").split("  ")
                assert len(line) == 5, found
                assert line[2] == f"{words[1]}+{at:#x}", found
                file, place = line[4].split("@")
                byte = open(file, "rb").read()[int(place, 16)]
                # The store of keys is filled by the builder.
                if words[1] != ".rodata.key_store":
                    assert byte == elf[offset + at], found
                count += 1
    assert count > 30, count
PYTHON

# Alone, down to sections, and what isn't in a file.
where 0 gen-1.5/firmware.man.signed 10008004 0x20000010
has out '0x10008004  mixer  text+0x4  -'
has out '0x20000010  base_fw  bss+0x10  -'
where 0 --elf-list gen-1.5/firmware.elfs 0x20000010 20003000
has out '0x20000010  -  .bss.base+0x10  pipeline+0x8'
has out '0x20003000  -  .heap+0x0  heap+0x0'
where 0 gen-1.5/firmware.{man,man.signed} gen-1.5/package.bin 0x1000D000
has out '0x1000d000  reverb  rodata+0x0  gen-1.5/package.bin@0x9000'
[[ $(wc -l <out) == 1 ]] || die "a manifest and its signed form are told apart"
# A table may come through a pipe.
mkfifo pipe
sed "s:.*/base_fw.symbols:$PWD/pipe:" gen-1.5/firmware.elfs >piped.elfs
cat "$root/examples/audio_firmware/linked/base_fw.symbols" >pipe &
where 0 --elf-list piped.elfs 0x20000010
has out '0x20000010  -  .bss.base+0x10  pipeline+0x8'
rm pipe
where 1 gen-1.8/firmware.bin 0x10008004 7
has out '0x00000007  belongs to nothing'

# A file of the name of an address, and one that begins with 0x.
cp gen-1.8/firmware.bin 10008004
cp gen-1.8/firmware.bin 0x5
where 0 10008004 0x10008004
has out '0x10008004  mixer  text+0x4  10008004@0xf804'
where 1 10008004 0x5
cp 0x5 0X5
where 1 10008004 0X5
where 0 ./0x5 0x1000c000

# Logs.
printf 'pc=0x10008004 lr: [<10001010>], bad 10\n1000c000\nffff0000\n' >log
status=0
"$tool" where gen-1.8/firmware.bin 10004000 - --json <log >out || status=$?
[[ $status == 1 ]]
[[ $(jq -c '[.addresses[] | [.address, .owners[0].module]]' out) == \
  '[[268451840,"gain"],[268468228,"mixer"],[268439568,"gain"],[268484608,"reverb"],[4294901760,null]]' ]]

"$tool" where gen-1.8/firmware.bin - --json </dev/null >out 2>err && die 'no address'
[[ $(jq -c '.addresses' out) == '[]' ]]

while IFS='|' read -r arguments text; do
  # shellcheck disable=SC2086
  where 2 $arguments
  grep -qF -- "$text" err || die "$arguments: $(cat err)"
done <<'TROUBLES'
gen-1.8/firmware.bin|no address was given; - reads them
gen-1.8/firmware.bin -|the standard input holds no address
gen-1.8/firmware.bin none|none: there is no such file, and it is no
gen-1.8/firmware.bin 0x100000000|it is no hexadecimal address of 32 bits
10001000|name a manifest of 1.5 or a binary, or an --elf-list
gen-1.8/firmware.man 10001000|no file has a table of modules
--elf-list none 10001000|none: cannot be read: No such file or directory
TROUBLES
where 2 gen-1.8/firmware.bin /dev/null 0x10008004
has out '0x10008004  mixer  text+0x4  gen-1.8/firmware.bin@0xf804'
echo 'where tells what addresses belong to'
