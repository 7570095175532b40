# Signs a manifest as a step of a build and verifies the result;
# TovaFwBuilder.cmake calls it. No signed file is left behind when a step
# fails or when the file is shorter than its header says.
cmake_minimum_required(VERSION 3.20)

set(signed "${MANIFEST}.signed")
file(REMOVE "${signed}")

foreach(arguments IN ITEMS
    "sign;${TYPE};${KEY};${MANIFEST};${signed}" "verify;${signed}")
  execute_process(COMMAND "${TOOL}" ${arguments}
    OUTPUT_VARIABLE log RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    file(REMOVE "${signed}")
    message("${log}")
    message(FATAL_ERROR "Signing ${MANIFEST} failed with status ${status}")
  endif()
endforeach()

file(READ "${signed}" words OFFSET 24 LIMIT 4 HEX)
string(REGEX REPLACE "(..)(..)(..)(..)" "0x\\4\\3\\2\\1" words "${words}")
math(EXPR due "${words} * 4")
file(SIZE "${signed}" found)
if(found LESS due)
  file(REMOVE "${signed}")
  message(FATAL_ERROR
    "${signed} has ${found} bytes where ${due} are due; is the disk full?")
endif()
