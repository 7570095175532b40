// lint/statement_forms.h
// What each statement takes: its operands, and what becomes of too few or too
// many of them. docs/definition-language.md has it in words.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "lint/definition.h"

namespace tova_fw_builder {

enum class Operand : std::uint8_t {
  kNone,
  kWord,
  kSection,
  kGeneration,
  kUuid,
  kMask,   // hex without a prefix, or a constant
  kCount,  // decimal of two characters at least, or a constant; 16 bits
  kHex,    // below 80000000
  kHex32,
  kHex16,    // the low 16 bits of it
  kHex8,     // refused beyond FF
  kPinFlag,  // bit 0 of it
  kDecimal,
  kDecimal16,
  kDecimal8,
};

enum class Shape : std::uint8_t {
  kOperands,  // as many as are listed
  kText,      // the rest of the line
  kDomains,   // words to the end of the line
  kHexList,   // numbers to the end of the line
  kHexList16,
  kModCfg,
  kSchedCaps,
  kModule,   // [KIND] NAME
  kGroup,    // [on_demand] TYPE
  kSection,  // [ep or o] NAME [< REPLACEMENT]
  kExport,   // [o] SYMBOL
};

struct StatementForm {
  BlockKind block;
  std::string_view key;
  Shape shape = Shape::kOperands;
  std::array<Operand, 3> operands{};  // of kOperands
  bool once = false;  // of several in a block the last one counts
};

inline constexpr std::size_t kModCfgFields = 11;

std::span<const StatementForm> statement_forms();

// Null for a key that the block doesn't know.
const StatementForm* find_form(BlockKind block, std::string_view key);
const StatementForm* form_of(const Definition& definition,
                             const LintStatement& statement);

// Where the operands of a statement stand among its words.
struct Taken {
  std::size_t name = 1;    // of a marked operand: behind its marker
  std::size_t needed = 1;  // words that must be there, the key included
  std::size_t end = 1;     // behind the last word that is looked at
};
Taken taken_words(const StatementForm& form, const LintStatement& statement);

// The word at that place, or an empty one behind the last.
std::string_view word_at(const LintStatement& statement, std::size_t place);

// The word that names a constant where the first operand is no number: the
// reader takes the one behind that, if there is one.
const LintWord& constant_word(const LintStatement& statement);

// The name of a module, group or section statement; as the builder takes it if
// it is missing.
std::string_view name_of(const LintStatement& statement, BlockKind block);

// "module", "group" or "pin", with its name: "module 'mixer'".
std::string block_name(const Definition& definition, std::uint32_t block);

bool is_module_kind(std::string_view word);

// In base 16 or 10; 0 if the operand is none.
int base_of(Operand operand);

}  // namespace tova_fw_builder
