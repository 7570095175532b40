// The script of `build_img`, with files "a" and "b" to place.
#include <sstream>

#include "harness.h"
#include "tools/image_script.h"

void fuzz_one(const std::string& input) {
  const auto files = cut(input, 3);
  put("a", files[1]);
  put("b", files[2]);
  std::istringstream script(files[0]);
  tova_fw_builder::run_image_script(script, "./", "out");
}
