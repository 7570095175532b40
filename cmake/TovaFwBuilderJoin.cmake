# Packages and flash images as a part of your own build:
#
#   tova_add_package(NAME
#     FIRMWARE target | DESCRIPTOR file   # whose package it is; or a package
#                                # descriptor of your own
#     [INPUTS item...]           # what relative names in it mean
#     [OUTPUT_DIRECTORY dir] [DEPENDS file...])
#
#   tova_add_flash_image(NAME
#     SCRIPT file                # see "Image script of build_img" in
#                                # docs/file-formats.md
#     INPUTS item...             # the files that it names
#     [OUTPUT_DIRECTORY dir] [DEPENDS file...])
#
# make the target NAME, a part of `all`, in the output folder (NAME in the
# current binary folder) NAME.bin or NAME.img, and NAME.log. An item is a file,
# a target of these functions or of tova_add_firmware made above, which means
# all of its files, one of these by an expression such as
# $<TARGET_PROPERTY:firmware,TOVA_SIGNED_MANIFEST>, or $<TARGET_FILE:target>.
# Descriptors and scripts name an item by its file alone,
# without folders: the items are gathered in the folder NAME.inputs, and nothing
# else is found there. So what is made changes with every file that is in it.
#
# The property TOVA_BINARY of the target is the file made. The build fails, and
# takes the partial file away, when the tool fails, when the output is one of
# the inputs, when the disk had no room, and, where the companion tova_fw is
# installed, when parts of a flash image overlap. An item that nothing names is
# told.

# The file that an item names, if it is an expression for one. Sets `files` and
# `target`.
function(_tova_item_of_expression item)
  # The second form is that for generators of several configurations.
  string(REGEX REPLACE "^\\$<TARGET_GENEX_EVAL:[^,]+,(.*)>$" "\\1"
    item "${item}")
  if(item MATCHES "^\\$<TARGET_PROPERTY:([^,>]+),(TOVA_[A-Z_]+)>$")
    set(target "${CMAKE_MATCH_1}")
    set(property "${CMAKE_MATCH_2}")
    set(files)
    if(TARGET ${target})
      get_target_property(files ${target} ${property})
    endif()
    if(NOT files)
      _tova_refuse("INPUTS asks for ${property} of ${target}, which isn't made "
        "above: ${item}")
    endif()
  elseif(item MATCHES "^\\$<TARGET_FILE:([^>]+)>$" AND TARGET ${CMAKE_MATCH_1})
    set(target "${CMAKE_MATCH_1}")
    set(files "${item}")
  else()
    _tova_refuse("INPUTS takes the generator expressions TARGET_PROPERTY of "
      "the module's properties and TARGET_FILE of targets alone: ${item}")
  endif()
  set(files "${files}" PARENT_SCOPE)
  set(target "${target}" PARENT_SCOPE)
endfunction()

# Sets `inputs` to the files of the items, `targets` to those among them, and
# `items` to each item's files, joined by bars.
function(_tova_input_files)
  set(inputs)
  set(targets)
  set(items)
  foreach(item IN LISTS ARG_INPUTS)
    set(files)
    if(TARGET ${item})
      get_target_property(files ${item} _tova_files)
      if(NOT files)
        _tova_refuse("${item} among INPUTS is no target of tova_add_firmware, "
          "tova_add_package or tova_add_flash_image")
      endif()
      list(APPEND targets ${item})
    elseif(item MATCHES "\\$<")
      _tova_item_of_expression("${item}")
      list(APPEND targets ${target})
    else()
      get_filename_component(files "${item}" ABSOLUTE)
      _tova_check_file(INPUTS "${files}")
    endif()
    list(APPEND inputs ${files})
    list(JOIN files "|" files)
    list(APPEND items "${files}")
  endforeach()
  set(names)
  foreach(input IN LISTS inputs)
    get_filename_component(file "${input}" NAME)
    if(file IN_LIST names)
      _tova_refuse("two files among INPUTS have the name ${file}")
    endif()
    list(APPEND names "${file}")
  endforeach()
  set(inputs "${inputs}" PARENT_SCOPE)
  set(items "${items}" PARENT_SCOPE)
  set(targets "${targets}" PARENT_SCOPE)
endfunction()

# Adds the target that makes `output` by a command of the tool.
function(_tova_join command recipe extension)
  _tova_find_companion()
  _tova_check_companion()
  _tova_check_depends()
  _tova_input_files()
  _tova_output_folder(dir)
  set(base "${dir}/${name}")
  set(output "${base}.${extension}")
  _tova_check_overwrite("${output};${base}.log;${base}.inputs.d" ${recipe}
    ${inputs} ${ARG_DEPENDS})
  file(GENERATE OUTPUT "${base}.arguments.cmake" CONTENT
"set(tool [==[$<TARGET_FILE:TovaFwBuilder::tova_fw_builder>]==])
set(command [==[${command}]==])
set(recipe [==[${recipe}]==])
set(companion [==[${TovaFw_EXECUTABLE}]==])
set(inputs [==[${inputs}]==])
set(items [==[${items}]==])
set(base [==[${base}]==])
set(output [==[${output}]==])
")
  set(scripts "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/TovaFwBuilder")
  add_custom_command(
    OUTPUT "${output}"
    BYPRODUCTS "${base}.log"
    COMMAND "${CMAKE_COMMAND}" "-DARGUMENTS=${base}.arguments.cmake"
      -P "${scripts}JoinRun.cmake"
    DEPENDS "${recipe}" ${inputs} ${targets} ${ARG_FIRMWARE} ${ARG_DEPENDS}
      "${base}.arguments.cmake" "${scripts}JoinRun.cmake"
      "${scripts}Check.cmake" TovaFwBuilder::tova_fw_builder
      ${TovaFw_EXECUTABLE}
    DEPFILE "${base}.inputs.d"
    COMMENT "Joining ${name}.${extension}"
    VERBATIM)
  add_custom_target(${name} ALL DEPENDS "${output}")
  set_target_properties(${name} PROPERTIES
    TOVA_BINARY "${output}" TOVA_LOG "${base}.log" _tova_files "${output}")
endfunction()

function(tova_add_package name)
  set(_tova_function tova_add_package)
  cmake_parse_arguments(PARSE_ARGV 1 ARG ""
    "FIRMWARE;DESCRIPTOR;OUTPUT_DIRECTORY" "INPUTS;DEPENDS")
  _tova_check_parsed()
  set(descriptor)
  if(ARG_FIRMWARE AND ARG_DESCRIPTOR OR NOT (ARG_FIRMWARE OR ARG_DESCRIPTOR))
    _tova_refuse("takes either the FIRMWARE or a DESCRIPTOR")
  elseif(ARG_DESCRIPTOR)
    get_filename_component(descriptor "${ARG_DESCRIPTOR}" ABSOLUTE)
    _tova_check_file(DESCRIPTOR "${descriptor}")
  elseif(TARGET ${ARG_FIRMWARE})
    get_target_property(descriptor ${ARG_FIRMWARE} TOVA_PACKAGE_DESCRIPTOR)
  endif()
  if(NOT descriptor)
    _tova_refuse("FIRMWARE takes a target of tova_add_firmware that is made "
      "above: ${ARG_FIRMWARE}")
  endif()
  _tova_join(asm "${descriptor}" bin)
endfunction()

function(tova_add_flash_image name)
  set(_tova_function tova_add_flash_image)
  cmake_parse_arguments(PARSE_ARGV 1 ARG ""
    "SCRIPT;OUTPUT_DIRECTORY" "INPUTS;DEPENDS")
  _tova_check_parsed(SCRIPT INPUTS)
  get_filename_component(script "${ARG_SCRIPT}" ABSOLUTE)
  _tova_check_file(SCRIPT "${script}")
  _tova_join(build_img "${script}" img)
endfunction()
