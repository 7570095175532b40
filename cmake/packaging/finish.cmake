# Runs on the files of the Debian packages before they are packed, and makes of
# them what Debian expects: manual pages and a change log that are compressed, a
# copyright file, no program of another processor, and folders whose rights don't
# hang on the umask of the one who builds.
set(root ${CPACK_TEMPORARY_DIRECTORY})

function(compress file)
  execute_process(COMMAND gzip -9 -n -f ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(GLOB_RECURSE pages ${root}/*/usr/share/man/*.1)
foreach(page IN LISTS pages)
  compress(${page})
endforeach()
# The sample's are rebuilt from its sources, or come with the archive.
file(GLOB_RECURSE linked ${root}/*/usr/share/doc/*.elf)
if(linked)
  file(REMOVE ${linked})
endif()

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(pair IN ITEMS builder=tova-fw-builder companion=tova-fw)
  string(REGEX REPLACE "=.*" "" component ${pair})
  string(REGEX REPLACE ".*=" "" package ${pair})
  if(NOT IS_DIRECTORY ${root}/${component})
    continue()
  endif()
  set(doc ${root}/${component}/usr/share/doc/${package})
  configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright ${doc}/copyright COPYONLY)
  file(WRITE ${doc}/changelog
    "${package} (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium\n\n"
    "  * What users see of it is told in CHANGELOG.md, in the sources and in\n"
    "    the documents of tova-fw-builder.\n\n"
    " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
  compress(${doc}/changelog)
  set(overrides ${CMAKE_CURRENT_LIST_DIR}/${package}.lintian-overrides)
  if(EXISTS ${overrides})
    configure_file(${overrides}
      ${root}/${component}/usr/share/lintian/overrides/${package} COPYONLY)
  endif()
endforeach()

file(GLOB_RECURSE files ${root}/*)
foreach(file IN LISTS files)
  if(file MATCHES "/bin/[^/]*$|\\.sh$")
    file(CHMOD ${file} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
      GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  else()
    file(CHMOD ${file} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  endif()
endforeach()
file(CHMOD_RECURSE ${root}
  DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)
