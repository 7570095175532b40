// The reading runs the builder's own readers and keeps what they note. What
// they refuse is kept as a refusal, so that the rules can tell about all that
// was read until then.
#include "lint/definition.h"

#include <algorithm>
#include <new>
#include <sstream>
#include <utility>

#include "definitions/image_block.h"
#include "definitions/includes_and_defines.h"

namespace tova_fw_builder {

namespace {

// Runs a reader; yields the text that it refuses with.
template <typename Read>
std::optional<std::string> refusal_of(const Read& read) {
  try {
    read();
    return std::nullopt;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    return error.what();
  }
}

// A name as C has it. Anything else is no constant of any header.
bool is_identifier(std::string_view word) {
  const auto is_letter = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
  };
  if (word.empty() || !is_letter(word.front())) return false;
  for (const char c : word) {
    if (!is_letter(c) && (c < '0' || c > '9')) return false;
  }
  return true;
}

// The builder would refuse names that only the header can tell.
void assume_constants(const SourceMap& source, FwOutMap& map) {
  for (std::uint32_t line = 0; line < source.lines.size(); ++line) {
    const LintStatement statement = words_of_line(source, line);
    if (statement.key() != "affinity_mask" &&
        statement.key() != "instance_count") {
      continue;
    }
    for (std::size_t i = 1; i < statement.words.size(); ++i) {
      const auto word = statement.words[i].text;
      if (is_identifier(word)) map.consts.emplace(word, 1);
    }
  }
}

std::unique_ptr<std::iostream> text_of(const SourceMap& source) {
  auto text = std::make_unique<std::stringstream>();
  std::uint32_t number = 1;
  for (std::uint32_t line = 0; line < source.lines.size(); ++line) {
    // The blank lines ahead of it.
    for (; number < source.lines[line].number; ++number) *text << '\n';
    ++number;
    const LintStatement statement = words_of_line(source, line);
    for (const LintWord& word : statement.words) *text << word.text << ' ';
    if (statement.has_echo) *text << statement.words.back().text << ' ';
    *text << '\n';
  }
  return text;
}

// The number ahead of it is that of a text that nobody has.
std::string without_line_number(const std::string& text, std::uint64_t line) {
  const std::string number = std::to_string(line) + ": ";
  return text.starts_with(number) ? text.substr(number.size()) : text;
}

void add_statements(const std::vector<BlockStep>& steps, Definition& out) {
  out.blocks.push_back({});
  std::uint32_t top = 0;
  for (const BlockStep& step : steps) {
    const std::uint32_t line = out.source.line_at(step.line);
    if (!step.is_known) {
      out.blocks[top].ended_by = line;
      top = out.blocks[top].parent;
      continue;
    }
    const auto number = static_cast<std::uint32_t>(out.statements.size());
    out.blocks[top].statements.push_back(number);
    out.statements.push_back(words_of_line(out.source, line));
    out.statements.back().block = top;
    const std::string_view key = out.statements.back().key();
    const BlockKind kind = out.blocks[top].kind;
    const BlockKind inner = key == "module"  ? BlockKind::kModule
                            : key == "group" ? BlockKind::kGroup
                                             : BlockKind::kPin;
    const bool opens = kind == BlockKind::kImage ? key == "module"
                       : kind == BlockKind::kModule
                           ? key == "group" || key == "pin"
                           : false;
    if (!opens) continue;
    out.blocks.push_back({inner, top, number, LintBlock::kNone, {}});
    top = static_cast<std::uint32_t>(out.blocks.size() - 1);
  }
}

}  // namespace

LintStatement words_of_line(const SourceMap& source, std::uint32_t line) {
  const SourceMap::Line& from = source.lines[line];
  const std::size_t end = line + 1 < source.lines.size()
                              ? source.lines[line + 1].first_word
                              : source.words.size();
  // A file that changes while it is read may have another line now.
  const std::string_view text =
      source.files[from.place.file].lines[from.place.line - 1];
  LintStatement statement;
  statement.words.reserve(end - from.first_word);
  for (std::size_t i = from.first_word; i < end; ++i) {
    const SourceMap::Word& word = source.words[i];
    const bool is_echo =
        i > from.first_word && word.column == source.words[i - 1].column;
    if (is_echo) {
      statement.has_echo = true;
      continue;
    }
    LintWord copy;
    copy.define = word.define;
    copy.text =
        word.define != SourceMap::kNone
            ? std::string_view(source.defines[word.define].value)
            : text.substr(std::min<std::size_t>(word.column, text.size()),
                          word.length);
    copy.spot = {from.place.file, from.place.line, word.column, word.length};
    // A define without a value leaves no word.
    if (i == from.first_word || !copy.text.empty()) {
      statement.words.push_back(copy);
    }
  }
  return statement;
}

std::string_view text_of_place(const SourceMap& source,
                               SourceMap::Place place) {
  if (place.file >= source.files.size()) return {};
  const TextLines& lines = source.files[place.file].lines;
  if (place.line == 0 || place.line > lines.size()) return {};
  return lines[place.line - 1];
}

PlaceWords::PlaceWords(const SourceMap& source, SourceMap::Place place)
    : place_(place), text_(text_of_place(source, place)), rest_(text_) {}

std::optional<LintWord> PlaceWords::next() {
  const std::string_view text =
      std::exchange(is_first_, false) ? rest_.word() : rest_.next_operand();
  if (text.empty()) return std::nullopt;
  return LintWord{text,
                  {place_.file, place_.line,
                   static_cast<std::uint32_t>(text.data() - text_.data()),
                   static_cast<std::uint32_t>(text.size())},
                  SourceMap::kNone};
}

std::vector<LintWord> words_of_place(const SourceMap& source,
                                     SourceMap::Place place, std::size_t most) {
  std::vector<LintWord> words;
  PlaceWords all(source, place);
  while (words.size() < most) {
    const auto word = all.next();
    if (!word) break;
    words.push_back(*word);
  }
  return words;
}

Spot spot_of_word(const SourceMap& source, SourceMap::Place place,
                  std::size_t word) {
  Spot spot{place.file, place.line, 0, 0};
  PlaceWords words(source, place);
  for (auto next = words.next(); next; next = words.next()) {
    spot = next->spot;
    if (word-- == 0) break;
  }
  return spot;
}

Definition read_definition(const BuildInputs& inputs) {
  Definition out;
  out.map = std::make_unique<FwOutMap>();
  out.map->default_dir = inputs.default_dir;
  if (inputs.module_config_path) {
    out.constants = read_constants(*out.map, *inputs.module_config_path);
    out.has_constants = true;
  }
  std::unique_ptr<std::iostream> text;
  const auto not_joined = refusal_of([&] {
    text = read_image_defs(*out.map, inputs.image_def_path, out.source);
  });
  if (not_joined) {
    if (out.source.files.empty()) throw std::runtime_error(*not_joined);
    out.refusal = {*not_joined, SourceMap::kNone};
  } else if (!text->good()) {
    out.is_lost = true;
  }
  if (!out.has_constants) assume_constants(out.source, *out.map);
  // What can't be joined is read for the rules, as far as it goes; what is
  // refused of that may be the fault of what is missing.
  const bool is_whole = !out.refusal && !out.is_lost;
  if (!is_whole) text = text_of(out.source);
  std::vector<BlockStep> steps;
  const auto refused =
      refusal_of([&] { read_image_layout(*out.map, std::move(text), &steps); });
  if (refused) {
    const std::uint64_t line = steps.back().line;
    if (is_whole) {
      out.refusal = {without_line_number(*refused, line),
                     out.source.line_at(line)};
    }
    steps.pop_back();
  }
  add_statements(steps, out);
  return out;
}

}  // namespace tova_fw_builder
