// Reading of one ELF's files into the map, apart from the map since the readers
// know it. The order of the steps shows when one of them fails: the tables are
// opened ahead of the symbols.
#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "input_map/fw_image_map.h"
#include "input_map/section_table.h"
#include "input_map/symbol_list.h"

namespace tova_fw_builder {

void FwImageMap::read_image_map(const std::string& memmap_path,
                                const std::string& elf_path,
                                const std::string& nm_path) {
  log_detail("Reading FW Image Map...");
  log_detail("  Memmap: ", memmap_path);
  log_detail("  ELF   : ", elf_path);
  log_detail("  NM    : ", nm_path);
  const auto table = open_input(memmap_path);
  const std::shared_ptr<std::istream> elf = open_binary_input(elf_path);
  merge_symbols(read_symbols(nm_path));
  read_section_table(*this, *table, elf);
}

}  // namespace tova_fw_builder
