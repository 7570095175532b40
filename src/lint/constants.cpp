// The builder takes the number at the start of a constant's text, or 0. What C
// allows around a number, a suffix and a remark, changes nothing.
#include "lint/constants.h"

#include <algorithm>
#include <sstream>

#include "definitions/constants_header.h"
#include "definitions/statement.h"
#include "driver/ground/files.h"
#include "driver/ground/line_reader.h"
#include "driver/ground/numbers.h"
#include "lint/findings.h"

namespace tova_fw_builder {

namespace {

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_white_space(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_white_space(text.back())) text.remove_suffix(1);
  return text;
}

bool is_bare_number(std::string_view text) {
  const ScannedNumber number = scan_number(text, 0);
  if (!number.has_digits) return false;
  text.remove_prefix(number.length);
  text.remove_prefix(std::min(text.find_first_not_of("uUlL"), text.size()));
  text = trimmed(text);
  return text.empty() || text.starts_with("//") || text.starts_with("/*");
}

}  // namespace

ConstantTexts read_constants(FwOutMap& map, const std::string& path) {
  ConstantTexts constants;
  const auto in = open_input(path);
  LineReader lines(*in);
  std::stringstream text;
  for (std::string_view line; lines.next(line);) {
    text << line << '\n';
    Statement words(line);
    if (words.word() != "#define") continue;
    const std::string name(words.next_operand());
    constants[name] = trimmed(words.rest());
  }
  read_modules_config(map, text);
  return constants;
}

std::string constant_fault(const ConstantTexts& constants,
                           std::string_view name) {
  const auto found = constants.find(name);
  if (found == constants.end() || is_bare_number(found->second)) return "";
  if (found->second.empty()) return "the header has no number for it";
  return "the header has " + in_quotes(found->second) +
         " for it, and the builder takes a bare number alone";
}

}  // namespace tova_fw_builder
