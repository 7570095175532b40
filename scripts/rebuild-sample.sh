#!/usr/bin/env bash
# Compiles and links the sample firmware anew with the ARM tool chain, builds
# its images by the CMake module, and renews the committed linker output.
# rebuild-sample.sh --try leaves those alone.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

scripts/set-up.sh build companion sample
scripts/build.sh tool
quietly install cmake --install build/tool --prefix build/prefix

sample=examples/audio_firmware
build=build/sample
quietly sample-configure cmake -S $sample -B $build -G Ninja \
  -DCMAKE_TOOLCHAIN_FILE="$PWD/$sample/arm-none-eabi.cmake" \
  -DCMAKE_PREFIX_PATH="$PWD/build/prefix"
quietly sample-build cmake --build $build

if [[ ${1:-} != --try ]]; then
  linked=$sample/linked
  for elf in base_fw mixer reverb meter; do
    cp $build/$elf.elf $linked/
    # Named without a folder: the table shows the name that it was given.
    (cd $linked && LC_ALL=C arm-none-eabi-objdump -h $elf.elf) \
      >$linked/$elf.sections
    LC_ALL=C arm-none-eabi-nm $linked/$elf.elf >$linked/$elf.symbols
  done
  chmod 644 $linked/*
fi
echo "Images: $build/gen-*/"
