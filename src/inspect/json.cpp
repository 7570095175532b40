#include "inspect/json.h"

#include <sstream>

#include "inspect/text.h"

namespace tova_fw_builder {
namespace {

Json members_json(const Field& field) {
  const bool is_list = field.kind == Field::Kind::kList;
  Json json = is_list ? Json::array() : Json::object();
  for (const Field& member : field.members) {
    if (member.shown == Field::Shown::kBytes) continue;
    Json value = field_json(member);
    if (is_list) {
      json.push_back(std::move(value));
    } else {
      json.emplace(std::string(member.name), std::move(value));
    }
  }
  return json;
}

Json names_json(const std::string& names) {
  Json json = Json::array();
  std::istringstream words(names);
  for (std::string word; words >> word;) json.push_back(word);
  return json;
}

void print_value(std::ostream& out, const Field& field, std::size_t indent) {
  if (!field.has_members()) {
    out << json_line(field_json(field));
    return;
  }
  const bool is_list = field.kind == Field::Kind::kList;
  const char* separator = "\n";
  out << (is_list ? '[' : '{');
  for (const Field& member : field.members) {
    if (member.shown == Field::Shown::kBytes) continue;
    out << separator;
    if (is_list) {
      out << std::string(indent + 2, ' ');
      print_value(out, member, indent + 2);
    } else {
      print_member(out, member, indent + 2);
    }
    separator = ",\n";
  }
  if (*separator == ',') out << '\n' << std::string(indent, ' ');
  out << (is_list ? ']' : '}');
}

}  // namespace

Json field_json(const Field& field) {
  switch (field.kind) {
    case Field::Kind::kObject:
    case Field::Kind::kList:
      return members_json(field);
    case Field::Kind::kNumber:
      return field.number;
    case Field::Kind::kBool:
      return field.number != 0;
    case Field::Kind::kText:
      return field.text;
    case Field::Kind::kNames:
      return names_json(field.text);
    case Field::Kind::kPrivate:
      return value_text(field);
    case Field::Kind::kReserved:
      return field.text.empty() ? Json() : Json(field.text);
    case Field::Kind::kNothing:
    case Field::Kind::kContents:
    case Field::Kind::kPadding:
      break;
  }
  return nullptr;
}

void print_member(std::ostream& out, const Field& field, std::size_t indent) {
  out << std::string(indent, ' ') << '"' << field.name << "\": ";
  print_value(out, field, indent);
}

void print_problems_member(std::ostream& out, const Inspected& inspected,
                           std::size_t indent) {
  const std::string blanks(indent, ' ');
  out << blanks << "\"problems\": [";
  const char* separator = "\n";
  for (const Problem& problem : inspected.problems) {
    out << separator << blanks << "  {\"offset\": " << problem.offset
        << ", \"text\": " << json_line(problem.text) << '}';
    separator = ",\n";
  }
  if (!inspected.problems.empty()) out << '\n' << blanks;
  out << ']';
}

}  // namespace tova_fw_builder
