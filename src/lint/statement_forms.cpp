#include "lint/statement_forms.h"

#include <algorithm>
#include <limits>

#include "definitions/inner_blocks.h"

namespace tova_fw_builder {

namespace {

using enum Operand;
using enum BlockKind;

constexpr auto kOperands = Shape::kOperands;
constexpr bool kOnce = true;

constexpr StatementForm kForms[] = {
    {kImage, "binary_name", kOperands, {kWord}, kOnce},
    {kImage, "binary_ver", kOperands, {kGeneration}, kOnce},
    {kImage, "load_offset", kOperands, {kHex}, kOnce},
    {kImage, "hw_buf_ba", kOperands, {kHex32}, kOnce},
    {kImage, "hw_buf_size", kOperands, {kHex}, kOnce},
    {kImage, "max_data", kOperands, {kHex}, kOnce},
    {kImage, "dyn_mem", kOperands, {kSection}},
    {kImage, "ignore", kOperands, {kSection}},
    {kImage, "memory_class", kOperands, {kWord, kHex32, kHex32}},
    {kImage, "module", Shape::kModule},
    {kModule, "uuid", kOperands, {kUuid}, kOnce},
    {kModule, "name", Shape::kText, {}, kOnce},
    {kModule, "version_major", kOperands, {kDecimal16}, kOnce},
    {kModule, "version_minor", kOperands, {kDecimal16}, kOnce},
    {kModule, "version_hotfix", kOperands, {kDecimal16}, kOnce},
    {kModule, "version_build", kOperands, {kDecimal16}, kOnce},
    {kModule, "affinity_mask", kOperands, {kMask}, kOnce},
    {kModule, "instance_count", kOperands, {kCount}, kOnce},
    {kModule, "type", kOperands, {kDecimal}, kOnce},
    {kModule, "stack_size", kOperands, {kHex16}, kOnce},
    {kModule, "domain_types", Shape::kDomains},
    {kModule, "core_type", kOperands, {kDecimal8}, kOnce},
    {kModule, "mod_cfg", Shape::kModCfg},
    {kModule, "group", Shape::kGroup},
    {kModule, "pin", kOperands, {kPinFlag}},
    {kModule, "sched_caps", Shape::kSchedCaps},
    {kModule, "export", Shape::kExport},
    {kGroup, "entry", kOperands, {kHex32}},
    {kGroup, "section", Shape::kSection},
    {kPin, "stream_type", kOperands, {kHex8}, kOnce},
    {kPin, "sample_rates", Shape::kHexList},
    {kPin, "sample_sizes", Shape::kHexList16},
    {kPin, "sample_containers", Shape::kHexList},
    {kPin, "channel_cfg", Shape::kHexList},
};

constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

}  // namespace

std::span<const StatementForm> statement_forms() { return kForms; }

const StatementForm* find_form(BlockKind block, std::string_view key) {
  const auto* const found = std::ranges::find_if(kForms, [&](const auto& form) {
    return form.block == block && form.key == key;
  });
  return found == std::end(kForms) ? nullptr : found;
}

const StatementForm* form_of(const Definition& definition,
                             const LintStatement& statement) {
  return find_form(definition.blocks[statement.block].kind, statement.key());
}

bool is_module_kind(std::string_view word) {
  static const auto kinds = module_kinds();
  return std::ranges::find(kinds, word) != kinds.end();
}

Taken taken_words(const StatementForm& form, const LintStatement& statement) {
  const std::string_view first = word_at(statement, 1);
  const auto marked = [](bool has_marker) {
    const std::size_t name = has_marker ? 2 : 1;
    return Taken{name, name + 1, name + 1};
  };
  switch (form.shape) {
    case Shape::kOperands: {
      const auto count = static_cast<std::size_t>(
          std::ranges::find(form.operands, kNone) - form.operands.begin());
      return {1, 1 + count, 1 + count};
    }
    case Shape::kModCfg:
      return {1, 2, 1 + kModCfgFields};
    case Shape::kSchedCaps:
      return {1, 3, kAll};
    case Shape::kModule:
      return marked(is_module_kind(first));
    case Shape::kGroup:
      return marked(first == "on_demand");
    case Shape::kExport:
      return marked(first == "o");
    case Shape::kSection: {
      Taken taken = marked(first == "ep" || first == "o");
      if (word_at(statement, taken.end) == "<") {
        taken.needed = taken.end += 2;
      }
      return taken;
    }
    default:
      return {1, 2, kAll};
  }
}

const LintWord& constant_word(const LintStatement& statement) {
  const auto& words = statement.words;
  return words[std::min<std::size_t>(2, words.size() - 1)];
}

std::string_view word_at(const LintStatement& statement, std::size_t place) {
  return place < statement.words.size() ? statement.words[place].text
                                        : std::string_view();
}

std::string_view name_of(const LintStatement& statement, BlockKind block) {
  const StatementForm* const form = find_form(block, statement.key());
  const std::size_t place = form ? taken_words(*form, statement).name : 1;
  // Behind the marker of a section nothing is taken twice.
  if (place >= statement.words.size()) {
    return form && form->shape == Shape::kSection && place == 2
               ? std::string_view()
               : statement.words.back().text;
  }
  return statement.words[place].text;
}

std::string block_name(const Definition& definition, std::uint32_t block) {
  const LintBlock& from = definition.blocks[block];
  if (from.kind == BlockKind::kImage) return "the image";
  const LintStatement& opened = definition.statements[from.opened_by];
  if (from.kind == BlockKind::kModule) {
    return "module " + in_quotes(name_of(opened, BlockKind::kImage));
  }
  std::string text(opened.key());
  return text.append(" ").append(name_of(opened, BlockKind::kModule));
}

int base_of(Operand operand) {
  switch (operand) {
    case kHex:
    case kHex32:
    case kHex16:
    case kHex8:
    case kPinFlag:
    case kMask:
      return 16;
    case kCount:
    case kDecimal:
    case kDecimal16:
    case kDecimal8:
      return 10;
    default:
      return 0;
  }
}

}  // namespace tova_fw_builder
