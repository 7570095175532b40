#!/usr/bin/env bash
# Makes the Debian packages twice, in other folders, time zones and umasks, and
# compares the bytes; unpacks them, and tries what they hold: both programs on
# the sample firmware, their hardening, and the manual pages.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH

make_packages() {  # make_packages FOLDER: out of a copy of the tree there
  mkdir -p "$1"
  git ls-files -z --cached --others --exclude-standard |
    xargs -0 cp --parents -t "$1"
  (
    cd "$1"
    scripts/build.sh tool
    quietly package \
      cpack -G DEB --config build/tool/CPackConfig.cmake -B build/tool
  )
}
make_packages "$work/one"
(umask 077 && TZ=Asia/Tokyo make_packages "$work/an/other")
one=$work/one/build/tool
other=$work/an/other/build/tool
for program in driver/tova_fw_builder companion/tova_fw; do
  cmp {"$one","$other"}/src/$program
done
# The frame around the two archives shows the umask, which nobody unpacks.
for package in "$one"/*.deb; do
  for part in control data; do
    cmp <(ar p "$package" $part.tar.gz) \
      <(ar p "$other/$(basename "$package")" $part.tar.gz)
  done
done
mkdir -p build
cp "$one"/*.deb build/

files=$work/files
dpkg-deb -x "$one"/tova-fw-builder_*.deb "$files"
[[ ! -e $files/usr/bin/tova_fw ]]
dpkg-deb -x "$one"/tova-fw_*.deb "$files"
tool=$files/usr/bin/tova_fw_builder
companion=$files/usr/bin/tova_fw
tests/end_to_end/sample_chain_test.sh "$tool"
tests/end_to_end/companion_test.sh "$tool" "$companion"
# Both ask for a kernel alone, so they start on systems of any age. The tool that
# checks the hardening can't tell the rest of such programs: it takes them for
# libraries, and has no symbols to look for. The libraries that are linked in
# aren't made for control flow checks.
hardening-check --quiet --nopie --nostackprotector --nofortify --nocfprotection \
  "$tool" "$companion"
for program in driver/tova_fw_builder companion/tova_fw; do
  file "$one/src/$program" | grep -q 'static-pie linked'
  objdump -d "$one/src/$program" >"$work/listing"
  grep -q 'call.*<__stack_chk_fail' "$work/listing"
  objdump -T "$one/src/$program" >"$work/symbols" 2>&1
  if grep -F GLIBC_ "$work/symbols"; then
    echo "$program asks for a version of the C library" >&2
    exit 1
  fi
done
for shell in bash-completion/completions/tova_fw \
  zsh/vendor-completions/_tova_fw fish/vendor_completions.d/tova_fw.fish; do
  [[ -s $files/usr/share/$shell ]]
done

page_lacks_nothing() {  # page_lacks_nothing PAGE: words on the standard input
  local word page=$files/usr/share/man/man1/$1
  mandoc -T lint -W warning "$page"
  # Without the backspaces that print letters in bold.
  mandoc -T utf8 "$page" | sed 's/.\x08//g' >"$work/page"
  while read -r word; do
    grep -q -e "^ *$word " -e " $word" "$work/page" || {
      echo "The manual page $1 lacks $word" >&2
      exit 1
    }
  done
}
sed -n 's/^ *{"\([a-z_]*\)", .*/\1/p' src/driver/command_table.cpp |
  page_lacks_nothing tova_fw_builder.1
# Every command, and every option of each.
"$companion" completion bash |
  sed -n "s/^ *'[a-z -]* -') choices='\(.*\)'.*/\1/p
    s/^ *'') choices='\(.*\)'.*/\1/p" |
  tr ' ' '\n' | page_lacks_nothing tova_fw.1
echo "The packages hold: $(cd build && echo ./*.deb)"
