// The statement readers, on any text in place of a flattened one.
#include <sstream>

#include "definitions/image_block.h"
#include "harness.h"

void fuzz_one(const std::string& input) {
  tova_fw_builder::FwOutMap map;
  map.consts = {{"CORES", 3}, {"NONE", 0}};
  read_image_layout(map, std::make_unique<std::stringstream>(input));
}
