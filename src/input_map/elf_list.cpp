// The list of linked ELF files. The state of the stream behind a triple's
// third line decides: a last line without its line feed is refused, though
// all three paths are there.
#include "input_map/elf_list.h"

#include <sstream>
#include <stdexcept>

#include "driver/files.h"
#include "driver/log.h"
#include "driver/text_reader.h"

namespace tova_fw_builder {

namespace {

std::string first_word(const std::string& line) {
  std::istringstream text(line);
  return next_word(text);
}

void log_line(const char* label, const std::string& line) {
  if (log_level() >= kLogDetail) LogLine(kLogDetail).stream() << label << line;
}

}  // namespace

ElfList read_elf_list(const std::string& path) {
  log_line("Reading ELF list...", "");
  const auto in = open_input(path);
  ElfList list;
  std::string elf, memmap, nm;
  while (std::getline(*in, elf)) {
    std::getline(*in, memmap);
    std::getline(*in, nm);
    if (!in->good()) {
      throw std::runtime_error(
          "Invalid number of lines in ELF list. Must be list of pairs "
          "<elf, memmap, nm>");
    }
    list.push_back({first_word(elf), first_word(memmap), first_word(nm)});
    log_line("+ ELF: ", elf);
    log_line("+ MAP: ", memmap);
    log_line("+ NM: ", nm);
  }
  log_line("", "");
  return list;
}

}  // namespace tova_fw_builder
