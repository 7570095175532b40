// signing/keys/key_list.h
// The key list: a text file that names the public keys which an image is to
// trust, and the public key store that is made of it.
#pragma once

#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "driver/ground/wire.h"
#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {

// The section name under which the store goes into an image.
inline constexpr char kPublicKeysStorage[] = "public_keys_storage";

// One key of the store, which is their count (Le32) and these, 36 bytes each.
struct StoreEntry {
  Le32 key_type;  // 1 debug, 0 production
  PublicKeyHash hash;
};
static_assert(sizeof(StoreEntry) == 36 && alignof(StoreEntry) == 1);

// The keys of one list.
class KeyList {
 public:
  struct KeyData {
    std::uint32_t key_type = 0;  // 1 debug, 0 production
    std::string path;
    PublicKeyHash hash{};
  };

  // Reads the list: in each line a type word and the path of a key file, whose
  // form may be either one. It ends at the first empty line, and behind a line
  // of more than 1023 characters, whose beginning still counts.
  //
  // Throws std::runtime_error "Failed to open file: " and the path, "Not
  // recognized key type : ", the word, " file path : ", the path of the line,
  // or what load_key_file throws.
  explicit KeyList(const std::string& path);

  std::string path;
  // Holds the store, to be read from its beginning. The image's section shares
  // it and outlives the list.
  std::shared_ptr<std::stringstream> stream;
  std::vector<std::shared_ptr<KeyData>> keys;  // in the order of the file

 private:
  void read_list();
  void add_key(const std::string& type_word, const std::string& key_path);
  void write_store();
};

}  // namespace tova_fw_builder
