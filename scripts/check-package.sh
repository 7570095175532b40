#!/usr/bin/env bash
# Makes the Debian package, unpacks it, and tries what it holds: the tool on the
# sample firmware, and the manual page.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build-tool.sh
rm -f build/tool/*.deb
(cd build/tool && cpack -G DEB) >build/package.log || {
  cat build/package.log
  exit 1
}
files=$(mktemp -d)
trap 'rm -rf "$files"' EXIT
dpkg-deb -x build/tool/tova-fw-builder_*.deb "$files"

tests/end_to_end/sample_chain_test.sh "$files/usr/bin/tova_fw_builder"
page=$files/usr/share/man/man1/tova_fw_builder.1
mandoc -T lint -W warning "$page"
# Without the backspaces that print letters in bold.
mandoc -T utf8 "$page" | sed 's/.\x08//g' >"$files/page"
for command in build buildrom asm sign verify write_c hash_key split build_img \
  make_hex; do
  grep -q "^ *$command " "$files/page" || {
    echo "The manual page lacks $command" >&2
    exit 1
  }
done
echo "The package holds: $(basename build/tool/*.deb)"
