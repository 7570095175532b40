// The script of `build_img`, with files "a" and "b" to place.
#include "harness.h"
#include "tools/build_img_command.h"

void fuzz_one(const std::string& input) {
  const auto files = cut(input, 3);
  put("a", files[1]);
  put("b", files[2]);
  tova_fw_builder::build_img_command(put("script", files[0]), "./", "out");
}
