# Signs a manifest as a step of a build and verifies the result;
# TovaFwBuilder.cmake calls it. No signed file is left behind when a step
# fails or when the signature doesn't cover all of it.
cmake_minimum_required(VERSION 3.20)
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilderCheck.cmake")

set(signed "${MANIFEST}.signed")
set(log_file "${signed}.log")
set(log "")
set(signer "${COMMAND}")  # the name is a word of if()

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

function(check_sign_key)
  check_key("${KEY}" kind)
  if(NOT kind STREQUAL "pair")
    fail("${KEY} has the public part of a key alone. SIGN_KEY is the file of "
      "the pair.")
  endif()
  if(TYPE STREQUAL "release" AND CMAKE_HOST_UNIX)
    execute_process(
      COMMAND find "${KEY}" -prune "(" -perm -004 -o -perm -040 ")"
      OUTPUT_VARIABLE readable)
    if(readable)
      message("Warning: others may read the private key ${KEY}. Take that "
        "right from them: chmod 600")
    endif()
  endif()
endfunction()

function(run_step)
  execute_process(COMMAND ${ARGN}
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE status)
  string(APPEND log "${output}")
  set(log "${log}" PARENT_SCOPE)
  file(WRITE "${log_file}" "${log}")
  if(status EQUAL 0)
    return()
  endif()
  list(JOIN ARGN " " command)
  if(NOT status MATCHES "^-?[0-9]+$")
    fail("the command can't be run: ${status}: ${command}")
  endif()
  # The signer's own words, at least the last of them. The tool's are shown by
  # their lines.
  set(words "")
  if(signer AND NOT output MATCHES "Error: ")
    string(STRIP "${output}" words)
    string(LENGTH "${words}" length)
    if(length GREATER 1000)
      math(EXPR start "${length} - 1000")
      string(SUBSTRING "${words}" ${start} -1 words)
    endif()
    string(REPLACE "\n" "\n  " words "\n${words}")
  endif()
  fail("the step ended with status ${status}: ${command}${words}")
endfunction()

file(REMOVE "${signed}" "${log_file}")
if(COMMAND)
  string(REPLACE "<MANIFEST>" "${MANIFEST}" command "${COMMAND}")
  string(REPLACE "<SIGNED>" "${signed}" command "${command}")
else()
  check_sign_key()
  set(command "${TOOL}" sign "${TYPE}" "${KEY}" "${MANIFEST}" "${signed}")
endif()
check_manifest("${MANIFEST}")
run_step(${command})
# At -v the key's hash is in the log, whoever signed.
run_step("${TOOL}" -v verify "${signed}")
check_signed_manifest("${signed}")
check_sample_key()
set(options)
if(TYPE STREQUAL "release")
  list(APPEND options --release)
endif()
foreach(key IN LISTS TRUST)
  list(APPEND options --trust "${key}")
endforeach()
# With all that was built: a release has to hold down to its contents.
string(REGEX REPLACE "[.]man$" "" base "${MANIFEST}")
file(READ "${base}.log" image_log)
addon_files("${image_log}" addons)
check_by_companion(${options} "${signed}" "${base}.bin" "${base}.man.ext"
  "${base}.pkg" ${addons})
