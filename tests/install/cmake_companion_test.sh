#!/usr/bin/env bash
# cmake_companion_test.sh BUILD_DIR
# What the CMake module does with the companion tova_fw beside checking images:
# lint ahead of it, the memory map and its budgets, the tables of the ELFs.
set -euo pipefail
# shellcheck source=tests/install/installed_sample.sh
source "$(dirname "$0")/installed_sample.sh"

build_dir=$1
cmake --install "$build_dir" --prefix "$work/prefix" >"$work/log"
if [[ ! -x $work/prefix/bin/tova_fw ]]; then
  echo 'There is no companion in this build'
  exit 0
fi
image=$work/build/image/image
cp -r "$sample"/{definitions,keys,linked,src} "$work"

cat >"$work/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.20)
project(Companion LANGUAGES NONE)
find_package(TovaFwBuilder REQUIRED)
add_executable(mix IMPORTED)
set_property(TARGET mix PROPERTY IMPORTED_LOCATION
  ${PROJECT_SOURCE_DIR}/linked/mixer.elf)
tova_add_firmware(image DEFINITION definitions/gen_1.8.def
  EXECUTABLES linked/base_fw.elf mix linked/reverb.elf linked/meter.elf
  CONFIG_HEADER src/audio_config.h KEY_LIST keys/trusted-keys.list
  VERSION 1.2.3.4 ${programs} ${arguments})
set(page $<TARGET_PROPERTY:image,TOVA_MAP_PAGE>)
set(json $<TARGET_PROPERTY:image,TOVA_MAP_JSON>)
file(GENERATE OUTPUT map.outputs CONTENT "${page} ${json}\n")
CMAKE
programs='OBJDUMP;objdump;NM;nm'
configure() {  # configure ARGUMENTS OPTION...
  cmake -S "$work" -B "$work/build" -G "$generator" \
    -DTovaFwBuilder_DIR="$work/prefix/share/cmake/TovaFwBuilder" \
    -Darguments="$1" -Dprograms="$programs" "${@:2}" >"$work/log" 2>&1
}
build() { cmake --build "$work/build" >"$work/log" 2>&1; }
made() {  # made WHAT ARGUMENTS: configured and built, with these steps
  { configure "$2" && build; } || die "not built: $2"
  [[ $(grep -cE '(Building firmware image|Mapping the memory of) image$' \
    "$work/log") == "$1" ]] || die "not $1 steps: $2"
}
refused() {  # refused TEXT ARGUMENTS OPTION...: at configuring
  configure "${@:2}" && die "configured with $2"
  told "$1"
}

# The sample uses 10598 bytes of sram, as the documents tell.
for generator in 'Unix Makefiles' Ninja; do
  rm -rf "$work/build"
  made 2 'MAP;BUDGET;sram=10598;imr=90%'
  grep -q '"used": 10598' "$image.map.json" || die 'no JSON of the map'
  grep -q '<html' "$image.map.html" || die 'no page of the map'
  [[ $(<"$work/build/map.outputs") == "$image.map.html $image.map.json" ]] ||
    die 'the properties of the map'
  made 0 'MAP;BUDGET;sram=10598;imr=90%'
  # A limit alone makes no new image.
  configure 'BUDGET;sram=10597;imr=1K' || die 'BUDGET alone'
  for run in first second; do
    build && die "over budget, and built at the $run time"
    told 'sram: 10598 bytes used, 1 over the budget of 10597'
    told 'imr: 5460 bytes used, 4436 over the budget of 1K (1024 bytes)'
    [[ -s $image.map.html && -s $image.bin ]] || die 'no page over budget'
  done
  made 1 'MAP;BUDGET;sram=100%'
  touch "$work/definitions/addon_modules.def"
  made 2 'MAP;BUDGET;sram=100%'
  configure 'BUDGET;dram=1' || die 'a class that only the definition tells'
  build && die 'built with a budget of no class'
  told 'there is no memory class dram'
done

# Lint, with the place as it is at the start of a line. A word too many is a
# warning, and what the builder refuses an error.
made 1 'LINT;STRICT'
modules=$work/definitions/base_modules.def
place=$(grep -n -m 1 '^uuid' "$modules" | cut -d : -f 1)
while IFS='|' read -r arguments outcome change text; do
  cp "$sample"/definitions/base_modules.def "$modules"
  sed -i "$place$change" "$modules"
  configure "$arguments" || die "can't be configured: $arguments"
  if build; then found=built; else found=failed; fi
  [[ $found == "$outcome" ]] || die "$found: $arguments $change"
  grep -q "^$modules:$place:[0-9]*: $text" "$work/log" || die "not told: $text"
  [[ $found == built || ! -e $image.bin ]] || die "an image is left: $text"
done <<'FINDINGS'
LINT|built|s/$/ more/|warning: .*\[extra-words\]$
LINT;STRICT|failed|s/$/ more/|warning: .*\[extra-words\]$
LINT|failed|s/uuid/uiud/|error: .*did you mean 'uuid'? \[refused\]$
FINDINGS
told 'found what is told above. The tool refuses that.'
cp "$sample"/definitions/base_modules.def "$modules"
# The output folder is where definitions are searched second.
mv "$work/definitions/addon_modules.def" "$work/build/image/"
made 2 'MAP;LINT;STRICT'
mv "$work/build/image/addon_modules.def" "$work/definitions/"
made 1 'LINT;STRICT'
refused 'STRICT says how to LINT' STRICT

refused 'BUDGET takes CLASS=LIMIT' 'MAP;BUDGET;sram=1G'
refused 'BUDGET takes CLASS=LIMIT' 'MAP;BUDGET;=1'
refused 'is beyond all memory: sram=9999999999999M' \
  'BUDGET;sram=9999999999999M'
refused "a BUDGET can't be more than 100%: sram=0101%" 'BUDGET;sram=0101%'
refused "names $work/none, which isn't there" '' \
  -DTovaFw_EXECUTABLE="$work/none"
for arguments in MAP 'BUDGET;sram=1'; do
  refused 'MAP needs the companion tova_fw, which isn' "$arguments" \
    -DTovaFw_EXECUTABLE=
done
refused 'LINT needs the companion' LINT -DTovaFw_EXECUTABLE=
refused "MAP needs \`tova_fw map\`, which /bin/false doesn't have" MAP \
  -DTovaFw_EXECUTABLE=/bin/false

# Tables of the companion, whatever the tool chain has. The image is that of
# GNU's, whose programs are taken when they are named.
rm -rf "$work/build"
made 1 ''
cp "$image.bin" "$work/by_gnu.bin"
printf '#!/bin/sh\necho LLVM version 14.0.6\n' >"$work/llvm-objdump"
chmod +x "$work/llvm-objdump"
llvm=(-DCMAKE_OBJDUMP="$work/llvm-objdump" -DCMAKE_NM=llvm-nm)
if "$work/prefix/bin/tova_fw" tables --help >"$work/log" 2>&1; then
  programs=
  for chain in '' "${llvm[*]}"; do
    rm -rf "$work/build"
    # shellcheck disable=SC2086  # two options
    { configure LINT\;STRICT $chain && build; } || die "own tables $chain"
    told 'Listing the sections and symbols of mix'
    cmp "$work/by_gnu.bin" "$image.bin"
    made 0 'LINT;STRICT'
  done
  # The tables themselves, and not just the image, which depends on both, too.
  for input in linked/mixer.elf prefix/bin/tova_fw; do
    touch "$work/$input"
    made 1 'LINT;STRICT'
    told 'Listing the sections and symbols of mix'
  done
  refused 'OBJDUMP isn' '' -DCMAKE_OBJDUMP= -DTovaFw_EXECUTABLE=
  programs='OBJDUMP;objdump;NM;nm'
  rm -rf "$work/build"
  made 1 ''
  told 'Listing the sections of mix'
fi
programs=
refused 'is that of LLVM, whose section tables' '' "${llvm[@]}" \
  -DTovaFw_EXECUTABLE=
told 'Install the companion tova_fw'
echo 'The CMake module uses the companion'
