// lint/rules.h
// The table of rules.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "lint/definition.h"
#include "lint/findings.h"
#include "lint/linked.h"

namespace tova_fw_builder {

struct Rule {
  std::string_view id;
  Level level;
  std::string_view description;  // one line, without a full stop
  // Null where there is nothing to find; the second one needs the ELF list.
  void (*find)(const Definition& definition, Findings& out);
  void (*find_linked)(const Linked& linked, Findings& out);
};

std::span<const Rule> rules();

// Null if there is none.
const Rule* find_rule(std::string_view id);

inline constexpr std::string_view kRefused = "refused";

// "there is no rule 'ID'", and "; did you mean 'NAME'?" if one is near.
std::string no_rule_text(std::string_view id);

// Throws std::runtime_error with that text, or "what the builder refuses can't
// be silenced".
void check_rule_name(std::string_view id);

}  // namespace tova_fw_builder
