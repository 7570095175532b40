# find_package(TovaFwBuilder): the tool as the imported executable
# TovaFwBuilder::tova_fw_builder, and the functions tova_add_firmware,
# tova_add_package and tova_add_flash_image.
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilderTargets.cmake")
# The functions are known everywhere, and so is what they run.
foreach(tool IN ITEMS tova_fw_builder tova_fw)
  if(TARGET TovaFwBuilder::${tool})
    get_target_property(global TovaFwBuilder::${tool} IMPORTED_GLOBAL)
    if(NOT global)
      set_target_properties(TovaFwBuilder::${tool} PROPERTIES
        IMPORTED_GLOBAL TRUE)
    endif()
  endif()
endforeach()
include("${CMAKE_CURRENT_LIST_DIR}/TovaFwBuilder.cmake")
