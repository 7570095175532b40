# What makes a fault in the tool harder to use, asked for by name since compilers
# differ in what they do unasked. Immediate binding also keeps the dynamic
# linker from leaving pieces of a private key on the stack when it looks up a
# function for the first time. Sanitizers bring checks of their own.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)

check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# One program for old and new systems: with the C library linked in, it asks for
# nothing but a kernel, and still stands at another address in each run. Where
# the C library has no such form, the program needs it at run time. So it does
# in a debug build, for valgrind to put its own functions in, and as a part of
# another project, which may look for the same libraries in their shared form.
set(TOVA_STATIC "")
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT TOVA_SANITIZE
    AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug" AND TOVA_TOP_LEVEL)
  set(CMAKE_REQUIRED_LINK_OPTIONS -static-pie)
  check_cxx_source_compiles("int main() {}" TOVA_HAS_STATIC_PIE)
  unset(CMAKE_REQUIRED_LINK_OPTIONS)
  if(TOVA_HAS_STATIC_PIE)
    set(TOVA_STATIC -static-pie)
  endif()
endif()

if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT TOVA_SANITIZE)
  target_compile_options(tova_options INTERFACE
    -fstack-protector-strong -fstack-clash-protection
    # Both check at run time; the first needs an optimising build.
    "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>"
    -D_GLIBCXX_ASSERTIONS)
  target_link_options(tova_options INTERFACE -Wl,-z,relro -Wl,-z,now)
  # Without what nobody calls.
  target_compile_options(tova_options INTERFACE
    -ffunction-sections -fdata-sections)
  target_link_options(tova_options INTERFACE -Wl,--gc-sections)
  # Jumps to where none belongs end the process, on processors that can tell.
  # A compiler that knows one for another processor warns, and must not.
  set(CMAKE_REQUIRED_FLAGS -Werror)
  foreach(flag IN ITEMS -fcf-protection=full -mbranch-protection=standard)
    string(MAKE_C_IDENTIFIER "TOVA_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      target_compile_options(tova_options INTERFACE ${flag})
    endif()
  endforeach()
  unset(CMAKE_REQUIRED_FLAGS)
endif()
