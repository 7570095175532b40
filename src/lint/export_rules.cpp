// Exports of the definition against the symbols that the linker produced.
#include <algorithm>

#include "companion/ground/message_text.h"
#include "companion/ground/nearest.h"
#include "lint/rule_functions.h"
#include "lint/statement_forms.h"
#include "memory_map/address_coverage.h"

namespace tova_fw_builder {

namespace {

std::string symbol_question(const FwImageMap& map, std::string_view name) {
  Nearest near(name);
  for (const FwImageMap::SymbolMap& symbols : map.symbols) {
    for (const auto& symbol : symbols.entries) near.offer(symbol.name);
  }
  return near.question();
}

// The segments of the module entries: of two groups of one type the later one.
std::vector<AddressSpan> segments_of(const FwOutMap& map) {
  std::vector<AddressSpan> segments;
  for (const auto& module : map.modules) {
    const FwOutMap::SectionGroup* slots[3] = {};
    for (const auto& group : module->groups) slots[group->type] = group.get();
    for (const auto* group : slots) {
      if (group == nullptr) continue;
      const std::uint32_t begin = group->sections.front()->header->vma;
      segments.push_back({begin, begin + (group->flags >> 16) * kPageSize});
    }
  }
  return segments;
}

}  // namespace

void find_missing_exports(const Linked& linked, Findings& out) {
  std::size_t asked = 0;
  for (const LintStatement& statement : linked.definition->statements) {
    if (statement.key() != "export" || word_at(statement, 1) == "o") continue;
    const std::string name(name_of(statement, BlockKind::kModule));
    // A later statement may make it optional.
    const auto stated = linked.definition->map->exports.find(name);
    if (stated != linked.definition->map->exports.end() && stated->second) {
      continue;
    }
    if (linked.image_map.find_symbol(name).valid) continue;
    out.add(statement.words.back().spot,
            "no symbol list has " + in_quotes(name) +
                "; write 'export o' if it may be absent" +
                (++asked > kMostQuestions
                     ? ""
                     : symbol_question(linked.image_map, name)));
  }
}

void find_exports_outside(const Linked& linked, Findings& out) {
  if (linked.refusal) return;
  const auto segments = segments_of(*linked.definition->map);
  for (const LintStatement& statement : linked.definition->statements) {
    if (statement.key() != "export") continue;
    const auto name = name_of(statement, BlockKind::kModule);
    const auto symbol = linked.image_map.find_symbol(std::string(name));
    if (!symbol.valid) continue;
    const bool is_inside =
        std::ranges::any_of(segments, [&](const AddressSpan& segment) {
          return segment.begin <= symbol.address &&
                 symbol.address < segment.end;
        });
    if (is_inside) continue;
    out.add(statement.words.back().spot,
            in_quotes(name) + " at " + hex_number(symbol.address) +
                " lies in no group of a module, so it isn't exported: the "
                "builder only warns");
  }
}

}  // namespace tova_fw_builder
