#include "inspect/text.h"

#include <algorithm>
#include <string>
#include <vector>

#include "companion/ground/printable.h"

namespace tova_fw_builder {
namespace {

constexpr std::size_t kIndent = 2;
constexpr std::size_t kDigitsPerLine = 64;

// How many columns of a terminal a text takes: those of UTF-8 behind the first
// of a character take none.
std::size_t width_of(std::string_view text) {
  return text.size() -
         static_cast<std::size_t>(std::ranges::count_if(text, is_continuation));
}

std::string padded(const std::string& text, std::size_t width,
                   bool to_right = false) {
  const std::size_t own = width_of(text);
  const std::string blanks(own < width ? width - own : 0, ' ');
  return to_right ? blanks + text : text + blanks;
}

class Printer {
 public:
  Printer(std::ostream& out, bool is_long, const Colours& colours)
      : out_(out), is_long_(is_long), colours_(colours) {}

  void print_object(const Field& object, std::size_t indent) {
    std::size_t width = 0;
    for (const Field& member : object.members) {
      if (is_line(member)) width = std::max(width, member.name.size());
    }
    bool was_line = false;
    for (const Field& member : object.members) {
      if (!is_seen(member)) continue;
      const bool line = is_line(member);
      if (indent == kIndent && !(line && was_line)) out_ << '\n';
      was_line = line;
      if (line) {
        print_line(member, width, indent);
      } else {
        print_block(member, std::string(member.name), indent);
      }
    }
  }

 private:
  bool is_seen(const Field& field) const {
    return field.shown == Field::Shown::kAlways ||
           (is_long_ && field.shown == Field::Shown::kLong);
  }

  bool is_line(const Field& field) const {
    return is_seen(field) && (!field.has_members() || field.members.empty());
  }

  void print_line(const Field& field, std::size_t width, std::size_t indent) {
    const std::string head = std::string(indent, ' ') +
                             padded(std::string(field.name), width) + "  ";
    const std::string value =
        field.has_members() ? std::string("none") : value_text(field);
    out_ << head;
    std::string_view rest = value;
    if (field.kind == Field::Kind::kText && rest.find(' ') == rest.npos) {
      for (std::size_t end = length_of_characters(rest, kDigitsPerLine);
           end < rest.size();
           end = length_of_characters(rest, kDigitsPerLine)) {
        out_ << rest.substr(0, end) << '\n' << std::string(head.size(), ' ');
        rest.remove_prefix(end);
      }
    }
    out_ << rest;
    if (!field.note.empty()) {
      out_ << "  " << colours_.faint << field.note << colours_.plain;
    }
    out_ << '\n';
  }

  void print_block(const Field& field, const std::string& title,
                   std::size_t indent) {
    const bool as_table = !is_long_ && !field.columns.empty();
    if (field.kind == Field::Kind::kList && !as_table) {
      for (std::size_t i = 0; i < field.members.size(); ++i) {
        print_block(field.members[i], title + '[' + std::to_string(i) + ']',
                    indent);
      }
      return;
    }
    out_ << std::string(indent, ' ') << colours_.bold << title << colours_.plain
         << '\n';
    if (as_table) {
      print_table(field, indent + kIndent);
    } else {
      print_object(field, indent + kIndent);
    }
  }

  static std::string cell_text(const Field& member, const Column& column) {
    const Field* field = find(member, column.path);
    if (field == nullptr) return "-";
    return column.note_first && !field->note.empty() ? field->note
                                                     : value_text(*field);
  }

  // Numbers stand to the right.
  static bool is_number_column(const Field& list, const Column& column) {
    const Field* field = find(list.members[0], column.path);
    return field != nullptr && field->kind == Field::Kind::kNumber &&
           !column.note_first;
  }

  void print_table(const Field& list, std::size_t indent) {
    std::vector<std::vector<std::string>> rows(1);
    for (const Column& column : list.columns) {
      rows[0].emplace_back(column.title);
    }
    for (const Field& member : list.members) {
      rows.emplace_back();
      for (const Column& column : list.columns) {
        rows.back().push_back(cell_text(member, column));
      }
    }
    std::vector<std::size_t> widths(list.columns.size());
    for (const auto& row : rows) {
      for (std::size_t i = 0; i < row.size(); ++i) {
        widths[i] = std::max(widths[i], width_of(row[i]));
      }
    }
    for (std::size_t r = 0; r < rows.size(); ++r) {
      std::string line(indent, ' ');
      for (std::size_t i = 0; i < rows[r].size(); ++i) {
        line += padded(rows[r][i], widths[i],
                       is_number_column(list, list.columns[i]));
        line += "  ";
      }
      line.erase(line.find_last_not_of(' ') + 1);
      out_ << (r == 0 ? colours_.faint : "") << line
           << (r == 0 ? colours_.plain : "") << '\n';
    }
  }

  std::ostream& out_;
  bool is_long_;
  const Colours& colours_;
};

}  // namespace

void print_fields(std::ostream& out, const Field& root, bool is_long,
                  const Colours& colours) {
  Printer(out, is_long, colours).print_object(root, kIndent);
}

void print_problems(std::ostream& out, const Inspected& inspected,
                    const Colours& colours) {
  if (inspected.problems.empty()) return;
  out << '\n' << "  " << colours.bad << "problems" << colours.plain << '\n';
  for (const Problem& problem : inspected.problems) {
    out << "    at " << number_text(problem.offset, Field::Radix::kHex) << ": "
        << printable(problem.text) << '\n';
  }
}

std::string value_text(const Field& field) {
  switch (field.kind) {
    case Field::Kind::kNumber:
      return number_text(field.number, field.radix);
    case Field::Kind::kBool:
      return field.number != 0 ? "yes" : "no";
    case Field::Kind::kText:
      return printable(field.text);
    case Field::Kind::kReserved:
      return field.text.empty() ? "zero" : field.text;
    case Field::Kind::kNames:
      return field.text.empty() ? "-" : printable(field.text);
    case Field::Kind::kPrivate:
      return "(private)";
    case Field::Kind::kNothing:
      return "-";
    case Field::Kind::kObject:
    case Field::Kind::kList:
    case Field::Kind::kContents:
    case Field::Kind::kPadding:
      break;
  }
  return "";
}

}  // namespace tova_fw_builder
