#!/usr/bin/env bash
# sample_chain_test.sh TOOL
# Runs the sample firmware through every command and checks facts that are
# known without the tool: from the sections of the linked ELFs, the nm lists,
# coreutils and openssl.
set -euo pipefail

tool=$(realpath "$1")
root=$(realpath "$(dirname "$0")/../..")
sample=$root/examples/audio_firmware
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$root/scripts/run-sample.sh" "$tool" "$work" >"$work/steps"

die() {
  echo "FAILED: $1" >&2
  exit 1
}
trap 'echo "FAILED in line $LINENO" >&2' ERR
same() {  # same WHAT EXPECTED FOUND
  [[ $2 == "$3" ]] || die "$1: expected $2, found $3"
}
size_of() { stat -c %s "$1"; }
u32() { od -An -tu4 -j "$2" -N 4 --endian=little "$1" | tr -d ' '; }
piece() {  # piece FILE OFFSET LENGTH
  dd if="$1" bs=64K iflag=skip_bytes,count_bytes skip="$2" count="$3" status=none
}
hex() { od -An -v -tx1 | tr -d ' \n'; }
sha256() { sha256sum | cut -d ' ' -f 1; }
bytes() {  # bytes HEX: as raw bytes
  # shellcheck disable=SC2001,SC2059
  printf "$(sed 's/../\\x&/g' <<<"$1")"
}
reversed() { fold -w 2 | tac | tr -d '\n'; }  # hex text, by bytes

# The image's contents as the linker laid them out: each section with bytes at
# its load address above the first one.
base=$((0x10000000))
expected=$work/expected
truncate -s $((0x12000)) "$expected"
for elf in base_fw mixer reverb meter; do
  while read -r _ _ size _ lma offset _; do
    dd if="$sample/linked/$elf.elf" of="$expected" bs=1 conv=notrunc \
      status=none skip=$((16#$offset)) count=$((16#$size)) \
      seek=$((16#$lma - base))
  done < <(grep -B 1 'CONTENTS, ALLOC, LOAD' "$sample/linked/$elf.sections" |
    grep '2\*\*')
done

# The ROM holds the base firmware as it was linked.
cmp "$work/rom/rom.bin" <(piece "$expected" 0 $((0x6000)))

# The store of trusted keys: one debug key (type 1). Its hash is that of the
# modulus, least significant byte first, and four bytes of exponent.
modulus=$(openssl rsa -pubin -in "$sample/keys/test-key-public.pem" \
  -noout -modulus | sed 's/Modulus=//' | reversed | tr A-F a-f)
key_hash=$(bytes "${modulus}01000100" | sha256)
key_store=$(awk '$2 == ".rodata.key_store" {print $5}' \
  "$sample/linked/base_fw.sections")
bytes "0100000001000000$key_hash" |
  dd of="$expected" bs=1 conv=notrunc status=none \
    seek=$((16#$key_store - base))

# Contents of all generations. In 1.5 each addon stands in a file of its own.
uuid=5A3C000%d-7B1E-4C52-9D40-1F2E3D4C5B0%d
cmp "$work/gen-1.5/firmware.bin" <(piece "$expected" 0 $((0x6000)))
for addon in 4:8000 5:c000 6:10000; do
  number=${addon%%:*}
  # shellcheck disable=SC2059
  file=$work/gen-1.5/firmware_$(printf "$uuid" "$number" "$number").bin
  cmp "$file" <(piece "$expected" $((16#${addon#*:})) 8192)
done
for case in 1.8:30720 2.5:30720 3.0:32768; do
  binary=$work/gen-${case%:*}/firmware.bin
  cmp "$expected" <(tail -c "+$((${case#*:} + 1))" "$binary")
done

# Headers: where they stand, and in the later generations the hash of each
# module's pages and the place of its first segment.
check_header() {  # check_header FILE OFFSET PAGES
  same "$1: mark" "\$TM1" "$(piece "$1" "$2" 4)"
  same "$1: name" TOVADEMO "$(piece "$1" $(($2 + 8)) 8)"
  same "$1: pages" "$3" "$(u32 "$1" $(($2 + 16)))"
  same "$1: modules" 6 "$(u32 "$1" $(($2 + 36)))"
}
check_header "$work/gen-1.5/firmware.man" 644 $(((4096 + 0x6000) / 4096))
check_header "$work/gen-1.8/firmware.bin" 6144 $(((32768 + 0x12000) / 4096))
check_header "$work/gen-2.5/firmware.bin" 6144 $(((32768 + 0x12000) / 4096))
check_header "$work/gen-3.0/firmware.bin" 0 8
for generation in 1.8 2.5; do
  binary=$work/gen-$generation/firmware.bin
  for module in 0:0:6000 3:8000:2000 4:c000:2000 5:10000:2000; do
    IFS=: read -r index start length <<<"$module"
    entry=$((6144 + 52 + 116 * index))
    pages=$(piece "$expected" $((16#$start)) $((16#$length)) | sha256)
    same "hash of module $index" "$pages" \
      "$(piece "$binary" $((entry + 32)) 32 | hex)"
    same "place of module $index" $((32768 + 16#$start)) \
      "$(u32 "$binary" $((entry + 88)))"
  done
done

# Metadata: the digest of the binary, and where the image ends.
for case in '1.8 sha256sum 32' '2.5 sha384sum 48'; do
  read -r generation sum length <<<"$case"
  binary=$work/gen-$generation/firmware.bin
  manifest=$work/gen-$generation/firmware.man
  same "$generation: digest" "$($sum "$binary" | cut -d ' ' -f 1)" \
    "$(piece "$manifest" 40 "$length" | hex)"
  same "$generation: limit" $(($(size_of "$binary") + 8192)) \
    "$(u32 "$manifest" $((40 + length + 4)))"
  grep -qx 'mft 4' "$work/gen-$generation/firmware.pkg"
done
same "3.0: manifest" 0 "$(size_of "$work/gen-3.0/firmware.man")"
grep -qx 'mft 4' "$work/gen-3.0/firmware.pkg"

# Exports: the symbol table stands behind 6 module and 4 configuration entries
# and has three records in name order.
table=$((644 + 52 + 6 * 116 + 4 * 44))
manifest=$work/gen-1.5/firmware.man
same "exports" 3 "$(u32 "$manifest" $table)"
record=$((table + 4))
for symbol in fw_alloc fw_multiply fw_register; do
  address=$(awk -v "name=$symbol" '$3 == name {print $1}' \
    "$sample/linked/base_fw.symbols")
  same "address of $symbol" $((16#$address)) "$(u32 "$manifest" $((record + 8)))"
  ((record += 12))
done

# The signature, by openssl: it covers the first 128 bytes and all behind the
# 644 bytes of header, key and signature.
signed=$work/gen-1.5/firmware.man.signed
same "signed manifest" 4096 "$(size_of "$signed")"
bytes "$(piece "$signed" 388 256 | hex | reversed)" >"$work/signature"
{
  piece "$signed" 0 128
  tail -c +645 "$signed"
} >"$work/signed_parts"
openssl dgst -sha256 -verify "$sample/keys/test-key-public.pem" \
  -signature "$work/signature" "$work/signed_parts" >/dev/null ||
  die "openssl refuses the signature"
same "key in the manifest" "${modulus}01000100" \
  "$(piece "$signed" 128 260 | hex)"
grep -q 'Manifest hash OK' "$work"/logs/*-verify.log
printed_hash=$(grep -o '0x..' "$work"/logs/*-hash-key.log | cut -c 3- | tr -d '\n')
same "hash of the key" "$key_hash" "$printed_hash"

# The package, and the flash image made of it.
cd "$work/gen-1.5"
cat firmware.bin firmware_*-1F2E3D4C5B04.bin firmware_*-1F2E3D4C5B05.bin \
  firmware_*-1F2E3D4C5B06.bin | cmp - package.bin
same "parts" "2 $((0x1000)) $((0x4000))" \
  "$(u32 flash.img 0) $(u32 flash.img 4) $(u32 flash.img 8)"
same "heading" 5456464c01000000010004000104001b \
  "$(piece flash.img 128 16 | hex)"
same "size" "$(size_of package.bin)" "$(u32 flash.img 256)"
same "digest" "$(sha256 <package.bin)" "$(piece flash.img 260 32 | hex)"
cmp firmware.man.signed <(piece flash.img $((0x1000)) 4096)
cmp package.bin <(tail -c "+$((0x4001))" flash.img)

# The package descriptor tells the day and type of the manifest.
same "manifest" "bld $(printf %x "$(u32 firmware.man 20)") mft 6" \
  "$(sed -n 4,5p firmware.pkg | paste -s -d ' ')"

# Memory files: od prints the same words.
words() { od -An -v -tx8 -w8 --endian=little "$1" | tr -d ' ' | tr a-f A-F; }
cmp bank_a.hex <(words flash.img | sed -n 'p;n')
cmp bank_b.hex <(words flash.img | sed -n 'n;p')
cmp bank_a.hex <(words bank_a.bin)
cmp bank_b.hex <(words bank_b.bin)
cmp flash.hex <(words flash.img | paste - - | awk '{print $2 $1}')

# The memory description of sram: from its base, where zeroed data begins, to
# the end of the last page of the meter's.
same "sram" '<size>0x11000</size> <offset>0x11000</offset>' \
  "$(grep -A 2 'name="sram"' firmware.xml | tail -n 2 | paste -s -d ' ')"

# Fifteen parameters that differ, each in its place: 20 bytes of the header from
# the flags to the number of modules, the metadata, the package descriptor, the
# contents with the keys, the files. Without the ELF of the optional module the
# image is built without it.
mkdir "$work/no_meter"
cd "$work/no_meter"
head -n 9 ../gen-1.8/firmware.elfs >parts.elfs
"$tool" build 1a2b3c4d 5e6f7081 92a3b4c5 1001 2002 3003 4004 1234 \
  "$sample/definitions/gen_1.8.def" "$sample/src/audio_config.h" \
  "$sample/keys/trusted-keys.list" "$PWD/" parts.elfs frame.man image >log
grep -q 'Warning: Erasing unreferenced module meter' log
same "words of the header" 4d3c2b1a81706f5ee903d207bb0ba40f05000000 \
  "$(piece image.bin $((8192 - 1234 + 20)) 20 | hex)"
same "IMR type" $((0x92a3b4c5)) "$(u32 frame.man 8)"
same "descriptor" \
  'ver 1001.2002.3003.4004 bld 0 mft 4 flg 0x1a2b3c4d sku 0x5e6f7081' \
  "$(sed -n 3,7p image.pkg | paste -s -d ' ')"
cmp <(piece "$expected" 0 $((0xe000))) \
  <(tail -c "+$((32768 - 1234 + 1))" image.bin)
same "files" \
  'frame.man frame.man.ext image.bin image.pkg image.xml log parts.d parts.elfs' \
  "$(echo *)"
echo "The sample chain holds"
