// companion/builder_inputs.h
// The inputs of tova_fw_builder build, where a command of the companion takes
// them.
#pragma once

#include <optional>
#include <string>

#include "companion/ground/trouble.h"
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

// What the builder's readers say of a file that can't be read, or of one that
// is none of its kind: at the input that it is, or that names it, with a cure.
// Nothing for any other message, which is about the definition. To be asked
// where the readers have left the working directory.
std::optional<Trouble> trouble_of_input(const std::string& message,
                                        const BuilderInputNames& names,
                                        const BuildInputs& inputs);

}  // namespace tova_fw_builder
