#!/usr/bin/env bash
# outside_signing_test.sh BUILDER COMPANION
# Keys and signatures that openssl makes, taken by tova_fw and compared with
# what tova_fw_builder makes of them; and what is refused.
# shellcheck source=tests/end_to_end/companion_run.sh
source "$(dirname "$0")/companion_run.sh"
trap 'echo "FAILED in line $LINENO" >&2' ERR
cd "$work"
umask 022

bytes() {  # bytes HEX: as raw bytes
  # shellcheck disable=SC2001,SC2059
  printf "$(sed 's/../\\x&/g' <<<"$1")"
}
mode() { stat -c %a "$1"; }
hash_of() {  # hash_of FORM KEY: as the builder prints it
  "$builder" hash_key "$1" "$2" | grep -o '0x..' | cut -c 3- | tr -d '\n'
}
# refused REASON COMMAND...: the command ends with 2, says why in one line, and
# leaves the file `out` as it was. It has no terminal to ask on.
refused() {
  local reason=$1 status=0
  shift
  echo old >out
  setsid -w "$tool" "$@" -o out </dev/null >log 2>&1 || status=$?
  [[ $status == 2 && $(wc -l <log) == 1 && $(<log) == "tova_fw: "*"$reason"* ]] ||
    die "$*: status $status, $(<log)"
  [[ $(<out) == old && $(echo out.*) == 'out.*' ]] || die "$*: has written"
}

# A manifest as a build with a symbol table leaves it: zeros stand behind the
# 4096 bytes that its `size` counts.
manifest=$work/firmware.man
{
  # 6, 161, 0x10000, 0, 0x7a5c, the date, 1024, 64, 64, 1
  bytes 06000000a100000000000100000000005c7a00002111262000040000
  bytes 400000004000000001000000
  head -c 604 /dev/zero
  seq -w 1 800
} >"$manifest"
truncate -s 4173 "$manifest"

# A fresh key in every form is one key file.
openssl genrsa -out key.pem 2048 2>/dev/null
openssl pkey -in key.pem -pubout -out public.pem
openssl pkey -in key.pem -pubout -outform DER -out public.der
openssl rsa -in key.pem -RSAPublicKey_out -out public1.pem 2>/dev/null
openssl pkey -in key.pem -outform DER -out key8.der
openssl rsa -in key.pem -traditional -out key1.pem 2>/dev/null
openssl rsa -in key.pem -traditional -outform DER -out key1.der 2>/dev/null
printf 'open sesame\nand more' >passphrase
printf wrong >wrong
from=(-in key.pem -passout "file:passphrase")
openssl pkcs8 -topk8 "${from[@]}" -out locked8.pem
openssl pkcs8 -topk8 "${from[@]}" -outform DER -out locked8.der
openssl rsa -traditional -aes128 "${from[@]}" -out locked1.pem 2>/dev/null
"$tool" key import key.pem -o key.key
"$tool" key import public.pem --public -o public.key
for form in key1.pem key1.der key8.der locked8.pem locked8.der locked1.pem; do
  "$tool" key import "$form" --passphrase-file passphrase -o again.key
  cmp key.key again.key
done
for form in public.der public1.pem key.pem key.key; do
  "$tool" key import "$form" --public -o again.key
  cmp public.key again.key
done
# The script of the sample makes key files from openssl's numbers by itself.
"$tool" key export "$keys/test-key-pair.key" -o sample.pem
"$tool" key import sample.pem -o sample.key
cmp sample.key "$keys/test-key-pair.key"
openssl pkey -in sample.pem -check -noout >/dev/null
"$tool" key export "$keys/test-key-pair.key" --public -o sample.public
cmp sample.public "$keys/test-key-public.pem"
[[ $(mode key.key) == 600 && $(mode sample.pem) == 600 ]] || die 'private modes'
[[ $(mode public.key) == 644 ]] || die 'public mode'
# An exponent of one byte has a form of its own.
openssl genrsa -3 -out three.pem 2048 2>/dev/null
"$tool" key import three.pem -o three.key
[[ $(stat -c %s three.key) == 1581 ]] || die 'length with one byte'
"$tool" key export three.key -o back.pem
cmp back.pem <(openssl pkey -in three.pem)

# What show says, and the halves of different keys.
hash=$(hash_of pair key.key)
"$tool" key show --json key.key locked1.pem public.der three.pem \
  --passphrase-file passphrase >shown.json
[[ $(jq -c '.files[] | [.format, .bits, .exponent, .halves_match, .sample_key]' \
  shown.json | paste -s -d ' ') == \
  '["key-pair",2048,65537,true,false] ["key-pair",2048,65537,true,false]'\
' ["public-key",2048,65537,null,false] ["key-pair",2048,3,true,false]' ]] ||
  die "$(<shown.json)"
[[ $(jq -r '.files[].public_key_hash' shown.json | paste -s -d ' ') == \
  "$hash $hash $hash $(hash_of pair three.key)" ]] || die 'hashes'
[[ $(jq -r '.files[1].modulus' shown.json) == \
  "$(openssl rsa -in key.pem -noout -modulus | cut -d = -f 2 | tr A-F a-f)" ]]
{
  head -c 319 "$keys/test-key-pair.key"
  tail -c +320 key.key
} >mixed.key
"$tool" key show "$keys/test-key-public.pem" | grep 'Never trust it' >/dev/null
status=0
"$tool" key show mixed.key >log || status=$?
[[ $status == 1 ]] && grep -q "DON'T belong together" log

# Keys that are refused. In the damaged ones the public exponent, d or the
# coefficient is another.
make() {  # make FILE ALGORITHM [OPTION...]
  openssl genpkey -algorithm "$2" -out "$1" "${@:3}" 2>/dev/null
}
damaged() {  # damaged OFFSET BYTES
  cp key.key damaged.key
  head -c "$2" /dev/zero | tr '\0' U |
    dd of=damaged.key bs=1 seek="$1" conv=notrunc status=none
}
make ec.pem EC -pkeyopt ec_paramgen_curve:P-256
make ed.pem ED25519
make pss.pem RSA-PSS -pkeyopt rsa_keygen_bits:2048
make 1024.pem RSA -pkeyopt rsa_keygen_bits:1024
make 3072.pem RSA -pkeyopt rsa_keygen_bits:3072
make 65539.pem RSA -pkeyopt rsa_keygen_pubexp:65539
make primes.pem RSA -pkeyopt rsa_keygen_primes:3
openssl req -x509 -key key.pem -subj /CN=x -out certificate.pem
head -c 900 key.pem >cut.pem
head -c 1000 key.key >cut.key
head -c 70000 /dev/zero >long
while IFS='|' read -r file reason; do
  # shellcheck disable=SC2086 # options stand behind some of the files
  refused "$reason" key import $file
done <<'TABLE'
ec.pem|a key for EC
ed.pem|a key for ED25519
pss.pem|a key for RSA-PSS
1024.pem|of 1024 bits
3072.pem|of 3072 bits
65539.pem|exponent is 65539
primes.pem|not those of an RSA key
certificate.pem|a certificate is no key
cut.pem|this PEM is damaged or cut off
cut.key|damaged or cut off
long|too long
/dev/null|no key
none.pem|cannot be read
public.pem|take that with --public
mixed.key|don't belong together
locked8.pem|there is no passphrase
locked8.pem --passphrase-file wrong|doesn't open
locked1.pem --passphrase-file wrong|doesn't open
locked8.der --passphrase-file none|cannot be read
TABLE
while IFS='|' read -r offset bytes reason; do
  damaged "$offset" "$bytes"
  refused "$reason" key export damaged.key
done <<'TABLE'
51|1|exponent is 65621
700|8|don't belong together
1500|8|not those of an RSA
TABLE

# What can't sign manifests is an answer, and one that a program can read.
status=0
"$tool" key show --json ec.pem public.pem 3072.pem >unfit.json || status=$?
[[ $status == 1 && $(jq -c '.files[] | [.format, .bits]' unfit.json |
  paste -s -d ' ') == \
  '["unfit-key",null] ["public-key",2048] ["unfit-key",null]' ]] ||
  die "$status $(<unfit.json)"
"$tool" key show ec.pem >log || true
grep -q 'with it: this is a key for EC' log

"$tool" key show --json mixed.key "$keys/test-key-pair.key" >more.json ||
  [[ $? == 1 ]]
if python3 -c 'import jsonschema' 2>/dev/null; then
  python3 -c 'import json, sys, jsonschema
schema, *shown = [json.load(open(name)) for name in sys.argv[1:]]
for document in shown: jsonschema.validate(document, schema)' \
    "$root/docs/schema/key-show.json" shown.json more.json unfit.json
fi

# A locked key is no key to trust; check has no passphrase to take.
status=0
setsid -w "$tool" check --trust locked8.pem "$manifest" </dev/null >log 2>&1 ||
  status=$?
[[ $status == 2 ]] && grep -q "locked8.pem: the key is encrypted: give its \
public half, which 'tova_fw key export --public' makes" log

# Private numbers go through a pipe, and to no terminal; nothing of them is
# left where a file has no room.
cmp key.key <("$tool" key import key.pem -o -)
for terminal in - /dev/tty; do
  status=0
  python3 -c 'import os, pty, sys
sys.exit(os.waitstatus_to_exitcode(pty.spawn(sys.argv[1:])))' \
    "$tool" key import key.pem -o $terminal </dev/null >log || status=$?
  [[ $status == 2 ]] && grep -q 'not shown on a terminal: name a file' log
  [[ $(<log) != *'(11:private-key'* ]] || die "shown on $terminal"
done
status=0
(ulimit -f 1 && exec "$tool" key import key.pem -o limited.key) 2>log ||
  status=$?
[[ $status == 2 && $(<log) == *'limited.key: cannot be written: File too large' ]]
[[ $(echo limited*) == 'limited*' ]] || die 'a part of a private key is left'

# What is to be signed, in each form; and every form of the signature gives the
# file that the builder signs.
digest=$({ head -c 128 "$manifest"; tail -c +645 "$manifest" | head -c 3452; } |
  tee message | sha256sum | cut -d ' ' -f 1)
info=3031300d060960864801650304020105000420$digest  # RFC 8017, 9.2
cmp message <("$tool" to-sign "$manifest" --release)
[[ $("$tool" to-sign "$manifest" --release --as digest --hex) == "$digest" ]]
cmp <(bytes "$info") \
  <("$tool" to-sign "$manifest" --release --as digest-info --base64 | base64 -d)
for kind in debug release; do
  "$builder" sign "$kind" key.key "$manifest" expected >/dev/null
  "$tool" to-sign "$manifest" --$kind -o message
  openssl dgst -sha256 -sign key.pem -out signature message
  od -An -v -tx1 signature >signature.hex
  base64 signature >signature.base64
  for form in '' .hex .base64; do
    rm -f out
    "$tool" attach "$manifest" --$kind --key public.pem \
      --signature "signature$form" -o out
    cmp expected out
  done
done

# Signatures that are refused; `signature` is the one for --release.
attach() {  # attach REASON SIGNATURE [KIND [KEY]]
  refused "$1" attach "$manifest" "${3:---release}" --key "${4:-public.key}" \
    --signature "$2"
}
head -c 255 signature >short
cat signature signature >twice
head -c 64 signature | base64 >short.base64
head -c 5000 /dev/zero >huge
bytes "$(od -An -v -tx1 -w1 signature | tac | tr -d ' \n')" >turned
head -c 256 /dev/zero | tr '\0' '\377' >high
openssl dgst -sha256 -sign key.pem -out other passphrase
openssl dgst -sha384 -sign key.pem -out sha384 message
openssl dgst -sha256 -sign key.pem -sigopt rsa_padding_mode:pss -out pss message
attach 'this has 255' short
attach 'this has 512' twice
attach 'this has 64' short.base64
attach 'this has more' huge
attach 'this has 0' /dev/null
attach 'wrong order' turned
attach 'but for --release' signature --debug
attach "isn't below the modulus" high
attach 'something else than this manifest' other
attach 'not by this key' sha384
attach 'not by this key' pss
attach 'not by this key' signature --release three.pem
damaged 51 1
attach 'exponent is 65621' signature --release damaged.key
attach 'cannot be read' none

# Manifests that are refused, by both commands. The words are those at 0, 4 and
# 24: kind, header_len and size.
changed() {  # changed OFFSET BYTE
  cp "$manifest" changed.man
  bytes "$2" | dd of=changed.man bs=1 seek="$1" conv=notrunc status=none
}
for case in '0 04 is no manifest' '4 a0 header_len is 160' '25 05 cut off' \
  '25 ff size of' '25 03 more than zeros' '4172 01 more than zeros'; do
  read -r offset byte reason <<<"$case"
  changed "$offset" "$byte"
  refused "$reason" to-sign changed.man --release
  refused "$reason" attach changed.man --release --key public.pem \
    --signature signature
done
head -c 643 "$manifest" >changed.man
refused 'too short' to-sign changed.man --debug
status=0
"$tool" to-sign "$manifest" 2>log || status=$?
[[ $status == 2 ]] && grep -q -- '--debug,--release' log
echo "Signatures from outside are as the builder's own"
