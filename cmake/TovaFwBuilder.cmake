# Firmware images as a part of your own build:
#
#   find_package(TovaFwBuilder REQUIRED)
#   tova_add_firmware(NAME
#     DEFINITION file            # the top image definition
#     EXECUTABLES item...        # executable targets or ELF files, in the
#                                # order of the ELF list
#     VERSION major.minor.hotfix.build    # each up to 65535
#     [CONFIG_HEADER file]       # the header of #define lines
#     [KEY_LIST file]            # the public keys that the image trusts
#     [IMAGE_FLAGS hex] [FEATURE_MASK hex] [IMR_TYPE hex]   # 0, 32 bits
#     [CSS_HEADER_SIZE number]   # 0; decimal, up to 8192
#     [OUTPUT_DIRECTORY dir]     # NAME in the current binary folder
#     [SIGN debug|release        # generation 1.5 alone, with one of these:
#       SIGN_KEY file            # the file of the pair
#       SIGN_COMMAND word...     # a command that reads <MANIFEST> and writes
#                                # <SIGNED>, such as a script around an HSM: a
#                                # target, a program in PATH, or a path
#       [TRUST key...]]          # the only keys to accept: hash, key file, PEM
#     [LINT [STRICT]]            # tova_fw lint ahead of the tool; STRICT
#                                # fails on its warnings, too
#     [MAP [BUDGET class=limit...]]       # where the memory goes; limits in
#                                # bytes, K, M or %. BUDGET alone maps, too
#     [OBJDUMP program] [NM program]      # objdump must be that of GNU binutils
#     [DEPENDS file...])         # whatever else the image is made anew for
#
# makes the target NAME, a part of `all`, and in the output folder NAME.bin,
# NAME.man, NAME.man.ext, NAME.pkg, NAME.xml, NAME.log, for each ELF its
# section table and symbol list, with SIGN also NAME.man.signed and
# NAME.man.signed.log, and with MAP NAME.map.html, a page for the browser, and
# NAME.map.json. The image is made anew when one of its inputs changes:
# an ELF, a definition file at any depth, the header, the key list, a key, an
# argument, the tool. It is signed anew when a file changes that TRUST names or,
# by its whole path, a word of SIGN_COMMAND. Paths are no generator expressions,
# but for DEPENDS. With a generator of several configurations each has a folder
# of its own in the output folder; that needs CMake 3.21.
#
# The companion tova_fw lists sections and symbols, where it is installed and
# built with libelf; the tool chain may be any then, that of LLVM, too. Without
# it, or if OBJDUMP or NM is given, those two do, by default the tool chain's.
#
# Properties of the target tell others where these files are:
#
#   TOVA_BINARY             TOVA_PACKAGE_DESCRIPTOR   TOVA_SIGNED_MANIFEST
#   TOVA_MANIFEST           TOVA_MEMORY_DESCRIPTION   TOVA_MAP_PAGE
#   TOVA_EXTENDED_MANIFEST  TOVA_ELF_LIST  TOVA_LOG   TOVA_MAP_JSON
#
#   add_custom_command(OUTPUT firmware.zip
#     COMMAND zip -j firmware.zip $<TARGET_PROPERTY:NAME,TOVA_BINARY>
#     DEPENDS NAME $<TARGET_PROPERTY:NAME,TOVA_BINARY>)
#
# What isn't made has none. DEPENDS needs both, the target for the order and the
# file for the changes. With a generator of several configurations, write
# $<TARGET_GENEX_EVAL:NAME,$<TARGET_PROPERTY:NAME,TOVA_BINARY>>.
#
# Arguments that can't be right are refused at configuring. The build fails,
# shows the tool's errors and warnings, names the log, and takes the partial
# files away, when the tool fails, and where it would pass a fault in silence:
# a file cut off by a full disk, an output that names an input, two addons with
# one file, load addresses that don't rise, tables without room, an image of
# 3.0 off the page grid, a manifest that a signature wouldn't wholly cover, a
# release signed with the sample's key. Where the companion tova_fw is installed
# (beside the tool, in PATH, or as TovaFw_EXECUTABLE tells), its `check` has to
# hold for the files made, too. LINT and MAP need it. Over budget the build
# fails with a line for each class; image and page are there all the same.

cmake_policy(PUSH)
cmake_policy(VERSION 3.20)

# The companion is a package of its own.
find_program(TovaFw_EXECUTABLE tova_fw
  HINTS "${CMAKE_CURRENT_LIST_DIR}/../../../bin" NO_CMAKE_FIND_ROOT_PATH
  DOC "The companion, which checks what was built")
mark_as_advanced(TovaFw_EXECUTABLE)
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilderArguments.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilderCompanion.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilderJoin.cmake")

# Adds the command that lists one table of an ELF. The headings are those of the
# C locale, whoever builds.
macro(_tova_list table)
  add_custom_command(
    OUTPUT "${dir}/${stem}.${table}"
    COMMAND "${CMAKE_COMMAND}" -E env LC_ALL=C ${ARGN} "${elf}"
      > "${dir}/${stem}.${table}"
    DEPENDS ${executable} "${elf}"
    COMMENT "Listing the ${table} of ${stem}"
    VERBATIM)
endmacro()

# Adds the commands that describe one ELF. Sets `entry` to its three lines
# of the ELF list and `files` to what the image depends on.
function(_tova_describe_elf executable dir)
  if(TARGET ${executable})
    set(elf "$<TARGET_FILE:${executable}>")
    set(stem "${executable}")
  else()
    get_filename_component(elf "${executable}" ABSOLUTE)
    get_filename_component(stem "${executable}" NAME_WLE)
  endif()
  # Make takes a colon for its own.
  string(REPLACE ":" "_" stem "${stem}")
  get_property(stems GLOBAL PROPERTY _tova_tables)
  if("${dir}/${stem}" IN_LIST stems)
    _tova_refuse("there is a section table of the name ${stem} in ${dir} "
      "already. Two ELFs of one image need names of their own, two images "
      "folders of their own.")
  endif()
  set_property(GLOBAL APPEND PROPERTY _tova_tables "${dir}/${stem}")
  set(tables "${dir}/${stem}.sections" "${dir}/${stem}.symbols")
  if(ARG_TABLES)
    _tova_companion_tables("${executable}" "${elf}" "${dir}" "${stem}")
  else()
    _tova_list(sections ${ARG_OBJDUMP} -h)
    _tova_list(symbols ${ARG_NM})
  endif()
  list(JOIN tables "\n" lines)
  set(entry "${elf}\n${lines}\n" PARENT_SCOPE)
  set(files "${elf}" ${tables} PARENT_SCOPE)
endfunction()

# Adds the command that signs the manifest and checks the signature.
function(_tova_sign base)
  set(manifest "${base}.man")
  # The signer's program and what else is a file among its words, and the keys
  # to trust that are no hashes.
  set(files)
  foreach(word IN LISTS ARG_SIGN_COMMAND ARG_TRUST)
    if(word MATCHES "^\\$<TARGET_FILE:" OR IS_ABSOLUTE "${word}" AND
       EXISTS "${word}" AND NOT IS_DIRECTORY "${word}")
      list(APPEND files "${word}")
    endif()
  endforeach()
  add_custom_command(
    OUTPUT "${manifest}.signed"
    BYPRODUCTS "${manifest}.signed.log"
    COMMAND "${CMAKE_COMMAND}"
      "-DTOOL=$<TARGET_FILE:TovaFwBuilder::tova_fw_builder>"
      "-Dcompanion=${TovaFw_EXECUTABLE}"
      "-DMANIFEST=${manifest}" "-DTYPE=${ARG_SIGN}" "-DKEY=${ARG_SIGN_KEY}"
      "-DCOMMAND=${ARG_SIGN_COMMAND}" "-DTRUST=${ARG_TRUST}"
      -P "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/TovaFwBuilderSign.cmake"
    DEPENDS "${manifest}" ${ARG_SIGN_KEY} ${files}
      TovaFwBuilder::tova_fw_builder ${TovaFw_EXECUTABLE}
      "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/TovaFwBuilderSign.cmake"
      "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/TovaFwBuilderCheck.cmake"
    COMMENT "Signing the manifest of ${name}"
    VERBATIM)
endfunction()

# The command that builds the image, and a file of its own for its arguments,
# so that the image is made anew when one changes, under generators that don't
# watch command lines too.
function(_tova_build base outputs arguments)
  file(GENERATE OUTPUT "${base}.arguments.cmake" CONTENT "${arguments}")
  set(script "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/TovaFwBuilderRun.cmake")
  add_custom_command(
    OUTPUT ${outputs}
    BYPRODUCTS "${base}.log" "${base}.d"
    COMMAND "${CMAKE_COMMAND}" "-DARGUMENTS=${base}.arguments.cmake"
      -P "${script}"
    DEPENDS ${ARGN} "${base}.elfs" "${base}.arguments.cmake" "${script}"
      "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/TovaFwBuilderCheck.cmake"
      TovaFwBuilder::tova_fw_builder ${TovaFw_EXECUTABLE}
    DEPFILE "${base}.image.d"
    COMMENT "Building firmware image ${name}"
    VERBATIM)
endfunction()

# Where the files of an image are, for whoever uses them.
function(_tova_tell_outputs base)
  set_target_properties(${name} PROPERTIES
    TOVA_BINARY "${base}.bin"
    TOVA_MANIFEST "${base}.man"
    TOVA_EXTENDED_MANIFEST "${base}.man.ext"
    TOVA_PACKAGE_DESCRIPTOR "${base}.pkg"
    TOVA_MEMORY_DESCRIPTION "${base}.xml"
    TOVA_ELF_LIST "${base}.elfs"
    TOVA_LOG "${base}.log")
  if(ARG_SIGN)
    set_property(TARGET ${name} PROPERTY
      TOVA_SIGNED_MANIFEST "${base}.man.signed")
  endif()
  if(ARG_MAP)
    set_target_properties(${name} PROPERTIES
      TOVA_MAP_PAGE "${base}.map.html" TOVA_MAP_JSON "${base}.map.json")
  endif()
endfunction()

# Each configuration of a generator of several has a folder of its own.
function(_tova_output_folder result)
  if(NOT ARG_OUTPUT_DIRECTORY)
    set(ARG_OUTPUT_DIRECTORY "${name}")
  endif()
  get_filename_component(dir "${ARG_OUTPUT_DIRECTORY}" ABSOLUTE
    BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
  get_property(several GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
  if(several AND CMAKE_VERSION VERSION_LESS 3.21)
    _tova_refuse("the generator ${CMAKE_GENERATOR} needs CMake 3.21")
  elseif(several AND CMAKE_CROSS_CONFIGS)
    _tova_refuse("CMake crashes on CMAKE_CROSS_CONFIGS where a command has a "
      "dependency file, as images do. Build each configuration on its own.")
  elseif(several)
    string(APPEND dir "/$<CONFIG>")
  endif()
  set(${result} "${dir}" PARENT_SCOPE)
endfunction()

function(tova_add_firmware name)
  set(_tova_function tova_add_firmware)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "LINT;STRICT;MAP"
    "DEFINITION;VERSION;CONFIG_HEADER;KEY_LIST;IMAGE_FLAGS;FEATURE_MASK;IMR_TYPE;CSS_HEADER_SIZE;OUTPUT_DIRECTORY;SIGN;SIGN_KEY;OBJDUMP;NM"
    "EXECUTABLES;DEPENDS;SIGN_COMMAND;TRUST;BUDGET")
  _tova_find_companion()
  _tova_check_words()
  _tova_complete_words()
  _tova_check_values()
  string(REPLACE "." ";" version "${ARG_VERSION}")
  _tova_output_folder(dir)
  _tova_check_blanks("${dir}")
  set(base "${dir}/${name}")
  set(image "${base}.bin" "${base}.man" "${base}.man.ext" "${base}.pkg"
    "${base}.xml")
  set(others "${base}.d" "${base}.image.d" "${base}.man.signed"
    "${base}.man.signed.log" "${base}.map.html" "${base}.map.json"
    "${base}.map.done")
  set(kept "${base}.log" "${base}.elfs")
  _tova_check_overwrite("${image};${others};${kept}" ${ARG_DEFINITION}
    ${ARG_CONFIG_HEADER} ${ARG_KEY_LIST} ${ARG_SIGN_KEY} ${ARG_EXECUTABLES}
    ${ARG_DEPENDS})
  if(NOT ARG_CONFIG_HEADER)
    set(ARG_CONFIG_HEADER "${base}.no_config.h")
    file(GENERATE OUTPUT "${ARG_CONFIG_HEADER}" CONTENT "")
  endif()

  set(lint)
  if(ARG_LINT)
    _tova_lint(lint "${base}" "${dir}")
  endif()
  set(elf_list "")
  set(inputs "${ARG_DEFINITION}" "${ARG_CONFIG_HEADER}" ${ARG_KEY_LIST}
    ${ARG_DEPENDS})
  foreach(executable IN LISTS ARG_EXECUTABLES)
    _tova_describe_elf("${executable}" "${dir}")
    string(APPEND elf_list "${entry}")
    list(APPEND inputs ${files})
  endforeach()
  file(GENERATE OUTPUT "${base}.elfs" CONTENT "${elf_list}")

  _tova_build("${base}" "${image}"
"set(tool [==[$<TARGET_FILE:TovaFwBuilder::tova_fw_builder>]==])
set(companion [==[${TovaFw_EXECUTABLE}]==])
set(name [==[${name}]==])
set(dir [==[${dir}]==])
set(definition [==[${ARG_DEFINITION}]==])
set(config_header [==[${ARG_CONFIG_HEADER}]==])
set(key_list [==[${ARG_KEY_LIST}]==])
set(lint [==[${lint}]==])
set(numbers [==[${ARG_IMAGE_FLAGS};${ARG_FEATURE_MASK};${ARG_IMR_TYPE};${version};${ARG_CSS_HEADER_SIZE}]==])
set(css_header_size [==[${ARG_CSS_HEADER_SIZE}]==])
set(outputs [==[${image};${others}]==])
set(kept [==[${kept}]==])
" ${inputs})
  if(ARG_SIGN)
    _tova_sign("${base}")
    list(APPEND image "${base}.man.signed")
  endif()
  if(ARG_MAP)
    _tova_map("${base}" "${dir}")
    list(APPEND image "${base}.map.done")
  endif()
  add_custom_target(${name} ALL DEPENDS ${image})
  _tova_tell_outputs("${base}")
  list(REMOVE_ITEM image "${base}.map.done")
  set_property(TARGET ${name} PROPERTY _tova_files "${image}")
endfunction()

cmake_policy(POP)
