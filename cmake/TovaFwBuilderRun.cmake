# Runs `tova_fw_builder build` as a step of a build; TovaFwBuilder.cmake calls
# it. The tool reports a failed step by its status, but a file that could not
# be written to its end passes silently: so the lengths are compared with what
# the log counted. Whatever fails, no partial file is left behind, or the next
# run would take it for finished.
cmake_minimum_required(VERSION 3.20)
include("${ARGUMENTS}")

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
  string(REGEX MATCHALL "Creating pkg addon module [^\n]+" addons "${all_logs}")
  list(TRANSFORM addons REPLACE "^Creating pkg addon module " "")
  file(REMOVE ${addons} "${base}.bin" "${base}.man" "${base}.man.ext"
    "${base}.man.signed" "${base}.pkg" "${base}.xml" "${base}.d"
    "${base}.image.d")
endfunction()

function(fail why)
  remove_outputs()
  message("${log}")
  message(FATAL_ERROR "Firmware image ${name}: ${why}")
endfunction()

function(need_length file length)
  if(EXISTS "${file}")
    file(SIZE "${file}" found)
  else()
    set(found "no")
  endif()
  if(NOT found GREATER_EQUAL length)
    fail("${file} has ${found} bytes where ${length} are due; is the disk full?")
  endif()
endfunction()

function(need_end file end)
  file(READ "${file}" text)
  if(NOT text MATCHES "${end}$")
    fail("${file} is cut off; is the disk full?")
  endif()
endfunction()

# The first number behind `label` in the log, in decimal; 0 without one.
function(read_hex label result)
  set(number 0)
  if(log MATCHES "${label}([0-9a-f]+)")
    math(EXPR number "0x${CMAKE_MATCH_1}")
  endif()
  set(${result} ${number} PARENT_SCOPE)
endfunction()

# The sum of all hexadecimal numbers in the log that `pattern` captures.
function(sum_hex pattern result)
  set(sum 0)
  string(REGEX MATCHALL "${pattern}" matches "${log}")
  foreach(match IN LISTS matches)
    string(REGEX REPLACE "${pattern}" "\\1" number "${match}")
    math(EXPR sum "${sum} + 0x${number}")
  endforeach()
  set(${result} ${sum} PARENT_SCOPE)
endfunction()

# The symbol table makes a 1.5 manifest longer than its header says.
function(symbol_table_length result)
  set(length 8)
  string(REGEX MATCHALL "\nExporting symbol: [^\n]+" symbols "\n${log}")
  foreach(symbol IN LISTS symbols)
    string(REPLACE "\nExporting symbol: " "" symbol "${symbol}")
    string(FIND "${log}" "Cannot match symbol << ${symbol} to segment" skipped)
    if(skipped EQUAL -1)
      string(LENGTH "${symbol}" characters)
      math(EXPR length "${length} + 12 + ${characters} + 1")
    endif()
  endforeach()
  set(${result} ${length} PARENT_SCOPE)
endfunction()

function(check_lengths)
  read_hex("Creating image ver " generation)
  sum_hex("Total +([0-9a-f]+) \\(segment aligned by" contents)
  sum_hex("section group aligned by ([0-9a-f]+)" pads)
  math(EXPR contents "${contents} + ${pads}")

  if(generation EQUAL 0x10005)
    # Main binary and addon files together hold what was counted.
    file(SIZE "${base}.bin" found)
    string(REGEX MATCHALL "Creating pkg addon module [^\n]+" addons "${log}")
    foreach(addon IN LISTS addons)
      string(REPLACE "Creating pkg addon module " "" addon "${addon}")
      need_length("${addon}" 0)
      file(SIZE "${addon}" size)
      math(EXPR found "${found} + ${size}")
    endforeach()
    if(found LESS contents)
      fail("binaries of ${found} bytes where ${contents} are due; is the disk full?")
    endif()
    read_hex("\n    size +" words)
    symbol_table_length(symbols)
    math(EXPR manifest "${words} * 4 + ${symbols}")
    need_length("${base}.man" ${manifest})
  elseif(generation EQUAL 0x30000)
    if(contents GREATER 0)
      math(EXPR length "32768 + ${contents}")
      need_length("${base}.bin" ${length})
    endif()
  else()
    math(EXPR length "32768 - ${css_header_size} + ${contents}")
    need_length("${base}.bin" ${length})
    read_hex("\n    extension_length +" length)
    need_length("${base}.man" ${length})
  endif()

  if(NOT generation EQUAL 0x30000)
    need_length("${base}.man.ext" 16)
    file(READ "${base}.man.ext" bytes OFFSET 4 LIMIT 4 HEX)
    string(REGEX REPLACE "(..)(..)(..)(..)" "0x\\4\\3\\2\\1" length "${bytes}")
    math(EXPR length "${length}")
    need_length("${base}.man.ext" ${length})
  endif()
  need_end("${base}.pkg" "\nbin [^\n]*\n")
  need_end("${base}.xml" "</memory_footprint>\n")
  need_end("${base}.d" ": \n\n")
endfunction()

# Writes the dependencies in the form that generators read: the tool names a
# target of its own and lists definition files alone.
function(write_depfile)
  file(READ "${base}.d" text)
  string(REGEX MATCHALL "binary_parts: [^\n]+" inputs "${text}")
  list(TRANSFORM inputs REPLACE "^binary_parts: " "")
  if(key_list)
    # One key a line, up to the first empty line; relative to the folder that
    # the definition stands in.
    get_filename_component(definition_dir "${definition}" DIRECTORY)
    file(READ "${key_list}" text)
    string(REGEX REPLACE "(^|\n)\n.*" "\\1" text "${text}")
    string(REGEX MATCHALL "[^\n]+" lines "${text}")
    foreach(line IN LISTS lines)
      if(line MATCHES "^[ \t]*[^ \t]+[ \t]+([^ \t\r]+)")
        get_filename_component(key "${CMAKE_MATCH_1}" ABSOLUTE
          BASE_DIR "${definition_dir}")
        list(APPEND inputs "${key}")
      endif()
    endforeach()
  endif()
  list(REMOVE_DUPLICATES inputs)
  list(TRANSFORM inputs REPLACE "([ #])" "\\\\\\1")
  list(TRANSFORM inputs REPLACE "\\$" "$$")
  list(JOIN inputs " \\\n  " inputs)
  file(WRITE "${base}.image.d" "${base}.bin: ${inputs}\n")
endfunction()

remove_outputs()
execute_process(
  COMMAND "${tool}" build ${numbers} "${definition}" "${config_header}"
    "${key_list}" "${dir}/" "${name}.elfs" "${name}.man" "${name}"
  WORKING_DIRECTORY "${dir}"
  OUTPUT_VARIABLE log
  RESULT_VARIABLE status)
file(WRITE "${base}.log" "${log}")
if(NOT status EQUAL 0)
  fail("the tool ended with status ${status}")
endif()
string(REGEX MATCHALL "Warning: [^\n]+" warnings "${log}")
foreach(warning IN LISTS warnings)
  message("${name}: ${warning}")
endforeach()
check_lengths()
write_depfile()
