#!/usr/bin/env bash
# cmake_join_test.sh BUILD_DIR
# Packages and flash images by the CMake module: what is in them, when they are
# made anew, and what is refused.
set -euo pipefail
# shellcheck source=tests/install/installed_sample.sh
source "$(dirname "$0")/installed_sample.sh"

build_dir=$1
cmake --install "$build_dir" --prefix "$work/prefix" >"$work/log"
tool=$work/prefix/bin/tova_fw_builder
cp -r "$sample"/{definitions,keys,linked,src,flash.script} "$work"

cat >"$work/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.20)
project(Join LANGUAGES NONE)
add_subdirectory(found)
tova_add_firmware(firmware DEFINITION definitions/gen_1.5.def
  EXECUTABLES linked/base_fw.elf linked/mixer.elf linked/reverb.elf
    linked/meter.elf
  CONFIG_HEADER src/audio_config.h KEY_LIST keys/trusted-keys.list
  VERSION 1.4.0.27 SIGN debug SIGN_KEY keys/test-key-pair.key
  OBJDUMP objdump NM nm)
add_subdirectory(found/below)
add_custom_command(OUTPUT own.pkg DEPENDS own.pkg
  COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_SOURCE_DIR}/own.pkg own.pkg)
tova_add_package(own DESCRIPTOR ${CMAKE_BINARY_DIR}/own.pkg
  INPUTS src/gain.c package DEPENDS note.txt)
set(binary $<TARGET_PROPERTY:package,TOVA_BINARY>)
file(GENERATE OUTPUT package.outputs
  CONTENT "${binary} $<TARGET_PROPERTY:package,TOVA_LOG>\n")
add_custom_target(other)
cmake_language(EVAL CODE "${more}")
CMAKE
# What a subfolder finds is known above it, too. Each joins what another folder
# makes: under Make by the order of the targets alone.
mkdir -p "$work/found/below/deep"
echo 'find_package(TovaFwBuilder REQUIRED)' >"$work/found/CMakeLists.txt"
cat >"$work/found/below/CMakeLists.txt" <<'CMAKE'
tova_add_package(package FIRMWARE firmware
  OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/package)
add_subdirectory(deep)
CMAKE
cat >"$work/found/below/deep/CMakeLists.txt" <<'CMAKE'
tova_add_flash_image(flash SCRIPT ${CMAKE_SOURCE_DIR}/flash.script
  INPUTS $<TARGET_PROPERTY:package,TOVA_BINARY> firmware
  OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/flash)
CMAKE
printf '%s\n' 'bin gain.c' "bin $work/src/filter.c 'Filter'" 'bin package.bin' \
  >"$work/own.pkg"
touch "$work/note.txt"

configure() {  # configure MORE: further lines of the list
  cmake -S "$work" -B "$work/build" -G "$generator" -Dmore="$1" \
    -DTovaFwBuilder_DIR="$work/prefix/share/cmake/TovaFwBuilder" \
    >"$work/log" 2>&1
}
build() { cmake --build "$work/build" "$@" >"$work/log" 2>&1; }
expect() {  # expect FILES WHY OPTION...: builds, and compares what was joined
  build "${@:3}" || die "the build fails: $2"
  [[ $(sed -n 's/.*Joining //p' "$work/log" | sort | paste -s -d ' ') == "$1" ]] ||
    die "$2: not $1"
}
failed() {  # failed FILE TEXT: the build, which leaves no such file
  build && die "built in spite of: $2"
  told "$2"
  [[ ! -e $work/build/$1 ]] || die "$1 is left: $2"
}

for generator in 'Unix Makefiles' Ninja; do
  rm -rf "$work/build"
  configure '' || die "can't be configured"
  expect package.bin 'the package alone' --target package
  rm "$work/build/package/package.bin"
  expect 'flash.img package.bin' 'the flash image alone' --target flash
  expect own.bin 'the rest'
  expect '' 'nothing touched'
  cd "$work/build"
  [[ $(<package.outputs) == "$PWD/package/package.bin $PWD/package/package.log" ]] ||
    die 'the properties of the package'
  # The descriptor's order is that of the log.
  sed -n 's/^bin \([^ ]*\).*/\1/p' firmware/firmware.pkg | xargs cat |
    cmp - package/package.bin
  cat ../src/{gain,filter}.c package/package.bin | cmp - own/own.bin
  # The places that the script tells.
  size=$(stat -c %s package/package.bin)
  tail -c +$((0x4000 + 1)) flash/flash.img | cmp - package/package.bin
  cmp -n "$(stat -c %s firmware/firmware.man.signed)" -i $((0x1000)):0 \
    flash/flash.img firmware/firmware.man.signed
  [[ $(od -An -tu4 -j $((0x100)) -N 4 flash/flash.img) -eq $size ]] ||
    die 'another length of the package'
  cd "$work"
  while read -r input files; do
    touch "$work/$input"
    expect "${files//,/ }" "touched $input"
    expect '' "nothing touched after $input"
  done <<'INPUTS'
src/filter.c own.bin
src/gain.c own.bin
note.txt own.bin
own.pkg own.bin
flash.script flash.img
keys/test-key-pair.key flash.img
linked/meter.elf flash.img own.bin package.bin
prefix/bin/tova_fw_builder flash.img own.bin package.bin
INPUTS
done

# An output that only the descriptor names as an input.
echo "bin $work/build/own/own.bin" >>"$work/own.pkg"
cp "$work/build/own/own.bin" "$work/before"
build && die 'an input is overwritten'
told 'it would destroy an input'
cmp "$work/before" "$work/build/own/own.bin"
sed -i '$s/.*/bin none.bin/' "$work/own.pkg"
failed own/own.bin "own.bin isn't made: Error: "
told "INPUTS are: $work/src/gain.c"
sed -i '$d' "$work/own.pkg"
expect own.bin 'the descriptor mended'

# A file size limit in place of a full disk; see cmake_module_test.sh.
mv "$tool" "$work/real_tool"
limit() {  # limit COMMAND KILOBYTES FILE: the build, which tells the cut
  cat >"$tool" <<SCRIPT
#!/usr/bin/env bash
trap '' XFSZ
[[ \$1 != $1 ]] || ulimit -f $2
exec "$work/real_tool" "\$@"
SCRIPT
  chmod +x "$tool"
  failed "$3" "$work/build/$3 has $(($2 * 1024)) bytes where"
  cp "$work/real_tool" "$tool"
}
limit asm 12 package/package.bin
limit build_img 20 flash/flash.img
build || die 'the build fails: room again'

# One file of a target, a file of no use, and parts that overlap.
signed='$<TARGET_PROPERTY:firmware,TOVA_SIGNED_MANIFEST>'
evaluated="$<TARGET_GENEX_EVAL:firmware,$signed>"
for input in "$signed" "$evaluated"; do
  rm -rf "$work/build/more"
  configure "tova_add_flash_image(more SCRIPT flash.script
    INPUTS $input package src/gain.c)" || die "not configured: $input"
  build || die "not built: $input"
  cmp "$work/build/flash/flash.img" "$work/build/more/more.img"
  told "names nothing of INPUTS $work/src/gain.c"
  touch "$work/keys/test-key-pair.key"
  expect 'flash.img more.img' 'signed anew'
done
if [[ -x $work/prefix/bin/tova_fw ]]; then
  printf '%s\n' 'bin gain.c' 'offset 10' 'dd 1' >"$work/overlap.script"
  configure 'tova_add_flash_image(more SCRIPT overlap.script INPUTS src/gain.c)'
  failed more/more.img "\`tova_fw show --script\` tells of it:"
fi

# The length of each piece is known, where no offset goes back: what ends one
# byte too early is found. The last one stands in the second KiB by itself.
piece=$work/src/piece
head -c $((1024 - 8 - 2 - 1 - 4 - 32 - 5 + 1)) "$work/src/reverb.c" >"$piece"
printf '%s\n' 'dd 1 2' 'dw 3' 'db 4' 'size piece' 'sha piece' 'bin piece' \
  'offset 400' 'db 1' >"$work/pieces.script"
configure 'tova_add_flash_image(more SCRIPT pieces.script INPUTS src/piece)'
build || die 'pieces of all kinds'
[[ $(stat -c %s "$work/build/more/more.img") -eq 1025 ]] ||
  die 'another length than its pieces have'
limit build_img 1 more/more.img
build || die 'room for the last piece, too'

# A file that is no input any more isn't found, though it still lies there.
configure 'tova_add_flash_image(more SCRIPT pieces.script INPUTS src/gain.c)'
failed more/more.img "more.img isn't made: Error: "

while IFS='|' read -r more text; do
  configure "$more" && die "configured with $more"
  told "$text"
done <<'FAULTS'
tova_add_package(more)|tova_add_package(more): takes either the FIRMWARE or a DESCRIPTOR
tova_add_package(more FIRMWARE firmware DESCRIPTOR own.pkg)|takes either the FIRMWARE or a DESCRIPTOR
tova_add_package(more FIRMWARE package)|FIRMWARE takes a target of tova_add_firmware
tova_add_package(more FIRMWARE later)|that is made above: later
tova_add_package(more DESCRIPTOR none.pkg)|DESCRIPTOR names a file that isn't there
tova_add_flash_image(more SCRIPT none.script INPUTS package)|SCRIPT names a file that isn't there
tova_add_flash_image(more SCRIPT flash.script)|tova_add_flash_image(more): INPUTS is missing
tova_add_flash_image(more INPUTS package)|SCRIPT is missing
tova_add_flash_image(more SCRIPT flash.script INPUTS none)|INPUTS names a file that isn't there
tova_add_flash_image(more SCRIPT flash.script INPUTS package build/package/package.bin)|two files among INPUTS have the name package.bin
tova_add_flash_image(more SCRIPT flash.script INPUTS $<TARGET_PROPERTY:package,TOVA_MAP_JSON>)|INPUTS asks for TOVA_MAP_JSON of package, which isn't made above
tova_add_flash_image(more SCRIPT flash.script INPUTS $<1:src/gain.c>)|INPUTS takes the generator expressions TARGET_PROPERTY
tova_add_flash_image(more SCRIPT flash.script INPUTS other)|other among INPUTS is no target of
tova_add_flash_image(more SCRIPT flash.script OUTPUT_DIRECTORY . INPUTS build/more.img)|would destroy an input
FAULTS
echo 'The CMake module joins packages and flash images'
