#include "companion/ground/json.h"

#include <algorithm>

namespace tova_fw_builder {

std::string json_text(const Json& document) {
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string json_string(std::string_view text) {
  const auto is_plain = [](char c) {
    return c >= 0x20 && c < 0x7F && c != '"' && c != '\\';
  };
  if (std::ranges::all_of(text, is_plain)) {
    return std::string(1, '"').append(text) += '"';
  }
  return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json troubles_json(const Troubles& troubles) {
  Json list = Json::array();
  for (const Trouble& trouble : troubles.list()) {
    list.push_back({{"file", trouble.file}, {"text", trouble.text}});
  }
  return list;
}

}  // namespace tova_fw_builder
