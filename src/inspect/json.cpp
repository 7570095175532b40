#include "inspect/json.h"

#include <sstream>

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

Json problems_json(const Inspected& inspected) {
  Json list = Json::array();
  for (const Problem& problem : inspected.problems) {
    list.push_back({{"offset", problem.offset}, {"text", problem.text}});
  }
  return list;
}

}  // namespace tova_fw_builder
