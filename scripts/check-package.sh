#!/usr/bin/env bash
# Makes the packages twice, here and out of a copy in another folder, time zone
# and umask, and compares the bytes; unpacks them, and tries what they hold: both
# programs on the sample firmware, their hardening, the manual pages, and the
# CMake module of an archive in an odd place.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
TOVA_MAINTAINER=$(git log -1 --format='%an <%ae>')
export SOURCE_DATE_EPOCH TOVA_MAINTAINER

scripts/set-up.sh release windows
rm -f build/tool/*.deb
scripts/make-packages.sh "$work/one" --windows
other=$work/an/other
mkdir -p "$other"
git ls-files -z --cached --others --exclude-standard |
  xargs -0 cp --parents -t "$other"
# Really compiled twice, wherever a cache is in use.
(umask 077 && CCACHE_DISABLE=1 TZ=Asia/Tokyo \
  "$other/scripts/make-packages.sh" "$work/two")
for file in "$work/two"/*; do
  cmp "$file" "$work/one/$(basename "$file")"
done
one=$work/one
quietly lintian lintian "$one"/*.deb
rm -rf build/packages
cp -r "$one" build/packages

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
  file "build/tool/src/$program" | grep 'static-pie linked' >/dev/null
  objdump -d "build/tool/src/$program" >"$work/listing"
  grep -q 'call.*<__stack_chk_fail' "$work/listing"
  objdump -T "build/tool/src/$program" >"$work/symbols" 2>&1
  if grep -F GLIBC_ "$work/symbols"; then
    echo "$program asks for a version of the C library" >&2
    exit 1
  fi
done
for shell in bash-completion/completions/tova_fw \
  zsh/vendor-completions/_tova_fw fish/vendor_completions.d/tova_fw.fish; do
  [[ -s $files/usr/share/$shell ]]
done

# The archives, in a folder with a blank and a letter beyond ASCII.
odd="$work/an odd plåce"
mkdir "$odd" "$work/consumer"
tar -C "$odd" -xf "$one"/tova-fw-*-linux-*.tar.xz
(cd "$odd" && unzip -q "$one"/tova-fw-*-windows-*.zip)
cat >"$work/consumer/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.20)
project(Consumer LANGUAGES NONE)
find_package(TovaFwBuilder 1.0 REQUIRED)
get_target_property(tool TovaFwBuilder::tova_fw_builder LOCATION)
if(NOT EXISTS "${tool}" OR NOT COMMAND tova_add_firmware)
  message(FATAL_ERROR "${tool} is not there")
endif()
CMAKE
for system in linux windows; do
  quietly "consumer-$system" cmake -S "$work/consumer" \
    -B "$work/consumer/$system" -DCMAKE_PREFIX_PATH="$(echo "$odd"/*-$system-*)"
done
tests/end_to_end/companion_test.sh "$(echo "$odd"/*-linux-*/bin/tova_fw_builder)" \
  "$(echo "$odd"/*-linux-*/bin/tova_fw)"

page_lacks_nothing() {  # page_lacks_nothing PAGE: words on the standard input
  local word page=$files/usr/share/man/man1/$1.gz
  gzip -dc "$page" | mandoc -T lint -W warning
  # Without the backspaces that print letters in bold.
  gzip -dc "$page" | mandoc -T utf8 | sed 's/.\x08//g' >"$work/page"
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
echo "The packages hold: $(cd build/packages && echo ./*)"
