#include "elf_tables/table_files.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <stdexcept>

#include "companion/ground/naming.h"
#include "companion/ground/output_file.h"
#include "driver/ground/numbers.h"
#include "elf_tables/elf_tables.h"

namespace tova_fw_builder {
namespace {

namespace fs = std::filesystem;

void check_name(const std::string& name, const std::set<std::string>& taken) {
  if (name.empty() || name == "." || name == ".." ||
      name.find_first_of("/\\") != std::string::npos) {
    throw std::runtime_error("no name for tables: '" + name + "'");
  }
  if (taken.contains(name)) {
    throw std::runtime_error("two ELFs can't have the name " + name);
  }
}

// The names that weren't given give way to those that were.
std::vector<std::string> complete_names(const std::vector<std::string>& elfs,
                                        std::vector<std::string> names) {
  std::set<std::string> taken;
  for (const std::string& name : names) {
    check_name(name, taken);
    taken.insert(name);
  }
  for (std::size_t i = names.size(); i < elfs.size(); ++i) {
    const std::string stem = fs::path(elfs[i]).stem().string();
    std::string name = stem;
    for (int number = 2; taken.contains(name); ++number) {
      name = stem + '-' + std::to_string(number);
    }
    check_name(name, taken);
    taken.insert(name);
    names.push_back(name);
  }
  return names;
}

void check_blanks(const std::string& path) {
  if (std::ranges::any_of(path, is_white_space)) {
    throw std::runtime_error(path +
                             ": an ELF list can't hold the blank in this path; "
                             "choose one without");
  }
}

}  // namespace

std::vector<TableFiles> name_table_files(const std::vector<std::string>& elfs,
                                         const std::vector<std::string>& names,
                                         const std::string& folder,
                                         const std::string& list) {
  if (names.size() > elfs.size()) {
    throw std::runtime_error("there are more names than ELFs");
  }
  const std::vector<std::string> all = complete_names(elfs, names);
  require_no_input(list, elfs);
  std::vector<TableFiles> files;
  for (std::size_t i = 0; i < elfs.size(); ++i) {
    const std::string base = (fs::absolute(folder) / all[i]).string();
    files.push_back({fs::absolute(elfs[i]).string(), base + ".sections",
                     base + ".symbols"});
    check_blanks(files[i].elf);
    for (const std::string& output : {files[i].sections, files[i].symbols}) {
      check_blanks(output);
      require_no_input(output, elfs);
      if (are_one_file(output, list)) {
        throw std::runtime_error(list + ": the list has the name of a table");
      }
    }
  }
  return files;
}

void write_table_files(const TableFiles& files) {
  const ElfTables tables(files.elf);
  std::optional<OutputFile> sections;
  std::optional<OutputFile> symbols;
  naming(files.sections, [&] { sections.emplace(files.sections); });
  naming(files.symbols, [&] { symbols.emplace(files.symbols); });
  tables.write_sections(sections->stream());
  tables.write_symbols(symbols->stream());
  naming(files.sections, [&] { sections->commit(); });
  naming(files.symbols, [&] { symbols->commit(); });
}

std::string elf_list_text(const std::vector<TableFiles>& files) {
  std::string text;
  for (const TableFiles& entry : files) {
    for (const std::string& path : {entry.elf, entry.sections, entry.symbols}) {
      text += path + '\n';
    }
  }
  return text;
}

}  // namespace tova_fw_builder
