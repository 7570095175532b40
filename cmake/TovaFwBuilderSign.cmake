# Signs a manifest as a step of a build and verifies the result;
# TovaFwBuilder.cmake calls it. No signed file is left behind when a step
# fails or when the signature doesn't cover all of it.
cmake_minimum_required(VERSION 3.20)
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilderCheck.cmake")

set(signed "${MANIFEST}.signed")
set(log_file "${signed}.log")
set(log "")

# As `hash_key` prints it for the key of the sample firmware.
set(sample_key
  "966d4e5810fc4321abba1ab3dc593a838256577661e890bb65f5f07d6d678b47")

function(fail)
  file(REMOVE "${signed}")
  tell_failure("The manifest isn't signed" "${log}" "${log_file}" ${ARGN})
endfunction()

function(check_sample_key)
  string(REGEX MATCH "pub_key_hash[^{]*{([^}]*)}" hash "${log}")
  string(REGEX REPLACE "0x|[^0-9a-f]" "" hash "${CMAKE_MATCH_1}")
  if(NOT hash STREQUAL sample_key)
    return()
  elseif(TYPE STREQUAL "release")
    fail("${KEY} is the key of the sample firmware, whose private half is "
      "public. Sign a release with a key of your own.")
  endif()
  message("Warning: ${signed} is signed with the key of the sample firmware, "
    "whose private half is public.")
endfunction()

file(REMOVE "${signed}" "${log_file}")
check_key("${KEY}" kind)
if(NOT kind STREQUAL "pair")
  fail("${KEY} has the public part of a key alone. SIGN_KEY is the file of the "
    "pair.")
endif()
check_manifest("${MANIFEST}")
foreach(arguments IN ITEMS
    "sign;${TYPE};${KEY};${MANIFEST};${signed}" "verify;${signed}")
  execute_process(COMMAND "${TOOL}" ${arguments}
    OUTPUT_VARIABLE output RESULT_VARIABLE status)
  string(APPEND log "${output}")
  file(WRITE "${log_file}" "${log}")
  if(NOT status EQUAL 0)
    list(GET arguments 0 command)
    fail("`${command}` ended with status ${status}.")
  endif()
endforeach()
check_signed_manifest("${signed}")
check_sample_key()
check_by_companion("${signed}")
