# Firmware images as a part of your own build:
#
#   find_package(TovaFwBuilder REQUIRED)
#   tova_add_firmware(NAME
#     DEFINITION file            # the top image definition
#     EXECUTABLES item...        # executable targets or ELF files, in the
#                                # order of the ELF list
#     VERSION major.minor.hotfix.build
#     [CONFIG_HEADER file]       # the header of #define lines
#     [KEY_LIST file]            # the public keys that the image trusts
#     [IMAGE_FLAGS hex] [FEATURE_MASK hex] [IMR_TYPE hex]   # 0
#     [CSS_HEADER_SIZE number]   # 0
#     [OUTPUT_DIRECTORY dir]     # NAME in the current binary folder
#     [SIGN debug|release SIGN_KEY file]  # generation 1.5 alone
#     [OBJDUMP program] [NM program]      # those of the tool chain
#     [DEPENDS file...])         # whatever else the image is made anew for
#
# makes the target NAME, a part of `all`, and in the output folder NAME.bin,
# NAME.man, NAME.man.ext, NAME.pkg, NAME.xml, NAME.log, for each ELF its
# section table and symbol list, and with SIGN also NAME.man.signed. The image
# is made anew when one of its inputs changes: an ELF, a definition file at
# any depth, the header, the key list, a key, an argument, the tool.
#
# The build fails, and takes the partial files away, when the tool fails or
# when a file is shorter than the log says: a full disk is no failure to the
# tool itself.

cmake_policy(PUSH)
cmake_policy(VERSION 3.20)

set(TovaFwBuilder_SCRIPT_DIR "${CMAKE_CURRENT_LIST_DIR}")

# The ELF and key lists cut a path at its first blank.
function(_tova_refuse_blanks)
  foreach(path IN LISTS ARGN)
    if(path MATCHES "[ \t]")
      message(FATAL_ERROR
        "tova_add_firmware: a blank in this path, which an ELF list can't "
        "hold: ${path}")
    endif()
  endforeach()
endfunction()

# Adds the two commands that describe one ELF. Sets `entry` to its three lines
# of the ELF list and `files` to what the image depends on.
function(_tova_describe_elf executable dir objdump nm)
  if(TARGET ${executable})
    set(elf "$<TARGET_FILE:${executable}>")
    set(stem ${executable})
  else()
    get_filename_component(elf "${executable}" ABSOLUTE)
    get_filename_component(stem "${executable}" NAME_WE)
    _tova_refuse_blanks("${elf}")
  endif()
  set(tables)
  foreach(table IN ITEMS sections symbols)
    set(file "${dir}/${stem}.${table}")
    set(program "${objdump}" -h)
    if(table STREQUAL "symbols")
      set(program "${nm}")
    endif()
    # The headings are those of the C locale, whoever builds.
    add_custom_command(
      OUTPUT "${file}"
      COMMAND "${CMAKE_COMMAND}" -E env LC_ALL=C ${program} "${elf}" > "${file}"
      DEPENDS ${executable} "${elf}"
      COMMENT "Listing the ${table} of ${stem}"
      VERBATIM)
    list(APPEND tables "${file}")
  endforeach()
  list(JOIN tables "\n" lines)
  set(entry "${elf}\n${lines}\n" PARENT_SCOPE)
  set(files "${elf}" ${tables} PARENT_SCOPE)
endfunction()

# Adds the command that signs `manifest` with a key, and checks the signature.
function(_tova_sign manifest type key)
  if(NOT type MATCHES "^(debug|release)$" OR NOT key)
    message(FATAL_ERROR
      "tova_add_firmware: SIGN takes debug or release, and a SIGN_KEY")
  endif()
  get_filename_component(key "${key}" ABSOLUTE)
  add_custom_command(
    OUTPUT "${manifest}.signed"
    COMMAND "${CMAKE_COMMAND}"
      "-DTOOL=$<TARGET_FILE:TovaFwBuilder::tova_fw_builder>"
      "-DMANIFEST=${manifest}" "-DTYPE=${type}" "-DKEY=${key}"
      -P "${TovaFwBuilder_SCRIPT_DIR}/TovaFwBuilderSign.cmake"
    DEPENDS "${manifest}" "${key}" TovaFwBuilder::tova_fw_builder
      "${TovaFwBuilder_SCRIPT_DIR}/TovaFwBuilderSign.cmake"
    COMMENT "Signing ${manifest}"
    VERBATIM)
endfunction()

function(tova_add_firmware name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG ""
    "DEFINITION;VERSION;CONFIG_HEADER;KEY_LIST;IMAGE_FLAGS;FEATURE_MASK;IMR_TYPE;CSS_HEADER_SIZE;OUTPUT_DIRECTORY;SIGN;SIGN_KEY;OBJDUMP;NM"
    "EXECUTABLES;DEPENDS")
  if(ARG_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR
      "tova_add_firmware: unknown argument: ${ARG_UNPARSED_ARGUMENTS}")
  endif()
  foreach(needed IN ITEMS DEFINITION EXECUTABLES VERSION)
    if(NOT ARG_${needed})
      message(FATAL_ERROR "tova_add_firmware: ${needed} is missing")
    endif()
  endforeach()
  if(NOT ARG_VERSION MATCHES "^([0-9]+)\\.([0-9]+)\\.([0-9]+)\\.([0-9]+)$")
    message(FATAL_ERROR
      "tova_add_firmware: VERSION must be four numbers: ${ARG_VERSION}")
  endif()
  string(REPLACE "." ";" version "${ARG_VERSION}")
  foreach(zero IN ITEMS IMAGE_FLAGS FEATURE_MASK IMR_TYPE CSS_HEADER_SIZE)
    if(NOT DEFINED ARG_${zero})
      set(ARG_${zero} 0)
    endif()
  endforeach()
  if(NOT ARG_OUTPUT_DIRECTORY)
    set(ARG_OUTPUT_DIRECTORY "${name}")
  endif()
  if(NOT ARG_OBJDUMP)
    set(ARG_OBJDUMP "${CMAKE_OBJDUMP}")
  endif()
  if(NOT ARG_NM)
    set(ARG_NM "${CMAKE_NM}")
  endif()
  if(NOT ARG_OBJDUMP OR NOT ARG_NM)
    message(FATAL_ERROR
      "tova_add_firmware: say OBJDUMP and NM, or enable a language")
  endif()

  # Reading a definition moves the tool's working directory, so every path is
  # absolute.
  get_filename_component(dir "${ARG_OUTPUT_DIRECTORY}" ABSOLUTE
    BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
  foreach(path IN ITEMS DEFINITION CONFIG_HEADER KEY_LIST)
    if(ARG_${path})
      get_filename_component(ARG_${path} "${ARG_${path}}" ABSOLUTE)
    endif()
  endforeach()
  _tova_refuse_blanks("${dir}")
  file(MAKE_DIRECTORY "${dir}")
  set(base "${dir}/${name}")
  if(NOT ARG_CONFIG_HEADER)
    set(ARG_CONFIG_HEADER "${base}.no_config.h")
    file(GENERATE OUTPUT "${ARG_CONFIG_HEADER}" CONTENT "")
  endif()

  set(elf_list "")
  set(inputs "${ARG_DEFINITION}" "${ARG_CONFIG_HEADER}" ${ARG_KEY_LIST}
    ${ARG_DEPENDS})
  foreach(executable IN LISTS ARG_EXECUTABLES)
    _tova_describe_elf("${executable}" "${dir}" "${ARG_OBJDUMP}" "${ARG_NM}")
    string(APPEND elf_list "${entry}")
    list(APPEND inputs ${files})
  endforeach()
  file(GENERATE OUTPUT "${base}.elfs" CONTENT "${elf_list}")

  # A file of its own for the arguments, so that the image is made anew when
  # one changes, under generators that don't watch command lines too.
  file(GENERATE OUTPUT "${base}.arguments.cmake" CONTENT
"set(tool [==[$<TARGET_FILE:TovaFwBuilder::tova_fw_builder>]==])
set(name [==[${name}]==])
set(dir [==[${dir}]==])
set(definition [==[${ARG_DEFINITION}]==])
set(config_header [==[${ARG_CONFIG_HEADER}]==])
set(key_list [==[${ARG_KEY_LIST}]==])
set(numbers [==[${ARG_IMAGE_FLAGS};${ARG_FEATURE_MASK};${ARG_IMR_TYPE};${version};${ARG_CSS_HEADER_SIZE}]==])
set(css_header_size [==[${ARG_CSS_HEADER_SIZE}]==])
")
  set(script "${TovaFwBuilder_SCRIPT_DIR}/TovaFwBuilderRun.cmake")
  set(outputs "${base}.bin" "${base}.man" "${base}.man.ext" "${base}.pkg"
    "${base}.xml")
  add_custom_command(
    OUTPUT ${outputs}
    BYPRODUCTS "${base}.log" "${base}.d"
    COMMAND "${CMAKE_COMMAND}" "-DARGUMENTS=${base}.arguments.cmake"
      -P "${script}"
    DEPENDS ${inputs} "${base}.elfs" "${base}.arguments.cmake" "${script}"
      TovaFwBuilder::tova_fw_builder
    DEPFILE "${base}.image.d"
    COMMENT "Building firmware image ${name}"
    VERBATIM)
  if(ARG_SIGN)
    _tova_sign("${base}.man" "${ARG_SIGN}" "${ARG_SIGN_KEY}")
    list(APPEND outputs "${base}.man.signed")
  endif()
  add_custom_target(${name} ALL DEPENDS ${outputs})
endfunction()

cmake_policy(POP)
