// signing/keys/key_list.h
// The keys that an image is to trust: both formats are in docs/file-formats.md.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "driver/ground/wire.h"
#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {

inline constexpr char kPublicKeysStorage[] = "public_keys_storage";

// One key of the store, which is their count and these.
struct StoreEntry {
  Le32 key_type;  // 1 debug, 0 production
  PublicKeyHash hash;
};
static_assert(sizeof(StoreEntry) == 36 && alignof(StoreEntry) == 1);

class KeyList {
 public:
  struct KeyData {
    std::uint32_t key_type = 0;  // 1 debug, 0 production
    std::string path;
    PublicKeyHash hash{};
  };

  // Lines as LineReader has them; the first empty one ends the list.
  // Throws std::runtime_error "Failed to open file: " and the path, "Not
  // recognized key type : ", the word, " file path : ", the path of the line,
  // or what load_key_file throws.
  explicit KeyList(const std::string& path);
  // The same for the text of a list; `path` stays empty.
  explicit KeyList(std::istream& list);

  std::string path;
  // Holds the store. The image's section shares it and outlives the list.
  std::shared_ptr<std::stringstream> stream =
      std::make_shared<std::stringstream>(std::ios::in | std::ios::out |
                                          std::ios::binary);
  std::vector<std::shared_ptr<KeyData>> keys;  // in the order of the file
};

}  // namespace tova_fw_builder
