// Addon modules of generation 1.5. The loader's table counts offsets through
// all files, as if they stood one behind the other.
#include "layout/kelp15_file_base.h"

#include "layout/section_group.h"

namespace tova_fw_builder {

// A kind unknown to the definitions counts like an addon.
bool has_own_file(const FwOutMap& map, const FwOutMap::Module& module) {
  return map.binary_ver == kKelp15 &&
         module.module_kind != FwOutMap::Module::kBase &&
         module.module_kind != FwOutMap::Module::kLibrary;
}

std::uint32_t file_base_step(const FwOutMap& map,
                             const FwOutMap::Module& module) {
  if (map.binary_ver != kKelp15) return 0;
  if (module.type == FwOutMap::Module::kBaseFirmwareType) {
    return static_cast<std::uint32_t>(map.image_end);
  }
  // .bss and built-in groups have no bytes in the file.
  std::uint32_t pages = 0;
  for (const auto& group : module.groups) {
    if ((group->flags & FwOutMap::SectionGroup::kLoad) != 0) {
      pages += group_pages(*group);
    }
  }
  return pages * kPageSize;
}

}  // namespace tova_fw_builder
