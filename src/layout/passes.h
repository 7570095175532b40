// layout/passes.h
// The passes of the build core over the map, in the order of the run:
// module_connection, with group_binding for each group, module_pruning, and
// exported_symbols at its end; map_checks; dependency_file.
#pragma once

#include <string>
#include <vector>

#include "input_map/fw_image_map.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Connects all modules, erases those that aren't in the image, reports the
// `ignore` sections, binds the `dyn_mem` sections and collects the exports.
//
// Throws std::runtime_error: what connect_module, erase_unreferenced and
// collect_exports throw; "Section header not found for " and the name of a
// dyn_mem section.
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

// Fills `exported_symbols`, in name order; logs a note for each export. Throws
// std::runtime_error "Required symbol to export not found: " and the symbol.
void collect_exports(FwOutMap& map, const FwImageMap& image_map);

// Binds each section reference of the group to the header of its name, and if
// there is one, its replacement, too. A name that isn't found is logged as a
// warning; that of an optional reference itself as a note.
//
// If every reference that isn't optional was bound, the group is sorted by load
// address (stable; references without a header last) and gets its `flags`,
// by the first bound header with any flag, and the `entry` of its entry point
// section. Otherwise its order and what it has of `flags` stay.
//
// Throws std::runtime_error "Double entry point defined" for an entry point
// section when the group has an entry; with `check_types` also "Invalid segment
// type" for a section without a kind and "Invalid section type" for one of
// another kind than the group's (docs/definition-language.md tells the kinds).
void attach_group(FwOutMap::SectionGroup& group, const FwImageMap& image_map,
                  bool check_types, bool loadable);

// Holds .data and the sections whose names end in ".guard" to `max_data`, and
// ".guard" itself to nothing. Warns unless `max_data` is 0. Throws what
// FwImageMap::check_section_size throws.
void check_sizes(const FwOutMap& map, const FwImageMap& image_map);

// Notes in the log a group of allocation alone in front of the last other one;
// then check_uuid_tails. Does nothing for generation 1.5 and unknown ones.
void check_alloc_only(const FwOutMap& map);

// Throws std::runtime_error "UUID last 6 bytes is not unique for module " and
// the name of the later of two modules.
void check_uuid_tails(const FwOutMap& map);

// Writes the rules for `files_read` (docs/file-formats.md) beside the ELF list:
// "fw.lst" and "fw" give "fw.d", ".lst" gives ".lst.d". Failures are passed
// over in silence.
void write_dependency_file(const std::string& elf_list_path,
                           const std::vector<std::string>& files_read);

}  // namespace tova_fw_builder
