#!/usr/bin/env bash
# cmake_faults_test.sh BUILD_DIR
# What the CMake module refuses, though the tool would go on or say little: each
# fault is planted in the sample and its message looked for. Also how the module
# is found from a sysroot, and how it builds several configurations.
set -euo pipefail
# shellcheck source=tests/install/installed_sample.sh
source "$(dirname "$0")/installed_sample.sh"

build_dir=$1
cmake --install "$build_dir" --prefix "$work/native/usr" >"$work/log"
tool=$work/native/usr/bin/tova_fw_builder
module=$work/native/usr/share/cmake/TovaFwBuilder
image=$work/build/image/image
cp -r "$sample"/{definitions,keys,linked,src} "$work"

# Of a keyword that is given twice the second value counts.
cat >"$work/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.20)
project(Faults LANGUAGES NONE)
find_package(TovaFwBuilder REQUIRED)
add_library(archive STATIC IMPORTED)
tova_add_firmware(image DEFINITION definitions/gen_${generation}.def
  EXECUTABLES linked/base_fw.elf linked/mixer.elf linked/reverb.elf
    linked/meter.elf
  CONFIG_HEADER "${header}" KEY_LIST "${keys}"
  VERSION 1.2.3.4 OBJDUMP objdump NM nm ${arguments})
CMAKE
configure() {  # configure GENERATION ARGUMENTS OPTION...
  cmake -S "$work" -B "$work/build" -G Ninja -DTovaFwBuilder_DIR="$module" \
    -Dgeneration="$1" -Darguments="$2" -Dheader=src/audio_config.h \
    -Dkeys=keys/trusted-keys.list "${@:3}" >"$work/log" 2>&1
}
build() { cmake --build "$work/build" "$@" >"$work/log" 2>&1; }

good() {  # good GENERATION ARGUMENTS: the image is built
  { configure "$1" "$2" && build; } || die "refused: $1 $2"
}

mkdir "$work/lists"
printf '#!/bin/sh\necho LLVM version 14.0.6\n' >"$work/llvm-objdump"
chmod +x "$work/llvm-objdump"
while IFS='|' read -r arguments text; do
  configure 1.8 "$arguments" && die "configured with $arguments"
  told "$text"
done <<FAULTS
VERSION;1.2.3|VERSION must be four numbers
VERSION;1.2.3.65536|each number of VERSION can't be more than 65535: 65536
IMAGE_FLAGS;10h|IMAGE_FLAGS must be a hexadecimal number: 10h
FEATURE_MASK;0x100000000|FEATURE_MASK has more than 32 bits: 0x100000000
KEYLIST;keys|unknown argument: KEYLIST keys
IMR_TYPE;|no value stands behind IMR_TYPE
CSS_HEADER_SIZE;0x800|CSS_HEADER_SIZE must be made of decimal digits alone
CSS_HEADER_SIZE;8193|CSS_HEADER_SIZE can't be more than 8192
SIGN;debug|SIGN takes debug or release, and needs a SIGN_KEY or a SIGN_COMMAND
SIGN;debug;SIGN_COMMAND;signer|has to name <MANIFEST>, which it reads
SIGN_KEY;keys/test-key-pair.key|SIGN takes debug or release, and needs a SIGN_KEY
LINT;OFF|unknown argument: OFF. LINT, STRICT and MAP take no value
SIGN;OFF|SIGN takes debug or release
TRUST;keys/test-key-public.pem|TRUST tells whose signature to accept, but SIGN is missing
SIGN;debug;SIGN_KEY;a.key;SIGN_COMMAND;signer;<MANIFEST>;<SIGNED>|and not both. Given are SIGN_KEY "a.key" and SIGN_COMMAND "signer <MANIFEST> <SIGNED>"
SIGN;debug;SIGN_COMMAND;no-signer;<MANIFEST>;<SIGNED>|there is no program no-signer for SIGN_COMMAND in PATH
SIGN;debug;SIGN_COMMAND;./no-signer;<MANIFEST>;<SIGNED>|SIGN_COMMAND names a file that isn't there: $work/no-signer
SIGN;debug;SIGN_COMMAND;sh;-c;true\\;cp <MANIFEST> <SIGNED>|SIGN_COMMAND can't pass a semicolon on
KEY_LIST;list-NOTFOUND|KEY_LIST is the outcome of a look-up that failed: list-NOTFOUND
DEPENDS;none.txt|DEPENDS names a file that isn't there: $work/none.txt
DEFINITION;\$<1:gen.def>|DEFINITION takes no generator expression
EXECUTABLES;lists/none.elf|EXECUTABLES names a file that isn't there
EXECUTABLES;archive|it is a target of the type STATIC_LIBRARY
EXECUTABLES;\$<TARGET_FILE:archive>|EXECUTABLES takes targets by their names
EXECUTABLES;src/../linked/mixer.elf|a section table of the name mixer
DEFINITION;definitions|DEFINITION names a folder
OBJDUMP;./no-objdump|OBJDUMP can't be run
OBJDUMP;$work/llvm-objdump|is that of LLVM, whose section tables
OUTPUT_DIRECTORY;a b|an ELF list can't hold the blank in this path
OUTPUT_DIRECTORY;lists;DEPENDS;build/lists/image.xml|would destroy an input
FAULTS
configure 1.8 'VERSION;65535.0.0.65535;IMAGE_FLAGS;0x0ffffffff;CSS_HEADER_SIZE;8192' ||
  die 'the largest numbers are refused'

plant() {  # plant GENERATION TEXT ARGUMENTS OPTION...: the image must fail so
  configure "$1" "${3:-}" "${@:4}" || die "can't be configured: $2"
  build && die "built in spite of: $2"
  told "$2"
  [[ ! -e $image.bin && ! -e $image.man ]] || die "outputs left: $2"
  cp -r "$sample"/definitions "$work"
}
for change in 's/5A3C0005-.*/5A3C0004-7B1E-4C52-9D40-1F2E3D4C5B04/' /^uuid/d; do
  sed -i "$change" "$work/definitions/addon_modules.def"
  plant 1.5 'two addons have one UUID or none'
done

# One module without UUID is no fault to the tool.
if [[ -x $work/native/usr/bin/tova_fw ]]; then
  sed -i '0,/^uuid/{/^uuid/d}' "$work/definitions/base_modules.def"
  plant 3.0 'FAILED uuids'
fi

plant 1.8 'the CONFIG_HEADER: none was given' '' -Dheader=
plant 1.8 'No KEY_LIST was given' '' -Dkeys=

# An addon whose first section stands on a word. The tool refuses it in all
# generations but 3.0.
cat >"$work/objdump" <<'SCRIPT'
#!/usr/bin/env bash
objdump "$@" | if [[ $2 == *mixer.elf ]]; then
  sed '/ \.text/s/2[*][*]12/2**2/'
else cat; fi
SCRIPT
# The further symbols that the definition exports, and one outside the image.
cat >"$work/nm" <<'SCRIPT'
#!/usr/bin/env bash
nm "$@"
echo 90000000 T outside
sed -n 's/^export \(z.*\)/10000000 T \1/p' "${0%/*}/definitions/base_modules.def"
SCRIPT
chmod +x "$work"/{objdump,nm}
plant 3.0 'mixer .text begins at 0x' "OBJDUMP;$work/objdump"
plant 1.8 "Firmware image image isn't built: Error: preload size not aligned \
to page size The tool ended with status 251. mixer .text begins at 0x" \
  "OBJDUMP;$work/objdump;CSS_HEADER_SIZE;2048"
told "The whole log: $image.log Each message is explained in $work/native/"
plant 1.8 "is no section table as \`objdump -h\`" "OBJDUMP;readelf"

# The sample's tables take 1001 bytes: header 52, six entries of 116, four
# configurations of 44, 8 and 3 * 13 + 30 for three symbols. A further one takes
# 13 and its name; one outside the image takes none.
export_bytes() {  # export_bytes COUNT: exports that take so many bytes
  local left=$1 length
  sed -i 's/^export fw_alloc/&\nexport outside/' \
    "$work/definitions/base_modules.def"
  while ((left > 0)); do
    length=$((left > 900 ? 700 : left))
    sed -i "s/^export fw_alloc/&\nexport $(printf 'z%0*d' \
      $((length - 14)) "$left")/" "$work/definitions/base_modules.def"
    left=$((left - length))
  done
  touch "$work"/linked/*.elf
}
while read -r generation room; do
  export_bytes $((room - 1001))
  good "$generation" "NM;$work/nm"
  cp -r "$sample"/definitions "$work"
  export_bytes $((room - 1000))
  plant "$generation" "its tables take $((room + 1)) bytes" "NM;$work/nm"
done <<'ROOMS'
1.5 3452
1.8 24576
3.0 32768
ROOMS

# Inputs that only the key list names.
plant 1.8 'is no key list' 'KEY_LIST;keys/test-key-pair.key'
while read -r key text; do
  echo "debug $key" >"$work/lists/keys.list"
  cp "$work/keys/test-key-public.pem" "$image.xml"
  plant 1.8 "$text" 'KEY_LIST;lists/keys.list'
done <<KEYS
../keys/none.key there is no key file $work/keys/none.key
../keys/test-key-public.pem is no key file of the form that the tool reads
$image.xml would destroy an input
KEYS
cmp "$work/keys/test-key-public.pem" "$image.xml" || die 'an input is lost'

# Images of 4 GiB take a minute each: the log alone tells so here.
mv "$tool" "$work/real_tool"
while read -r section change; do
  printf '#!/bin/sh\n"%s" "$@" | sed "%s"\n' "$work/real_tool" "$change" >"$tool"
  chmod +x "$tool"
  plant 1.8 "4 GiB of zeros stand ahead of $section"
done <<'LOGS'
.text.mixer s/group aligned by 2000/group aligned by ffffe000/
.text.gain s/ f24  10001000/ fffff024  10001000/
LOGS
mv "$work/real_tool" "$tool"

# Signing. The script is called alone, with damaged files.
own=$work/own
(umask 022 && "$sample/keys/make-test-key.sh" "$own")
[[ $(stat -c %a "$own-pair.key" "$own-public.key" | xargs) == '600 644' ]] ||
  die 'a private key that others may read'
good 1.8 ''
cp "$image.man" "$work/man_1.8"
good 1.5 "SIGN;release;SIGN_KEY;$own-pair.key"
grep -q 'Manifest hash OK' "$image.man.signed.log" || die 'no log of verify'
cp "$image.man.signed" "$work/signed"
# A signer of one's own, and whom to trust, where the companion is.
signer="SIGN;release;SIGN_COMMAND;$tool;sign;release;$own-pair.key"
signer+=";<MANIFEST>;<SIGNED>"
good 1.5 "$signer"
cmp "$work/signed" "$image.man.signed"
chmod 644 "$own-pair.key"
if [[ -x $work/native/usr/bin/tova_fw ]]; then
  good 1.5 "$signer;TRUST;own-public.key;$(printf '%064d' 1)"
  plant_unsigned() {  # plant_unsigned TEXT ARGUMENTS
    { configure 1.5 "$2" && build; } && die "signed in spite of: $1"
    told "$1"
    [[ ! -e $image.man.signed ]] || die "left: $1"
  }
  plant_unsigned 'FAILED key-trusted' "$signer;TRUST;$(printf '%064d' 1)"
  plant_unsigned 'TRUST names the key of the sample' \
    "$signer;TRUST;keys/test-key-public.pem"
  configure 1.5 "$signer;TRUST;none.pem" && die 'trusts a file that is none'
  told "TRUST names a file that isn't there: $work/none.pem"
  good 1.5 "$signer;TRUST;own-public.key"
  cp "$own-public.key" "$work/kept.key"
  cp "$sample/keys/test-key-public.key" "$own-public.key"
  build && die 'a replaced key to trust is no reason to check again'
  told 'FAILED key-trusted'
  cp "$work/kept.key" "$own-public.key"
fi
# What the signer says, and a script of it as a path from the source folder.
printf '#!/bin/sh\necho "slot 3 is empty" >&2\nexit 3\n' >"$work/signer"
chmod +x "$work/signer"
configure 1.5 'SIGN;debug;SIGN_COMMAND;./signer;<MANIFEST>;<SIGNED>' ||
  die 'a script in the source folder'
build && die 'signed without a signature'
told "$image.man.signed slot 3 is empty"
# shellcheck disable=SC2016 # for the script
printf '#!/bin/sh\nexec "%s" sign debug "%s" "$1" "$2"\n' "$tool" \
  "$own-pair.key" >"$work/signer"
build || die 'the script mended'
touch "$work/signer"
build || die 'the script touched'
told 'Signing the manifest of image'
good 1.5 "SIGN;release;SIGN_KEY;$own-pair.key"
told 'Warning: others may read the private key'
chmod 600 "$own-pair.key"
damaged() {  # damaged OFFSET BYTES: the manifest, with other bytes there
  cp "$image.man" "$work/man_$1"
  printf '%b' "$2" | dd of="$work/man_$1" bs=1 seek="$1" conv=notrunc status=none
}
damaged 4 '\0\04'
damaged 24 '\0\010'
damaged 4100 '\01'
LC_ALL=C sed 's/d256:../d256:zz/' "$work/keys/test-key-pair.key" \
  >"$work/damaged.key"
cat >"$work/longer" <<SCRIPT
#!/usr/bin/env bash
"$tool" "\$@"
[[ \$1 != sign ]] || head -c 1 /dev/zero >>"\$5"
SCRIPT
chmod +x "$work/longer"
while IFS='|' read -r type key manifest program text; do
  cp "$manifest" "$work/man"
  rm -f "$work/man.signed"
  cmake -DTOOL="$program" -DMANIFEST="$work/man" -DTYPE="$type" -DKEY="$key" \
    -P "$module/TovaFwBuilderSign.cmake" >"$work/log" 2>&1 || true
  told "$text"
  [[ $text == Warning* || ! -e $work/man.signed ]] || die "signed: $text"
done <<FAULTS
debug|$work/keys/test-key-pair.key|$image.man|$tool|Warning: $work/man.signed is signed with the key of the sample firmware
release|$work/keys/test-key-pair.key|$image.man|$tool|is the key of the sample firmware
release|$own-public.pem|$image.man|$tool|is no key file of the form that the tool reads
release|$own-public.key|$image.man|$tool|has the public part of a key alone
debug|$work/damaged.key|$image.man|$tool|signed: Error:
release|$own-pair.key|$work/man_1.8|$tool|is no manifest of generation 1.5
release|$own-pair.key|$work/man_4|$tool|header_len of $work/man is 1024 and not 161
release|$own-pair.key|$work/man_24|$tool|bytes where 8192 are due
release|$own-pair.key|$work/man_4100|$tool|has more behind the 4096 bytes that are signed
release|$own-pair.key|$image.man|$work/longer|has 4097 bytes where 4096 are signed
FAULTS

# A sysroot alone, as of a cross build, and with that of the build machine.
for found in "-DTovaFwBuilder_DIR=$module" \
  "-DTovaFwBuilder_DIR= -DCMAKE_FIND_ROOT_PATH=$work/target;$work/native"; do
  # shellcheck disable=SC2086  # two options
  configure 1.8 '' -DCMAKE_FIND_ROOT_PATH="$work/target" \
    -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=ONLY -DCMAKE_SYSTEM_NAME=Linux \
    $found || die "not found: $found"
done

# Several configurations: each has files of its own.
rm -r "$work/build"
several=(1.5 "SIGN;debug;SIGN_KEY;$own-pair.key" -G 'Ninja Multi-Config')
configure "${several[@]}" -DCMAKE_CROSS_CONFIGS=all && die 'a crash of CMake'
told 'CMake crashes on CMAKE_CROSS_CONFIGS'
configure "${several[@]}" -DCMAKE_CROSS_CONFIGS= || die 'several configurations'
for configuration in Debug Release Debug; do
  build --config $configuration || die "built as $configuration"
  [[ -e $work/build/image/$configuration/image.man.signed ]] ||
    die "nothing made as $configuration"
done
told 'no work to do'
echo 'The CMake module tells the faults'
