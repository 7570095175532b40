#include "companion/builder_inputs.h"

#include <filesystem>

#include "companion/ground/input_file.h"
#include "companion/ground/trouble.h"
#include "driver/ground/files.h"
#include "driver/ground/paths.h"

namespace tova_fw_builder {

std::string absolute_path(const std::string& path) {
  return path.empty() ? path
                      : path_text(std::filesystem::absolute(native_path(path)));
}

BuildInputs builder_inputs(const BuilderInputNames& names) {
  if (is_pipe(names.definition)) {
    // Its folder is asked for, too, and a pipe without a writer has no end.
    throw FileError({names.definition,
                     "a definition can't come through a pipe: name a "
                     "file"});
  }
  BuildInputs inputs;
  inputs.elf_list_path = absolute_path(names.elf_list);
  inputs.key_list_path = absolute_path(names.key_list);
  inputs.default_dir = absolute_path(names.default_dir);
  // One that isn't here is searched in the default directory by its name.
  inputs.image_def_path = try_open_input(names.definition)->is_open()
                              ? absolute_path(names.definition)
                              : names.definition;
  if (!names.header.empty()) {
    inputs.module_config_path = absolute_path(names.header);
  }
  return inputs;
}

}  // namespace tova_fw_builder
