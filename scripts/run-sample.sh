#!/usr/bin/env bash
# run-sample.sh TOOL OUT_DIR [COMPANION]
# Runs the sample firmware through every command of the tool: images of all
# four generations and a ROM, then a signed package and a flash image of
# generation 1.5.
# Prints a line a step and the table of the files made; the full logs lie in
# OUT_DIR/logs. With the companion, shows at the end what is in the image of
# each generation. Starts from the committed linker output.
set -euo pipefail

# No system but Linux has all of realpath, sha256sum and stat -c.
absolute() { (cd "$(dirname "$1")" && echo "$(pwd -P)/$(basename "$1")"); }
if command -v sha256sum >/dev/null; then
  sha256=(sha256sum)
else
  sha256=(shasum -a 256)
fi

tool=$(absolute "$1")
companion=${3:+$(absolute "$3")}
mkdir -p "$2"
out=$(cd "$2" && pwd -P)
sample=$(cd "$(dirname "$0")/../examples/audio_firmware" && pwd -P)
[[ $sample != *[[:space:]]* ]] || {
  echo "ELF lists can't hold a path with a blank: $sample" >&2
  exit 1
}
elfs=(base_fw mixer reverb meter)

rm -rf "$out"/{gen-1.5,gen-1.8,gen-2.5,gen-3.0,rom,logs}
mkdir -p "$out/logs"
step_number=0

step() {  # step LOG_NAME TEXT ARGUMENT...: runs the tool with the arguments
  local log
  ((step_number += 1))
  log=$(printf '%s/logs/%02d-%s.log' "$out" "$step_number" "$1")
  echo "  $2"
  "$tool" "${@:3}" >"$log" || {
    echo "Failed; the end of $log:" >&2
    tail -n 5 "$log" >&2
    exit 1
  }
}

elf_list() {  # elf_list ELF...
  local elf
  for elf; do
    printf '%s\n' "$sample/linked/$elf".{elf,sections,symbols}
  done
}

echo "Running the sample firmware, logs in $2/logs"
for generation in 1.5 1.8 2.5 3.0; do
  dir=$out/gen-$generation
  mkdir -p "$dir"
  elf_list "${elfs[@]}" >"$dir/firmware.elfs"

  # Image flags, feature mask, IMR type; version; bytes for the signer; paths.
  step "build-$generation" "build the image of generation $generation" \
    build 10 ff 3 1 4 0 27 2048 \
    "$sample/definitions/gen_$generation.def" "$sample/src/audio_config.h" \
    "$sample/keys/trusted-keys.list" "$dir/" firmware.elfs firmware.man firmware
done

dir=$out/rom
mkdir -p "$dir"
elf_list base_fw >"$dir/rom.elfs"
step buildrom "build the ROM" \
  buildrom "$sample/definitions/rom.def" "$dir/" rom.elfs rom

key=$sample/keys/test-key
dir=$out/gen-1.5
step hash-key "print the hash of the test key" hash_key pub "$key-public.key"
step sign "sign the manifest with the test key" \
  sign debug "$key-pair.key" "$dir/firmware.man" "$dir/firmware.man.signed"
step verify "verify the signed manifest" verify "$dir/firmware.man.signed"
step asm "join the package" asm "$dir/firmware.pkg" "$dir/package.bin"
step flash "put the flash image together" \
  build_img "$sample/flash.script" "$dir/" "$dir/flash.img"
step split "split it over two memory banks" \
  split "$dir/flash.img" "$dir/bank_a" "$dir/bank_b"
step hex "make a memory file of 128 bits a line" \
  make_hex "$dir/flash.img" "$dir/flash.hex" 128
step c-array "make a C array of the signed manifest" \
  write_c "$dir/firmware.man.signed" "$dir/signed_manifest.c"

echo
printf '%-55s %8s  %s\n' "File in $2" Bytes SHA-256
cd "$out"
for file in gen-*/* rom/*; do
  sum=$("${sha256[@]}" "$file")
  printf '%-55s %8d  %s\n' "$file" "$(wc -c <"$file")" "${sum%% *}"
done

[[ -n $companion ]] || exit 0
for generation in 1.5 1.8 2.5 3.0; do
  "$companion" lint "$sample/definitions/gen_$generation.def" --strict \
    --header "$sample/src/audio_config.h" --elf-list "gen-$generation/firmware.elfs" \
    --key-list "$sample/keys/trusted-keys.list"
done
echo
echo "lint has nothing to say about the definitions of the sample"
echo
"$companion" show gen-1.5/firmware.man.signed gen-{1.8,2.5,3.0}/firmware.bin
echo
for generation in 1.5 1.8 2.5 3.0; do
  "$companion" check --summary "gen-$generation"
done
