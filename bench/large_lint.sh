#!/usr/bin/env bash
# large_lint.sh MODULES FILES SECTIONS DIR
# Makes a tree of definitions in DIR for lint: MODULES modules in FILES included
# files, over one ELF with SECTIONS sections, which the modules share out.
set -euo pipefail

modules=$1 files=$2 sections=$3
mkdir -p "$4"
cd "$4"
{
  printf 'binary_name LINT\nbinary_ver 3.0\nmax_data 0\n'
  for ((i = 0; i < files; ++i)); do
    printf 'include part_%d.def\n' "$i"
  done
} >top.def
awk -v modules="$modules" -v files="$files" -v sections="$sections" 'BEGIN {
  each = int(sections / modules)
  for (m = 0; m < modules; ++m) {
    file = "part_" m % files ".def"
    printf "module l m%d\nuuid 5A3C0001-7B1E-4C52-9D40-%012X\n", m, m > file
    printf "name Module %d\ntype %d\ninstance_count 0%d\n", m, m + 1, 5 > file
    print "mod_cfg 1 2 3 4 5 6 7 8 9 10 11\ngroup text" > file
    for (i = 0; i < each; ++i)
      print "  section .text." m * each + i > file
  }
  print "Idx Name          Size      VMA       LMA       File off  Algn" \
    > "large.sections"
  for (i = 0; i < modules * each; ++i) {
    # Each module begins on a page.
    at = 268435456 + int(i / each) * 4096 * int((each * 16 + 4095) / 4096) \
      + i % each * 16
    printf "%3d .text.%-7d 00000010  %08x  %08x  00000040  2**12\n", \
      i, i, at, at > "large.sections"
    print "          CONTENTS, ALLOC, LOAD, READONLY, CODE" > "large.sections"
  } }'
head -c 4096 /dev/zero >large.elf
printf '10000000 T start\n' >large.symbols
printf '%s\n' "$PWD"/large.{elf,sections,symbols} >large.elfs
