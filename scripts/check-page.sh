#!/usr/bin/env bash
# check-page.sh
# Opens what tova_fw map --html writes in headless Chromium: the sample, with a
# baseline and budgets, firmware with nothing in it, with hostile names, and
# with 1,000 and 10,000 sections. tests/end_to_end/page_check.py says what has
# to hold. Builds the tools if they aren't yet.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh tool
export PATH=$PWD/build/tool/src/companion:$PATH
root=$PWD
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/pages"
cp -r examples/audio_firmware "$work/sample"
cd "$work"

pages() {  # pages NAME ARGUMENT...: page and JSON of one call
  tova_fw map "${@:2}" --html "pages/$1.html" --json "pages/$1.json" ||
    [[ $? == 1 ]]
}

for elf in base_fw mixer reverb meter; do
  printf '%s\n' "sample/linked/$elf".{elf,sections,symbols}
done | sed "s|^|$work/|" >fw.elfs
sample=(--definition sample/definitions/gen_1.8.def
  --header sample/src/audio_config.h --elf-list fw.elfs
  --key-list sample/keys/trusted-keys.list)
pages sample "${sample[@]}"
# Of the old build, one symbol is larger than it is now.
sed 's/"size": 124$/"size": 134/' pages/sample.json >old.json
sed -i 's/000000bc  10008000/000000fc  10008000/' sample/linked/mixer.sections
echo '100080bc T mixer_reset' >>sample/linked/mixer.symbols
sed -i 's/00000808  2000c000/00001008  2000c000/' sample/linked/reverb.sections
sed -i 's/2000c804 b write_at/2000d004 b write_at/' sample/linked/reverb.symbols
pages grown "${sample[@]}" --baseline old.json --budget sram=10K \
  --budget imr=50% >/dev/null

echo 'binary_ver 3.0' >nothing.def
: >nothing.elfs
pages nothing --definition nothing.def --elf-list nothing.elfs

# Names that would end the script, begin another, or turn a line around; some
# with bytes that are no UTF-8. Sections without a size, over each other, beyond
# the last address, and with thousands of pages between them.
# shellcheck disable=SC1003
names=('</script><script>hacked=1</script>' '<img/src=x/onerror=hacked=1>'
  '";hacked=1//' "';hacked=1//" '\u003cb\u003e&lt;b&gt;' '<!--<script>'
  $'\xe2\x80\xa8\xe2\x80\xae' $'\xff\xfe\xc3' $'\x01\x1b[31m' '__proto__' '\' '.Upper')
{
  printf 'binary_name <b>\nbinary_ver 1.8\nhw_buf_ba 1000\nhw_buf_size 800\n'
  printf 'memory_class </title><b> 1000 4000\nmemory_class __proto__ 0 1800\n'
  printf 'module <img/src=x/onerror=hacked=1>\nuuid %s\ngroup text\n' \
    5A3C0001-7B1E-4C52-9D40-000000000001
  printf '  section ep %s\n' "${names[0]}"
  printf '  section %s\n' "${names[@]:1}" .far
  printf 'group rodata\n  section .constants\n'
} >hostile.def
{
  echo Idx
  address=$((0xc00))
  for name in "${names[@]}" '<b>.left_out' .high; do
    [[ $name != .high ]] || address=$((0xfffffff0))
    printf '0 %s %x %x %x 0 2**2\n CONTENTS, ALLOC, CODE\n' "$name" \
      $((address % 3 * 640)) "$address" "$address"
    ((address += 1000))
  done
  echo '0 .far 10 800010 800010 0 2**2'
  echo ' CONTENTS, ALLOC, CODE'
  echo '0 .constants 10 900000 900000 0 2**2'
  echo ' CONTENTS, ALLOC, READONLY, DATA'
} >hostile.sections
printf '00000c00 T %s\n' "${names[@]}" >hostile.symbols
printf '%s\n' "$work"/hostile.{elf,sections,symbols} >hostile.elfs
: >hostile.elf
pages hostile --definition hostile.def --elf-list hostile.elfs

large() {  # large SECTIONS SYMBOLS MOST: a page below so many bytes
  "$root/bench/large_inputs.sh" rom "$1" "$2" "large-$1"
  sed -i '/^load_offset/a memory_class rom 10000000 40000' "large-$1/rom.def"
  pages "large-$1" --definition "large-$1/rom.def" \
    --elf-list "large-$1/rom.elfs"
  [[ $(stat -c %s "pages/large-$1.html") -lt $3 ]] || {
    echo "The page of $1 sections has $3 bytes or more" >&2
    exit 1
  }
}
large 1000 20000 $((1 << 20))
large 10000 100000 $((5 << 20))

# The system's Python, which has the packages of set-up.sh.
/usr/bin/python3 "$root/tests/end_to_end/page_check.py" pages
echo "The pages of tova_fw map are as promised"
