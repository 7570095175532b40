// companion/builder_inputs.h
// The inputs of tova_fw_builder build, where a command of the companion takes
// them.
#pragma once

#include <string>

#include "layout/build_core.h"

namespace tova_fw_builder {

// As they were named; empty for what isn't given.
struct BuilderInputNames {
  std::string definition;
  std::string header;
  std::string elf_list;
  std::string key_list;
  std::string default_dir = ".";
};

// The file wherever one goes; empty for an empty name.
std::string absolute_path(const std::string& path);

// Reading definitions moves the working directory, so each name is made
// absolute here. What the ELF list and the key list name is left as it is: the
// builder, too, looks for it from the definition's folder.
BuildInputs builder_inputs(const BuilderInputNames& names);

}  // namespace tova_fw_builder
