// The rule about the package descriptor that a build will write: `asm` ends its
// reading, without a word, at a line that its buffer has no room for, and the
// package lacks the files of the lines behind it.
#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "driver/ground/line_reader.h"
#include "layout/records/addon_file.h"
#include "lint/rule_functions.h"
#include "lint/statement_forms.h"

namespace tova_fw_builder {

namespace {

using Module = FwOutMap::Module;

// A line that names a file, of a module.
struct FileLine {
  std::size_t module;
  std::size_t length;  // without the path
};

FileLine main_line(const Module& module) {
  return {0,
          std::string_view("bin .bin ''").size() + module.display_name.size()};
}

FileLine addon_line(const Module& module, std::size_t number) {
  std::ostringstream line;
  line << "bin " << addon_file_suffix(module.uuid.text()) << " '"
       << module.display_name << "' ver. " << module.version;
  return {number, line.str().size()};
}

std::vector<FileLine> file_lines(const FwOutMap& map) {
  std::vector<FileLine> lines = {main_line(*map.modules.front())};
  for (std::size_t i = 0; i < map.modules.size(); ++i) {
    const Module& module = *map.modules[i];
    if (module.module_kind != Module::kAddon) continue;
    lines.push_back(addon_line(module, i));
  }
  return lines;
}

// Each module's block, in the order of the modules.
std::vector<const LintBlock*> module_blocks(const Definition& definition) {
  std::vector<const LintBlock*> blocks;
  for (const LintBlock& block : definition.blocks) {
    if (block.kind == BlockKind::kModule) blocks.push_back(&block);
  }
  return blocks;
}

// The name that counts, which is the last one.
Spot spot_of_display_name(const Definition& definition,
                          const LintBlock& module) {
  Spot spot;
  for (const std::uint32_t number : module.statements) {
    const LintStatement& statement = definition.statements[number];
    if (statement.key() == "name") spot = statement.words.back().spot;
    if (statement.key() == "name" && statement.words.size() > 1) {
      spot = statement.words[1].spot;
    }
  }
  return spot;
}

// The line of the modules ahead of the first addon or library. What is behind
// it is every file.
void find_long_module_line(const Definition& definition,
                           const std::vector<const LintBlock*>& blocks,
                           Findings& out) {
  std::size_t length = std::string_view("cfg { }").size();
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    const Module& module = *definition.map->modules[i];
    if (module.module_kind != Module::kBase) return;
    length += module.name.size() + 1;
    if (length <= kLongestLine) continue;
    const LintStatement& opened = definition.statements[blocks[i]->opened_by];
    const Taken taken = taken_words(*form_of(definition, opened), opened);
    out.add(opened.words[std::min(taken.name, opened.words.size() - 1)].spot,
            "with this one the names of the modules make a line of more than " +
                std::to_string(kLongestLine) +
                " bytes in the package descriptor: asm ends its reading there, "
                "and the package is empty; shorten the names");
    return;
  }
}

}  // namespace

void find_long_package_lines(const Definition& definition, Findings& out) {
  // The room that a path may well take.
  constexpr std::size_t kPath = 255;
  if (definition.refusal || definition.is_lost) return;
  const std::vector<const LintBlock*> blocks = module_blocks(definition);
  if (blocks.empty()) return;
  find_long_module_line(definition, blocks, out);
  const std::vector<FileLine> lines = file_lines(*definition.map);
  // Behind the last one there is nothing to miss.
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
    if (lines[i].length + kPath <= kLongestLine) continue;
    // An addon that comes first has two, and the longer one tells more.
    if (i + 2 < lines.size() && lines[i + 1].module == lines[i].module)
      continue;
    const std::size_t room =
        kLongestLine - std::min(lines[i].length, kLongestLine);
    const std::string& name =
        definition.map->modules[lines[i].module]->display_name;
    out.add(spot_of_display_name(definition, *blocks[lines[i].module]),
            in_quotes(name) + " has " + std::to_string(name.size()) +
                " bytes, which leave " + std::to_string(room) +
                " to the path of the output in its line of the package "
                "descriptor: asm ends its reading at a longer one, and the "
                "package lacks the addons behind it; shorten the name");
  }
}

}  // namespace tova_fw_builder
