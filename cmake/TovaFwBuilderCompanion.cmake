# What the companion tova_fw does in a build beside checking. The functions
# read `name`, the image, and ARG_* and TovaFw_EXECUTABLE of their caller.

# One that the build makes counts first. Sets TovaFw_EXECUTABLE of the caller.
macro(_tova_find_companion)
  if(TARGET TovaFwBuilder::tova_fw)
    set(TovaFw_EXECUTABLE "$<TARGET_FILE:TovaFwBuilder::tova_fw>")
  elseif(NOT TovaFw_EXECUTABLE)
    set(TovaFw_EXECUTABLE "")
  endif()
endmacro()

# Whether the companion has a command. One that the build makes can't be asked:
# it has all of them, but `tables` only where it is built with libelf.
function(_tova_companion_knows command result)
  set(${result} OFF PARENT_SCOPE)
  if(TovaFw_EXECUTABLE MATCHES "\\$<")
    get_property(lacks GLOBAL PROPERTY _tova_companion_lacks)
    if(NOT command IN_LIST lacks)
      set(${result} ON PARENT_SCOPE)
    endif()
  elseif(TovaFw_EXECUTABLE)
    execute_process(COMMAND "${TovaFw_EXECUTABLE}" ${command} --help
      WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
      OUTPUT_QUIET ERROR_QUIET RESULT_VARIABLE status)
    if(status EQUAL 0)
      set(${result} ON PARENT_SCOPE)
    endif()
  endif()
endfunction()

# One that is named wants to be used.
function(_tova_check_companion)
  if(TovaFw_EXECUTABLE AND NOT TovaFw_EXECUTABLE MATCHES "\\$<" AND
     NOT EXISTS "${TovaFw_EXECUTABLE}")
    _tova_refuse("TovaFw_EXECUTABLE names ${TovaFw_EXECUTABLE}, which isn't "
      "there. Name the companion by its whole path, or leave it out.")
  endif()
endfunction()

function(_tova_need_companion keyword command)
  if(NOT TovaFw_EXECUTABLE)
    _tova_refuse("${keyword} needs the companion tova_fw, which isn't found. "
      "Install it (the package tova-fw), or say where it is by "
      "-DTovaFw_EXECUTABLE=PATH.")
  endif()
  _tova_companion_knows(${command} known)
  if(NOT known)
    _tova_refuse("${keyword} needs `tova_fw ${command}`, which "
      "${TovaFw_EXECUTABLE} doesn't have. Install a newer one, or name it by "
      "-DTovaFw_EXECUTABLE=PATH.")
  endif()
endfunction()

function(_tova_check_map)
  _tova_need_companion(MAP map)
  foreach(budget IN LISTS ARG_BUDGET)
    if(NOT budget MATCHES "^.+=[0-9]+[KM%]?$")
      _tova_refuse("BUDGET takes CLASS=LIMIT, the limit in bytes, K, M or %, "
        "such as sram=96K or sram=90%: ${budget}")
    endif()
    string(REGEX REPLACE ".*=0*" "" limit "${budget}")
    string(LENGTH "${limit}" length)
    if(length GREATER 13)
      _tova_refuse("the limit of this BUDGET is beyond all memory: ${budget}")
    elseif(limit MATCHES "^([0-9]+)%$" AND CMAKE_MATCH_1 GREATER 100)
      _tova_refuse("a BUDGET can't be more than 100%: ${budget}")
    endif()
  endforeach()
endfunction()

# Adds the command that lists the sections and the symbols of an ELF. The list
# of this one ELF, which the companion writes, too, is used by nobody.
function(_tova_companion_tables executable elf dir stem)
  add_custom_command(
    OUTPUT "${dir}/${stem}.sections" "${dir}/${stem}.symbols"
    BYPRODUCTS "${dir}/${stem}.tables"
    COMMAND "${TovaFw_EXECUTABLE}" tables "${elf}" --name "${stem}" -o "${dir}"
      --list "${dir}/${stem}.tables"
    DEPENDS ${executable} "${elf}" ${TovaFw_EXECUTABLE}
    COMMENT "Listing the sections and symbols of ${stem}"
    VERBATIM)
endfunction()

# The inputs of the builder, but for the definition, as `map` and `lint` take
# them.
function(_tova_companion_inputs result)
  set(words --header "${ARG_CONFIG_HEADER}" --elf-list "${base}.elfs"
    --default-dir "${dir}")
  if(ARG_KEY_LIST)
    list(APPEND words --key-list "${ARG_KEY_LIST}")
  endif()
  set(${result} ${words} PARENT_SCOPE)
endfunction()

# The words behind `tova_fw lint`, which the image's own step runs.
function(_tova_lint result base dir)
  _tova_companion_inputs(words)
  if(ARG_STRICT)
    list(APPEND words --strict)
  endif()
  set(${result} "${ARG_DEFINITION}" ${words} PARENT_SCOPE)
endfunction()

# Adds the command that maps the memory of the image. The page is there over
# budget, too, so that one sees why; a file of its own tells that all was well.
# One more has the budgets, for generators that don't watch command lines.
function(_tova_map base dir)
  _tova_companion_inputs(inputs)
  set(words --definition "${ARG_DEFINITION}" ${inputs})
  foreach(budget IN LISTS ARG_BUDGET)
    list(APPEND words --budget "${budget}")
  endforeach()
  file(GENERATE OUTPUT "${base}.map.arguments" CONTENT "${words}\n")
  add_custom_command(
    OUTPUT "${base}.map.done"
    BYPRODUCTS "${base}.map.html" "${base}.map.json"
    COMMAND "${TovaFw_EXECUTABLE}" map ${words}
      --html "${base}.map.html" --json "${base}.map.json"
    COMMAND "${CMAKE_COMMAND}" -E touch "${base}.map.done"
    DEPENDS "${base}.bin" "${base}.map.arguments" ${TovaFw_EXECUTABLE}
    COMMENT "Mapping the memory of ${name}"
    VERBATIM)
endfunction()
