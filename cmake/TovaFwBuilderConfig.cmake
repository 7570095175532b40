# find_package(TovaFwBuilder): the tool as the imported executable
# TovaFwBuilder::tova_fw_builder, and the function tova_add_firmware.
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilderTargets.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilder.cmake")
