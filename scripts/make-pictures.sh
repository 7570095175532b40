#!/usr/bin/env bash
# make-pictures.sh
# Makes the pictures of docs/pictures from the sample firmware, in headless
# Chromium. Builds the tools if they aren't yet. To be run by hand when a page
# looks different: what a picture holds goes with the browser and its fonts.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

scripts/build.sh tool
tool=$PWD/build/tool/src/companion/tova_fw
sample=$PWD/examples/audio_firmware
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for elf in base_fw mixer reverb meter; do
  printf '%s\n' "$sample/linked/$elf".{elf,sections,symbols}
done >"$work/fw.elfs"
"$tool" map --definition "$sample/definitions/gen_1.8.def" \
  --header "$sample/src/audio_config.h" --elf-list "$work/fw.elfs" \
  --key-list "$sample/keys/trusted-keys.list" --html "$work/map.html"
quietly pictures chromium --headless=new --no-sandbox --disable-gpu \
  --hide-scrollbars --user-data-dir="$work/profile" --window-size=1100,935 \
  --virtual-time-budget=2000 --screenshot="$work/map.png" \
  "file://$work/map.html"
mkdir -p docs/pictures
cp "$work/map.png" docs/pictures/map.png
echo "docs/pictures/map.png: $(stat -c %s docs/pictures/map.png) bytes"
