// lint/rule_functions.h
// A function for each rule, by the files that they stand in. For the table in
// rules.cpp alone; docs/lint.md tells of each.
#pragma once

#include "lint/definition.h"
#include "lint/findings.h"
#include "lint/linked.h"

namespace tova_fw_builder {

// On the text alone.

// refusal
void find_refused(const Definition&, Findings&);

// file_rules
void find_byte_order_marks(const Definition&, Findings&);
void find_empty_definitions(const Definition&, Findings&);
void find_empty_includes(const Definition&, Findings&);

// define_rules
void find_unused_defines(const Definition&, Findings&);
void find_capturing_defines(const Definition&, Findings&);

// allowances
void find_unknown_rules(const Definition&, Findings&);

// statement_rules
void find_missing_operands(const Definition&, Findings&);
void find_extra_words(const Definition&, Findings&);
void find_repeated_statements(const Definition&, Findings&);

// number_rules
void find_bad_numbers(const Definition&, Findings&);
void find_cut_numbers(const Definition&, Findings&);

// module_rules
void find_unknown_kinds(const Definition&, Findings&);
void find_cut_names(const Definition&, Findings&);
void find_dropped_names(const Definition&, Findings&);
void find_missing_uuids(const Definition&, Findings&);
void find_duplicate_uuids(const Definition&, Findings&);
void find_empty_modules(const Definition&, Findings&);
void find_empty_groups(const Definition&, Findings&);
void find_missing_entries(const Definition&, Findings&);
void find_second_bases(const Definition&, Findings&);

// package_rules
void find_long_package_lines(const Definition&, Findings&);

// section_rules
void find_sections_twice(const Definition&, Findings&);

// memory_rules
void find_duplicate_classes(const Definition&, Findings&);
void find_overlapping_classes(const Definition&, Findings&);

// On the bound map.

// refusal_by_binding: of the rule `refused`, too
void find_refused_binding(const Linked&, Findings&);

// section_rules
void find_missing_sections(const Linked&, Findings&);
void find_left_out_sections(const Linked&, Findings&);
void find_uncarried_sections(const Linked&, Findings&);

// memory_rules
void find_load_overlaps(const Linked&, Findings&);
void find_load_gaps(const Linked&, Findings&);
void find_run_overlaps(const Linked&, Findings&);
void find_sections_outside(const Linked&, Findings&);
void find_full_classes(const Linked&, Findings&);
void find_unaligned_addons(const Linked&, Findings&);
void find_entries_outside(const Linked&, Findings&);

// export_rules
void find_missing_exports(const Linked&, Findings&);
void find_exports_outside(const Linked&, Findings&);

// table_rules
void find_full_tables(const Linked&, Findings&);
void find_stale_tables(const Linked&, Findings&);

}  // namespace tova_fw_builder
