// The definition reader, on a tree of files that include one another.
#include "definitions/includes_and_defines.h"
#include "harness.h"

void fuzz_one(const std::string& input) {
  const auto files = cut(input, 4);
  for (const std::size_t i : {1u, 2u, 3u}) {
    put(std::string(1, "tabc"[i]), files[i]);
  }
  tova_fw_builder::FwOutMap map;
  map.default_dir = ".";
  read_image_defs(map, put("t", files[0]));
}
