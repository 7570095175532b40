// Goes through a script as build_img does, with a place in place of a file.
#include "inspect/flash_script.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "companion/ground/message_text.h"
#include "companion/ground/nearest.h"
#include "companion/ground/trouble.h"
#include "driver/ground/line_fields.h"
#include "driver/ground/line_reader.h"
#include "driver/ground/paths.h"
#include "driver/ground/wire.h"
#include "inspect/coverage.h"
#include "tools/image_script.h"

namespace tova_fw_builder {
namespace {

constexpr auto kHex = Field::Radix::kHex;
constexpr auto kBytes = Field::Shown::kBytes;
constexpr std::size_t kMostParts = 4096;
constexpr std::uint64_t kMostHashed = 0x7fffffff;  // build_img refuses more

constexpr Column kColumns[] = {
    {"line", "line"},     {"statement", "statement"}, {"offset", "offset"},
    {"length", "length"}, {"what", "what"},
};

// What one statement wrote.
struct Part {
  std::uint64_t line;
  std::string statement;
  std::optional<std::uint64_t> offset;
  std::uint64_t length;
  std::string what;  // the file, the numbers
  // What has to stand there: these bytes, or those of a file, or its hash; or
  // zeros.
  std::string expected = {};
  std::string file = {};
  bool is_hash = false;
  bool is_zeros = false;
  bool is_marked = false;
};

class Script {
 public:
  Script(const std::string& prefix, Inspected& out)
      : prefix_(prefix), out_(out) {}

  std::vector<Part> run(std::istream& text) {
    LineReader lines(text);
    for (std::string_view line; lines.next(line);) {
      ++line_number_;
      const auto statements = image_statements(line);
      is_cut_ = parts_.size() >= kMostParts && !statements.empty();
      if (is_cut_) break;
      for (const auto& statement : statements) perform(statement);
      if (statements.empty()) {
        tell_misspelt(std::string(LineFields(line).word()));
      }
    }
    if (table_) {
      line_number_ = table_line_;
      add("pt", table_, sizeof(PartitionTable), "partition table");
      parts_.back().expected = table_bytes();
    }
    return std::move(parts_);
  }

  // Whether there were more parts than are looked at.
  bool is_cut() const { return is_cut_; }

 private:
  void perform(const ImageStatement& statement) {
    switch (statement.kind) {
      case ImageStatement::kBin:
        return append_file(statement);
      case ImageStatement::kPt:
        table_ = place_;
        table_line_ = line_number_;
        return;
      case ImageStatement::kOffset:
        return go_to_offset(statement.offset);
      case ImageStatement::kNumbers:
        return append_numbers(statement);
      case ImageStatement::kSize:
        return append_size(statement.name);
      case ImageStatement::kSha:
        return append_hash(statement.name);
    }
  }

  // Words that are no keyword do nothing, and may be meant so: those alone are
  // told that are a keyword in capitals, or one letter away from a longer one.
  void tell_misspelt(const std::string& word) {
    if (word.starts_with('#')) return;
    std::string small = word;
    for (char& c : small) {
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    for (const std::string_view keyword : image_keywords()) {
      const std::size_t most = std::min(small.size(), keyword.size()) > 2;
      if (edit_distance(small, keyword, most) > most) continue;
      add_problem(out_, place_.value_or(out_.length),
                  "line " + std::to_string(line_number_) + ": '" + word +
                      "' does nothing; did you mean '" + std::string(keyword) +
                      "'? A remark begins with #");
      return;
    }
  }

  void add(std::string statement, std::optional<std::uint64_t> offset,
           std::uint64_t length, std::string what) {
    parts_.push_back(
        {line_number_, std::move(statement), offset, length, std::move(what)});
  }

  void append(std::string statement, std::uint64_t length, std::string what) {
    add(std::move(statement), place_, length, std::move(what));
    if (place_) *place_ += length;
  }

  std::optional<std::uint64_t> length_of(const std::string& name) {
    std::error_code error;
    const std::uint64_t length =
        std::filesystem::file_size(native_path(prefix_ + name), error);
    if (!error) return length;
    const bool lacks_slash =
        !prefix_.empty() &&
        std::filesystem::exists(native_path(prefix_ + '/' + name), error);
    add_problem(out_, place_.value_or(out_.length),
                "line " + std::to_string(line_number_) + ": " + prefix_ + name +
                    " is not there" +
                    (lacks_slash ? "; --deploy-dir is put in front as it "
                                   "stands: end it with /"
                                 : ""));
    return std::nullopt;
  }

  void append_file(const ImageStatement& statement) {
    const auto length = length_of(statement.name);
    append("bin", length.value_or(0), statement.name);
    if (statement.is_marked) {
      parts_.back().is_marked = true;
      marked_.push_back(parts_.back().offset);
    }
    if (length) {
      parts_.back().file = prefix_ + statement.name;
    } else {
      place_.reset();
    }
  }

  void append_hash(const std::string& name) {
    const auto length = length_of(name);
    append("sha", 32, name);
    if (!length || *length > kMostHashed) return;
    parts_.back().file = prefix_ + name;
    parts_.back().is_hash = true;
  }

  void go_to_offset(std::uint64_t target) {
    if (target >> 63 != 0) {  // build_img refuses it
      add_problem(out_, out_.length,
                  "line " + std::to_string(line_number_) +
                      ": the offset is out of range");
      place_.reset();
      return;
    }
    if (place_ && *place_ < target) {
      append("offset", target - *place_, "zeros");
      parts_.back().is_zeros = true;
    }
    place_ = target;
  }

  void append_numbers(const ImageStatement& statement) {
    std::string bytes;
    std::string what;
    for (const std::uint32_t number : statement.numbers) {
      const Le32 wire = number;
      bytes.append(reinterpret_cast<const char*>(&wire), statement.width);
      add_name(what, number_text(number, kHex));
    }
    append(statement.word, bytes.size(), std::move(what));
    parts_.back().expected = std::move(bytes);
  }

  void append_size(const std::string& name) {
    const auto length = length_of(name);
    append("size", 4, name);
    if (!length) return;
    const Le32 wire = static_cast<std::uint32_t>(*length);
    parts_.back().expected.assign(reinterpret_cast<const char*>(&wire), 4);
  }

  // Empty if a position isn't known.
  std::string table_bytes() const {
    PartitionTable table;
    if (is_cut_ || marked_.size() > table.positions.size()) return {};
    table.count = static_cast<std::uint32_t>(marked_.size());
    for (std::size_t i = 0; i < marked_.size(); ++i) {
      if (!marked_[i]) return {};
      table.positions[i] = static_cast<std::uint32_t>(*marked_[i]);
    }
    return {reinterpret_cast<const char*>(&table), sizeof(table)};
  }

  const std::string& prefix_;
  Inspected& out_;
  std::optional<std::uint64_t> place_ = 0;
  std::optional<std::uint64_t> table_;
  std::uint64_t table_line_ = 0;
  std::uint64_t line_number_ = 0;
  bool is_cut_ = false;
  std::vector<Part> parts_;
  std::vector<std::optional<std::uint64_t>> marked_;
};

std::string line_text(const Part& part) {
  return "line " + std::to_string(part.line) + " (" + part.statement + ")";
}

void check_overlaps(const std::vector<Part>& parts, Inspected& out) {
  for (std::size_t i = 0; i < parts.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (!parts[i].offset || !parts[j].offset) continue;
      const std::uint64_t begin = std::max(*parts[i].offset, *parts[j].offset);
      const std::uint64_t end = std::min(*parts[i].offset + parts[i].length,
                                         *parts[j].offset + parts[j].length);
      // Zeros that room is kept with are meant to be written over.
      if (begin >= end || parts[j].statement == "offset") continue;
      add_problem(out, begin,
                  line_text(parts[i]) + " writes over " +
                      counted(end - begin, "byte") + " of " +
                      line_text(parts[j]));
    }
  }
}

// What the statements have written, read from their files, and each hashed
// once.
class Expected {
 public:
  // What has to stand there; empty where the script doesn't tell it.
  ByteSource of(const Part& part) {
    if (part.file.empty()) return ByteSource::of(part.expected);
    if (!part.is_hash) return ByteSource::open(part.file);
    const auto [found, is_new] = hashes_.try_emplace(part.file);
    if (is_new) found->second = sha256_of(ByteSource::open(part.file));
    return ByteSource::of(
        WipedBytes(found->second.begin(), found->second.end()));
  }

 private:
  std::map<std::string, std::array<std::uint8_t, 32>> hashes_;
};

// The place of the first byte in a span of the image that isn't the one that
// has to stand there; `at` is where the span begins in what is expected.
std::optional<std::uint64_t> first_other(const ByteSource& image, Span span,
                                         const ByteSource* expected,
                                         std::uint64_t at) {
  std::optional<std::uint64_t> found;
  std::uint64_t offset = span.offset;
  image.pieces(span.offset, span.length, [&](std::string_view piece) {
    const WipedBytes there =
        expected ? expected->bytes(at + offset - span.offset, piece.size())
                 : WipedBytes(piece.size());
    const auto other = std::ranges::mismatch(piece, there).in1;
    if (other != piece.end()) {
      found = offset + static_cast<std::uint64_t>(other - piece.begin());
    }
    offset += piece.size();
    return !found;
  });
  return found;
}

// Compares what is left of a part with what was written.
void check_bytes(const ByteSource& image, const Part& part,
                 const std::vector<Span>& left, Expected& all, Inspected& out) {
  if (left.empty()) return;
  try {
    const ByteSource expected = all.of(part);
    if (expected.size() == 0 && !part.is_zeros) return;
    for (const Span& span : left) {
      const auto other =
          first_other(image, span, part.is_zeros ? nullptr : &expected,
                      span.offset - *part.offset);
      if (!other) continue;
      add_problem(out, *other,
                  line_text(part) + ": the image has other bytes there");
      return;
    }
  } catch (const FileError& error) {
    add_problem(out, *part.offset,
                line_text(part) + ": " + error.trouble().file + ' ' +
                    error.trouble().text);
  }
}

Field decode_part(const ByteSource& image, const Part& part,
                  const std::vector<Span>& left, Expected& expected,
                  Inspected& out) {
  Field field = object_field("");
  field.add(number_field("line", part.line));
  field.add(text_field("statement", part.statement));
  Field& offset =
      field.add(number_field("offset", part.offset.value_or(0), kHex));
  if (!part.offset) offset.kind = Field::Kind::kNothing;
  field.add(number_field("length", part.length));
  field.add(text_field(
      "what", part.what + (part.is_marked ? ", in the partition table" : "")));
  Field bytes = list_field("bytes", kBytes);
  for (const Span span : left) {
    Field piece = text_field("", "");
    piece.kind = part.statement == "offset" ? Field::Kind::kPadding
                                            : Field::Kind::kContents;
    bytes.add(placed(std::move(piece), span.offset, span.length));
  }
  field.add(std::move(bytes));
  if (!part.offset) return field;
  const bool is_inside =
      *part.offset <= out.length && part.length <= out.length - *part.offset;
  if (!is_inside) {
    add_problem(
        out, std::min(*part.offset, out.length),
        line_text(part) +
            (*part.offset < out.length ? " reaches beyond" : " lies behind") +
            " the end of the image");
  } else {
    check_bytes(image, part, left, expected, out);
  }
  return field;
}

// What no part has.
Field decode_rest(const Coverage& coverage, bool is_cut, Inspected& out) {
  Field rest = list_field("padding", kBytes);
  for (const Span gap : coverage.gaps()) {
    Field piece = text_field("", "");
    piece.kind = Field::Kind::kPadding;
    rest.add(placed(std::move(piece), gap.offset, gap.length));
    if (is_cut) continue;
    add_problem(out, gap.offset,
                counted(gap.length, "byte") + " that no statement wrote");
  }
  if (is_cut) {
    add_problem(out, out.length,
                "the script makes more than " + std::to_string(kMostParts) +
                    " parts; what is behind these isn't looked at");
  }
  return rest;
}

}  // namespace

Inspected inspect_flash_image(const ByteSource& image, std::istream& script,
                              const std::string& prefix) {
  Inspected out;
  out.length = image.size();
  out.root.kind = Field::Kind::kObject;
  Script statements_of(prefix, out);
  const std::vector<Part> parts = statements_of.run(script);
  if (parts.empty()) {
    throw std::runtime_error(
        "nothing in it writes to an image: is it an image script?");
  }
  check_overlaps(parts, out);

  // What was written last is what is there.
  Coverage coverage(out.length);
  std::vector<std::vector<Span>> left(parts.size());
  for (std::size_t i = parts.size(); i-- > 0;) {
    if (parts[i].offset) {
      left[i] = coverage.take({*parts[i].offset, parts[i].length});
    }
  }
  Field statements = list_field("statements");
  statements.columns = kColumns;
  Expected expected;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    statements.add(decode_part(image, parts[i], left[i], expected, out));
  }
  out.root.add(std::move(statements));
  out.root.add(decode_rest(coverage, statements_of.is_cut(), out));
  out.title = "flash image of " + counted(parts.size(), "part");
  std::stable_sort(
      out.problems.begin(), out.problems.end(),
      [](const Problem& a, const Problem& b) { return a.offset < b.offset; });
  return out;
}

}  // namespace tova_fw_builder
