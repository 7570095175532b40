// The build core: the order of a build up to the finished map. What matters in
// the order stands beside the calls.
#include "layout/build_core.h"

#include "definitions/definition_reader.h"
#include "definitions/image_layout.h"
#include "definitions/modules_config.h"
#include "driver/log.h"
#include "input_map/elf_list.h"
#include "input_map/fw_image_map.h"
#include "layout/dependency_file.h"
#include "layout/map_checks.h"
#include "layout/module_connection.h"
#include "signing/key_list.h"

namespace tova_fw_builder {

namespace {

// A ".guard" section of exactly that name marks memory that must stay free, so
// it has to be empty, whatever is allowed for others.
void check_sizes(const FwOutMap& map, const FwImageMap& image_map) {
  if (map.max_data != 0 && log_level() >= kLogWarning) {
    LogLine(kLogWarning).stream()
        << "allowing " << map.max_data << "b data section!\n";
  }
  image_map.check_section_size(".data", map.max_data);
  image_map.check_section_size(".guard", 0);
  image_map.check_suffix_size(".guard", map.max_data);
}

}  // namespace

std::unique_ptr<FwOutMap> build_out_map(
    bool rom_mode, const std::string& elf_list_path,
    const std::string& key_list_path, const std::string& default_dir,
    const std::string& image_def_path,
    const std::optional<std::string>& module_config_path) {
  if (log_level() >= kLogDetail) {
    LogLine(kLogDetail).stream()
        << "Out image definifions default directory : " << default_dir;
  }
  auto map = std::make_unique<FwOutMap>();
  map->rom_mode = rom_mode;
  map->default_dir = default_dir;

  // The definitions use the constants, so these come first.
  if (module_config_path) read_modules_config(*map, *module_config_path);
  read_image_layout(*map, read_image_defs(*map, image_def_path));

  FwImageMap image_map;
  if (!key_list_path.empty()) {
    // Ahead of the ELF files, so that a section of that name in one of them
    // counts as the duplicate.
    image_map.add_stream_section(kPublicKeysStorage,
                                 KeyList(key_list_path).stream);
  }
  for (const ElfListEntry& entry : read_elf_list(elf_list_path)) {
    image_map.read_image_map(entry.memmap, entry.elf, entry.nm);
  }

  connect_modules(*map, image_map);
  check_sizes(*map, image_map);
  // Behind the erasing of modules: what only they held counts as unreferenced.
  image_map.warn_unreferenced();
  check_alloc_only(*map);
  write_dependency_file(elf_list_path, map->files_read);
  return map;
}

}  // namespace tova_fw_builder
