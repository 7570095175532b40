# Runs `tova_fw_builder build` as a step of a build; TovaFwBuilder.cmake calls
# it. The tool reports a failed step by its status, but passes other faults in
# silence: so its files are examined. Whatever fails, no partial file is left
# behind, or the next run would take it for finished.
cmake_minimum_required(VERSION 3.20)
include("${ARGUMENTS}")
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilderCheck.cmake")

set(base "${dir}/${name}")
set(log "")

# Generation 1.5 gives each addon a file of its own. Their names stand in the
# log: this run's, and that of the run before, which may have had others.
function(remove_outputs)
  set(all_logs "${log}")
  if(EXISTS "${base}.log")
    file(READ "${base}.log" old_log)
    string(APPEND all_logs "\n${old_log}")
  endif()
  addon_files("${all_logs}" addons)
  file(REMOVE ${addons} ${outputs})
endfunction()

function(fail)
  remove_outputs()
  tell_failure("Firmware image ${name} isn't built" "${log}" "${base}.log" ${ARGN})
endfunction()

# The key files that the key list names: one a line, up to the first empty
# line, relative to the folder that the definition stands in. A file of another
# kind is refused: the tool would put its first line, and with a key file
# private numbers, into the log.
function(listed_keys result)
  set(keys)
  if(key_list AND EXISTS "${key_list}")
    get_filename_component(definition_dir "${definition}" DIRECTORY)
    file(READ "${key_list}" text)
    string(REGEX REPLACE "(^|\n)\n.*" "\\1" text "${text}")
    string(REGEX MATCHALL "[^\n]+" lines "${text}")
    foreach(line IN LISTS lines)
      if(NOT line MATCHES "^[ \t]*(debug|production)[ \t]+([^ \t\r]+)")
        fail("${key_list} is no key list. Each line of one is the word debug "
          "or production and the path of a key file.")
      endif()
      get_filename_component(key "${CMAKE_MATCH_2}" ABSOLUTE
        BASE_DIR "${definition_dir}")
      list(APPEND keys "${key}")
    endforeach()
  endif()
  set(${result} "${keys}" PARENT_SCOPE)
endfunction()

# Known to the build alone: the files of targets, and the listed keys. Nothing
# is removed, since the input is among what would be.
function(check_overwrite)
  foreach(input IN LISTS ARGN)
    file(REAL_PATH "${input}" path)
    foreach(output IN LISTS outputs kept)
      file(REAL_PATH "${output}" target)
      if(path STREQUAL target)
        tell_failure("Firmware image ${name} isn't built" "" ""
          "the output ${output} would destroy an input. Choose another name "
          "or OUTPUT_DIRECTORY.")
      endif()
    endforeach()
  endforeach()
endfunction()

function(check_inputs)
  # Ahead of whatever else may fail, which removes the outputs.
  file(STRINGS "${base}.elfs" lines)
  check_overwrite("${definition}" "${config_header}" "${key_list}" ${lines})
  listed_keys(keys)
  check_overwrite(${keys})
  foreach(key IN LISTS keys)
    check_key("${key}" kind)
  endforeach()
  while(lines)
    list(POP_FRONT lines elf sections symbols)
    if(elf MATCHES "[ \t]")
      fail("an ELF list can't hold the blank in this path. Choose one "
        "without: ${elf}")
    endif()
    file(STRINGS "${sections}" heading LIMIT_COUNT 1
      REGEX "^Idx +Name +Size +VMA +LMA +File off +Algn$")
    if(NOT heading)
      fail("${sections} is no section table as `objdump -h` of GNU binutils "
        "prints it. Is OBJDUMP another program, or ${elf} no ELF?")
    endif()
  endwhile()
endfunction()

# Writes the dependencies in the form that generators read: the tool names a
# target of its own and lists definition files alone.
function(write_depfile)
  listed_keys(keys)
  file(READ "${base}.d" text)
  string(REGEX MATCHALL "binary_parts: [^\n]+" inputs "${text}")
  list(TRANSFORM inputs REPLACE "^binary_parts: " "")
  list(APPEND inputs ${keys})
  list(REMOVE_DUPLICATES inputs)
  list(TRANSFORM inputs REPLACE "([ #])" "\\\\\\1")
  list(TRANSFORM inputs REPLACE "\\$" "$$")
  list(JOIN inputs " \\\n  " inputs)
  file(WRITE "${base}.image.d" "${base}.bin: ${inputs}\n")
endfunction()

# What the arguments of tova_add_firmware may have to do with a failure.
function(hints result)
  set(text "")
  if(log MATCHES "Error: [^\n]*Undefined const" AND
     config_header STREQUAL "${base}.no_config.h")
    string(APPEND text " Constants stand in the CONFIG_HEADER: none was given.")
  endif()
  if(log MATCHES "header public_keys_storage not found" AND NOT key_list)
    string(APPEND text " No KEY_LIST was given, whose keys a section asks for.")
  endif()
  off_grid(place)
  if(place)
    string(APPEND text " ${place}")
  endif()
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

# Findings are shown as they come, so that editors find their places: with
# absolute paths, since no definition stands in this folder.
function(lint_definition)
  execute_process(COMMAND "${companion}" lint ${lint}
    WORKING_DIRECTORY "${CMAKE_CURRENT_LIST_DIR}"
    OUTPUT_VARIABLE found ECHO_OUTPUT_VARIABLE RESULT_VARIABLE status)
  if(found MATCHES "\\[refused\\]")
    fail("`tova_fw lint` found what is told above. The tool refuses that.")
  elseif(status EQUAL 1)
    fail("`tova_fw lint` found what is told above. Mend it, or put "
      "`# lint: allow RULE` above a statement that is meant so.")
  elseif(NOT status EQUAL 0)
    fail("`tova_fw lint` ended with status ${status}")
  endif()
endfunction()

check_inputs()
remove_outputs()
if(lint)
  lint_definition()
endif()
execute_process(
  COMMAND "${tool}" build ${numbers} "${definition}" "${config_header}"
    "${key_list}" "${dir}/" "${name}.elfs" "${name}.man" "${name}"
  WORKING_DIRECTORY "${dir}"
  OUTPUT_VARIABLE log
  RESULT_VARIABLE status)
file(WRITE "${base}.log" "${log}")
if(NOT status EQUAL 0)
  hints(text)
  fail("The tool ended with status ${status}.${text}")
endif()
string(REGEX MATCHALL "Warning: [^\n]+" warnings "${log}")
foreach(warning IN LISTS warnings)
  message("${name}: ${warning}")
endforeach()
check_image()
addon_files("${log}" addons)
check_by_companion("${base}.bin" "${base}.man" "${base}.man.ext" "${base}.pkg"
  ${addons})
write_depfile()
