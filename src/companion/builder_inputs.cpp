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

// Why the key list isn't taken; nothing if it is. One that can't be read again
// has the builder's text.
std::optional<Trouble> trouble_of_key_list(const std::string& message,
                                           const BuilderInputNames& names,
                                           const BuildInputs& inputs) {
  if (names.key_list.empty()) return std::nullopt;
  if (!is_file(inputs.key_list_path)) return Trouble{names.key_list, message};
  try {
    const auto fault = find_key_list_fault(inputs.key_list_path, kPlaceOfPaths);
    if (fault) return Trouble{names.key_list, fault->text};
  } catch (const std::exception&) {
    // It has gone away since.
  }
  return std::nullopt;
}

std::string missing_text(const std::string& path, bool is_cut) {
  std::string text = its_file(path) + ' ' + why_unreadable(path);
  if (is_cut) {
    text += kCutPathCure;
  } else if (native_path(path).is_relative()) {
    text += kPlaceOfPaths;
  }
  return text;
}

// A file that one of the lists names. Of a list that can't be read again it is
// known only that the other one doesn't name it.
std::optional<Trouble> trouble_of_listed_file(const std::string& path,
                                              const BuilderInputNames& names,
                                              const BuildInputs& inputs) {
  const bool has_keys = is_file(inputs.key_list_path);
  // The builder reads it ahead of the ELF list.
  if (has_keys) {
    if (auto trouble = trouble_of_key_list("", names, inputs)) return trouble;
  }
  const ListedPath listed = find_listed_path(inputs.elf_list_path, path);
  const bool is_elf_list = listed.is_there || (!names.elf_list.empty() &&
                                               !is_file(inputs.elf_list_path));
  const bool is_key_list =
      !listed.is_there && !names.key_list.empty() && !has_keys;
  if (is_elf_list == is_key_list) return std::nullopt;
  return Trouble{is_elf_list ? names.elf_list : names.key_list,
                 missing_text(path, listed.is_cut)};
}

std::optional<Trouble> trouble_of_missing_file(const std::string& path,
                                               const BuilderInputNames& names,
                                               const BuildInputs& inputs) {
  // Of an input that wasn't given, the path is empty, too.
  if (path.empty()) {
    auto trouble = trouble_of_listed_file(path, names, inputs);
    return trouble ? trouble : Trouble{names.elf_list, why_unreadable(path)};
  }
  if (path == inputs.module_config_path) {
    return Trouble{names.header, why_unreadable(path)};
  }
  if (path == inputs.key_list_path) {
    return Trouble{names.key_list, why_unreadable(path)};
  }
  if (path == inputs.elf_list_path) {
    return Trouble{names.elf_list, why_unreadable(path)};
  }
  return trouble_of_listed_file(path, names, inputs);
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
    if (message.starts_with(text)) {
      return trouble_of_key_list(message, names, inputs);
    }
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
