// The reader of symbol lists, on two lists of one image.
#include <sstream>

#include "harness.h"
#include "input_map/fw_image_map.h"

void fuzz_one(const std::string& input) {
  tova_fw_builder::FwImageMap map;
  for (const auto& text : cut(input, 2)) {
    std::istringstream list(text);
    map.merge_symbols(tova_fw_builder::read_symbols(list));
  }
  map.find_symbol("main");
}
