// memory_map/json_for_page.h
#pragma once

#include <string>

#include "companion/ground/json.h"

namespace tova_fw_builder {

// A document in one line, fit for a script element of a page: without "<", ">"
// and "&", and with nothing but ASCII.
std::string json_for_page(const Json& document);

}  // namespace tova_fw_builder
