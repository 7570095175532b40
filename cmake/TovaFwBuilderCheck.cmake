# What the steps of a build share: examining what the tool wrote, and telling
# what is wrong with it. A script that includes this file defines fail(why...),
# which tells it and takes the outputs away. This is the place for every
# further check of a finished image.

# Ends the script. The tool's own errors and warnings come first, since they
# are the cause; `log` holds them, and `log_file` keeps it.
function(tell_failure subject log log_file)
  list(JOIN ARGN "" why)
  string(REGEX MATCHALL "(Error|Warning): [^\n]+" lines "${log}")
  if(lines)
    # Not as a list: a bracket in a message would join its elements.
    string(REPLACE ";" "\n  " lines "${lines}")
    string(PREPEND why "\n  ${lines}\n")
  endif()
  if(NOT log STREQUAL "")
    string(APPEND why "\nThe whole log: ${log_file}")
  endif()
  get_filename_component(texts
    "../../doc/tova-fw-builder/docs/troubleshooting.md"
    ABSOLUTE BASE_DIR "${CMAKE_CURRENT_LIST_DIR}")
  if(lines AND EXISTS "${texts}")
    string(APPEND why "\nEach message is explained in ${texts}")
  endif()
  message(FATAL_ERROR "${subject}: ${why}")
endfunction()

# The tool puts the first bytes of what is no key file into its log, and they
# may be those of a private key in another form. So such a file is refused
# ahead of it. Sets `result` to what the file has: `pair` or `public`.
function(check_key key result)
  if(NOT EXISTS "${key}")
    fail("there is no key file ${key}. A key list's paths start in the folder "
      "of the top definition file.")
  endif()
  file(READ "${key}" start LIMIT 12 HEX)
  if(start STREQUAL "28383a73657175656e636528")  # (8:sequence(
    set(${result} pair PARENT_SCOPE)
  elseif(start MATCHES "^2831303a7075626c6963")  # (10:public
    set(${result} public PARENT_SCOPE)
  else()
    fail("${key} is no key file of the form that the tool reads, which PEM "
      "files aren't. See \"Key files\" in docs/file-formats.md.")
  endif()
endfunction()

function(need_length file length)
  if(EXISTS "${file}")
    file(SIZE "${file}" found)
  else()
    set(found "no")
  endif()
  if(NOT found GREATER_EQUAL length)
    fail("${file} has ${found} bytes where ${length} are due. Is the disk "
      "full?")
  endif()
endfunction()

function(need_end file end)
  file(READ "${file}" text)
  if(NOT text MATCHES "${end}$")
    fail("${file} is cut off. Is the disk full?")
  endif()
endfunction()

# The number of 4 bytes at an offset of a file.
function(read_word file offset result)
  file(READ "${file}" bytes OFFSET ${offset} LIMIT 4 HEX)
  set(number 0)
  if(bytes MATCHES "(..)(..)(..)(..)")
    string(CONCAT bytes "0x${CMAKE_MATCH_4}${CMAKE_MATCH_3}"
      "${CMAKE_MATCH_2}${CMAKE_MATCH_1}")
    math(EXPR number "${bytes}")
  endif()
  set(${result} ${number} PARENT_SCOPE)
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

# The files of the addons of 1.5.
function(addon_files log result)
  string(REGEX MATCHALL "Creating pkg addon module [^\n]+" addons "${log}")
  list(TRANSFORM addons REPLACE "^Creating pkg addon module " "")
  set(${result} "${addons}" PARENT_SCOPE)
endfunction()

# The header, the entries, the configurations and the symbol table.
function(tables_length symbols result)
  set(modules 0)
  if(log MATCHES "\n    num_mods +([0-9]+)")
    set(modules ${CMAKE_MATCH_1})
  endif()
  string(REGEX MATCHALL "\n  ModuleConfig " configurations "${log}")
  list(LENGTH configurations configurations)
  math(EXPR length
    "52 + 116 * ${modules} + 44 * ${configurations} + ${symbols}")
  set(${result} ${length} PARENT_SCOPE)
endfunction()

function(symbol_table_length result)
  set(length 8)
  string(REGEX MATCHALL "Cannot match symbol << [^ ]+" skipped "${log}")
  string(REGEX MATCHALL "\nExporting symbol: [^\n]+" symbols "\n${log}")
  foreach(symbol IN LISTS symbols)
    string(REPLACE "\nExporting symbol: " "" symbol "${symbol}")
    if(NOT "Cannot match symbol << ${symbol}" IN_LIST skipped)
      string(LENGTH "${symbol}" characters)
      math(EXPR length "${length} + 12 + ${characters} + 1")
    endif()
  endforeach()
  set(${result} ${length} PARENT_SCOPE)
endfunction()

function(check_room symbols room what)
  tables_length(${symbols} tables)
  if(tables GREATER room)
    fail("the binary header and its tables take ${tables} bytes, ${what} "
      "${room}. Export fewer symbols, or have fewer modules and "
      "configurations.")
  endif()
endfunction()

function(check_image_1_5 contents)
  addon_files("${log}" addons)
  set(files "${addons}")
  list(REMOVE_DUPLICATES files)
  if(NOT files STREQUAL addons)
    list(JOIN addons "\n  " addons)
    fail("two addons have one UUID or none, so that one file overwrote the "
      "other. Give each module a `uuid` of its own.\n  ${addons}")
  endif()
  # Main binary and addon files together hold what was counted.
  file(SIZE "${base}.bin" found)
  foreach(addon IN LISTS addons)
    need_length("${addon}" 0)
    file(SIZE "${addon}" size)
    math(EXPR found "${found} + ${size}")
  endforeach()
  if(found LESS contents)
    fail("binaries of ${found} bytes where ${contents} are due. Is the disk "
      "full?")
  endif()
  # The symbol table makes the manifest longer than its header says.
  read_hex("\n    size +" words)
  symbol_table_length(symbols)
  math(EXPR manifest "${words} * 4 + ${symbols}")
  need_length("${base}.man" ${manifest})
  math(EXPR room "${words} * 4 - 644")
  check_room(${symbols} ${room} "and what is signed of the manifest holds")
endfunction()

function(check_image_1_8 contents)
  math(EXPR length "32768 - ${css_header_size} + ${contents}")
  need_length("${base}.bin" ${length})
  read_hex("\n    extension_length +" length)
  need_length("${base}.man" ${length})
  symbol_table_length(symbols)
  check_room(${symbols} 24576 "and the room ahead of the contents has")
endfunction()

# What begins at no page of the image, told in words, or nothing. The binary
# of 1.8 and 2.5 lacks the signer's room at its front.
function(off_grid result)
  set(${result} "" PARENT_SCOPE)
  set(front 0)
  if(log MATCHES "\nCreating image ver 000(10008|20005)\n")
    set(front ${css_header_size})
  endif()
  string(CONCAT group "\n([^\n]+)    LMA: [^\n]+\n  NAME [^\n]+\n  --[^\n]+\n"
    "(section group [^\n]+\n)?  [^\n]+ ([0-9a-f]+)\n")
  string(REGEX MATCHALL "${group}" groups "${log}")
  foreach(text IN LISTS groups)
    string(REGEX REPLACE "${group}" "\\3" place "${text}")
    math(EXPR place "0x${place} + ${front}" OUTPUT_FORMAT HEXADECIMAL)
    if(NOT place MATCHES "000$")
      string(REGEX REPLACE "${group}" "\\1" group "${text}")
      string(CONCAT text "${group} begins at ${place} of the image, which is no "
        "page. Align the output section to 4096 in the linker script, as in "
        "`.text.mixer : ALIGN(4096)`.")
      set(${result} "${text}" PARENT_SCOPE)
      return()
    endif()
  endforeach()
endfunction()

function(check_image_3_0 contents)
  symbol_table_length(symbols)
  check_room(${symbols} 32768 "and the room ahead of the contents has")
  if(contents GREATER 0)
    math(EXPR length "32768 + ${contents}")
    need_length("${base}.bin" ${length})
  endif()
  # The other generations refuse it themselves.
  off_grid(place)
  if(place)
    fail("${place}")
  endif()
  file(SIZE "${base}.bin" length)
  math(EXPR rest "${length} % 4096")
  if(rest)
    fail("${base}.bin has ${length} bytes, which is no whole number of pages")
  endif()
endfunction()

# A load address below the end of what stands before it: the distance between
# the two is below zero, and wraps to nearly 4 GiB of zeros.
function(check_gaps)
  string(REPEAT "[0-9a-f]" 7 digits)
  string(CONCAT row "\n  ([^ ]+) [^\n]* [89a-f]${digits} +"
    "[0-9a-f]+ +[0-9a-f]+ +[0-9a-f]+\n")
  set(ahead "\nsection group aligned by [89a-f]${digits}\n  ([^ ]+)")
  foreach(gap IN ITEMS "${ahead}" "${row}")
    if(log MATCHES "${gap}")
      fail("nearly 4 GiB of zeros stand ahead of ${CMAKE_MATCH_1}. Load "
        "addresses (LMA) must rise from group to group and from module to "
        "module, and sections must not overlap.")
    endif()
  endforeach()
endfunction()

# Examines a finished image by its files and its log.
function(check_image)
  check_gaps()
  read_hex("Creating image ver " generation)
  sum_hex("Total +([0-9a-f]+) \\(segment aligned by" contents)
  sum_hex("section group aligned by ([0-9a-f]+)" pads)
  math(EXPR contents "${contents} + ${pads}")

  if(generation EQUAL 0x10005)
    check_image_1_5(${contents})
  elseif(generation EQUAL 0x30000)
    check_image_3_0(${contents})
  else()
    check_image_1_8(${contents})
  endif()

  if(NOT generation EQUAL 0x30000)
    need_length("${base}.man.ext" 16)
    read_word("${base}.man.ext" 4 length)
    need_length("${base}.man.ext" ${length})
  endif()
  need_end("${base}.pkg" "\nbin [^\n]*\n")
  need_end("${base}.xml" "</memory_footprint>\n")
  need_end("${base}.d" ": \n\n")
endfunction()

# A signature covers the first 128 bytes and those from header_len to size.
# Any other header_len would leave out what the loader reads; what stands
# behind size is dropped by `sign` and left alone by `verify`. As `build`
# writes it, the symbol table has pushed as many zeros there.
function(check_manifest manifest)
  read_word("${manifest}" 0 type)
  if(NOT type EQUAL 6)
    fail("${manifest} is no manifest of generation 1.5. Those of 1.8, 2.5 and "
      "3.0 are signed outside: leave SIGN out.")
  endif()
  read_word("${manifest}" 4 header)
  if(NOT header EQUAL 161)
    fail("header_len of ${manifest} is ${header} and not 161, so that a "
      "signature wouldn't cover all of it. Build the image anew.")
  endif()
  read_word("${manifest}" 24 words)
  math(EXPR due "${words} * 4")
  need_length("${manifest}" ${due})
  file(READ "${manifest}" tail OFFSET ${due} HEX)
  if(tail MATCHES "[^0]")
    fail("${manifest} has more behind the ${due} bytes that are signed. Build "
      "the image anew.")
  endif()
endfunction()

# The same for a signed manifest, which has nothing behind its size.
function(check_signed_manifest manifest)
  check_manifest("${manifest}")
  read_word("${manifest}" 24 words)
  math(EXPR due "${words} * 4")
  file(SIZE "${manifest}" found)
  if(NOT found EQUAL due)
    fail("${manifest} has ${found} bytes where ${due} are signed")
  endif()
endfunction()

# What the companion finds where it is installed: much the same, read from the
# files instead of the log, and what no log tells, such as a module without UUID.
function(check_by_companion)
  if(NOT companion)
    return()
  endif()
  execute_process(COMMAND "${companion}" check ${ARGN}
    OUTPUT_VARIABLE found ERROR_VARIABLE troubles RESULT_VARIABLE status)
  string(REGEX MATCHALL "FAILED [^\n]+" failed "${found}")
  # Symbols that lie in no segment: the tool warns of them and goes on.
  set(warnings "${failed}")
  list(FILTER warnings INCLUDE REGEX "^FAILED +symbol-names ")
  list(FILTER failed EXCLUDE REGEX "^FAILED +symbol-names ")
  foreach(warning IN LISTS warnings)
    message("Warning: tova_fw check: ${warning}")
  endforeach()
  if(status EQUAL 0 OR (status EQUAL 1 AND NOT failed))
    return()
  endif()
  list(JOIN failed "\n  " failed)
  string(REPLACE " --trust names" " TRUST names" failed "${failed}")
  fail("`tova_fw check` ended with status ${status}.\n  ${failed}${troubles}")
endfunction()
