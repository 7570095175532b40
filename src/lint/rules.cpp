#include "lint/rules.h"

#include <algorithm>
#include <stdexcept>

#include "companion/ground/nearest.h"
#include "lint/rule_functions.h"

namespace tova_fw_builder {

namespace {

constexpr auto kError = Level::kError;
constexpr auto kWarning = Level::kWarning;

constexpr Rule kRules[] = {
    {kRefused, kError, "The builder refuses it", find_refused,
     find_refused_binding},
    {"byte-order-mark", kWarning,
     "A file begins with a byte order mark, which joins its first word",
     find_byte_order_marks, nullptr},
    {"empty-definition", kWarning, "A definition without a statement",
     find_empty_definitions, nullptr},
    {"missing-operand", kWarning,
     "A statement lacks an operand; mostly the word before it is taken again",
     find_missing_operands, nullptr},
    {"extra-words", kWarning,
     "Words behind the last operand, which are ignored or taken as more of it",
     find_extra_words, nullptr},
    {"bad-number", kWarning, "A number that is read as 0 or in part",
     find_bad_numbers, nullptr},
    {"number-cut", kWarning, "A number that doesn't fit its field",
     find_cut_numbers, nullptr},
    {"repeated-statement", kWarning,
     "A statement of which the later one in the block wins",
     find_repeated_statements, nullptr},
    {"unknown-kind", kWarning, "A module kind that becomes the module's name",
     find_unknown_kinds, nullptr},
    {"name-cut", kWarning,
     "A module name beyond 8 characters, or alike another within 8",
     find_cut_names, nullptr},
    {"name-dropped", kWarning,
     "A binary_name beyond 8 characters leaves the header's field empty",
     find_dropped_names, nullptr},
    {"long-package-line", kWarning,
     "Names that make a line of the package descriptor too long for asm",
     find_long_package_lines, nullptr},
    {"empty-include", kWarning,
     "An include without text ends the including file", find_empty_includes,
     nullptr},
    {"unused-define", kWarning, "A define that changes nothing",
     find_unused_defines, nullptr},
    {"define-captures", kWarning,
     "A define changes a key, a marker or the name of a section",
     find_capturing_defines, nullptr},
    {"missing-uuid", kWarning, "A module without a UUID", find_missing_uuids,
     nullptr},
    {"duplicate-uuid", kError, "Two modules with one UUID",
     find_duplicate_uuids, nullptr},
    {"empty-module", kWarning,
     "A module without a section, which is left out of the image",
     find_empty_modules, nullptr},
    {"empty-group", kWarning,
     "A group without a section, which is left out of its module",
     find_empty_groups, nullptr},
    {"no-entry-point", kWarning,
     "A module that the loader starts has no code to start",
     find_missing_entries, nullptr},
    {"second-base", kWarning, "Two modules of type 0, the base firmware",
     find_second_bases, nullptr},
    {"section-twice", kWarning, "A section that is listed twice",
     find_sections_twice, nullptr},
    {"classes-overlap", kWarning, "Two memory classes share addresses",
     find_overlapping_classes, nullptr},
    {"duplicate-class", kWarning, "Two memory classes of one name",
     find_duplicate_classes, nullptr},
    {"unknown-rule", kWarning, "A remark allows a rule that there isn't",
     find_unknown_rules, nullptr},
    {"section-not-found", kError, "A section that no section table has",
     nullptr, find_missing_sections},
    {"section-left-out", kWarning,
     "A section that takes memory and stands in no group", nullptr,
     find_left_out_sections},
    {"built-in-not-carried", kError,
     "A built-in module's section that no loadable module carries", nullptr,
     find_uncarried_sections},
    {"load-overlap", kError,
     "Load addresses that don't rise: nearly 4 GiB of zeros", nullptr,
     find_load_overlaps},
    {"load-gap", kWarning,
     "Load addresses far apart: 16 MiB of zeros or more in the image", nullptr,
     find_load_gaps},
    {"run-overlap", kError, "Two sections share run addresses", nullptr,
     find_run_overlaps},
    {"outside-classes", kWarning, "A section lies in no memory class", nullptr,
     find_sections_outside},
    {"class-full", kError,
     "A section reaches beyond the end of its memory class", nullptr,
     find_full_classes},
    {"addon-alignment", kWarning,
     "A group of an addon begins with a section that isn't aligned to a page",
     nullptr, find_unaligned_addons},
    {"entry-outside-group", kWarning,
     "An entry point that lies in no section of its group", nullptr,
     find_entries_outside},
    {"export-not-found", kError, "An exported symbol that no symbol list has",
     nullptr, find_missing_exports},
    {"export-outside", kWarning,
     "An exported symbol that lies in no group, and isn't exported", nullptr,
     find_exports_outside},
    {"tables-fit", kError,
     "Header, entries, configurations and symbols exceed their room", nullptr,
     find_full_tables},
    {"stale-table", kError,
     "A section table or symbol list that isn't of its ELF", nullptr,
     find_stale_tables},
};

}  // namespace

std::span<const Rule> rules() { return kRules; }

const Rule* find_rule(std::string_view id) {
  const auto* const found = std::ranges::find(kRules, id, &Rule::id);
  return found == std::end(kRules) ? nullptr : found;
}

std::string no_rule_text(std::string_view id) {
  Nearest near(id);
  for (const Rule& rule : kRules) near.offer(rule.id);
  return "there is no rule " + in_quotes(id) + near.question();
}

void check_rule_name(std::string_view id) {
  if (id == kRefused) {
    throw std::runtime_error("what the builder refuses can't be silenced");
  }
  if (find_rule(id) != nullptr) return;
  throw std::runtime_error(
      no_rule_text(id) +
      (id.find(',') == id.npos ? "" : "; give one for each --disable"));
}

}  // namespace tova_fw_builder
