#!/usr/bin/env bash
# make-pictures.sh
# Makes the pictures of docs/pictures from the sample firmware, in headless
# Chromium. Builds the tools if they aren't yet. To be run by hand when a page
# looks different: what a picture holds goes with the browser and its fonts.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh tool
tool=$PWD/build/tool/src/companion/tova_fw
pictures=$PWD/docs/pictures
sample=$PWD/examples/audio_firmware
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

for elf in base_fw mixer reverb meter; do
  printf '%s\n' "$sample/linked/$elf".{elf,sections,symbols}
done >fw.elfs
"$tool" map --definition "$sample/definitions/gen_1.8.def" \
  --header "$sample/src/audio_config.h" --elf-list fw.elfs \
  --key-list "$sample/keys/trusted-keys.list" --html map.html
chromium --headless=new --no-sandbox --disable-gpu --hide-scrollbars \
  --user-data-dir="$work/profile" --window-size=1100,935 \
  --virtual-time-budget=2000 --screenshot="$work/map.png" \
  "file://$work/map.html" >log 2>&1 || {
  tail -n 5 log >&2
  exit 1
}
mkdir -p "$pictures"
cp map.png "$pictures/map.png"
echo "docs/pictures/map.png: $(stat -c %s map.png) bytes"
