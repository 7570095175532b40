#include "inspect/field.h"

#include <charconv>
#include <utility>

#include "companion/ground/message_text.h"
#include "inspect/byte_source.h"

namespace tova_fw_builder {
namespace {

Field field_of(std::string_view name, Field::Kind kind) {
  Field field;
  field.name = name;
  field.kind = kind;
  return field;
}

// Takes "name" or "[index]" from the head of a path.
const Field* take_step(const Field& field, std::string_view& path) {
  if (path.starts_with('[')) {
    std::size_t index = 0;
    const char* end = path.data() + path.size();
    const auto [next, error] = std::from_chars(path.data() + 1, end, index);
    if (error != std::errc() || next == end || *next != ']') return nullptr;
    path.remove_prefix(static_cast<std::size_t>(next + 1 - path.data()));
    return field.kind == Field::Kind::kList && index < field.members.size()
               ? &field.members[index]
               : nullptr;
  }
  const std::size_t end = std::min(path.find_first_of(".["), path.size());
  const std::string_view name = path.substr(0, end);
  path.remove_prefix(end);
  if (field.kind != Field::Kind::kObject) return nullptr;
  for (const Field& member : field.members) {
    if (member.name == name) return &member;
  }
  return nullptr;
}

}  // namespace

Field& Field::add(Field member) {
  members.push_back(std::move(member));
  return members.back();
}

Field object_field(std::string_view name, Field::Shown where) {
  return shown(field_of(name, Field::Kind::kObject), where);
}

Field list_field(std::string_view name, Field::Shown where) {
  return shown(field_of(name, Field::Kind::kList), where);
}

Field number_field(std::string_view name, std::uint64_t number,
                   Field::Radix radix) {
  Field field = field_of(name, Field::Kind::kNumber);
  field.number = number;
  field.radix = radix;
  return field;
}

Field bool_field(std::string_view name, bool value) {
  Field field = field_of(name, Field::Kind::kBool);
  field.number = value ? 1 : 0;
  return field;
}

Field text_field(std::string_view name, std::string text) {
  Field field = field_of(name, Field::Kind::kText);
  field.text = std::move(text);
  return field;
}

Field names_field(std::string_view name, std::string names) {
  Field field = field_of(name, Field::Kind::kNames);
  field.text = std::move(names);
  return field;
}

void add_name(std::string& names, std::string_view name) {
  if (!names.empty()) names += ' ';
  names += name;
}

std::vector<std::string> single_names(std::string_view names) {
  std::vector<std::string> single;
  while (!names.empty()) {
    const std::size_t end = std::min(names.find(' '), names.size());
    single.emplace_back(names.substr(0, end));
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return single;
}

Field placed(Field field, std::uint64_t offset, std::uint64_t length) {
  field.offset = offset;
  field.length = length;
  return field;
}

Field shown(Field field, Field::Shown where) {
  field.shown = where;
  return field;
}

Field noted(Field field, std::string note) {
  if (field.kind != Field::Kind::kNothing) field.note = std::move(note);
  return field;
}

const Field* find(const Field& field, std::string_view path) {
  const Field* at = &field;
  while (!path.empty()) {
    at = take_step(*at, path);
    if (at == nullptr) return nullptr;
    if (path.starts_with('.')) {
      path.remove_prefix(1);
      if (path.empty()) return nullptr;
    } else if (!path.empty() && path[0] != '[') {
      return nullptr;
    }
  }
  return at;
}

Field* find(Field& field, std::string_view path) {
  return const_cast<Field*>(find(std::as_const(field), path));
}

std::uint64_t number_at(const Field& field, std::string_view path,
                        std::uint64_t otherwise) {
  const Field* found = find(field, path);
  const bool is_number =
      found != nullptr && (found->kind == Field::Kind::kNumber ||
                           found->kind == Field::Kind::kBool);
  return is_number ? found->number : otherwise;
}

std::string_view text_at(const Field& field, std::string_view path) {
  const Field* found = find(field, path);
  return found == nullptr ? std::string_view() : found->text;
}

std::string member_path(const std::string& parent, const Field& member,
                        std::size_t index) {
  if (member.name.empty()) return parent + '[' + std::to_string(index) + ']';
  return (parent.empty() ? "" : parent + '.') + std::string(member.name);
}

std::string number_text(std::uint64_t number, Field::Radix radix) {
  return radix == Field::Radix::kHex ? hex_number(number)
                                     : std::to_string(number);
}

}  // namespace tova_fw_builder
