// memory_map/map_page.h
#pragma once

#include <string>
#include <string_view>

#include "companion/ground/json.h"

namespace tova_fw_builder {

// The page that shows a map in a browser: HTML without any outside resource.
// Takes what map_json has made. Lists that can grow with the whole of the
// firmware's symbols are cut behind kPageListBytes of rows; the page says so.
inline constexpr std::size_t kPageListBytes = 384 * 1024;
std::string map_page(Json json);

// A document in one line, fit for a script element of a page: without "<", ">"
// and "&", and with nothing but ASCII.
std::string json_for_page(const Json& document);

// What the build makes of the files in page/: the page up to its data, and
// behind them.
extern const std::string_view kPageHead;
extern const std::string_view kPageTail;

}  // namespace tova_fw_builder
