// companion/key_list_input.h
#pragma once

#include <string>

namespace tova_fw_builder {

// The store that a key list becomes in an image. The paths in the list are
// relative to the working directory, or else to the list. Throws
// std::runtime_error with a reason that names the list and shows none of what
// its files hold.
std::string key_store_of(const std::string& list);

}  // namespace tova_fw_builder
