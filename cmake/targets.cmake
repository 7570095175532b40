# One way to make a library, a program and a test, so that warnings, include roots and
# sanitizers are the same everywhere.

add_library(tova_options INTERFACE)
target_compile_options(tova_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  # A library's macro may name the file: not by the folder of the build.
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
if(TOVA_WERROR)
  target_compile_options(tova_options INTERFACE -Werror)
endif()
if(TOVA_SANITIZE)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all
      -fno-omit-frame-pointer)
  target_compile_options(tova_options INTERFACE ${sanitizers})
  target_link_options(tova_options INTERFACE ${sanitizers})
endif()
if(TOVA_FUZZ)
  target_compile_options(tova_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
target_include_directories(tova_options INTERFACE
  ${PROJECT_SOURCE_DIR}/src)

# tova_room([SOURCES a.cpp...] [USES ROOM...])
# Makes the library of the folder that calls it, a room of src/; without SOURCES
# it has headers alone. USES names all rooms, by their folders, that its files
# include from; scripts/check-rooms.sh holds the includes to it. layout/records
# becomes tova_layout_records.
function(tova_room)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
  file(RELATIVE_PATH room ${PROJECT_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR})
  list(TRANSFORM ARG_USES PREPEND tova_)
  string(REPLACE / _ name tova_${room})
  string(REPLACE / _ uses "${ARG_USES}")
  if(ARG_SOURCES)
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC tova_options ${uses})
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE tova_options ${uses})
  endif()
endfunction()

# tova_program(NAME USES ROOM...)
# Makes an executable of the calling folder's main.cpp.
function(tova_program name)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  list(TRANSFORM ARG_USES PREPEND tova_)
  string(REPLACE / _ uses "${ARG_USES}")
  add_executable(${name} main.cpp)
  add_executable(TovaFwBuilder::${name} ALIAS ${name})
  target_link_libraries(${name} PRIVATE ${uses})
  if(WIN32)
    target_sources(${name} PRIVATE
      ${PROJECT_SOURCE_DIR}/cmake/windows/program.rc)
    target_link_options(${name} PRIVATE -static)  # no library beside it
  endif()
  if(TOVA_STATIC AND NOT name IN_LIST TOVA_NEVER_STATIC)
    # The property asks for -pie, too, and of the two the compiler takes that.
    set_property(TARGET ${name} PROPERTY POSITION_INDEPENDENT_CODE)
    target_compile_options(${name} PRIVATE -fPIE)
    target_link_options(${name} PRIVATE ${TOVA_STATIC})
  elseif(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT TOVA_SANITIZE)
    # Most commands take less time than loading the C++ library does.
    target_link_options(${name} PRIVATE -static-libstdc++ -static-libgcc)
  endif()
endfunction()

# tova_test(NAME SOURCES a_test.cpp... USES lib...)
function(tova_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE tova_options ${ARG_USES}
    test_support GTest::gtest GTest::gtest_main)
  # Tests take longer to compile than to run. The C library says that its own
  # checks need an optimising build.
  target_compile_options(${name} PRIVATE -O0 -Wno-cpp)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60)
endfunction()
