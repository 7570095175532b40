#!/usr/bin/env bash
# Builds with clang 16 and libc++ 16, the compiler and library that Macs come
# closest to of what Debian has, and runs the unit tests; one of them looks for
# pieces of a private key in the memory that signing gives back. Their packages
# get in the way of others, so they are unpacked below build/ alone.
#
# No part of .ci/run. When it last ran: docs/platforms.md.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quietly.sh

scripts/set-up.sh build companion test port
root=$PWD/build/libcxx-root
if [[ ! -e $root/complete ]]; then
  rm -rf "$root"
  mkdir -p "$root/packages"
  (cd "$root/packages" && apt-get -qq download clang-16 libclang-cpp16 \
    libllvm16 libclang-common-16-dev llvm-16-linker-tools libc++-16-dev \
    libc++1-16 libc++abi-16-dev libc++abi1-16 libunwind-16 libunwind-16-dev)
  for package in "$root"/packages/*.deb; do
    dpkg -x "$package" "$root"
  done
  touch "$root/complete"
fi
export LD_LIBRARY_PATH=$root/usr/lib/x86_64-linux-gnu:$root/usr/lib/llvm-16/lib

quietly libcxx-configure cmake -S . -B build/libcxx -G Ninja \
  -DCMAKE_CXX_COMPILER="$root/usr/lib/llvm-16/bin/clang++" \
  -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_CXX_FLAGS=-stdlib=libc++ -DTOVA_WERROR=ON \
  -DTOVA_GTEST_SOURCE=/usr/src/googletest
echo "Building and testing with libc++, logs in build/libcxx-*.log"
quietly libcxx-build cmake --build build/libcxx
quietly libcxx-test ctest --test-dir build/libcxx --output-on-failure \
  --no-tests=error --parallel "$(nproc)"
grep 'tests passed' build/libcxx-test.log
