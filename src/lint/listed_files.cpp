#include "lint/listed_files.h"

#include <stdexcept>
#include <string_view>

#include "companion/ground/input_file.h"
#include "driver/ground/files.h"
#include "driver/ground/line_fields.h"
#include "driver/ground/line_reader.h"
#include "input_map/elf_list.h"

namespace tova_fw_builder {

namespace {

// Of the keys themselves nothing is read, each of which may be a pipe.
void add_keys(const std::string& list, std::vector<std::string>& files) {
  const auto in = open_input(list);
  LineReader lines(*in);
  for (std::string_view line; lines.next(line) && !line.empty();) {
    LineFields words(line);
    words.word();  // its kind
    files.emplace_back(words.word());
  }
}

}  // namespace

std::vector<std::string> listed_files(const BuildInputs& inputs) {
  std::vector<std::string> files;
  try {
    if (is_file(inputs.elf_list_path)) {
      for (const ElfListEntry& entry : read_elf_list(inputs.elf_list_path)) {
        files.insert(files.end(), {entry.elf, entry.memmap, entry.nm});
      }
    }
    if (is_file(inputs.key_list_path)) {
      add_keys(inputs.key_list_path, files);
    }
  } catch (const std::runtime_error&) {
    // Whoever reads it for its own sake tells why.
  }
  return files;
}

}  // namespace tova_fw_builder
