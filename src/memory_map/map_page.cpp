#include "memory_map/map_page.h"

namespace tova_fw_builder {
namespace {

// Yields how many rows there were. Rows begin with what matters most.
std::size_t cut(Json& rows) {
  const std::size_t all = rows.size();
  std::size_t bytes = 0;
  std::size_t kept = 0;
  while (kept < all) {
    bytes += json_for_page(rows[kept]).size() + 1;
    if (bytes > kPageListBytes) break;
    ++kept;
  }
  rows.get_ref<Json::array_t&>().resize(kept);
  return all;
}

}  // namespace

std::string map_page(Json json) {
  Json rows = Json::object();
  for (const char* list :
       {"left_out", "outside_classes", "overlaps", "symbols"}) {
    rows[list] = cut(json[list]);
  }
  rows["symbols"] = json["symbols_total"];
  if (json.contains("baseline")) {
    rows["changes"] = cut(json["baseline"]["changes"]);
  }
  json["rows"] = std::move(rows);
  std::string page(kPageHead);
  page += json_for_page(json);
  page += kPageTail;
  return page;
}

std::string json_for_page(const Json& document) {
  std::string text;
  // These stand within strings alone.
  for (const char c :
       document.dump(-1, ' ', true, Json::error_handler_t::replace)) {
    switch (c) {
      case '<':
        text += "\\u003c";
        break;
      case '>':
        text += "\\u003e";
        break;
      case '&':
        text += "\\u0026";
        break;
      default:
        text += c;
    }
  }
  return text;
}

}  // namespace tova_fw_builder
