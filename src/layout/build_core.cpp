// The build core: the order of a build up to the finished map. What matters in
// the order stands beside the calls.
#include "layout/build_core.h"

#include <utility>

#include "definitions/constants_header.h"
#include "definitions/image_block.h"
#include "definitions/includes_and_defines.h"
#include "driver/ground/log.h"
#include "input_map/fw_image_map.h"
#include "layout/passes.h"
#include "signing/keys/key_list.h"

namespace tova_fw_builder {

BoundMap bind_out_map(const BuildInputs& inputs) {
  log_detail("Out image definifions default directory : ", inputs.default_dir);
  auto map = std::make_unique<FwOutMap>();
  map->rom_mode = inputs.rom_mode;
  map->default_dir = inputs.default_dir;

  // The definitions use the constants, so these come first.
  if (inputs.module_config_path) {
    read_modules_config(*map, *inputs.module_config_path);
  }
  read_image_layout(*map, read_image_defs(*map, inputs.image_def_path));

  // It ends here: the map shares the headers and the ELF streams that it needs.
  FwImageMap image_map;
  ElfList elfs = read_linker_output(inputs, image_map);
  connect_and_check(*map, image_map);
  return {std::move(map), std::move(elfs)};
}

ElfList read_linker_output(const BuildInputs& inputs, FwImageMap& image_map) {
  if (!inputs.key_list_path.empty()) {
    // Ahead of the ELF files, so that a section of that name in one of them
    // counts as the duplicate.
    image_map.add_stream_section(kPublicKeysStorage,
                                 KeyList(inputs.key_list_path).stream);
  }
  ElfList elfs = read_elf_list(inputs.elf_list_path);
  for (const ElfListEntry& entry : elfs) {
    image_map.read_image_map(entry.memmap, entry.elf, entry.nm);
  }
  return elfs;
}

void connect_and_check(FwOutMap& map, const FwImageMap& image_map) {
  connect_modules(map, image_map);
  check_sizes(map, image_map);
  // Behind the erasing of modules: what only they held counts as unreferenced.
  image_map.warn_unreferenced();
  // Ends with check_uuid_tails: modules that were erased may share the end of a
  // UUID.
  check_alloc_only(map);
}

std::unique_ptr<FwOutMap> build_out_map(const BuildInputs& inputs) {
  BoundMap bound = bind_out_map(inputs);
  // Last: a build that fails leaves the file of the run before.
  write_dependency_file(inputs.elf_list_path, bound.out_map->files_read);
  return std::move(bound.out_map);
}

}  // namespace tova_fw_builder
