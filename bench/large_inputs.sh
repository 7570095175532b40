#!/usr/bin/env bash
# large_inputs.sh image MIB MODULES DIR
# large_inputs.sh rom SECTIONS SYMBOLS DIR
# Makes the inputs of a large firmware in DIR: definitions, ELF list, and one
# ELF with its section table and symbol list. `image` has few sections of many
# bytes, one a module, and an empty file called none; `rom` has one module of
# many sections.
set -euo pipefail

kind=$1
base=$((0x10000000))
mkdir -p "$4"
cd "$4"

definition_head() {  # definition_head NAME
  printf 'binary_name %s\nbinary_ver 1.8\nload_offset 2000\n' "$1"
}

module() {  # module NAME NUMBER
  printf 'module %s\nuuid 5A3C0001-7B1E-4C52-9D40-%012X\nname %s\ntype %x\n' \
    "$1" "$2" "$1" "$2"
  printf 'affinity_mask 1\ninstance_count +1\ngroup text\n'
}

section_table() {  # section_table COUNT SIZE ALIGNMENT_POWER
  awk -v count="$1" -v size="$2" -v power="$3" -v base="$base" 'BEGIN {
    print "Idx Name          Size      VMA       LMA       File off  Algn"
    for (i = 0; i < count; ++i) {
      at = base + i * size
      printf "%3d .text.%-7d %08x  %08x  %08x  %08x  2**%d\n", \
        i, i, size, at, at, 4096 + i * size, power
      print "                  CONTENTS, ALLOC, LOAD, READONLY, CODE"
    } }'
}

elf_list() {  # elf_list NAME
  printf '%s\n' "$PWD/$1.elf" "$PWD/$1.sections" "$PWD/$1.symbols"
}

case $kind in
  image)
    modules=$3
    part=$(($2 * 1048576 / modules))
    {
      definition_head IMAGE
      for ((i = 0; i < modules; ++i)); do
        module "part_$i" "$i"
        printf '  section ep .text.%d\n' "$i"
      done
    } >image.def
    section_table "$modules" "$part" 12 >image.sections
    printf '%08x T start\n' "$base" >image.symbols
    head -c "$((4096 + part * modules))" /dev/urandom >image.elf
    elf_list image >image.elfs
    : >none
    ;;
  rom)
    {
      definition_head ROM
      module rom 0
      awk -v count="$2" 'BEGIN {
        print "  section ep .text.0"
        for (i = 1; i < count; ++i) print "  section .text." i }'
    } >rom.def
    section_table "$2" 16 4 >rom.sections
    awk -v count="$3" -v base="$base" 'BEGIN {
      for (i = 0; i < count; ++i)
        printf "%08x T function_number_%d\n", base + i, i }' >rom.symbols
    head -c "$((4096 + 16 * $2))" /dev/zero >rom.elf
    elf_list rom >rom.elfs
    ;;
  *)
    echo "$0: unknown kind of inputs: $kind" >&2
    exit 2
    ;;
esac
