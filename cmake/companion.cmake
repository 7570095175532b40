# What the companion tova_fw is built with. TOVA_COMPANION tells whether it is
# built at all; TOVA_LIBCRYPTO and TOVA_LIBELF, whether the commands that need
# these libraries are in it. A room links CLI11::CLI11,
# nlohmann_json::nlohmann_json, OpenSSL::Crypto or tova_libelf; no other does.
find_package(CLI11 QUIET)
find_package(nlohmann_json QUIET)
set(TOVA_COMPANION OFF)
set(TOVA_LIBCRYPTO OFF)
set(TOVA_LIBELF OFF)
if(NOT CLI11_FOUND OR NOT nlohmann_json_FOUND)
  message(STATUS "tova_fw is left out: it needs CLI11 and nlohmann-json "
                 "(libcli11-dev, nlohmann-json3-dev)")
  return()
endif()
set(TOVA_COMPANION ON)

find_package(OpenSSL QUIET COMPONENTS Crypto)
if(OPENSSL_FOUND)
  set(TOVA_LIBCRYPTO ON)
else()
  message(STATUS "tova_fw comes without PEM and DER: they need libcrypto "
                 "(libssl-dev)")
endif()

find_path(TOVA_LIBELF_INCLUDE gelf.h)
find_library(TOVA_LIBELF_LIBRARY elf)
mark_as_advanced(TOVA_LIBELF_INCLUDE TOVA_LIBELF_LIBRARY)
if(TOVA_LIBELF_INCLUDE AND TOVA_LIBELF_LIBRARY)
  set(TOVA_LIBELF ON)
  add_library(tova_libelf INTERFACE)
  target_include_directories(tova_libelf SYSTEM INTERFACE
    ${TOVA_LIBELF_INCLUDE})
  target_link_libraries(tova_libelf INTERFACE ${TOVA_LIBELF_LIBRARY})
else()
  message(STATUS "tova_fw comes without the command tables: it needs libelf "
                 "(libelf-dev)")
endif()
