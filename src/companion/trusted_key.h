// companion/trusted_key.h
#pragma once

#include <string>

#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {

// The hash of the key that a user trusts: 64 hexadecimal digits are the hash
// itself, anything else is the path of a key file in either form. Throws
// std::runtime_error with a reason that names the file and shows none of it.
PublicKeyHash trusted_key_hash(const std::string& text);

// The store that a key list becomes in an image. The paths in the list are
// relative to the working directory, or else to the list. Throws as above.
std::string key_store_of(const std::string& list);

}  // namespace tova_fw_builder
