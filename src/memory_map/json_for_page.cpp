#include "memory_map/json_for_page.h"

namespace tova_fw_builder {

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
