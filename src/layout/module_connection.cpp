// Connection of the modules. Errors of one module carry its name; those that
// belong to the whole image are raised as they are.
#include <exception>
#include <stdexcept>
#include <utility>

#include "driver/ground/log.h"
#include "layout/passes.h"
#include "layout/section_group.h"

namespace tova_fw_builder {

namespace {

using Group = FwOutMap::SectionGroup;

void take_from_group(FwOutMap::Module& module, const Group& group) {
  // A library needs no entry; all else that has code must have one.
  if (group.type == Group::kText &&
      module.module_kind != FwOutMap::Module::kLibrary) {
    module.entry_point = group.entry;
    if (group.entry == Group::kNoEntry) {
      throw std::runtime_error("No entrypoint defined for module " +
                               module.name);
    }
  }
  // In pages, in place of the statement's number.
  if (group.type == Group::kBss &&
      module.type == FwOutMap::Module::kBaseFirmwareType) {
    module.stack_size = group_pages(group);
  }
}

void connect_groups(FwOutMap::Module& module, bool rom_mode,
                    const FwImageMap& image_map) {
  for (const auto& group : module.groups) {
    attach_group(*group, image_map, !rom_mode,
                 module.load_type == FwOutMap::Module::kLoadable);
    remove_optional(*group);
  }
  remove_empty_groups(module);
  // Incomplete ones are for is_referenced: the module may be absent as a whole.
  for (const auto& group : module.groups) {
    if (is_complete(*group)) take_from_group(module, *group);
  }
}

// That is all: an ignored section may be bound, and if nothing binds it, the
// warning of unreferenced sections names it like any other.
void report_ignored(const FwOutMap& map, const FwImageMap& image_map) {
  for (const std::string& name : map.ignore) {
    if (image_map.find_section(name) != nullptr) {
      log_info("Section marked to ignore ", name);
    } else {
      log_warning("Section marked to ignore ", name, " not found");
    }
  }
}

// They belong to no module and aren't written; the memory description counts
// them.
void bind_dyn_mem(FwOutMap& map, const FwImageMap& image_map) {
  for (const auto& section : map.dyn_mem) {
    section->header = image_map.find_section(section->name);
    if (section->header == nullptr) {
      throw std::runtime_error("Section header not found for " + section->name);
    }
  }
}

void collect_exports(FwOutMap& map, const FwImageMap& image_map) {
  for (const auto& [name, optional] : map.exports) {
    FwImageMap::Symbol symbol = image_map.find_symbol(name);
    if (!symbol.valid && !optional) {
      throw std::runtime_error("Required symbol to export not found: " + name);
    }
    log_info(symbol.valid ? "Exporting symbol: "
                          : "Optional symbol to export not found: ",
             name);
    if (symbol.valid) map.exported_symbols.push_back(std::move(symbol));
  }
}

}  // namespace

void connect_modules(FwOutMap& map, const FwImageMap& image_map) {
  for (const auto& module : map.modules) {
    connect_module(*module, map.rom_mode, image_map);
  }
  erase_unreferenced(map);
  report_ignored(map, image_map);
  bind_dyn_mem(map, image_map);
  collect_exports(map, image_map);
}

void connect_module(FwOutMap::Module& module, bool rom_mode,
                    const FwImageMap& image_map) {
  log_detail("Connecting module ", module.name);
  try {
    connect_groups(module, rom_mode, image_map);
  } catch (const std::exception& error) {
    throw std::runtime_error("Connecting " + module.name +
                             " failed: " + error.what());
  }
}

void remove_optional(Group& group) {
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
