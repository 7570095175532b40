// layout/module_connection.h
// From a map of mere definitions to one bound to the linker's output.
#pragma once

#include "input_map/fw_image_map.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Connects all modules, erases those that aren't in the image, reports the
// `ignore` sections, binds the `dyn_mem` sections and collects
// `exported_symbols`, in name order.
//
// Throws std::runtime_error: what connect_module and erase_unreferenced throw;
// "Section header not found for " and the name of a dyn_mem section; "Required
// symbol to export not found: " and the symbol.
void connect_modules(FwOutMap& map, const FwImageMap& image_map);

// Binds the groups of one module, drops absent optional sections and groups
// that are empty then, and takes `entry_point` and, for a module of type 0,
// `stack_size` from the complete groups; the last one counts.
//
// Throws std::runtime_error "Connecting NAME failed: TEXT", where TEXT is that
// of attach_group or "No entrypoint defined for module NAME".
void connect_module(FwOutMap::Module& module, bool rom_mode,
                    const FwImageMap& image_map);

// Drops the optional references without a header; logs a note for each.
void remove_optional(FwOutMap::SectionGroup& group);

// Drops the groups without a reference; logs a note for each.
void remove_empty_groups(FwOutMap::Module& module);

// True if the module is in the image, false if it is wholly absent or has no
// group left. Logs a note for each group that isn't complete.
//
// Throws std::runtime_error "Partially mapped module NAME, section: I" if group
// I isn't complete though the module is required or an earlier group is
// complete, and "Partially mapped module NAME" for the other order.
bool is_referenced(const FwOutMap::Module& module);

// Drops the modules that aren't referenced, each with a warning, and numbers
// the configurations of those that stay: `cfg_offset`, and `mod_cfg_total` of
// the map, which is of no further use once is_referenced has thrown.
void erase_unreferenced(FwOutMap& map);

}  // namespace tova_fw_builder
