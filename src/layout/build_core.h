// layout/build_core.h
// From the input files to the finished and checked output map.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "input_map/elf_list.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

struct BuildInputs {
  bool rom_mode = false;  // sections of any kind may stand in any group
  std::string elf_list_path;
  std::string key_list_path = {};  // empty for no key store
  std::string default_dir;         // where definitions are searched second
  std::string image_def_path;
  // Of the header of constants; an empty path is a name like any other.
  std::optional<std::string> module_config_path = {};
};

struct BoundMap {
  std::unique_ptr<FwOutMap> out_map;
  ElfList elfs;  // what the ELF list held
};

// Of these two, bind_out_map writes nothing; build_out_map is that and the
// dependency file behind it.
//
// Read the definitions and the linker's output, bind and check the map. The
// section streams live on in the map. Both leave the working directory at the
// image definition's.
//
// Throw CfgFileError and the logic errors of parse_signed and parse_unsigned
// for the definitions, else std::runtime_error.
BoundMap bind_out_map(const BuildInputs& inputs);
std::unique_ptr<FwOutMap> build_out_map(const BuildInputs& inputs);

// The last two steps of bind_out_map, behind the reading of the definitions:
// the store of keys and all that the ELF list names, and what is done with it.
ElfList read_linker_output(const BuildInputs& inputs, FwImageMap& image_map);
void connect_and_check(FwOutMap& map, const FwImageMap& image_map);

}  // namespace tova_fw_builder
