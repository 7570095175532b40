// The reader of the #define header.
#include "definitions/constants_header.h"

#include "harness.h"

void fuzz_one(const std::string& input) {
  tova_fw_builder::FwOutMap map;
  read_modules_config(map, put("config.h", input));
}
