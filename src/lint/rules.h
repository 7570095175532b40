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

// On the text alone. docs/lint.md tells of each.
void find_refused(const Definition&, Findings&);
void find_byte_order_marks(const Definition&, Findings&);
void find_missing_operands(const Definition&, Findings&);
void find_extra_words(const Definition&, Findings&);
void find_bad_numbers(const Definition&, Findings&);
void find_cut_numbers(const Definition&, Findings&);
void find_repeated_statements(const Definition&, Findings&);
void find_unknown_kinds(const Definition&, Findings&);
void find_cut_names(const Definition&, Findings&);
void find_dropped_names(const Definition&, Findings&);
void find_empty_includes(const Definition&, Findings&);
void find_unused_defines(const Definition&, Findings&);
void find_capturing_defines(const Definition&, Findings&);
void find_missing_uuids(const Definition&, Findings&);
void find_duplicate_uuids(const Definition&, Findings&);
void find_empty_modules(const Definition&, Findings&);
void find_empty_groups(const Definition&, Findings&);
void find_missing_entries(const Definition&, Findings&);
void find_second_bases(const Definition&, Findings&);
void find_sections_twice(const Definition&, Findings&);
void find_overlapping_classes(const Definition&, Findings&);
void find_duplicate_classes(const Definition&, Findings&);
void find_unknown_rules(const Definition&, Findings&);

// On the bound map. find_refused_binding belongs to `refused`.
void find_refused_binding(const Linked&, Findings&);
void find_missing_sections(const Linked&, Findings&);
void find_left_out_sections(const Linked&, Findings&);
void find_uncarried_sections(const Linked&, Findings&);
void find_load_overlaps(const Linked&, Findings&);
void find_load_gaps(const Linked&, Findings&);
void find_run_overlaps(const Linked&, Findings&);
void find_sections_outside(const Linked&, Findings&);
void find_full_classes(const Linked&, Findings&);
void find_unaligned_addons(const Linked&, Findings&);
void find_entries_outside(const Linked&, Findings&);
void find_missing_exports(const Linked&, Findings&);
void find_exports_outside(const Linked&, Findings&);
void find_full_tables(const Linked&, Findings&);
void find_stale_tables(const Linked&, Findings&);

}  // namespace tova_fw_builder
