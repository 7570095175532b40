#!/usr/bin/env bash
# cmake_module_test.sh BUILD_DIR GENERATOR
# Installs the tool from its build folder and builds two images with its CMake
# module under the generator. After each touched input exactly the images that
# use it are built anew, after none nothing is; a failed run and a full disk
# fail the build and leave no partial file.
set -euo pipefail
# shellcheck source=tests/install/installed_sample.sh
source "$(dirname "$0")/installed_sample.sh"

build_dir=$1
generator=$2
cmake --install "$build_dir" --prefix "$work/prefix" >"$work/install.log"

# Two copies of the sample, of which neither shares a file with the other.
for image in one two; do
  mkdir "$work/$image"
  cp -r "$sample"/{definitions,keys,linked,src} "$work/$image/"
done
cat >"$work/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.20)
project(Images LANGUAGES NONE)
find_package(TovaFwBuilder 1.0 REQUIRED)

foreach(image IN ITEMS one two)
  set(elfs)
  foreach(elf IN ITEMS base_fw mixer reverb meter)
    list(APPEND elfs ${image}/linked/${elf}.elf)
  endforeach()
  set(generation 1.8)
  set(signature)
  if(image STREQUAL one)
    set(generation 1.5)
    set(signature SIGN debug SIGN_KEY one/sign.key)
  endif()
  tova_add_firmware(${image}
    DEFINITION ${image}/definitions/gen_${generation}.def
    EXECUTABLES ${elfs}
    CONFIG_HEADER ${image}/src/audio_config.h
    KEY_LIST ${image}/keys/trusted-keys.list
    VERSION ${version_of_${image}}
    OBJDUMP objdump NM nm
    ${signature})
  set(outputs)
  foreach(output IN ITEMS BINARY MANIFEST EXTENDED_MANIFEST SIGNED_MANIFEST
      PACKAGE_DESCRIPTOR MEMORY_DESCRIPTION ELF_LIST LOG)
    string(APPEND outputs "$<TARGET_PROPERTY:${image},TOVA_${output}> ")
  endforeach()
  file(GENERATE OUTPUT ${image}.outputs CONTENT "${outputs}\n")
endforeach()
CMAKE
cp "$sample/keys/test-key-pair.key" "$work/one/sign.key"

configure() {
  cmake -S "$work" -B "$work/build" -G "$generator" \
    -DCMAKE_PREFIX_PATH="$work/prefix" -Dversion_of_one="$1" \
    -Dversion_of_two=1.0.0.0 >"$work/log" 2>&1 || die "can't be configured"
}
build() { cmake --build "$work/build" >"$work/log" 2>&1; }
# The images that the last build made, signed ones with a mark.
built() {
  sed -n 's/.*Building firmware image \([a-z]*\)$/\1/p; s/.*Signing .*/signed/p' \
    "$work/log" | sort | paste -s -d ' '
}
expect() {  # expect IMAGES WHY: builds, and compares what was made
  build || die "the build fails: $2"
  [[ $(built) == "$1" ]] || die "$2: built '$(built)' and not '$1'"
}

configure 1.2.3.4
expect 'one signed two' 'the first build'
expect '' 'nothing touched'
while read -r image extensions; do
  for extension in $extensions; do
    echo "$work/build/$image/$image.$extension"
  done | diff - <(xargs -n 1 ls <"$work/build/$image.outputs") ||
    die "the properties of $image"
done <<'OUTPUTS'
one bin man man.ext man.signed pkg xml elfs log
two bin man man.ext pkg xml elfs log
OUTPUTS

while read -r images input; do
  touch "$work/$input"
  expect "${images//,/ }" "touched $input"
  # The image depends on an ELF by itself, too.
  elf=$(basename "$input" .elf)
  [[ $input != *.elf || $(grep -cE "Listing the (sections|symbols) of $elf$" \
    "$work/log") == 2 ]] || die "the old tables of $input"
  expect '' "nothing touched after $input"
done <<'INPUTS'
one,signed one/linked/base_fw.elf
one,signed one/linked/meter.elf
two two/linked/mixer.elf
one,signed one/definitions/gen_1.5.def
one,signed one/definitions/evaluation_board.def
two two/definitions/addon_modules.def
one,signed one/src/audio_config.h
two two/keys/trusted-keys.list
two two/keys/test-key-public.key
signed one/sign.key
one,signed,two prefix/bin/tova_fw_builder
INPUTS

configure 1.2.3.5
expect 'one signed' 'another version'
configure 1.2.3.5
expect '' 'configured again with the same version'

# A definition that leaves an include out no longer depends on it. Under Make
# CMake only ever adds to the list of a target, which costs a build too many.
sed -i 's/^include addon_modules.def//; s/^ignore .*//' \
  "$work/two/definitions/audio_firmware.def"
expect two 'an include taken out'
touch "$work/two/definitions/addon_modules.def"
if [[ $generator == Ninja ]]; then
  expect '' 'touched a file that is no longer included'
else
  build
fi

none_left() {  # none_left IMAGE WHY: no output of the image is there
  local left
  left=$(find "$work/build/$1" -name "$1*.bin" -o -name "$1.man*" \
    -o -name "$1.pkg" -o -name "$1.xml")
  [[ -z $left ]] || die "$2 leaves $left"
}

echo 'no_such_statement' >>"$work/one/definitions/base_modules.def"
build && die "a wrong definition builds"
grep -q 'Unknown parameter' "$work/log" || die "the error isn't shown"
none_left one "a wrong definition"
sed -i '$d' "$work/one/definitions/base_modules.def"
expect 'one signed' 'the definition mended'

# An image of one addon, whose file is larger than the others: with files that
# end at 4 KiB, as they would on a full disk, the tool itself ends with status
# 0. CMake resets the signals of its children, hence a script between.
cat >"$work/one/definitions/gen_1.5.def" <<'DEFINITION'
binary_ver 1.5
module d reverb
uuid 5A3C0005-7B1E-4C52-9D40-1F2E3D4C5B05
group text
  section ep .text.reverb
group rodata
  section .rodata.reverb
DEFINITION
expect 'one signed' 'an image of one addon'
mv "$work/prefix/bin/tova_fw_builder" "$work/real_tool"
cat >"$work/prefix/bin/tova_fw_builder" <<SCRIPT
#!/usr/bin/env bash
trap '' XFSZ
ulimit -f 4
exec "$work/real_tool" "\$@"
SCRIPT
chmod +x "$work/prefix/bin/tova_fw_builder"
build && die "a cut binary builds"
grep -q '4096 bytes where 8192 are due' "$work/log" || die "the cut isn't told"
none_left one "a full disk"
mv "$work/real_tool" "$work/prefix/bin/tova_fw_builder"
build || die "the build fails: room again"
echo "The CMake module holds under $generator"
