// memory_map/map_page.h
#pragma once

#include <ostream>
#include <string_view>

#include "memory_map/map_json.h"

namespace tova_fw_builder {

// Prints the page that shows a map in a browser: HTML without any outside
// resource. Lists that can grow with the whole of the firmware's symbols are
// cut behind kPageListBytes of rows; the page says so.
inline constexpr std::size_t kPageListBytes = 384 * 1024;
void print_map_page(std::ostream& out, const MapAnswer& answer);

// What the build makes of the files in page/: the page up to its data, and
// behind them.
extern const std::string_view kPageHead;
extern const std::string_view kPageTail;

}  // namespace tova_fw_builder
