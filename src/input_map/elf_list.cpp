// The list of linked ELF files. The state of the stream behind a triple's
// third line decides: a last line without its line feed is refused, though
// all three paths are there.
#include "input_map/elf_list.h"

#include <stdexcept>

#include "driver/ground/files.h"
#include "driver/ground/line_fields.h"
#include "driver/ground/log.h"

namespace tova_fw_builder {

namespace {

std::string first_word(const std::string& line) {
  return std::string(LineFields(line).word());
}

}  // namespace

ElfList read_elf_list(const std::string& path) {
  log_detail("Reading ELF list...");
  return read_elf_list(*open_input(path));
}

ElfList read_elf_list(std::istream& in) {
  ElfList list;
  std::string elf, memmap, nm;
  while (std::getline(in, elf)) {
    std::getline(in, memmap);
    std::getline(in, nm);
    if (!in.good()) {
      throw std::runtime_error(
          "Invalid number of lines in ELF list. Must be list of pairs "
          "<elf, memmap, nm>");
    }
    list.push_back({first_word(elf), first_word(memmap), first_word(nm)});
    // The whole lines, so that a path cut at a blank is seen.
    log_detail("+ ELF: ", elf);
    log_detail("+ MAP: ", memmap);
    log_detail("+ NM: ", nm);
  }
  log_detail();
  return list;
}

}  // namespace tova_fw_builder
