#!/usr/bin/env bash
# check-port.sh PROCESSOR
# Builds for Linux on another 64-bit processor (s390x, whose byte order is the
# other one; aarch64; riscv64) and runs it under qemu: the unit tests, and the
# sample firmware, every file and log of which must equal this machine's own.
# On aarch64, also that the processor's SHA instructions are what runs.
#
# s390x is part of .ci/run. When the others last ran: docs/platforms.md.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

processor=${1:?usage: check-port.sh s390x|aarch64|riscv64}
scripts/set-up.sh build companion port "port-$processor"
scripts/build.sh tool

# Pointers are signed in each function, and the processor's own way of it takes
# the emulator many times as long as this one.
[[ $processor != aarch64 ]] || export QEMU_CPU=max,pauth-impdef=on

build=build/port-$processor
compare=$PWD/$build/compare
emulator=(qemu-"$processor" -L "/usr/$processor-linux-gnu")
quietly "port-$processor-configure" cmake -S . -B "$build" -G Ninja \
  -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/toolchains/linux.cmake" \
  -DTOVA_TARGET="$processor" -DTOVA_WERROR=ON \
  -DCMAKE_CXX_FLAGS_RELEASE="-O1 -DNDEBUG" \
  -DTOVA_GTEST_SOURCE=/usr/src/googletest
echo "Building and testing for $processor, logs in $build-*.log"
quietly "port-$processor-build" cmake --build "$build"
quietly "port-$processor-test" ctest --test-dir "$build" --output-on-failure \
  --no-tests=error --parallel "$(nproc)"
grep 'tests passed' "$build-test.log"

# run_as NAME COMMAND...: the sample by this command, then moved aside. All
# are run in the same folder, whose name stands in the logs.
run_as() {
  mkdir -p "$compare"
  printf '#!/bin/sh\nexec%s "$@"\n' "$(printf ' "%s"' "${@:2}")" \
    >"$compare/tool"
  chmod +x "$compare/tool"
  rm -rf "$compare/run" "${compare:?}/$1"
  quietly "port-$processor-sample" \
    scripts/run-sample.sh "$compare/tool" "$compare/run"
  mv "$compare/run" "$compare/$1"
}
tool=src/driver/tova_fw_builder
run_as native "build/tool/$tool"
run_as "$processor" "${emulator[@]}" "$build/$tool"
# The packages name the minute in which the tool was compiled.
diff -r -I '^# TOVA FW Image Builder ver ' \
  "$compare/native" "$compare/$processor"

if [[ $processor == aarch64 ]]; then
  # That the processor's own instructions for SHA-256 are there, and are what
  # runs: the emulator lists all that it translates.
  "$processor-linux-gnu-objdump" -d "$build/$tool" >"$build/listing"
  grep -qw sha256h2 "$build/listing"
  "${emulator[@]}" -d in_asm -D "$build/ran" "$build/$tool" \
    hash_key pub examples/audio_firmware/keys/test-key-public.key >/dev/null
  grep -qw sha256h2 "$build/ran"
fi
echo "$processor: the unit tests hold, and the sample firmware is the same"
