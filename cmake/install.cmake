# What `cmake --install` and the Debian packages hold: the tool, its manual
# page, the papers with the sample firmware, and the CMake module; apart from
# these the companion, its manual page and what shells complete.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME builder)

install(TARGETS tova_fw_builder EXPORT TovaFwBuilderTargets)
install(FILES docs/tova_fw_builder.1
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
# The papers refer to one another and to the sample by relative paths.
set(doc_dir ${CMAKE_INSTALL_DATADIR}/doc/tova-fw-builder)
install(FILES README.md CHANGELOG.md SECURITY.md CONTRIBUTING.md
  DESTINATION ${doc_dir})
install(DIRECTORY docs examples DESTINATION ${doc_dir}
  PATTERN "*.1" EXCLUDE
  PATTERN "*.sh" EXCLUDE)
install(PROGRAMS examples/audio_firmware/keys/make-test-key.sh
  DESTINATION ${doc_dir}/examples/audio_firmware/keys)

# Under share/, and without a test of the pointer size: firmware builds find
# it while they compile for another processor.
set(module_dir ${CMAKE_INSTALL_DATADIR}/cmake/TovaFwBuilder)
install(EXPORT TovaFwBuilderTargets
  NAMESPACE TovaFwBuilder::
  DESTINATION ${module_dir})
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/TovaFwBuilderConfigVersion.cmake
  COMPATIBILITY SameMajorVersion
  ARCH_INDEPENDENT)
install(FILES
    cmake/TovaFwBuilder.cmake
    cmake/TovaFwBuilderArguments.cmake
    cmake/TovaFwBuilderCheck.cmake
    cmake/TovaFwBuilderCompanion.cmake
    cmake/TovaFwBuilderConfig.cmake
    cmake/TovaFwBuilderJoin.cmake
    cmake/TovaFwBuilderJoinRun.cmake
    cmake/TovaFwBuilderRun.cmake
    cmake/TovaFwBuilderSign.cmake
    ${PROJECT_BINARY_DIR}/TovaFwBuilderConfigVersion.cmake
  DESTINATION ${module_dir})

if(TOVA_COMPANION)
  set(completions ${PROJECT_BINARY_DIR}/src/companion/completions)
  install(TARGETS tova_fw COMPONENT companion)
  install(FILES docs/tova_fw.1
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT companion)
  if(NOT CMAKE_CROSSCOMPILING)
    install(FILES ${completions}/bash RENAME tova_fw COMPONENT companion
      DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES ${completions}/fish RENAME tova_fw.fish COMPONENT companion
      DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
    install(FILES ${completions}/zsh RENAME _tova_fw COMPONENT companion
      DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
  endif()
  set(CPACK_COMPONENTS_ALL builder companion)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_BUILDER_PACKAGE_NAME tova-fw-builder)
  set(CPACK_DEBIAN_COMPANION_PACKAGE_NAME tova-fw)
endif()

# Who answers for the packages: the one who commits, or who is named here.
set(committer "$ENV{TOVA_MAINTAINER}")
if(NOT committer)
  execute_process(COMMAND git log -1 "--format=%an <%ae>"
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    OUTPUT_VARIABLE committer ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
endif()
set(TOVA_MAINTAINER "${committer}" CACHE STRING
  "Maintainer of the Debian packages, as NAME <ADDRESS>")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tova-fw-builder)
set(CPACK_PACKAGE_CONTACT "${TOVA_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_DEBIAN_BUILDER_DESCRIPTION
  "tova_fw_builder turns linked firmware into the binary, the manifest and what
else the processor's loader takes; it also signs manifests, joins packages and
builds flash images. A CMake module comes with it.")
set(CPACK_DEBIAN_COMPANION_DESCRIPTION
  "tova_fw looks into the images of tova-fw-builder: it shows, compares and
checks them, tells where the memory goes, converts keys, and takes signatures
that were made elsewhere.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/packaging/finish.cmake)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
include(CPack)
