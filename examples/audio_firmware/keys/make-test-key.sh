#!/usr/bin/env bash
# make-test-key.sh NAME
# Makes a new RSA-2048 key with openssl and writes it in the forms that the
# tool reads and openssl reads:
#
#   NAME-pair.key    public and private part, for `sign`
#   NAME-public.key  public part, for key lists and `hash_key`
#   NAME-public.pem  public part, for openssl
#
# The private part stands in its file unprotected, readable to its owner: for
# tests alone.
set -euo pipefail

fail() {
  echo "make-test-key.sh: $1" >&2
  exit 1
}
[[ $# == 1 && -n $1 ]] ||
  fail 'say what the files are to be called: make-test-key.sh NAME'
name=$1
command -v openssl >/dev/null ||
  fail 'openssl is missing. Install it: on Debian, apt-get install openssl'
[[ -d $(dirname "$name") ]] || fail "there is no folder $(dirname "$name")"

public_umask=$(umask)
umask 077
# An old file would keep its mode.
rm -f "$name-pair.key"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
pem=$work/pem
# What openssl says goes to the terminal only when it fails.
quietly() {
  "$@" 2>"$work/errors" || {
    cat "$work/errors" >&2
    fail "this failed: $*"
  }
}
quietly openssl genrsa -traditional -out "$pem" 2048
quietly openssl rsa -in "$pem" -pubout -out "$work/public"

# tova_fw does the rest where it is installed, and built with OpenSSL.
if tova_fw key import "$pem" -o "$name-pair.key" 2>/dev/null; then
  umask "$public_umask"
  quietly tova_fw key import "$pem" --public -o "$name-public.key"
  cat "$work/public" >"$name-public.pem"
  exit
fi

# Modulus, exponent, d, p, q and the three numbers that speed up the private
# operation, in this order, most significant byte first.
mapfile -t numbers < <(
  openssl asn1parse -in "$pem" | sed -n 's/.*INTEGER *:\(.*\)/\1/p' | tail -n +2)

number() {  # number INDEX BYTES: the number as so many raw bytes
  local hex
  hex=$(printf "%$(($2 * 2))s" "${numbers[$1]}" | tr ' ' 0)
  # The text is made of \x and digits alone, which is what printf is to expand.
  # shellcheck disable=SC2001,SC2059
  printf "$(sed 's/../\\x&/g' <<<"$hex")"
}

part() {  # the numbers that both parts begin with
  printf '(16:rsa-pkcs1-sha256(1:e3:'
  number 1 3
  printf ')(1:n256:'
  number 0 256
  printf ')'
}

{
  printf '(8:sequence(10:public-key'
  part
  printf '))(11:private-key'
  part
  index=2
  for label in d256 p128 q128 a128 b128 c128; do
    printf '(1:%s:' "$label"
    number $index "${label:1}"
    printf ')'
    ((index += 1))
  done
  printf ')))'
} >"$name-pair.key"
umask "$public_umask"
cat "$work/public" >"$name-public.pem"
{
  printf '(10:public-key'
  part
  printf '))'
} >"$name-public.key"
