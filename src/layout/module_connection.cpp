// Connection of the modules. Errors of one module carry its name; those that
// belong to the whole image are raised as they are.
#include <exception>
#include <stdexcept>

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

}  // namespace tova_fw_builder
