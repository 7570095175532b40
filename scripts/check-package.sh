#!/usr/bin/env bash
# Makes the Debian package twice, in other folders, time zones and umasks, and
# compares the bytes; unpacks it, and tries what it holds: the tool on the
# sample firmware, its hardening, and the manual page.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH

make_package() {  # make_package FOLDER: out of a copy of the tree there
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
make_package "$work/one"
(umask 077 && TZ=Asia/Tokyo make_package "$work/an/other")
mkdir -p build
one=$work/one/build/tool
other=$work/an/other/build/tool
cmp {"$one","$other"}/src/driver/tova_fw_builder
# The frame around the two archives shows the umask, which nobody unpacks.
for part in control data; do
  cmp <(ar p "$one"/*.deb $part.tar.gz) <(ar p "$other"/*.deb $part.tar.gz)
done
cp "$one"/*.deb build/

files=$work/files
dpkg-deb -x build/tova-fw-builder_*.deb "$files"
tool=$files/usr/bin/tova_fw_builder
tests/end_to_end/sample_chain_test.sh "$tool"
# No function of the C library that the tool calls has a fortified form, and the
# compiler's own library is linked in, which isn't made for control flow checks.
hardening-check --quiet --nofortify --nocfprotection "$tool"

page=$files/usr/share/man/man1/tova_fw_builder.1
mandoc -T lint -W warning "$page"
# Without the backspaces that print letters in bold.
mandoc -T utf8 "$page" | sed 's/.\x08//g' >"$work/page"
while read -r command; do
  grep -q "^ *$command " "$work/page" || {
    echo "The manual page lacks $command" >&2
    exit 1
  }
done < <(sed -n 's/^ *{"\([a-z_]*\)", .*/\1/p' src/driver/command_table.cpp)
echo "The package holds: $(cd build && ls ./*.deb)"
