#include "inspect/compare/report.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "companion/ground/message_text.h"
#include "companion/ground/printable.h"
#include "inspect/json.h"
#include "inspect/text.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

constexpr std::size_t kLongText = 40;
constexpr std::size_t kTextHead = 16;

// Of two long texts, such as hashes, a piece from where they differ on.
void shorten(std::string& a, std::string& b) {
  const bool is_long = std::min(a.size(), b.size()) > kLongText &&
                       a.find(' ') == a.npos && a.find('/') == a.npos;
  if (!is_long) return;
  const auto first =
      std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first;
  auto at = static_cast<std::size_t>(first - a.begin());
  while (at > 0 && (is_continuation(a[at]) || is_continuation(b[at]))) {
    --at;
  }
  const std::size_t from = at < kTextHead ? 0 : at;
  for (std::string* text : {&a, &b}) {
    const std::string rest = text->substr(std::min(from, text->size()));
    const std::size_t kept = length_of_characters(rest, kTextHead);
    *text = (from > 0 ? "..." : "") + rest.substr(0, kept) +
            (kept < rest.size() ? "..." : "");
  }
}

// "1.8 or 2.5 -> 3.0", with what the values mean behind it.
std::string values_text(const Change& change) {
  std::string old_text = value_text(change.old_value);
  std::string new_text = value_text(change.new_value);
  shorten(old_text, new_text);
  const std::string& old_note = change.old_value.note;
  const std::string& new_note = change.new_value.note;
  std::string text = old_text + " -> " + new_text;
  if (old_note != new_note && !old_note.empty() && !new_note.empty()) {
    text += "  (" + old_note + " -> " + new_note + ')';
  }
  return text;
}

// "uuid 5a3c..., kind loadable, text 1", without what the path tells.
std::string members_text(const Field& object, const std::string& key) {
  std::string text;
  for (const Field& member : object.members) {
    const std::string value = value_text(member);
    if (member.has_members() || value.empty() || value == key) continue;
    if (!text.empty()) text += ", ";
    text += std::string(member.name) + ' ' + value;
  }
  return text;
}

std::string lonely_text(const char* what, const Field& value,
                        const std::string& key) {
  const std::string text =
      value.has_members() ? members_text(value, key) : value_text(value);
  return text.empty() ? what : std::string(what) + ", " + text;
}

std::string bytes_text(const Change& change) {
  const ByteDifference& bytes = *change.bytes;
  std::string text;
  if (bytes.old_length != bytes.new_length) {
    text = std::to_string(bytes.old_length) + " -> " +
           counted(bytes.new_length, "byte");
  }
  const std::uint64_t common = std::min(bytes.old_length, bytes.new_length);
  if (bytes.bytes == 0) {
    return common == 0
               ? text
               : text + ", the first " + std::to_string(common) + " are equal";
  }
  if (!text.empty()) text += ", ";
  const std::uint64_t pages =
      (std::max(common, bytes.first + 1) + kPageSize - 1) / kPageSize;
  text += counted(bytes.bytes, "byte") +
          (bytes.bytes == 1 ? " differs in " : " differ in ") +
          std::to_string(bytes.pages) + " of " +
          counted(std::max(pages, bytes.pages), "page") + ", first at ";
  const std::uint64_t old_at = change.old_offset + bytes.first;
  const std::uint64_t new_at = change.new_offset + bytes.first;
  std::string place = hex_number(old_at);
  if (old_at != new_at) place += " -> " + hex_number(new_at);
  if (change.address)
    return text + hex_number(*change.address) + " (file " + place + ')';
  return text + place;
}

// What stands behind the path.
std::string change_text(const Change& change) {
  if (change.pattern == "and_more") {
    return "more differs than is told";
  }
  if (change.bytes) return bytes_text(change);
  const bool is_member = change.pattern.ends_with(']');
  if (is_member && change.new_value.kind == Field::Kind::kNothing) {
    return lonely_text("removed", change.old_value, change.keys.back());
  }
  if (is_member && change.old_value.kind == Field::Kind::kNothing) {
    return lonely_text("added", change.new_value, change.keys.back());
  }
  return values_text(change);
}

void print_change(std::ostream& out, const Change& change,
                  const Colours& colour) {
  const bool is_echo = !change.echo.empty();
  if (!change.file.empty()) out << "  ";
  out << (is_echo ? colour.faint : "") << change.scope << change.path << ": "
      << change_text(change);
  if (is_echo) out << "  [" << change.echo << ']' << colour.plain;
  out << '\n';
}

std::string_view last_name(const Change& change) {
  std::string_view name = change.pattern;
  name = name.substr(name.rfind('.') + 1);
  return name.substr(0, name.find('['));
}

// "3 echoes are folded away (--all shows them): hash 1, file_off 2".
void print_folded(std::ostream& out, const std::vector<Change>& changes,
                  const Colours& colour) {
  std::vector<std::pair<std::string_view, int>> kinds;
  std::uint64_t count = 0;
  for (const Change& change : changes) {
    if (change.echo.empty()) continue;
    ++count;
    const std::string_view name = last_name(change);
    const auto found =
        std::find_if(kinds.begin(), kinds.end(),
                     [&](const auto& kind) { return kind.first == name; });
    if (found == kinds.end()) {
      kinds.emplace_back(name, 1);
    } else {
      ++found->second;
    }
  }
  if (count == 0) return;
  out << colour.faint
      << (count == 1 ? "1 echo is folded away (--all shows it):"
                     : std::to_string(count) +
                           " echoes are folded away (--all shows them):");
  const char* separator = " ";
  for (const auto& [name, number] : kinds) {
    out << separator << name;
    if (count > 1) out << ' ' << number;
    separator = ", ";
  }
  out << colour.plain << '\n';
}

void print_names(std::ostream& out, const char* where,
                 const std::vector<std::string>& names, const Colours& colour) {
  for (const std::string& name : names) {
    out << colour.bold << "only in " << where << colour.plain << ": "
        << printable(name) << '\n';
  }
}

// Numbers, texts and names; of what one side alone has, its fields.
Json value_json(const Change& change, const Field& value) {
  if (change.bytes && value.kind == Field::Kind::kNothing) return nullptr;
  return field_json(value);
}

Json change_json(const Change& change, bool in_folder) {
  Json json = Json::object();
  if (in_folder) json["file"] = change.file;
  json["path"] = change.scope + change.path;
  json["old"] = value_json(change, change.old_value);
  json["new"] = value_json(change, change.new_value);
  json["echo"] = !change.echo.empty();
  if (change.bytes) {
    const ByteDifference& bytes = *change.bytes;
    json["bytes"] = {{"old_length", bytes.old_length},
                     {"new_length", bytes.new_length},
                     {"differ", bytes.bytes},
                     {"pages", bytes.pages},
                     {"first", bytes.bytes == 0 ? Json() : Json(bytes.first)},
                     {"old_offset", change.old_offset},
                     {"new_offset", change.new_offset}};
  }
  return json;
}

}  // namespace

void print_comparison(std::ostream& out, const Comparison& comparison, bool all,
                      const Colours& colours) {
  const std::string* file = nullptr;
  for (const Change& change : comparison.changes) {
    if (!all && !change.echo.empty()) continue;
    if (!change.file.empty() && (file == nullptr || *file != change.file)) {
      file = &change.file;
      out << colours.bold << printable(change.file) << colours.plain << '\n';
    }
    print_change(out, change, colours);
  }
  print_names(out, "OLD", comparison.only_old, colours);
  print_names(out, "NEW", comparison.only_new, colours);
  if (!all) print_folded(out, comparison.changes, colours);
}

Json comparison_json(const Comparison& comparison) {
  Json changes = Json::array();
  const bool in_folder = !comparison.files.empty();
  for (const Change& change : comparison.changes) {
    changes.push_back(change_json(change, in_folder));
  }
  return {{"schema", 1},
          {"equal", comparison.is_equal()},
          {"changes", std::move(changes)},
          {"only_old", comparison.only_old},
          {"only_new", comparison.only_new}};
}

}  // namespace tova_fw_builder
