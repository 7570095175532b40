// The symbols that the image exports, in the order of their names.
#include <stdexcept>
#include <utility>

#include "driver/ground/log.h"
#include "layout/passes.h"

namespace tova_fw_builder {

void collect_exports(FwOutMap& map, const FwImageMap& image_map) {
  for (const auto& [name, optional] : map.exports) {
    FwImageMap::Symbol symbol = image_map.find_symbol(name);
    if (!symbol.valid && !optional) {
      throw std::runtime_error("Required symbol to export not found: " + name);
    }
    log_info(symbol.valid ? "Exporting symbol: "
                          : "Optional symbol to export not found: ",
             name);
    if (symbol.valid) map.exported_symbols.push_back(std::move(symbol));
  }
}

}  // namespace tova_fw_builder
