# Runs `asm` or `build_img` as a step of a build; TovaFwBuilderJoin.cmake calls
# it. The tool passes a full disk in silence, so the length is compared with the
# log.
cmake_minimum_required(VERSION 3.20)
include("${ARGUMENTS}")
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilderCheck.cmake")

set(folder "${base}.inputs")
set(log "")

function(fail)
  file(REMOVE "${output}")
  tell_failure("${output} isn't made" "${log}" "${base}.log" ${ARGN})
endfunction()

# The files that a package descriptor names by absolute paths.
function(listed_files result)
  set(files)
  if(command STREQUAL "asm")
    file(STRINGS "${recipe}" lines REGEX "^[ \t]*bin[ \t]")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE "^[ \t]*bin[ \t]+([^ \t\r]*).*" "\\1" file "${line}")
      if(IS_ABSOLUTE "${file}")
        list(APPEND files "${file}")
      endif()
    endforeach()
  endif()
  set(${result} "${files}" PARENT_SCOPE)
endfunction()

# Nothing is removed, since the input is what would be.
function(check_overwrite)
  file(REAL_PATH "${output}" target)
  foreach(input IN LISTS ARGN)
    file(REAL_PATH "${input}" path)
    if(path STREQUAL target)
      tell_failure("${output} isn't made" "" ""
        "it would destroy an input. Choose another name or OUTPUT_DIRECTORY.")
    endif()
  endforeach()
endfunction()

function(gather_inputs)
  file(REMOVE_RECURSE "${folder}")
  file(MAKE_DIRECTORY "${folder}")
  if(inputs)
    execute_process(COMMAND "${CMAKE_COMMAND}" -E copy ${inputs} "${folder}"
      ERROR_VARIABLE trouble RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
      fail("${trouble}")
    endif()
  endif()
endfunction()

# The sum of what was appended is the length, unless a script goes back: each
# other `offset` is told as padding.
function(check_length)
  file(STRINGS "${recipe}" offsets REGEX "^[^#]*offset[ \t]")
  string(REGEX MATCHALL "\nAppending padding size = " pads "${log}")
  list(LENGTH offsets steps)
  list(LENGTH pads pads)
  if(command STREQUAL "build_img" AND NOT steps EQUAL pads)
    return()
  endif()
  set(sum 0)
  foreach(piece IN ITEMS
      "dd 0x:4" "dw 0x:2" "db 0x:1" "size of :4" "hash of :32")
    string(REGEX REPLACE ":.*" "" text "${piece}")
    string(REGEX REPLACE ".*:" "" size "${piece}")
    string(REGEX MATCHALL "\nAppending ${text}" found "${log}")
    list(LENGTH found count)
    math(EXPR sum "${sum} + ${count} * ${size}")
  endforeach()
  string(REGEX MATCHALL "\nAppending [^\n]+ size = [0-9]+" pieces "${log}")
  foreach(piece IN LISTS pieces)
    string(REGEX REPLACE ".* size = " "" size "${piece}")
    math(EXPR sum "${sum} + ${size}")
  endforeach()
  need_length("${output}" ${sum})
endfunction()

# At least one file, since CMake takes an empty list for a missing one.
function(write_depfile)
  set(files ${ARGN})
  list(REMOVE_DUPLICATES files)
  list(TRANSFORM files REPLACE "([ #])" "\\\\\\1")
  list(TRANSFORM files REPLACE "\\$" "$$")
  list(JOIN files " \\\n  " files)
  file(WRITE "${base}.inputs.d" "${output}: ${files}\n")
endfunction()

listed_files(files)
check_overwrite("${recipe}" ${inputs} ${files})
gather_inputs()
set(words "${recipe}" "${output}")
if(command STREQUAL "build_img")
  set(words "${recipe}" "${folder}/" "${output}")
endif()
execute_process(COMMAND "${tool}" ${command} ${words}
  WORKING_DIRECTORY "${folder}"
  OUTPUT_VARIABLE log RESULT_VARIABLE status)
file(WRITE "${base}.log" "${log}")
if(NOT status EQUAL 0)
  list(JOIN inputs "\n  " inputs)
  fail("The tool ended with status ${status}. INPUTS are:\n  ${inputs}")
endif()
check_length()
write_depfile("${recipe}" ${files})
