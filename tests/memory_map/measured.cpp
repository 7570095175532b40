#include "memory_map/measured.h"

#include <algorithm>
#include <sstream>

#include "layout/build_core.h"
#include "memory_map/measure_memory.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

std::string section_table(std::string words) {
  std::ranges::replace(words, ';', ' ');
  std::istringstream in(words);
  std::string table = "Idx\n";
  std::string name, size, vma, lma, kind;
  for (int i = 0; in >> name >> size >> vma >> lma >> kind; ++i) {
    table += std::to_string(i) + ' ' + name + ' ' + size + ' ' + vma + ' ' +
             lma + " 0 2**2\n";
    table += kind == "text"     ? "CONTENTS, ALLOC, LOAD, READONLY, CODE\n"
             : kind == "rodata" ? "CONTENTS, ALLOC, LOAD, READONLY, DATA\n"
             : kind == "bss"    ? "ALLOC\n"
                                : "CONTENTS, READONLY, DEBUGGING\n";
  }
  return table;
}

}  // namespace

MemoryMap measure(const std::string& definition, const std::vector<Elf>& elfs,
                  const std::string& head) {
  const TempDir dir;
  std::string list;
  for (std::size_t i = 0; i < elfs.size(); ++i) {
    const std::string number = std::to_string(i);
    dir.write(number + ".elf", "");
    dir.write(number + ".sections", section_table(elfs[i].sections));
    dir.write(number + ".symbols", elfs[i].symbols);
    for (const char* end : {".elf\n", ".sections\n", ".symbols\n"}) {
      list += number + end;
    }
  }
  const CapturedLog log(-1);
  const BoundMap bound =
      bind_out_map({.elf_list_path = dir.write("elfs", list),
                    .key_list_path = dir.write("keys", ""),
                    .default_dir = dir.path(),
                    .image_def_path = dir.write("fw.def", head + definition)});
  return measure_memory(*bound.out_map, bound.elfs);
}

std::string text_module(const std::string& name,
                        const std::vector<std::string>& sections) {
  static int number = 0;
  std::string text = "module " + name + "\nuuid 5A3C0001-7B1E-4C52-9D40-" +
                     std::to_string(100000000000 + ++number) + "\ngroup text\n";
  const char* mark = "section ep ";
  for (const std::string& section : sections) {
    text += mark + section + '\n';
    mark = "section ";
  }
  return text;
}

std::string json_of(const MemoryMap& map,
                    const std::vector<BudgetResult>& budgets,
                    const MapChanges* changes, const std::string& baseline) {
  std::ostringstream text;
  print_map_json(text, {map, budgets, changes, baseline});
  return text.str();
}

}  // namespace tova_fw_builder
