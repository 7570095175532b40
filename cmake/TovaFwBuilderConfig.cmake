# find_package(TovaFwBuilder): the tool as the imported executable
# TovaFwBuilder::tova_fw_builder, and the functions tova_add_firmware,
# tova_add_package and tova_add_flash_image.
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilderTargets.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilder.cmake")
