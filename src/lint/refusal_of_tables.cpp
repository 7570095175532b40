// The builder's messages name neither the list nor the table that they are
// about: both are read once more, until what fails is found.
#include "lint/refusal_of_tables.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "companion/ground/input_file.h"
#include "companion/ground/list_cures.h"
#include "driver/ground/files.h"
#include "input_map/elf_list.h"
#include "input_map/fw_image_map.h"
#include "lint/key_list_fault.h"

namespace tova_fw_builder {

namespace {

// None if the list is taken, or can't be read again, as a pipe can't.
std::optional<KeyListFault> key_list_fault(const BuildInputs& inputs) {
  if (!is_file(inputs.key_list_path)) return std::nullopt;
  try {
    return find_key_list_fault(inputs.key_list_path, "");
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

// Whether a section table has a section, as far as it can be read.
bool has_section(const std::string& table, const std::string& name) {
  FwImageMap map;
  try {
    read_section_table(map, *open_input(table), nullptr);
  } catch (const std::runtime_error&) {
  }
  return map.sections.contains(name);
}

// At a table, which may repeat a name of one above; else it is the list as a
// whole.
void explain_table(const std::string& path, UnreadTables& unread) {
  const auto table_spot = [file = unread.spot.file](std::size_t number) {
    const auto line = static_cast<std::uint32_t>(3 * number + 2);
    return Spot{file, line, 0, 0};
  };
  ElfList elfs;
  std::size_t read = 0;
  try {
    elfs = read_elf_list(path);
    for (FwImageMap all; read < elfs.size(); ++read) {
      read_section_table(all, *open_input(elfs[read].memmap), nullptr);
    }
  } catch (const std::runtime_error&) {
  }
  if (read == elfs.size()) return;
  unread.spot = table_spot(read);
  constexpr std::string_view kDuplicate = "Duplicated section found: ";
  if (!unread.text.starts_with(kDuplicate)) return;
  const std::string name = unread.text.substr(kDuplicate.size());
  for (std::size_t i = 0; i < read; ++i) {
    if (!has_section(elfs[i].memmap, name)) continue;
    unread.text +=
        "; " + elfs[i].elf + " and " + elfs[read].elf + " have one each";
    unread.notes.push_back({table_spot(i), "the first one"});
    return;
  }
}

}  // namespace

UnreadTables explain_tables(const BuildInputs& inputs, Spot elf_list,
                            std::string text) {
  UnreadTables unread{elf_list, std::move(text), {}};
  if (const auto fault = key_list_fault(inputs)) {
    unread.spot = {elf_list.file + 1, fault->line, 0, 0};
    unread.text += "; " + fault->text;
    return unread;
  }
  if (unread.text.starts_with("Invalid number of lines")) {
    unread.text += kElfListCure;
  }
  explain_table(inputs.elf_list_path, unread);
  return unread;
}

}  // namespace tova_fw_builder
