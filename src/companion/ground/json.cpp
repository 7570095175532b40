#include "companion/ground/json.h"

namespace tova_fw_builder {

std::string json_text(const Json& document) {
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace tova_fw_builder
