# What can be wrong in the arguments of tova_add_firmware and its like, told at
# configuring. The checks read `_tova_function`, `name`, which is its target, and
# ARG_* of their caller.

# Joins its arguments. A list among them has to be joined by the caller.
function(_tova_refuse)
  list(JOIN ARGN "" text)
  message(FATAL_ERROR "${_tova_function}(${name}): ${text}")
endfunction()

# The tool takes a text that is no number for 0, and cuts what is too large.
function(_tova_check_decimal keyword number limit)
  if(NOT number MATCHES "^[0-9]+$")
    _tova_refuse("${keyword} must be made of decimal digits alone: ${number}")
  elseif(number GREATER limit)
    _tova_refuse("${keyword} can't be more than ${limit}: ${number}")
  endif()
endfunction()

function(_tova_check_hexadecimal keyword number)
  if(NOT number MATCHES "^(0[xX])?0*([0-9a-fA-F]+)$")
    _tova_refuse("${keyword} must be a hexadecimal number: ${number}")
  endif()
  string(LENGTH "${CMAKE_MATCH_2}" digits)
  if(digits GREATER 8)
    _tova_refuse("${keyword} has more than 32 bits: ${number}")
  endif()
endfunction()

function(_tova_check_version version)
  if(NOT version MATCHES "^([0-9]+)\\.([0-9]+)\\.([0-9]+)\\.([0-9]+)$")
    _tova_refuse("VERSION must be four numbers with dots between, "
      "such as 1.4.0.27: ${version}")
  endif()
  foreach(part IN ITEMS 1 2 3 4)
    _tova_check_decimal("each number of VERSION" "${CMAKE_MATCH_${part}}" 65535)
  endforeach()
endfunction()

# The ELF and key lists cut a path at its first blank.
function(_tova_check_blanks path)
  if(path MATCHES "[ \t]")
    _tova_refuse("an ELF list can't hold the blank in this path. Choose one "
      "without: ${path}")
  endif()
endfunction()

# A file that is there, or that the build makes.
function(_tova_check_file keyword path)
  get_source_file_property(generated "${path}" GENERATED)
  string(FIND "${path}" "${CMAKE_BINARY_DIR}/" place)
  if(path MATCHES "\\$<" OR generated OR place EQUAL 0)
    return()
  elseif(keyword STREQUAL "DEPENDS" AND EXISTS "${path}")
    return()
  elseif(IS_DIRECTORY "${path}")
    _tova_refuse("${keyword} names a folder and not a file: ${path}")
  elseif(NOT EXISTS "${path}")
    set(hint "If the build makes it, set its source file property GENERATED.")
    if(keyword MATCHES "^(EXECUTABLES|INPUTS|DEPENDS)$")
      string(PREPEND hint "There is no target or argument of that name so far, either. ")
    endif()
    _tova_refuse("${keyword} names a file that isn't there: ${path}\n${hint}")
  endif()
endfunction()

function(_tova_check_executable executable)
  if(TARGET ${executable})
    get_target_property(type ${executable} TYPE)
    if(NOT type MATCHES "^(EXECUTABLE|SHARED_LIBRARY|MODULE_LIBRARY)$")
      _tova_refuse("${executable} among EXECUTABLES has no linked ELF: it is "
        "a target of the type ${type}")
    endif()
  elseif(executable MATCHES "^\\$<")
    _tova_refuse("EXECUTABLES takes targets by their names: ${executable}")
  else()
    get_filename_component(path "${executable}" ABSOLUTE)
    _tova_check_blanks("${path}")
    _tova_check_file(EXECUTABLES "${path}")
  endif()
endfunction()

# The tool truncates its outputs before it reads anything, so that an input
# among them would be lost.
function(_tova_check_overwrite outputs)
  foreach(input IN LISTS ARGN)
    get_filename_component(path "${input}" REALPATH)
    foreach(output IN LISTS outputs)
      get_filename_component(target "${output}" REALPATH)
      if(path STREQUAL target)
        _tova_refuse("the output ${output} would destroy an input. "
          "Choose another name or OUTPUT_DIRECTORY.")
      endif()
    endforeach()
  endforeach()
endfunction()

# A program that the build makes, or that an expression names, can't be asked.
function(_tova_check_program keyword)
  if(NOT ARGN)
    _tova_refuse("${keyword} isn't known. Name it, or enable a language, whose "
      "tool chain has one, or install the companion tova_fw.")
  endif()
  list(GET ARGN 0 program)
  if(TARGET ${program} OR "${ARGN}" MATCHES "\\$<")
    return()
  endif()
  execute_process(COMMAND ${ARGN} --version
    WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
    OUTPUT_VARIABLE version ERROR_VARIABLE version RESULT_VARIABLE status)
  if(NOT status MATCHES "^-?[0-9]+$")
    _tova_refuse("${keyword} can't be run: ${ARGN}: ${status}")
  elseif(keyword STREQUAL "OBJDUMP" AND version MATCHES "LLVM|elfutils")
    _tova_refuse("OBJDUMP ${ARGN} is that of ${CMAKE_MATCH_0}, whose section "
      "tables the tool can't read. Install the companion tova_fw, whose tables "
      "are used if neither OBJDUMP nor NM is given, or say OBJDUMP with that "
      "of GNU binutils, which reads the ELFs of any compiler.")
  endif()
endfunction()

# What cmake_parse_arguments left in ARG_*, and what has to be there.
function(_tova_check_parsed)
  # Compared, here and below, since OFF and NAME-NOTFOUND read as false.
  if(NOT "${ARG_UNPARSED_ARGUMENTS}" STREQUAL "")
    list(JOIN ARG_UNPARSED_ARGUMENTS " " words)
    if(words MATCHES "^(ON|OFF|TRUE|FALSE|YES|NO|0|1)$")
      string(APPEND words ". LINT, STRICT and MAP take no value: leave them "
        "out where they aren't wanted.")
    endif()
    _tova_refuse("unknown argument: ${words}")
  endif()
  # Most often the value was an empty variable: an image without keys, say.
  if(NOT "${ARG_KEYWORDS_MISSING_VALUES}" STREQUAL "")
    list(JOIN ARG_KEYWORDS_MISSING_VALUES " and " words)
    _tova_refuse("no value stands behind ${words}. Is a variable empty?")
  endif()
  foreach(needed IN LISTS ARGN)
    if("${ARG_${needed}}" STREQUAL "")
      _tova_refuse("${needed} is missing")
    endif()
  endforeach()
  foreach(keyword IN ITEMS DEFINITION CONFIG_HEADER KEY_LIST SIGN_KEY TRUST
      EXECUTABLES DEPENDS INPUTS SCRIPT DESCRIPTOR)
    _tova_check_paths(${keyword} ${ARG_${keyword}})
  endforeach()
endfunction()

# What can't be a path: the outcome of a find that failed, and expressions,
# except where the functions make something of them.
function(_tova_check_paths keyword)
  foreach(path IN LISTS ARGN)
    if(path MATCHES "-NOTFOUND$")
      _tova_refuse("${keyword} is the outcome of a look-up that failed: "
        "${path}")
    elseif(path MATCHES "\\$<" AND
           NOT keyword MATCHES "^(EXECUTABLES|DEPENDS|INPUTS)$")
      _tova_refuse("${keyword} takes no generator expression, since the file "
        "is looked at when CMake configures: ${path}")
    endif()
  endforeach()
endfunction()

# A target, a file, or what a command makes: one of this folder by its name, any
# other by its whole path. A word without a dot may be a target made below.
function(_tova_check_depends)
  foreach(item IN LISTS ARG_DEPENDS)
    if(TARGET "${item}" OR item MATCHES "\\$<" OR item MATCHES "^[^./]+$")
      continue()
    endif()
    get_filename_component(made "${item}" ABSOLUTE
      BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
    get_source_file_property(generated "${made}" GENERATED)
    if(NOT generated)
      get_filename_component(path "${item}" ABSOLUTE)
      _tova_check_file(DEPENDS "${path}")
    endif()
  endforeach()
endfunction()

function(_tova_check_words)
  _tova_check_parsed(DEFINITION EXECUTABLES VERSION)
  _tova_check_companion()
  _tova_check_depends()
  if(NOT "${ARG_SIGN}${ARG_SIGN_KEY}${ARG_SIGN_COMMAND}${ARG_TRUST}"
     STREQUAL "")
    _tova_check_signing()
  endif()
  if(ARG_LINT)
    _tova_need_companion(LINT lint)
  elseif(ARG_STRICT)
    _tova_refuse("STRICT says how to LINT, which is missing")
  endif()
  if(ARG_MAP OR ARG_BUDGET)
    _tova_check_map()
  endif()
endfunction()

function(_tova_check_signing)
  if("${ARG_SIGN}${ARG_SIGN_KEY}${ARG_SIGN_COMMAND}" STREQUAL "")
    _tova_refuse("TRUST tells whose signature to accept, but SIGN is missing")
  endif()
  list(JOIN ARG_SIGN_COMMAND " " command)
  if(ARG_SIGN_KEY AND ARG_SIGN_COMMAND)
    _tova_refuse("SIGN takes one of SIGN_KEY and SIGN_COMMAND, and not both. "
      "Given are SIGN_KEY \"${ARG_SIGN_KEY}\" and SIGN_COMMAND \"${command}\".")
  endif()
  if(NOT ARG_SIGN MATCHES "^(debug|release)$" OR
     NOT (ARG_SIGN_KEY OR ARG_SIGN_COMMAND))
    _tova_refuse("SIGN takes debug or release, and needs a SIGN_KEY or a "
      "SIGN_COMMAND. Given are SIGN \"${ARG_SIGN}\", SIGN_KEY "
      "\"${ARG_SIGN_KEY}\" and SIGN_COMMAND \"${command}\".")
  endif()
  if(ARG_SIGN_COMMAND)
    _tova_check_sign_command("${command}" ${ARG_SIGN_COMMAND})
  endif()
  if(ARG_TRUST)
    _tova_need_companion(TRUST check)
  endif()
endfunction()

function(_tova_check_sign_command command program)
  if(NOT command MATCHES "<MANIFEST>.*<SIGNED>"
     AND NOT command MATCHES "<SIGNED>.*<MANIFEST>")
    _tova_refuse("SIGN_COMMAND has to name <MANIFEST>, which it reads, and "
      "<SIGNED>, which it writes: ${command}")
  elseif(ARG_SIGN_COMMAND MATCHES "\\\\;")
    _tova_refuse("SIGN_COMMAND can't pass a semicolon on. Put the command into "
      "a script: ${command}")
  elseif(TARGET ${program} OR program MATCHES "\\$<")
    return()
  elseif(program MATCHES "/")
    get_filename_component(path "${program}" ABSOLUTE)
    _tova_check_file(SIGN_COMMAND "${path}")
  else()
    find_program(_tova_signer "${program}" NO_CMAKE_FIND_ROOT_PATH)
    set(found "${_tova_signer}")
    unset(_tova_signer CACHE)
    if(NOT found)
      _tova_refuse("there is no program ${program} for SIGN_COMMAND in PATH. "
        "With a slash it is a path from the source folder: ./${program}")
    endif()
  endif()
endfunction()

# Sets in ARG_* of the caller what isn't given, and makes paths absolute, since
# reading a definition moves the tool's working directory.
macro(_tova_complete_words)
  if(ARG_BUDGET)
    set(ARG_MAP ON)
  endif()
  foreach(zero IN ITEMS IMAGE_FLAGS FEATURE_MASK IMR_TYPE CSS_HEADER_SIZE)
    if(NOT DEFINED ARG_${zero})
      set(ARG_${zero} 0)
    endif()
  endforeach()
  # A program that is named is wanted.
  set(ARG_TABLES OFF)
  if(NOT ARG_OBJDUMP AND NOT ARG_NM)
    _tova_companion_knows(tables ARG_TABLES)
  endif()
  foreach(program IN ITEMS OBJDUMP NM)
    if(NOT ARG_${program})
      set(ARG_${program} "${CMAKE_${program}}")
    endif()
  endforeach()
  foreach(path IN ITEMS DEFINITION CONFIG_HEADER KEY_LIST SIGN_KEY)
    if(ARG_${path})
      get_filename_component(ARG_${path} "${ARG_${path}}" ABSOLUTE)
    endif()
  endforeach()
  # The signer runs in the build folder.
  if(ARG_SIGN_COMMAND)
    list(POP_FRONT ARG_SIGN_COMMAND program)
    if(TARGET ${program})
      set(program "$<TARGET_FILE:${program}>")
    elseif(program MATCHES "/" AND NOT program MATCHES "\\$<")
      get_filename_component(program "${program}" ABSOLUTE)
    endif()
    list(PREPEND ARG_SIGN_COMMAND "${program}")
  endif()
  # A key is a hash or a file.
  set(trusted "${ARG_TRUST}")
  set(ARG_TRUST "")
  foreach(key IN LISTS trusted)
    string(LENGTH "${key}" digits)
    if(NOT digits EQUAL 64 OR NOT key MATCHES "^[0-9A-Fa-f]+$")
      get_filename_component(key "${key}" ABSOLUTE)
    endif()
    list(APPEND ARG_TRUST "${key}")
  endforeach()
endmacro()

function(_tova_check_values)
  _tova_check_version("${ARG_VERSION}")
  foreach(number IN ITEMS IMAGE_FLAGS FEATURE_MASK IMR_TYPE)
    _tova_check_hexadecimal(${number} "${ARG_${number}}")
  endforeach()
  # A larger one would put the binary header ahead of the file's start.
  _tova_check_decimal(CSS_HEADER_SIZE "${ARG_CSS_HEADER_SIZE}" 8192)
  if(NOT ARG_TABLES)
    _tova_check_program(OBJDUMP ${ARG_OBJDUMP})
    _tova_check_program(NM ${ARG_NM})
  endif()
  foreach(path IN ITEMS DEFINITION CONFIG_HEADER KEY_LIST SIGN_KEY)
    if(ARG_${path})
      _tova_check_file(${path} "${ARG_${path}}")
    endif()
  endforeach()
  foreach(key IN LISTS ARG_TRUST)
    if(IS_ABSOLUTE "${key}")
      _tova_check_file(TRUST "${key}")
    endif()
  endforeach()
  foreach(executable IN LISTS ARG_EXECUTABLES)
    _tova_check_executable("${executable}")
  endforeach()
endfunction()
