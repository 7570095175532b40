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
  elseif(IS_DIRECTORY "${path}")
    _tova_refuse("${keyword} names a folder and not a file: ${path}")
  elseif(NOT EXISTS "${path}")
    set(hint "If the build makes it, set its source file property GENERATED.")
    if(keyword MATCHES "^(EXECUTABLES|INPUTS)$")
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
  if(ARG_UNPARSED_ARGUMENTS)
    list(JOIN ARG_UNPARSED_ARGUMENTS " " words)
    _tova_refuse("unknown argument: ${words}")
  endif()
  # Most often the value was an empty variable: an image without keys, say.
  if(ARG_KEYWORDS_MISSING_VALUES)
    list(JOIN ARG_KEYWORDS_MISSING_VALUES " and " words)
    _tova_refuse("no value stands behind ${words}. Is a variable empty?")
  endif()
  foreach(needed IN LISTS ARGN)
    if(NOT ARG_${needed})
      _tova_refuse("${needed} is missing")
    endif()
  endforeach()
endfunction()

function(_tova_check_words)
  _tova_check_parsed(DEFINITION EXECUTABLES VERSION)
  if(ARG_SIGN OR ARG_SIGN_KEY OR ARG_SIGN_COMMAND OR ARG_TRUST)
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
  if(NOT ARG_SIGN MATCHES "^(debug|release)$" OR
     (ARG_SIGN_KEY AND ARG_SIGN_COMMAND) OR
     NOT (ARG_SIGN_KEY OR ARG_SIGN_COMMAND))
    _tova_refuse("SIGN takes debug or release, and needs a SIGN_KEY or a "
      "SIGN_COMMAND. Given are SIGN \"${ARG_SIGN}\", SIGN_KEY "
      "\"${ARG_SIGN_KEY}\" and SIGN_COMMAND \"${ARG_SIGN_COMMAND}\".")
  endif()
  if(ARG_SIGN_COMMAND AND NOT ARG_SIGN_COMMAND MATCHES "<MANIFEST>.*<SIGNED>"
     AND NOT ARG_SIGN_COMMAND MATCHES "<SIGNED>.*<MANIFEST>")
    _tova_refuse("SIGN_COMMAND has to name <MANIFEST>, which it reads, and "
      "<SIGNED>, which it writes: ${ARG_SIGN_COMMAND}")
  endif()
  if(ARG_TRUST)
    _tova_need_companion(TRUST check)
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
  foreach(executable IN LISTS ARG_EXECUTABLES)
    _tova_check_executable("${executable}")
  endforeach()
endfunction()
