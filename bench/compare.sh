#!/usr/bin/env bash
# compare.sh TOOL [MIB [ROUNDS]]
# Times whole processes of the tool beside those of other programs that do the
# same to the same bytes, by turns, and prints one table: medians, how many
# times as fast the tool is, and the ratio that it has to reach. Needs about
# eight times MIB (default 256) of room under TMPDIR (default /dev/shm).
set -euo pipefail
export LC_ALL=C

tool=$(realpath "$1")
mib=${2:-256}
rounds=${3:-5}
sample=$(realpath "$(dirname "$0")/../examples/audio_firmware")
inputs=$(realpath "$(dirname "$0")/large_inputs.sh")

work=$(mktemp -d "${TMPDIR:-/dev/shm}/tova-compare-XXXXXX")
trap 'rm -rf "$work"' EXIT
cd "$work"

microseconds=0
run() {  # run COMMAND: a shell text; sets microseconds
  rm -f out*
  local start=${EPOCHREALTIME/./}
  eval "$1" >/dev/null 2>error || {
    echo "Failed: $1" >&2
    cat error >&2
    exit 1
  }
  microseconds=$((${EPOCHREALTIME/./} - start))
}

median() {  # median NUMBER...
  printf '%s\n' "$@" | sort -n | sed -n "$((($# + 1) / 2))p"
}

peak_memory() {  # peak_memory COMMAND: in MiB, or "-" if it can't be told
  if [[ -x /usr/bin/time ]]; then
    eval "/usr/bin/time -q -f %M -o peak $1" >/dev/null
    awk '{printf "%.0f", $1 / 1024}' peak
  else
    printf -- '-'
  fi
}

compare() {  # compare LABEL RATIO PROGRAM OUR_COMMAND ITS_COMMAND
  local ours=() others=() our_time other_time
  if ! command -v "$3" >/dev/null; then
    printf '%-46s %s is not installed, skipped\n' "$1" "$3"
    return
  fi
  for ((round = 0; round < rounds; ++round)); do
    run "$4"
    ours+=("$microseconds")
    run "$5"
    others+=("$microseconds")
  done
  our_time=$(median "${ours[@]}")
  other_time=$(median "${others[@]}")
  awk -v label="$1" -v ours="$our_time" -v other="$other_time" -v bar="$2" \
    -v peak="$(peak_memory "$4")" 'BEGIN {
      printf "%-46s %9.1f %9.1f %7.2f %6s %6s\n",
        label, ours / 1000, other / 1000, other / ours, bar, peak }'
}

below() {  # below LABEL MILLISECONDS OUR_COMMAND
  local times=()
  for ((round = 0; round < rounds; ++round)); do
    run "$3"
    times+=("$microseconds")
  done
  awk -v label="$1" -v ours="$(median "${times[@]}")" -v limit="$2" \
    -v peak="$(peak_memory "$3")" 'BEGIN {
      printf "%-46s %9.1f %9s %7s %6s %6s\n",
        label, ours / 1000, "-", "-", "<" limit, peak }'
}

grep -m 1 'model name' /proc/cpuinfo | sed 's/.*: //' || uname -m
command -v openssl >/dev/null && openssl version
date -u +%Y-%m-%d
echo
printf '%-46s %9s %9s %7s %6s %6s\n' \
  "$mib MiB unless told, medians of $rounds" 'ours ms' 'other ms' 'times' \
  'bar' 'MiB'

head -c "$((mib << 20))" /dev/urandom >in
echo 'sha in' >sha.script
echo 'bin in' >bin.script
hash_in="'$tool' build_img sha.script '' out"
compare 'SHA-256 / openssl dgst' 1 openssl "$hash_in" 'openssl dgst -sha256 in'
compare 'SHA-256 / sha256sum' 1 sha256sum "$hash_in" 'sha256sum in'
asm="'$tool' asm bin.script out"
bin="'$tool' build_img bin.script '' out"
compare 'asm / cat' 1 cat "$asm" 'cat in >out'
compare 'build_img bin / cat' 1 cat "$bin" 'cat in >out'
# Newer ones of cat let the kernel copy, but not behind the end of a file: then
# they read and write as the tool does.
compare 'asm / cat >>' 1 cat "$asm" 'cat in >>out'
compare 'build_img bin / cat >>' 1 cat "$bin" 'cat in >>out'
make_hex="'$tool' make_hex in out 64"
compare 'make_hex 64 / xxd -p' 10 xxd "$make_hex" 'xxd -p in out'
compare 'make_hex 64 / srec_cat -VMem' - srec_cat \
  "$make_hex" 'srec_cat in -Binary -Output out -VMem 64'
compare 'write_c / xxd -i' 10 xxd "'$tool' write_c in out" 'xxd -i in out'
compare 'write_c / srec_cat -C-Array' - srec_cat \
  "'$tool' write_c in out" 'srec_cat in -Binary -Output out -C-Array'
"$tool" split in half_a half_b >/dev/null
compare 'split / cat of as many bytes' 0.33 cat \
  "'$tool' split in out_a out_b" 'cat half_* >out'
rm -f half_* out*

"$inputs" image "$mib" 4 image
image="'$tool' build 0 0 0 1 0 0 0 0 '$work/image/image.def' \
  '$work/image/none' '$work/image/none' '$work/image/' image.elfs out.man out"
compare 'build 1.8 / cat and 2 openssl dgst' 0.83 openssl "$image" \
  'cat image/image.elf >out; openssl dgst -sha256 image/image.elf;
   openssl dgst -sha256 image/image.elf'
rm -rf image in

"$inputs" rom 10000 100000 small
"$inputs" rom 100000 1000000 large
rom() {  # rom FOLDER
  echo "'$tool' buildrom '$work/$1/rom.def' '$work/$1/' rom.elfs rom"
}
below 'buildrom, 100000 sections, 1000000 symbols' 2000 "$(rom large)"
compare 'the same / a tenth of the lines' 0.083 cat "$(rom large)" "$(rom small)"

key=$sample/keys/test-key-public
below 'hash_key' 5 "'$tool' hash_key pub '$key.key'"
compare 'hash_key / openssl pkey' - openssl "'$tool' hash_key pub '$key.key'" \
  "openssl pkey -pubin -in '$key.pem' -noout"
