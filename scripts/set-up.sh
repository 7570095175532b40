#!/usr/bin/env bash
# Installs what is missing for the kinds of work named as arguments:
#
#   build  compile the tool
#   companion  compile the companion tova_fw, too
#   test   build and run the tests
#   check  the further checks of .ci/run
#   cache  not compile the same twice
#   coverage  measure what the tests reach
#   bench  run the benchmarks
#   sample compile the sample firmware
#   release  make packages and archives
#   windows, port-s390x, port-aarch64, port-riscv64
#          compile for another system, and run it here
#   port   build the tests for another system or library
#
# Says nothing and asks no package server when nothing is missing. Installs by
# apt-get, through sudo when not root. On any other system it ends with
# status 1 and one line that names what is missing.
set -euo pipefail

has_command() { command -v "$1" >/dev/null; }

# Whether a C++ program that includes the header can be compiled.
has_header() {
  echo "#include <$1>" | c++ -std=c++17 -x c++ -fsyntax-only - 2>/dev/null
}

has_module() { "$1" -c "import $2" 2>/dev/null; }  # has_module PYTHON MODULE

# clang comes without the run-time part of its sanitizers on some systems.
has_sanitizers() {
  echo 'int main() {}' |
    clang++ -fsanitize=address,undefined -x c++ - -o /dev/null 2>/dev/null
}

missing=()
need() {  # need PACKAGE TEST...: notes the package when the test fails
  local package=$1
  shift
  "$@" || missing+=("$package")
}

for work in "$@"; do
  case $work in
    build)
      need g++ has_command c++
      need cmake has_command cmake
      need ninja-build has_command ninja
      ;;
    companion)
      need libcli11-dev has_header CLI/CLI.hpp
      need nlohmann-json3-dev has_header nlohmann/json.hpp
      need libssl-dev has_header openssl/evp.h
      need libelf-dev has_header gelf.h
      ;;
    test)
      need libgtest-dev has_header gtest/gtest.h
      need jq has_command jq
      need make has_command make
      need openssl has_command openssl
      need python3 has_command python3
      need valgrind has_command valgrind
      ;;
    check)
      need clang has_command clang++
      need libclang-rt-dev has_sanitizers
      need clang-format has_command clang-format
      need clang-tidy has_command clang-tidy
      need shellcheck has_command shellcheck
      need dpkg-dev has_command dpkg-shlibdeps
      need devscripts has_command hardening-check
      need file has_command file
      need mandoc has_command mandoc
      need zsh has_command zsh
      need fish has_command fish
      need softhsm2 has_command softhsm2-util
      need opensc has_command pkcs11-tool
      need python3-jsonschema has_module python3 jsonschema
      need chromium has_command chromium
      need chromium-driver has_command chromedriver
      need python3-selenium has_module /usr/bin/python3 selenium
      ;;
    cache)
      need ccache has_command ccache
      ;;
    coverage)
      need clang has_command clang++
      need llvm has_command llvm-cov
      need libclang-rt-dev has_sanitizers
      ;;
    bench)
      need libbenchmark-dev has_header benchmark/benchmark.h
      ;;
    sample)
      need gcc-arm-none-eabi has_command arm-none-eabi-gcc
      need binutils-arm-none-eabi has_command arm-none-eabi-objdump
      ;;
    release)
      need lintian has_command lintian
      need zip has_command zip
      need xz-utils has_command xz
      need dpkg-dev has_command dpkg-shlibdeps
      ;;
    port)
      need googletest test -d /usr/src/googletest
      ;;
    windows)
      need g++-mingw-w64-x86-64-posix has_command x86_64-w64-mingw32-g++-posix
      need wine has_command wine
      ;;
    port-s390x | port-aarch64 | port-riscv64)
      need "g++-${work#port-}-linux-gnu" has_command "${work#port-}-linux-gnu-g++"
      need qemu-user has_command "qemu-${work#port-}"
      ;;
    *)
      echo "$0: unknown kind of work: $work" >&2
      exit 2
      ;;
  esac
done
[[ ${#missing[@]} -gt 0 ]] || exit 0

as_root=()
if [[ $(id -u) != 0 ]]; then
  as_root=(sudo)
fi
if ! has_command apt-get ||
  { [[ ${#as_root[@]} -gt 0 ]] && ! has_command sudo; }; then
  echo "Please install these packages first: ${missing[*]}" >&2
  exit 1
fi
echo "Installing: ${missing[*]}"
# The lists may be old or absent: without them a package is not found, or an
# older version is asked for that the server has no more.
"${as_root[@]}" apt-get -qq -o Acquire::Retries=3 update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get -qq -y -o Acquire::Retries=3 -o Dpkg::Use-Pty=0 \
  install --no-install-recommends "${missing[@]}" >/dev/null
