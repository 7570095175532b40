# What the companion tova_fw is built with. TOVA_COMPANION tells whether it is
# built at all; TOVA_LIBCRYPTO and TOVA_LIBELF, whether the commands that need
# these libraries are in it. A room links CLI11::CLI11,
# nlohmann_json::nlohmann_json, OpenSSL::Crypto or tova_libelf; no other does.
if(CMAKE_CROSSCOMPILING)
  # Both are headers alone. This machine's own serve, but not the rest of the
  # folder that they stand in.
  foreach(package IN ITEMS CLI11=CLI nlohmann_json=nlohmann)
    string(REGEX REPLACE "=.*" "" name ${package})
    string(REGEX REPLACE ".*=" "" folder ${package})
    find_path(TOVA_${name}_INCLUDE ${folder}
      PATHS /usr/local/include /usr/include NO_CMAKE_FIND_ROOT_PATH)
    mark_as_advanced(TOVA_${name}_INCLUDE)
    set(${name}_FOUND OFF)
    if(TOVA_${name}_INCLUDE)
      set(${name}_FOUND ON)
      set(headers ${PROJECT_BINARY_DIR}/headers/${name})
      file(MAKE_DIRECTORY ${headers})
      file(CREATE_LINK ${TOVA_${name}_INCLUDE}/${folder} ${headers}/${folder}
        SYMBOLIC)
      add_library(${name}::${name} INTERFACE IMPORTED)
      target_include_directories(${name}::${name} SYSTEM INTERFACE ${headers})
    endif()
  endforeach()
else()
  find_package(CLI11 QUIET)
  find_package(nlohmann_json QUIET)
endif()
set(TOVA_COMPANION OFF)
set(TOVA_LIBCRYPTO OFF)
set(TOVA_LIBELF OFF)
if(NOT CLI11_FOUND OR NOT nlohmann_json_FOUND)
  message(STATUS "tova_fw is left out: it needs CLI11 and nlohmann-json "
                 "(libcli11-dev, nlohmann-json3-dev)")
  return()
endif()
set(TOVA_COMPANION ON)

# Archives, where there are some, so that tova_fw needs nothing at run time
# either. The functions of libcrypto that ask for the C library's own modules,
# such as getaddrinfo, are never called: no command opens a connection.
set(shared_only "")
if(TOVA_STATIC)
  set(OPENSSL_USE_STATIC_LIBS ON)
  find_package(OpenSSL QUIET COMPONENTS Crypto)
  if(NOT OPENSSL_FOUND)
    unset(OPENSSL_USE_STATIC_LIBS)
    unset(OPENSSL_CRYPTO_LIBRARY CACHE)
  endif()
endif()
if(NOT OPENSSL_FOUND)
  find_package(OpenSSL QUIET COMPONENTS Crypto)
  if(OPENSSL_FOUND AND TOVA_STATIC)
    list(APPEND shared_only libcrypto)
  endif()
endif()
if(OPENSSL_FOUND)
  set(TOVA_LIBCRYPTO ON)
else()
  message(STATUS "tova_fw comes without PEM and DER: they need libcrypto "
                 "(libssl-dev)")
endif()

find_path(TOVA_LIBELF_INCLUDE gelf.h)
find_library(TOVA_LIBELF_LIBRARY elf)
find_library(TOVA_LIBELF_ARCHIVE libelf.a)
find_library(TOVA_ZLIB_ARCHIVE libz.a)  # for sections that are compressed
mark_as_advanced(TOVA_LIBELF_INCLUDE TOVA_LIBELF_LIBRARY TOVA_LIBELF_ARCHIVE
  TOVA_ZLIB_ARCHIVE)
if(TOVA_LIBELF_INCLUDE AND TOVA_LIBELF_LIBRARY)
  set(libelf ${TOVA_LIBELF_LIBRARY})
  if(TOVA_STATIC AND TOVA_LIBELF_ARCHIVE AND TOVA_ZLIB_ARCHIVE)
    set(libelf ${TOVA_LIBELF_ARCHIVE} ${TOVA_ZLIB_ARCHIVE})
  elseif(TOVA_STATIC)
    list(APPEND shared_only libelf)
  endif()
  set(TOVA_LIBELF ON)
  add_library(tova_libelf INTERFACE)
  target_include_directories(tova_libelf SYSTEM INTERFACE
    ${TOVA_LIBELF_INCLUDE})
  target_link_libraries(tova_libelf INTERFACE ${libelf})
else()
  message(STATUS "tova_fw comes without the command tables: it needs libelf "
                 "(libelf-dev)")
endif()

if(shared_only)
  message(STATUS "tova_fw is linked dynamically: there is no archive of "
                 "${shared_only}")
  set(TOVA_NEVER_STATIC tova_fw)
endif()
