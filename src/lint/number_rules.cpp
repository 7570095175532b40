// Numbers that are taken for others. Each kind of operand has a base and a
// field in the image; what the readers make of a word is told by the scanner
// that they use.
#include <limits>
#include <optional>

#include "companion/ground/message_text.h"
#include "definitions/uuid/uuid.h"
#include "driver/ground/numbers.h"
#include "lint/rule_functions.h"
#include "lint/statement_forms.h"

namespace tova_fw_builder {

namespace {

// With its operand's kind and, in mod_cfg, sched_caps and the lists, its base.
struct Number {
  const LintWord& word;
  Operand operand;
  int base;
  Shape shape;
};

bool is_number(std::string_view word, Operand operand) {
  if (operand == Operand::kMask) {
    for (const char c : word) {
      if (hex_digit_value(c) < 0) return false;
    }
  }
  if (operand == Operand::kCount) {
    if (word.size() < 2) return false;
    for (const char c : word.substr(1)) {
      if (c < '0' || c > '9') return false;
    }
  }
  return base_of(operand) != 0;
}

template <typename Take>
void numbers_of(const StatementForm& form, const LintStatement& statement,
                const Take& take) {
  const auto& words = statement.words;
  switch (form.shape) {
    case Shape::kOperands:
      for (std::size_t i = 1; i < words.size() && i <= 3; ++i) {
        const Operand operand = form.operands[i - 1];
        if (!is_number(words[i].text, operand)) continue;
        take(Number{words[i], operand, base_of(operand), form.shape});
      }
      return;
    case Shape::kModCfg:
      for (std::size_t i = 1; i < words.size() && i <= kModCfgFields; ++i) {
        if (words[i].text.starts_with('#')) return;
        const int base = i == 9 ? 16 : 10;
        // Behind one that fails, all are 0.
        if (!take(Number{words[i], Operand::kHex32, base, form.shape})) return;
      }
      return;
    case Shape::kSchedCaps:
    case Shape::kHexList16:
    case Shape::kHexList:
      for (std::size_t i = 1; i < words.size(); ++i) {
        const Operand operand =
            form.shape == Shape::kHexList ? Operand::kHex : Operand::kHex16;
        take(Number{words[i], operand, 16, form.shape});
      }
      return;
    default:
      return;
  }
}

bool is_whole(const Number& number) {
  const ScannedNumber scanned = scan_number(number.word.text, number.base);
  return scanned.has_digits && scanned.length == number.word.text.size();
}

std::string bad_text(const Number& number) {
  const ScannedNumber scanned = scan_number(number.word.text, number.base);
  const auto taken = number.word.text.substr(0, scanned.length);
  const bool is_zero = !scanned.has_digits || scanned.magnitude == 0;
  std::string text = in_quotes(number.word.text) + " is read as " +
                     (is_zero ? "0" : std::string(taken));
  if (number.shape == Shape::kModCfg) text += ", and all behind it as 0";
  const ScannedNumber as_hex = scan_number(number.word.text, 16);
  const bool wants_decimal = number.base == 10 && as_hex.prefixed &&
                             as_hex.length == number.word.text.size();
  return text + (wants_decimal ? ": this number is decimal, " +
                                     std::to_string(as_hex.magnitude)
                 : number.base == 10 ? ": this number is decimal"
                                     : ": this number is hexadecimal");
}

struct Field {
  std::uint64_t most;
  std::string_view what;
};

std::optional<Field> field_of(Operand operand) {
  switch (operand) {
    case Operand::kHex16:
    case Operand::kDecimal16:
    case Operand::kCount:
      return Field{0xFFFF, "the low 16 bits of it count, which are "};
    case Operand::kDecimal8:
      return Field{0xFF, "the low 8 bits of it count, which are "};
    case Operand::kPinFlag:
      return Field{1, "bit 0 of it alone counts, which is "};
    default:
      return std::nullopt;
  }
}

std::string value_text(std::uint64_t value, int base) {
  return base == 16 ? hex_number(value) : std::to_string(value);
}

// Empty if it fits.
std::string cut_text(const Number& number) {
  const ScannedNumber scanned = scan_number(number.word.text, number.base);
  if (number.shape == Shape::kModCfg) {
    if (scanned.magnitude <= std::numeric_limits<std::uint32_t>::max()) {
      return {};
    }
    return in_quotes(number.word.text) +
           " doesn't fit 32 bits: it is read as 4294967295, and all behind it "
           "as 0";
  }
  const auto field = field_of(number.operand);
  if (!field || (scanned.magnitude <= field->most && !scanned.negative)) {
    return {};
  }
  const std::uint64_t kept = clamped_unsigned(scanned) & field->most;
  return in_quotes(number.word.text) +
         " doesn't fit its field: " + std::string(field->what) +
         (field->most == 1 ? std::to_string(kept)
                           : value_text(kept, number.base));
}

// The UUID at the end of a longer word.
void find_long_uuid(const StatementForm& form, const LintStatement& statement,
                    Findings& out) {
  constexpr std::size_t kUuidLength = Uuid::kTextLength;
  if (form.operands[0] != Operand::kUuid || statement.words.size() < 2) return;
  const LintWord& word = statement.words[1];
  if (word.text.size() <= kUuidLength) return;
  out.add(word.spot,
          "the UUID is read in part: its last 36 characters count, " +
              in_quotes(word.text.substr(0, word.text.size() - kUuidLength)) +
              " ahead of them is ignored");
}

void find_bad_constant(const StatementForm& form,
                       const LintStatement& statement,
                       const Definition& definition, Findings& out) {
  const Operand operand = form.operands[0];
  const auto& words = statement.words;
  if ((operand != Operand::kMask && operand != Operand::kCount) ||
      words.size() < 2 || is_number(words[1].text, operand)) {
    return;
  }
  const LintWord& word = constant_word(statement);
  const std::string name(word.text);
  const std::string fault = constant_fault(definition.constants, name);
  if (fault.empty()) return;
  out.add(word.spot, in_quotes(name) + " is read as " +
                         std::to_string(definition.map->consts.at(name)) +
                         ": " + fault);
}

}  // namespace

void find_bad_numbers(const Definition& definition, Findings& out) {
  for (const LintStatement& statement : definition.statements) {
    const StatementForm& form = *form_of(definition, statement);
    find_long_uuid(form, statement, out);
    find_bad_constant(form, statement, definition, out);
    numbers_of(form, statement, [&](const Number& number) {
      if (is_whole(number)) return cut_text(number).empty();
      out.add(number.word.spot, bad_text(number));
      return false;
    });
  }
}

void find_cut_numbers(const Definition& definition, Findings& out) {
  for (const LintStatement& statement : definition.statements) {
    const StatementForm& form = *form_of(definition, statement);
    numbers_of(form, statement, [&](const Number& number) {
      const std::string text = cut_text(number);
      if (!text.empty()) out.add(number.word.spot, text);
      return is_whole(number) && text.empty();
    });
  }
}

}  // namespace tova_fw_builder
