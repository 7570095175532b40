// signing/keys/key_file.h
// RSA-2048 key files: their layouts (docs/file-formats.md, "Key files"), in a
// source of its own, for reading and writing; and the reading of a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "signing/keys/key_material.h"

namespace tova_fw_builder {

// Literal pieces of text, and between each two of them a field in binary.
struct KeyFormat {
  std::uint32_t exponent_length;
  bool public_only;
  std::span<const std::string_view> pieces;

  std::size_t length() const;  // of a file, pieces and fields
};

// In the order of recognition, the longest one first.
std::span<const KeyFormat> key_formats();

// The bytes at the start of a file in which its format is looked for.
inline constexpr std::size_t kProbeLength = 100;

// The first format whose first piece stands anywhere in these bytes. Throws
// std::runtime_error "Key type not recognized :\r\n" and them, up to the first
// zero byte.
const KeyFormat& recognize_format(std::string_view probe);

struct KeyField {
  const char* label;
  std::span<std::uint8_t> bytes;
  bool reversed;  // the file has the most significant byte first
};

// The fields of a format in the order of the file, so that each stands behind
// the piece of its index. They point into `key`.
std::vector<KeyField> fields_of(KeyMaterial& key, const KeyFormat& format);

// The key of a key file's bytes, whatever stands behind it. Throws
// std::runtime_error "Expected std::string not found" where the bytes depart
// from the format or end too early.
std::unique_ptr<KeyMaterial> key_of_format(std::string_view file,
                                           const KeyFormat& format);

// Reads a key file of either format. No number is checked; private ones, too,
// are logged at level 3. Throws std::runtime_error
//   "Failed to open file: " and the path;
//   what recognize_format throws for the file's first 100 bytes;
//   what key_of_format throws, always for a recognised file below 100 bytes.
std::unique_ptr<KeyMaterial> load_key_file(const std::string& path);

}  // namespace tova_fw_builder
