#include "inspect/check/sample_key.h"

#include <cstring>

#include "driver/ground/wire.h"
#include "signing/keys/key_list.h"

namespace tova_fw_builder {

bool is_sample_key(const PublicKeyHash& hash) {
  // As `hash_key` prints it for examples/audio_firmware/keys.
  constexpr PublicKeyHash kSampleKey = {
      0x96, 0x6d, 0x4e, 0x58, 0x10, 0xfc, 0x43, 0x21, 0xab, 0xba, 0x1a,
      0xb3, 0xdc, 0x59, 0x3a, 0x83, 0x82, 0x56, 0x57, 0x76, 0x61, 0xe8,
      0x90, 0xbb, 0x65, 0xf5, 0xf0, 0x7d, 0x6d, 0x67, 0x8b, 0x47};
  return hash == kSampleKey;
}

bool holds_sample_key(std::string_view store) {
  StoreEntry entry;
  for (std::size_t at = sizeof(Le32); at + sizeof(entry) <= store.size();
       at += sizeof(entry)) {
    std::memcpy(&entry, store.data() + at, sizeof(entry));
    if (is_sample_key(entry.hash)) return true;
  }
  return false;
}

}  // namespace tova_fw_builder
