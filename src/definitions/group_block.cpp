// Group blocks. An `entry` of FFFFFFFF leaves the group looking as if it had
// none, so another one may follow it.
#include <algorithm>
#include <stdexcept>

#include "definitions/inner_blocks.h"
#include "driver/ground/log.h"

namespace tova_fw_builder {

namespace {

struct GroupType {
  std::string_view key;
  std::uint32_t type;
};
constexpr GroupType kGroupTypes[] = {
    {"text", FwOutMap::SectionGroup::kText},
    {"rodata", FwOutMap::SectionGroup::kRodata},
    {"bss", FwOutMap::SectionGroup::kBss},
};

void read_entry(FwOutMap::SectionGroup& group, Statement& statement) {
  // Converted first: a bad number is reported even where an entry stands
  // already.
  const std::uint32_t entry = statement.next_unsigned(16);
  if (group.entry != FwOutMap::SectionGroup::kNoEntry) {
    throw std::runtime_error("Double entry point defined");
  }
  group.explicit_entry = true;
  group.entry = entry;
}

// `section` alone makes a section of that name, as the word stays; behind a
// marker the name has a text of its own, so `section ep` alone has an empty
// name.
void read_section(FwOutMap::SectionGroup& group, Statement& statement) {
  auto name = statement.next_word();
  const bool entrypoint = name == "ep";
  const bool optional = name == "o";
  if (entrypoint || optional) name = statement.next_operand();
  std::string_view replacement;
  if (statement.next_word() == "<") replacement = statement.next_operand();
  // No blank ahead of the replacement; the log is kept to the letter.
  log_detail("  section: ", name, entrypoint ? " (entrypoint)" : "",
             optional ? " (optional)" : "",
             replacement.empty() ? "" : "replacement: ", replacement);
  group.add_section(std::string(name), entrypoint, optional,
                    std::string(replacement));
}

constexpr StatementRow<FwOutMap::SectionGroup> kGroupStatements[] = {
    {"entry", read_entry},
    {"section", read_section},
};

}  // namespace

std::unique_ptr<FwOutMap::SectionGroup> open_group(Statement& statement) {
  const bool on_demand = statement.next_word() == "on_demand";
  if (on_demand) statement.next_word();
  const auto* const found =
      std::ranges::find(kGroupTypes, statement.word(), &GroupType::key);
  if (found == std::end(kGroupTypes)) {
    throw std::runtime_error("Invalid group type");
  }
  log_detail(" group: .", found->key, on_demand ? " (on_demand)" : "");
  auto group = std::make_unique<FwOutMap::SectionGroup>();
  group->type = found->type;
  group->on_demand = on_demand;
  return group;
}

void read_section_group(StatementLines& lines, FwOutMap::SectionGroup& group) {
  read_block(lines, [&group](Statement& statement) {
    return carry_out(kGroupStatements, group, statement);
  });
}

std::vector<std::string_view> group_keys() { return keys_of(kGroupStatements); }

std::vector<std::string_view> group_types() { return keys_of(kGroupTypes); }

}  // namespace tova_fw_builder
