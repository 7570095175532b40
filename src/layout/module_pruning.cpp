// What isn't in the linker's output: optional sections, then groups of which
// nothing is left, then modules. A module is in the image as a whole or not at
// all.
#include <stdexcept>

#include "driver/ground/log.h"
#include "layout/passes.h"
#include "layout/section_group.h"

namespace tova_fw_builder {

void remove_optional(FwOutMap::SectionGroup& group) {
  std::erase_if(group.sections, [](const auto& section) {
    if (!section->optional || section->header != nullptr) return false;
    log_info("Removing optional section ", section->name);
    return true;
  });
}

void remove_empty_groups(FwOutMap::Module& module) {
  std::erase_if(module.groups, [](const auto& group) {
    if (!group->sections.empty()) return false;
    log_info("Removing empty section gruop: ", group_type_name(group->type));
    return true;
  });
}

bool is_referenced(const FwOutMap::Module& module) {
  bool seen_mapped = false;
  bool seen_unmapped = false;
  for (std::size_t i = 0; i < module.groups.size(); ++i) {
    if (is_complete(*module.groups[i])) {
      if (seen_unmapped) {
        throw std::runtime_error("Partially mapped module " + module.name);
      }
      seen_mapped = true;
      continue;
    }
    log_info("invalid section ", i, '/', module.groups.size(),
             " found for module: ", module.name, '\n');
    // For a required module it may also be that nothing of it was found.
    if (seen_mapped || module.required) {
      throw std::runtime_error("Partially mapped module " + module.name +
                               ", section: " + std::to_string(i));
    }
    seen_unmapped = true;
  }
  return seen_mapped;
}

void erase_unreferenced(FwOutMap& map) {
  // Asks in the order of the modules and once for each, so the numbers that are
  // given out here have no holes.
  std::erase_if(map.modules, [&map](const auto& module) {
    if (!is_referenced(*module)) {
      log_warning("Erasing unreferenced module ", module->name);
      return true;
    }
    module->cfg_offset = map.mod_cfg_total;
    map.mod_cfg_total += module->mod_cfg.size();
    return false;
  });
}

}  // namespace tova_fw_builder
