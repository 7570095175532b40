#!/usr/bin/env bash
# The project as a part of another one, by add_subdirectory and by FetchContent,
# without GoogleTest: gives the programs and tova_add_firmware, with which an
# image is built, and changes nothing for the other project.
set -euo pipefail

tree=$(realpath "$(dirname "$0")/../..")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The other project has a build without a type, and names that this one could
# be tempted to take.
cat >"$work/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.20)
project(Outer LANGUAGES CXX)
foreach(name IN ITEMS completions test_support libelf options crypto tests)
  add_custom_target(${name})
endforeach()
get_cmake_property(cache_before CACHE_VARIABLES)
if(FETCH)
  include(FetchContent)
  FetchContent_Declare(tool SOURCE_DIR ${TREE})
  FetchContent_MakeAvailable(tool)
else()
  add_subdirectory(${TREE} tool)
endif()
add_executable(outer EXCLUDE_FROM_ALL outer.cpp)

get_cmake_property(cache CACHE_VARIABLES)
list(REMOVE_ITEM cache ${cache_before})
foreach(name IN LISTS cache)
  get_property(type CACHE ${name} PROPERTY TYPE)
  get_property(advanced CACHE ${name} PROPERTY ADVANCED)
  if(NOT type MATCHES "INTERNAL|STATIC" AND NOT advanced
      AND NOT name MATCHES "^(FETCHCONTENT_|OPENSSL_|CLI11_|nlohmann_json_|pkgcfg_)")
    message(SEND_ERROR "leaks ${name}, ${type}")
  endif()
endforeach()
foreach(name IN ITEMS CMAKE_BUILD_TYPE CMAKE_CXX_STANDARD
    CMAKE_POSITION_INDEPENDENT_CODE)
  if(${name})
    message(SEND_ERROR "sets ${name}")
  endif()
endforeach()
foreach(property IN ITEMS COMPILE_OPTIONS LINK_OPTIONS COMPILE_DEFINITIONS)
  get_target_property(value outer ${property})
  get_directory_property(here ${property})
  if(value OR here)
    message(SEND_ERROR "sets ${property}")
  endif()
endforeach()

function(check_names folder)
  get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    if(NOT target MATCHES "^tova_")
      message(SEND_ERROR "makes the target ${target}")
    endif()
  endforeach()
  get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(below IN LISTS folders)
    check_names(${below})
  endforeach()
endfunction()
check_names(${TREE})

set(sample ${TREE}/examples/audio_firmware)
set(arguments
  DEFINITION ${sample}/definitions/gen_1.8.def
  EXECUTABLES ${sample}/linked/base_fw.elf ${sample}/linked/mixer.elf
    ${sample}/linked/reverb.elf ${sample}/linked/meter.elf
  CONFIG_HEADER ${sample}/src/audio_config.h
  KEY_LIST ${sample}/keys/trusted-keys.list
  VERSION 1.0.0.0)
tova_add_firmware(image ${arguments} OBJDUMP objdump NM nm)
tova_add_firmware(found ${arguments})
CMAKE
touch "$work/outer.cpp"

run() { "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2 && exit 1; }; }
configure() {
  run cmake -S "$work" -B "$work/build" -G Ninja -DTREE="$tree" \
    -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON "$@"
}
# A companion that is built without libelf has no tables.
configure -DFETCH=ON -DTOVA_LIBELF_LIBRARY=
ninja -C "$work/build" -t targets all >"$work/targets"
grep -q 'tova_fw:' "$work/targets"
ninja -C "$work/build" -t commands found >"$work/commands"
grep -q 'objdump -h [^ ]*/mixer.elf' "$work/commands"
rm -rf "$work/build"

# The image, by the builder alone, which is quicker made.
configure -DCMAKE_DISABLE_FIND_PACKAGE_CLI11=ON
ctest --test-dir "$work/build" -N | grep 'Total Tests: 0' >/dev/null
run cmake --install "$work/build" --prefix "$work/prefix"
[[ ! -e $work/prefix ]]
run cmake --build "$work/build" --target image
[[ -s $work/build/image/image.bin ]]
echo "The project serves as a part of another"
