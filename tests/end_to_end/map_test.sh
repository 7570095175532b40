#!/usr/bin/env bash
# map_test.sh BUILDER TOVA_FW
# map on the sample firmware: what it says, what it compares and what it
# refuses; and its sums, counted by another program.
set -euo pipefail

builder=$(realpath "$1")
tool=$(realpath "$2")
root=$(realpath "$(dirname "$0")/../..")
sample=$root/examples/audio_firmware
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'echo "FAILED in line $LINENO" >&2' ERR
"$root/tests/end_to_end/map_sums.py" "$tool"
cp -r "$sample"/{definitions,linked,src,keys} "$work"
cd "$work"

die() {
  echo "FAILED: $1" >&2
  exit 1
}
for elf in base_fw mixer reverb meter; do
  printf '../linked/%s\n' $elf.{elf,sections,symbols}
done >fw.elfs
map() {  # map STATUS ARGUMENT...: leaves the outputs in the files out and err
  local status=0
  "$tool" map --definition definitions/gen_1.8.def --header src/audio_config.h \
    --elf-list fw.elfs --key-list keys/trusted-keys.list "${@:2}" \
    >out 2>err || status=$?
  [[ $status == "$1" ]] || die "${*:2}: status $status, not $1: $(cat out err)"
}
has() {  # has FILE TEXT: one of the lines, blanks squeezed
  grep -qFx -- "$2" <(tr -s ' ' <"$1") || die "no line '$2' in: $(cat "$1")"
}

# The section tables tell the numbers: text of the four modules 492 + 188 + 192
# + 144 bytes, and so on; sram holds these .bss and the .heap of 8192.
map 0
has out ' sram 0x20000000 131072 10598 120474 8.1 % [##~.................]'
has out ' reverb 192 4096 2056 0 5944 3 16.7 %'
has out ' 0x10001000 140 .text.gain gain'
has out ' 0x20003000 8192 .heap dyn_mem'
has out ' 2048 0x2000c004 delay_line .bss.reverb reverb'
[[ ! -s err && $(echo fw.*) == fw.elfs ]] || die "something else was written"
map 0 --long
has out ' 4 0x20000000 heap_used .bss.base base_fw'

# A definition that isn't here is searched in the default directory.
mkdir elsewhere
(cd elsewhere && "$tool" map --definition gen_1.8.def --default-dir \
  ../definitions --header ../src/audio_config.h --elf-list ../fw.elfs \
  --key-list ../keys/trusted-keys.list --long >out) || die "not found"
cmp out elsewhere/out

# Budgets hold up to the last byte; sram has 10598 of 131072, 8.09 %.
while read -r status budget line; do
  map "$status" --budget "$budget" --budget imr=1M
  [[ -z $line ]] || has out "$line"
done <<'END'
0 sram=10598
1 sram=10597 sram: 10598 bytes used, 1 over the budget of 10597
0 sram=11K
1 sram=10K sram: 10598 bytes used, 358 over the budget of 10K (10240 bytes)
0 sram=9%
1 sram=8% sram: 10598 bytes used, 113 over the budget of 8% (10485 bytes)
END
for budget in sram sram= sram=-1 sram=1k sram=101% sram=1.5M =1 rom=1 \
  sram=99999999999999999999; do
  map 2 --budget "$budget"
done
has err 'tova_fw: --budget wants CLASS=LIMIT, as in sram=96K or sram=90%: sram=99999999999999999999'

# One added function and one larger buffer come first, with their bytes, and
# the function behind which the new one lies doesn't grow.
map 0 --json old.json
sed -i 's/000000bc  10008000/000000fc  10008000/' linked/mixer.sections
echo '100080bc T mixer_reset' >>linked/mixer.symbols
sed -i 's/00000808  2000c000/00001008  2000c000/' linked/reverb.sections
sed -i 's/2000c804 b write_at/2000d004 b write_at/' linked/reverb.symbols
map 1 --baseline old.json --budget sram=10598
[[ $(sed -n '/What grew/,/^$/p' out | tr -s ' ') == "What grew since the \
baseline, and what shrank
 change old new name section module
 +2048 2048 4096 delay_line .bss.reverb reverb
 +64 0 64 mixer_reset .text.mixer mixer" ]] || die "$(cat out)"
has out ' +2048 10598 12646 sram'
map 1 --baseline old.json --json - --budget sram=10598
[[ ! -s err ]] || die "$(cat err)"
python3 - <<'END' || die "$(cat out)"
import json
got = json.load(open("out"))
assert got["baseline"]["path"] == "old.json"
assert [(c["name"], c["old"], c["new"], c["change"])
        for c in got["baseline"]["changes"]] == [
    ("delay_line", 2048, 4096, 2048), ("mixer_reset", 0, 64, 64)]
assert got["budgets"] == [
    {"class": "sram", "limit": 10598, "used": 12646, "over": 2048}]
END
# The page stands beside the JSON; scripts/check-page.sh looks into it. Only one
# of them can be printed, and what is printed stands alone.
map 1 --baseline old.json --json new.json --html map.html --budget sram=0
[[ $(<out) == "sram: 12646 bytes used, 12646 over the budget of 0" ]] ||
  die "$(cat out)"
map 1 --baseline old.json --json - --html map2.html --budget sram=0
cmp out new.json
map 1 --baseline old.json --html - --budget sram=0
cmp out map.html && cmp out map2.html
map 2 --json - --html /dev/stdout
has err "tova_fw: --json and --html can't both be printed"
map 2 --json nowhere/map.json --html not-made.html
map 2 --html nowhere/map.html
[[ ! -e not-made.html ]] || die "a page was written after a failure"

# Without symbols, the sections say it.
for list in linked/*.symbols; do : >"$list"; done
sed -i '/export/d' definitions/*.def
map 0 --baseline old.json --long
has out ' +4104 0 4104 (no symbol) .bss.reverb reverb'

# An output may be none of the inputs, wherever these are named.
inputs=(definitions/{gen_1.8,base_modules}.def src/audio_config.h fw.elfs
  keys/{trusted-keys.list,test-key-public.key} linked/mixer.{elf,sections,symbols}
  old.json)
before=$(sha256sum "${inputs[@]}")
for input in "${inputs[@]}"; do
  for option in --json --html; do
    map 2 --baseline old.json "$option" "$input"
    grep -q "$input: is an input of this command" err || die "$(<err)"
  done
done
[[ $(sha256sum "${inputs[@]}") == "$before" ]] || die "an input is gone"
map 2 --json twice --html definitions/../twice
[[ ! -e twice ]] || die "two outputs in one file"

# What can't be read or written, and what the builder refuses, in its words.
for baseline in nothing . out fw.elfs; do map 2 --baseline "$baseline"; done
for text in '' '{' '[]' '{"schema":1,"image":{},"symbols_total":1e9}' \
  '{"schema":2,"image":{},"symbols_total":0}' \
  '{"schema":1,"image":{},"symbols_total":0,"modules":[{"name":1}]}' \
  '{"schema":1,"image":{},"symbols_total":0,"symbols":[{"name":"a","size":-1}]}'
do
  echo "$text" >bad.json
  map 2 --baseline bad.json
done
has err 'tova_fw: bad.json: is no memory map (tova_fw map --json makes one)'
echo whole >kept.json
echo 'nonsense' >>definitions/addon_modules.def
map 2 --json kept.json
[[ $(<kept.json) == whole ]] || die "an output was changed"
"$builder" build 0 0 0 1 0 0 0 0 "$PWD/definitions/gen_1.8.def" \
  "$PWD/src/audio_config.h" "$PWD/keys/trusted-keys.list" "$PWD/" fw.elfs \
  fw.man fw | sed -n 's/^Error: //p' >words || true
lint='tova_fw lint, which takes the same inputs, tells where and why'
[[ $(<err) == "tova_fw: definitions/gen_1.8.def: $(<words); $lint" ]] ||
  die "$(cat err words)"
sed -i '$d' definitions/addon_modules.def
# What is missing.
sed 's|^[.][.]/||' fw.elfs >here.elfs
while IFS='|' read -r options text; do
  status=0
  # shellcheck disable=SC2086
  "$tool" map --definition definitions/gen_1.8.def $options 2>err || status=$?
  [[ $status == 2 ]] || die "$options: status $status"
  grep -qF -- "; $text" err || die "$options: $(cat err)"
done <<'MISSING'
--elf-list fw.elfs|no --header was given, whose
--elf-list fw.elfs --header src/audio_config.h|no --key-list was given, whose
--elf-list here.elfs --header src/audio_config.h|paths in it count from the
MISSING
map 2 --elf-list nowhere
# A table is read twice; of a pipe nothing would be left.
exec 7< <(cat linked/mixer.symbols)
sed -i.whole 's:.*/mixer.symbols:/dev/fd/7:' fw.elfs
map 2
grep -q '/dev/fd/7: this is a pipe' err || die "$(cat err)"
mv fw.elfs.whole fw.elfs
exec 7<&-
map 2 --json nowhere/map.json
