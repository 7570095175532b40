// The reader of section tables, on two tables of one image, and the passes
// over what they leave.
#include <sstream>

#include "harness.h"
#include "input_map/fw_image_map.h"

void fuzz_one(const std::string& input) {
  tova_fw_builder::FwImageMap map;
  for (const auto& text : cut(input, 2)) {
    std::istringstream table(text);
    read_section_table(map, table, std::make_shared<std::istringstream>(text));
  }
  map.warn_unreferenced();
  map.check_section_size(".data", 0);
  map.check_suffix_size(".guard", 16);
}
