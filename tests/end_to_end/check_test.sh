#!/usr/bin/env bash
# check_test.sh BUILDER TOVA_FW
# `tova_fw check` on the sample firmware: whole it passes, and each fault that
# is planted is seen by the checks that it belongs to, and by no others.
# shellcheck source=tests/end_to_end/companion_run.sh
source "$(dirname "$0")/companion_run.sh"
"$root/scripts/run-sample.sh" "$builder" "$work/made" >/dev/null
"$keys/make-test-key.sh" "$work/own"
cd "$work"

check() {  # check STATUS FAILED_IDS ARGUMENT...
  local status=0 failed
  "$tool" check "${@:3}" >"$work/out" 2>"$work/err" || status=$?
  failed=$(sed -n 's/^FAILED *\([a-z-]*\).*/\1/p' "$work/out" | uniq | xargs)
  [[ $status == "$1" && $failed == "$2" ]] ||
    die "${row:-} check ${*:3}: status $status, failed '$failed', not '$2': \
$(cat "$work/out" "$work/err")"
}

says() {  # says RESULT ID TEXT: one of the lines
  grep -q "^$1 *$2 .*$3" "$work/out" || die "no $1 $2 $3: $(cat "$work/out")"
}

# Where a field stands is looked up.
bytes() {  # bytes FILE OFFSET HEX: puts them there
  local text
  # shellcheck disable=SC2001 # each pair of digits
  text=$(sed 's/../\\x&/g' <<<"$3")
  # shellcheck disable=SC2059 # \x and digits
  printf "$text" | dd of="$1" bs=1 seek="$(($2))" conv=notrunc status=none
}
put() {  # put FILE FIELD HEX
  local offset
  offset=$("$tool" show --bytes "$1" |
    awk -v field="$2" '$3 == field { print $1 }')
  bytes "$1" "${offset:?no field $2}" "$3"
}
flip() {  # flip FILE OFFSET
  local old
  old=$(od -An -tu1 -j "$(($2))" -N 1 "$1")
  bytes "$1" "$2" "$(printf '%02x' $((old ^ 1)))"
}
sign() {  # sign KEY_NAME debug|release
  "$builder" sign "$2" "$1-pair.key" firmware.man firmware.man.signed >/dev/null
}

# Everything whole: as folders, as files in another order, in part, joined.
for generation in 1.5 1.8 2.5 3.0; do
  check 0 '' "made/gen-$generation"
done
cd made/gen-1.5
check 0 '' firmware.pkg firmware_*.bin firmware.man firmware.bin
says ok module-hash 'firmware.bin: 1 module, 24576 bytes'
says 'not checked' key-trusted 'give the signed one'
check 0 '' package.bin firmware.man.signed
says ok module-hash 'package.bin: 4 modules, 49152 bytes'
check 0 '' firmware.man.signed
says 'not checked' module-hash 'mixer: .*: give NAME_5A3C0004'
check 1 key-store --key-list "$keys/trusted-keys.list" firmware.man
check 0 '' --key-list "$keys/trusted-keys.list" firmware.man firmware.bin
says ok key-store 'stand at 0x3040: 1 debug key$'
# The same key for another kind of signatures, and more keys.
echo "production $keys/test-key-public.key" >"$work/kinds.list"
check 1 key-store --key-list "$work/kinds.list" firmware.man firmware.bin
says FAILED key-store 'as other kinds (1 debug key) than .* (1 production key)'
echo "debug $keys/test-key-public.key" >>"$work/kinds.list"
check 1 key-store --key-list "$work/kinds.list" firmware.man firmware.bin
says FAILED key-store '(1 debug key) than .* (1 debug key, 1 production key)'
printf '%s\n' "production $keys/test-key-public.key" \
  "debug $keys/test-key-public.key" >"$work/kinds.list"
cp firmware.bin kept
dd if=kept of=firmware.bin bs=1 skip=$((0x3044)) count=36 seek=$((0x3068)) \
  conv=notrunc status=none
bytes firmware.bin 0x3040 02
bytes firmware.bin 0x3068 00
check 1 'module-hash key-store' --key-list "$work/kinds.list" firmware.man \
  firmware.bin
says FAILED key-store 'has the keys of the list in another order$'
mv kept firmware.bin
# Beside a store of other keys, which the loader may take: 32, the most.
cp firmware.bin kept
dd if=kept of=firmware.bin bs=1 skip=$((0x3040)) count=76 seek=$((0x2f00)) \
  conv=notrunc status=none
for number in {1..31}; do
  dd if=kept of=firmware.bin bs=1 skip=$((0x3044)) count=36 \
    seek=$((0x3044 + 36 * number)) conv=notrunc status=none
done
bytes firmware.bin 0x3040 20
check 1 module-hash --key-list "$keys/trusted-keys.list" firmware.man firmware.bin
says ok key-store 'stand at 0x2f00'
says 'not checked' key-store 'at 0x3040 looks like a store of other keys (32 debug'
mv kept firmware.bin
check 0 '' --summary .
[[ $(<"$work/out") == 'firmware 1.4.0.27  generation 1.5  24576 bytes  signed '`
  `'debug 966d4e58…  all checks hold' ]] || die "$(cat "$work/out")"

# What was left unchecked is told in the summary, too, if somebody could have
# given what it needs.
check 0 '' --summary firmware.man.signed firmware.man.ext firmware.pkg
[[ $(<"$work/out") == *'signed debug 966d4e58…  no check fails; not checked: '`
  `'module-hash' ]] || die "$(cat "$work/out")"
check 0 '' --json firmware.man.signed
[[ $(jq -c .not_checked "$work/out") == \
  '["module-hash","extended-manifest","package"]' ]] || die "$(cat "$work/out")"

# What can't be read or is of no image is named, and the rest is checked.
summary_ends() {  # summary_ends TEXT
  [[ $(<"$work/out") == *"  $1" ]] || die "not $1: $(cat "$work/out")"
}
check 0 '' --summary ./*
summary_ends 'all checks hold'
check 0 '' ./*
says 'not checked' structure 'firmware.d: a dependency file'
says 'not checked' structure 'bank_b.bin: the odd words of ./flash.img'
check 2 '' --summary nothing ../logs/01-build-1.5.log "$keys/test-key-public.key" \
  firmware.man{.signed,.ext} package.bin firmware.pkg bank_a.bin
summary_ends "no check fails; 1 file can't be read; 1 file unknown; 1 key "`
  `"among the files"
check 2 '' --summary firmware.pkg firmware.man.ext
summary_ends 'no header is among the files'
mkdir ../doubtful
cp firmware* ../doubtful
head -c 5000 /dev/urandom >../doubtful/other.bin
check 0 '' --summary ../doubtful
summary_ends 'no check fails; not checked: structure of ../doubtful/other.bin'
cp ../doubtful/{,an}other.bin
check 0 '' --summary ../doubtful
summary_ends 'no check fails; not checked: structure of 2 files'
rm -r ../doubtful
# More files than the process may have open, those of the image the last.
mkdir ../many
cp firmware* ../many
for i in {10..69}; do printf 'note %s\n' "$i" >../many/"$i"; done
(
  ulimit -n 48
  check 0 '' --summary ../many
)
summary_ends 'all checks hold'
rm -r ../many
check 2 '' nothing firmware.bin.txt firmware.man.signed
says ok signature 'made with the key 966d4e58'
check 2 '' firmware.bin
check 2 '' ../rom
check 2 '' --trust firmware.bin firmware.man.signed
check 2 '' --trust deadbeef firmware.man.signed
check 2 '' --trust deadbeef --summary firmware.man.signed
[[ $(<"$work/out") == 'no image  nothing was checked' ]] || die "$(cat "$work/out")"
# A key is no part of an image; in a folder it is passed over.
check 2 '' firmware.man.signed "$keys/test-key-public.key"
grep -q 'a key is no part of an image' "$work/err" || die "$(cat "$work/err")"
# In a folder, files are passed over that have nothing to do with the image, and
# none that it can't do without.
mkdir ../some
cp firmware.man.signed package.bin flash.img "$keys/test-key-public.key" ../some
check 0 '' ../some
says 'not checked' structure 'flash.img: structures stand in it'
truncate -s 40000 ../some/package.bin
check 1 length ../some
: >../some/firmware.pkg
check 2 length ../some
cp ../gen-1.8/* ../some
rm ../some/{package.bin,flash.img,firmware.man.signed,test-key-public.key}
bytes ../some/firmware.bin 6144 00
check 2 '' ../some
cp ../gen-1.8/firmware.bin ../some
: >../some/firmware.man
check 2 '' ../some
rm -r ../some
check 2 '' --json --summary .
cd ../..

# A binary behind the part that a signer puts in front, which may begin as a
# manifest does.
mkdir signed
cp made/gen-2.5/firmware.{man,man.ext,pkg} signed
head -c 2048 made/gen-1.5/firmware.man.signed |
  cat - made/gen-2.5/firmware.bin >signed/firmware.bin
check 0 '' --release signed
says ok image-digest 'SHA-384 of .* behind the 2048 bytes of a signer'
flip signed/firmware.bin 5000
check 1 image-digest signed
rm -r signed

# Who signed: whether it is told with a key file or with a hash, and in release
# and debug form.
hash=$("$builder" hash_key pub own-public.key | grep -o '0x[0-9a-f][0-9a-f]' |
  tr -d '\n' | sed 's/0x//g')
other=$(tr '0-9a-f' '1-9a-f0' <<<"$hash")
cp -r made/gen-1.5 own
cd own
sign "$work/own" release
for trust in "$hash" "${hash^^}" "$work/own-public.key" "$work/own-pair.key"; do
  check 0 '' --release --trust "$other" --trust "$trust" .
  says ok key-trusted "$hash"
done
check 1 sample-key --trust "$hash" --key-list "$keys/trusted-keys.list" .
says FAILED sample-key 'the key list has the key of the sample'
check 1 key-trusted --trust "$other" .
check 1 'key-trusted sample-key' --trust "$keys/test-key-public.key" .
check 1 'signature key-trusted' --release --trust "$hash" firmware{.man,*.bin}
check 1 module-hash --release --trust "$hash" firmware.man.signed
check 1 key-trusted --trust "$hash" ../made/gen-1.8
sign "$work/own" debug
check 1 debug-signature --release --trust "$hash" .
check 0 '' --trust "$hash" .
sign "$keys/test-key" release
check 1 sample-key --release .
check 1 'key-trusted sample-key' --trust "$keys/test-key-public.key" .
# The modulus of a trusted key with the exponent 1: anyone can make that.
sign "$work/own" release
put firmware.man.signed exponent 01000000
check 1 'signature key-trusted' --trust "$hash" firmware.man.signed
cd ..

# A fault a row: GENERATION | FAILED_IDS | COMMAND, in a folder with the files
# of the build, the manifest of 1.5 unsigned or, in a row that speaks of it,
# signed.
while IFS='|' read -r generation failed command; do
  row="$command:"
  rm -rf fault
  mkdir fault
  cp "made/gen-$generation"/firmware{,_*}.{bin,man,man.ext,pkg} fault \
    2>/dev/null || true
  [[ $command != *signed* ]] || cp made/gen-1.5/firmware.man.signed fault
  (cd fault && eval "$command")
  read -ra ids <<<"$failed"
  check 1 "${ids[*]}" --key-list "$keys/trusted-keys.list" fault
done <<'TABLE'
1.5|structure|put firmware.man css.reserved 01
1.8|structure image-digest|bytes firmware.bin 100 01
1.8|structure image-digest|put firmware.bin modules[0].struct_id 00
1.5|length module-hash|truncate -s -4096 firmware.bin
1.5|length|truncate -s +4096 firmware.bin
1.5|length module-hash|truncate -s -1 firmware_*04*.bin
1.5|structure length|truncate -s -1 firmware.man
1.5|structure length|truncate -s +1 firmware.man.signed
1.8|structure length module-hash image-digest image-length|truncate -s -4096 firmware.bin
2.5|structure length image-digest image-length|truncate -s +4096 firmware.bin
2.5|structure length|truncate -s +1 firmware.man
1.8|structure length|truncate -s +1 firmware.man.ext
3.0|length|truncate -s 73728 firmware.bin
3.0|length|truncate -s -4096 firmware.bin
3.0|length|truncate -s -8192 firmware.bin
3.0|length|truncate -s +4096 firmware.bin
3.0|length pages|truncate -s -1 firmware.bin
1.5|structure signed-part|put firmware.man css.header_len 00040000
1.5|structure length signed-part|put firmware.man css.size a2000000
1.5|pages|put firmware.man modules[0].segments[0].vma 10
1.8|pages image-digest|put firmware.bin modules[3].segments[2].vma 01
1.8|segments-apart image-digest|put firmware.bin modules[3].segments[0].len 02
1.5|segments-apart|put firmware.man modules[0].segments[1].file_off 00100000
3.0|structure segments-apart|put firmware.bin symbol_table.names_length 00800000
1.5|symbol-names|put firmware.man symbols[0].address 00000020
1.8|symbol-names image-digest|put firmware.bin symbols[1].name 66775f7265676973746572
1.5|structure symbols-kept signature|put firmware.man.signed symbol_table.names_length 00100000
1.5|uuids extended-manifest|put firmware.man modules[1].uuid 00000000000000000000000000000000
1.8|uuids image-digest extended-manifest|put firmware.bin modules[2].uuid 02003c5a1e7b524c9d401f2e3d4c5b02
1.5|module-hash|flip firmware.man 0x2d8
1.5|module-hash|put firmware.man modules[1].hash 01
1.8|image-digest|put firmware.man digest 00
2.5|image-digest|put firmware.man digest 00
2.5|image-length|put firmware.man limit_offset 01
1.8|extended-manifest|put firmware.man.ext modules[5].uuid 00
1.5|structure length extended-manifest|head -c 272 firmware.man.ext >x; bytes x 12 05; mv x firmware.man.ext
1.8|package|sed -i 's/^ver 1.4/ver 1.5/' firmware.pkg
1.5|package|sed -i 's/^bld 2/bld 1/' firmware.pkg
2.5|package|sed -i 's/^flg 0x1/flg 0x3/' firmware.pkg
3.0|package|sed -i 's/^sku 0xff/sku 0xfe/' firmware.pkg
1.8|package|sed -i 's/^mft 4/mft 6/' firmware.pkg
1.5|package|sed -i 's/^cfg { base_fw/cfg { base/' firmware.pkg
3.0|package|sed -i 's/^cfg { base_fw/cfg {/' firmware.pkg
1.5|package|sed -i '13s/ver[.] [0-9]*/ver. 99/' firmware.pkg
2.5|package|sed -i 's|/firmware.bin|/other.bin|' firmware.pkg
1.5|package|sed -i '12{h;d};13G' firmware.pkg
1.5|package|sed -i 's/5B04.bin/5B14.bin/' firmware.pkg
1.5|package|sed -i /5B05.bin/d firmware.pkg
1.5|structure package|put firmware.man header.build_ver 1c # the signed one is of another build
3.0|structure|put firmware.bin modules[0].hash 01
1.5|package|sed -i 's|/[^ ]*/||' firmware.pkg; rm firmware_*06*.bin
1.5|signature|flip firmware.man.signed 0x200
1.5|structure signature|flip firmware.man.signed 0xf00
1.5|module-hash key-store|flip firmware.bin 0x3050
TABLE
unset row

# A flipped byte in the contents of each module, first and last.
while IFS=: read -r generation name offset; do
  row="$generation $name $offset:"
  # shellcheck disable=SC2206 # a pattern
  file=(made/gen-$generation/$name)
  flip "${file[0]}" "$offset"
  check 1 "module-hash$([[ $generation == 1.5 ]] || echo ' image-digest')" \
    "made/gen-$generation"/firmware{.man,*.bin}
  flip "${file[0]}" "$offset"
done <<'PLACES'
1.5:firmware.bin:0
1.5:firmware.bin:24575
1.5:firmware_*04.bin:0
1.5:firmware_*04.bin:8191
1.5:firmware_*05.bin:4096
1.5:firmware_*06.bin:4095
1.8:firmware.bin:30720
1.8:firmware.bin:55295
1.8:firmware.bin:63488
1.8:firmware.bin:104447
PLACES
