#include "companion/builder_inputs.h"

#include <exception>
#include <filesystem>
#include <string_view>
#include <utility>

#include "companion/ground/input_file.h"
#include "companion/ground/list_cures.h"
#include "driver/ground/files.h"
#include "driver/ground/paths.h"
#include "lint/key_list_fault.h"

namespace tova_fw_builder {

namespace {

constexpr std::string_view kPlaceOfPaths =
    "; paths in it count from the definition's folder";

// Why the key list isn't taken; nothing if it is, or if it can't be read again.
std::optional<Trouble> trouble_of_key_list(const BuilderInputNames& names,
                                           const BuildInputs& inputs) {
  if (!is_file(inputs.key_list_path)) return std::nullopt;
  try {
    const auto fault = find_key_list_fault(inputs.key_list_path, kPlaceOfPaths);
    if (fault) return Trouble{names.key_list, fault->text};
  } catch (const std::exception&) {
    // It has gone away since.
  }
  return std::nullopt;
}

std::optional<Trouble> trouble_of_missing_file(const std::string& path,
                                               const BuilderInputNames& names,
                                               const BuildInputs& inputs) {
  const std::string reason = why_unreadable(path);
  if (path == inputs.module_config_path) return Trouble{names.header, reason};
  if (path == inputs.key_list_path) return Trouble{names.key_list, reason};
  if (path == inputs.elf_list_path) return Trouble{names.elf_list, reason};
  // The builder reads it ahead of the ELF list.
  if (auto trouble = trouble_of_key_list(names, inputs)) return trouble;
  const ListedPath listed = find_listed_path(inputs.elf_list_path, path);
  if (!listed.is_there) return std::nullopt;
  std::string text = "its file " + path + ' ' + reason;
  if (listed.is_cut) {
    text += kCutPathCure;
  } else if (native_path(path).is_relative()) {
    text += kPlaceOfPaths;
  }
  return Trouble{names.elf_list, std::move(text)};
}

}  // namespace

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

std::optional<Trouble> trouble_of_input(const std::string& message,
                                        const BuilderInputNames& names,
                                        const BuildInputs& inputs) {
  constexpr std::string_view kFile = "Failed to open file: ";
  if (message.starts_with(kFile)) {
    return trouble_of_missing_file(message.substr(kFile.size()), names, inputs);
  }
  if (message == "Failed to open image defs file : " + inputs.image_def_path) {
    return Trouble{names.definition, why_unreadable(inputs.image_def_path)};
  }
  for (const char* text : {"Not recognized key type", "Key type not recognized",
                           "Expected std::string not found"}) {
    if (message.starts_with(text)) return trouble_of_key_list(names, inputs);
  }
  if (message.starts_with("Invalid number of lines in ELF list")) {
    return Trouble{names.elf_list, message + std::string(kElfListCure)};
  }
  for (const char* text :
       {"Duplicated section found: ", "Not recognizeg alignment specified"}) {
    if (!message.starts_with(text)) continue;
    return Trouble{names.elf_list,
                   message +
                       "; tova_fw lint, which takes the same inputs, "
                       "tells where and why"};
  }
  return std::nullopt;
}

}  // namespace tova_fw_builder
