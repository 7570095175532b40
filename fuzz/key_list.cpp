// The key list: the list itself, and a key file called "k" that it can name.
#include "signing/keys/key_list.h"

#include <sstream>

#include "harness.h"

void fuzz_one(const std::string& input) {
  const auto files = cut(input, 2);
  put("k", files[1]);
  std::istringstream list(files[0]);
  tova_fw_builder::KeyList keys(list);
}
