#include "layout/rom_build.h"

#include <map>
#include <sstream>

#include "layout/build_core.h"
#include "layout/content_writer.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {

namespace {

std::string section_table(const std::string& sections) {
  const std::map<char, std::string> words = {
      {'c', "CONTENTS, "}, {'a', "ALLOC, "}, {'l', "LOAD, "},
      {'r', "READONLY, "}, {'x', "CODE, "},  {'d', "DATA, "}};
  std::istringstream items(sections);
  std::string table = "Idx\n";
  for (std::string item; std::getline(items, item, ';');) {
    const auto flags = item.find_last_of(' ');
    table += "0 " + item.substr(0, flags) + "\n";
    for (const char flag : item.substr(flags + 1)) {
      if (words.contains(flag)) table += words.at(flag);
    }
    table += "\n";
  }
  return table;
}

}  // namespace

RomBuild build_rom(const std::string& definition, const std::string& sections,
                   const std::string& elf, bool rom_mode, int level,
                   const std::string& binary_path) {
  const TempDir dir;
  const std::string list = dir.write("elf", elf) + "\n" +
                           dir.write("map", section_table(sections)) + "\n" +
                           dir.write("nm", "1 T second\n2 T first\n") + "\n";
  RomBuild result;
  std::ostringstream out;
  CapturedLog log(level);
  result.fault = message_of([&] {
    result.map =
        build_out_map({.rom_mode = rom_mode,
                       .elf_list_path = dir.write("list", list),
                       .default_dir = "",
                       .image_def_path = dir.write("def", definition)});
  });
  result.log = log.text();
  // The table's end at level 3, the count of symbols at level 2.
  const std::string start = level == 3 ? "\n\nConn" : "/nm\n";
  result.log.erase(0, result.log.find(start) + (level == 3 ? 2 : 4));
  if (result.map == nullptr) return result;
  const std::size_t built = log.text().size();
  result.fault =
      message_of([&] { write_module_contents(*result.map, out, binary_path); });
  result.bytes = out.str();
  result.write_log = log.text().substr(built);
  return result;
}

}  // namespace tova_fw_builder
