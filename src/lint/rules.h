// lint/rules.h
// The table of rules.
#pragma once

#include <span>
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

}  // namespace tova_fw_builder
