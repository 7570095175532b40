// inspect/check/sample_key.h
#pragma once

#include <string_view>

#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {

// Whether this is the hash of the key in examples/, which everyone has.
bool is_sample_key(const PublicKeyHash& hash);

// Whether one of the keys of a store is, as it stands in an image: their count,
// then a StoreEntry each.
bool holds_sample_key(std::string_view store);

}  // namespace tova_fw_builder
