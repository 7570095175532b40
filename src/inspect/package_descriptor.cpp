// The package descriptor, a text. A field has the bytes of its line from the
// line's start, or from the field ahead of it, on.
#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "companion/ground/message_text.h"
#include "companion/ground/printable.h"
#include "driver/ground/line_reader.h"
#include "driver/ground/numbers.h"
#include "inspect/date_text.h"
#include "inspect/decoders.h"

namespace tova_fw_builder {
namespace {

constexpr auto kHex = Field::Radix::kHex;
constexpr auto kBytes = Field::Shown::kBytes;

constexpr Column kFileColumns[] = {
    {"path", "path"}, {"name", "name"}, {"version", "version"}};

struct Line {
  std::uint64_t offset;
  std::uint64_t length;   // with its line feed
  std::string_view text;  // without
};

// The text behind the first word and one blank.
std::string_view operand(std::string_view line) {
  return line.substr(std::min(line.find(' '), line.size() - 1) + 1);
}

Field whole_line(Field field, const Line& line) {
  return placed(std::move(field), line.offset, line.length);
}

Field hex_number(std::string_view name, const Line& line, Inspected& out) {
  std::string_view digits = operand(line.text);
  if (digits.starts_with("0x")) digits.remove_prefix(2);
  std::uint32_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number, 16);
  Field field = number_field(name, number, kHex);
  if (error != std::errc() || stop != end) {
    field.kind = Field::Kind::kNothing;
    add_problem(out, line.offset,
                "the line of " + std::string(name) + " has no number");
  }
  return whole_line(std::move(field), line);
}

// Behind the path of a "bin" line.
std::size_t end_of_path(std::string_view text) {
  return std::min(text.find(' ', 4), text.size());
}

// bin PATH 'NAME' [ver. VERSION]
Field decode_file(const Line& line, Inspected& out) {
  const std::string_view text = line.text;
  constexpr std::string_view kVersion = "' ver. ";
  const std::size_t path_end = end_of_path(text);
  const std::size_t name = text.find('\'', path_end);
  const std::size_t version = text.rfind(kVersion);
  const bool has_version = version != text.npos && version > name;
  const std::size_t name_end = has_version ? version : text.rfind('\'');
  Field file = object_field("");
  file.add(placed(text_field("path", std::string(text.substr(4, path_end - 4))),
                  line.offset, path_end));
  Field display = text_field("name", "");
  if (name == text.npos || name_end <= name) {
    display.kind = Field::Kind::kNothing;
    add_problem(out, line.offset + path_end, "a file has no name");
  } else {
    display.text = text.substr(name + 1, name_end - name - 1);
  }
  const std::uint64_t behind_name = has_version ? version + 1 : line.length;
  file.add(placed(std::move(display), line.offset + path_end,
                  behind_name - path_end));
  Field number = text_field("version", "");
  if (has_version) {
    number.text = text.substr(version + kVersion.size());
    number = placed(std::move(number), line.offset + behind_name,
                    line.length - behind_name);
  } else {
    number.kind = Field::Kind::kNothing;  // the main binary has none
  }
  file.add(std::move(number));
  return file;
}

// cfg { NAME... }
Field decode_modules(const Line& line) {
  std::string names;
  std::string_view rest = operand(line.text);
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(' '), rest.size());
    const std::string_view word = rest.substr(0, end);
    if (!word.empty() && word != "{" && word != "}") {
      add_name(names, word);
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return whole_line(names_field("modules", std::move(names)), line);
}

// The lists that lines are added to, and what was seen.
struct Parts {
  Field comments = list_field("comments", kBytes);
  Field blanks = list_field("empty_lines", kBytes);
  Field others = list_field("other_lines", kBytes);
  Field files = list_field("files");
};

void decode_line(const Line& line, Parts& parts, Inspected& out) {
  const std::string_view text = line.text;
  const auto starts = [&text](const char* word) {
    return text.starts_with(word);
  };
  const auto is_new = [&out](std::string_view name) {
    return find(out.root, name) == nullptr;
  };
  if (text.empty()) {
    parts.blanks.add(whole_line(text_field("", ""), line));
  } else if (starts("#")) {
    parts.comments.add(whole_line(text_field("", std::string(text)), line));
  } else if (starts("bin ")) {
    parts.files.add(decode_file(line, out));
  } else if (starts("ver ") && is_new("version")) {
    out.root.add(
        whole_line(text_field("version", std::string(operand(text))), line));
  } else if (starts("bld ") && is_new("build_date")) {
    Field& date = out.root.add(hex_number("build_date", line, out));
    date.note = date_text(static_cast<std::uint32_t>(date.number));
  } else if (starts("mft ") && is_new("manifest_type")) {
    out.root.add(hex_number("manifest_type", line, out)).radix =
        Field::Radix::kDecimal;
  } else if (starts("flg ") && is_new("flags")) {
    out.root.add(hex_number("flags", line, out));
  } else if (starts("sku ") && is_new("features")) {
    out.root.add(hex_number("features", line, out));
  } else if (starts("cfg ") && is_new("modules")) {
    out.root.add(decode_modules(line));
  } else {
    parts.others.add(whole_line(text_field("", std::string(text)), line));
    add_problem(out, line.offset, "a line that no package descriptor has");
  }
}

// A line that asm's buffer has no room for, which ends its reading there.
struct LongLine {
  Line line;
  std::size_t files;  // listed as far as its end
};

// Tells whether asm would miss a file by it, or a part of a path.
void check_reach(const LongLine& last, const Parts& parts, Inspected& out) {
  const std::size_t missed = parts.files.members.size() - last.files;
  const bool is_cut = last.line.text.starts_with("bin ") &&
                      end_of_path(last.line.text) > kLongestLine;
  if (missed == 0 && !is_cut) return;
  add_problem(out, last.line.offset,
              "this line has " + std::to_string(last.line.text.size()) +
                  " bytes, and asm reads no further than the first " +
                  std::to_string(kLongestLine) + ": " +
                  (is_cut ? "its path is cut" : "") +
                  (is_cut && missed > 0 ? ", and " : "") +
                  (missed > 0 ? "the package would lack what follows, " +
                                    counted(missed, "file")
                              : "") +
                  "; shorten the names of modules or the path of the output "
                  "folder, and build again");
}

// Puts the fields in their order, and what is missing among them.
void complete(Inspected& out) {
  constexpr std::string_view kFields[] = {
      "version", "build_date", "manifest_type", "flags", "features", "modules"};
  std::vector<Field> in_order;
  for (const std::string_view name : kFields) {
    Field missing;
    missing.name = name;
    Field* found = find(out.root, name);
    in_order.push_back(found == nullptr ? missing : std::move(*found));
    if (found == nullptr) {
      add_problem(out, out.length,
                  "the line of " + std::string(name) + " is missing");
    }
  }
  out.root.members = std::move(in_order);
}

}  // namespace

void decode_package_descriptor(const ByteSource& source, Inspected& out) {
  const WipedBytes read = source.bytes(0, kTablesLimit);
  const std::string_view bytes = view_of(read);
  Parts parts;
  parts.files.columns = kFileColumns;
  std::optional<LongLine> last;  // that asm reads
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t end = std::min(bytes.find('\n', at), bytes.size());
    const std::size_t next = std::min(end + 1, bytes.size());
    const Line line = {at, next - at, bytes.substr(at, end - at)};
    decode_line(line, parts, out);
    if (!last && line.text.size() > kLongestLine) {
      last = {line, parts.files.members.size()};
    }
    at = next;
  }
  if (last) check_reach(*last, parts, out);
  complete(out);
  out.title = "package descriptor of version " +
              printable(text_at(out.root, "version")) + ", " +
              std::to_string(parts.files.members.size()) +
              (parts.files.members.size() == 1 ? " file" : " files");
  if (parts.files.members.empty()) {
    add_problem(out, out.length, "no file is listed");
  }
  if (bytes.size() < out.length) {
    add_problem(out, bytes.size(), "what stands from here on isn't read");
  }
  out.root.add(std::move(parts.files));
  out.root.add(std::move(parts.comments));
  out.root.add(std::move(parts.blanks));
  out.root.add(std::move(parts.others));
}

}  // namespace tova_fw_builder
