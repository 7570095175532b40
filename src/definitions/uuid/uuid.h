// definitions/uuid/uuid.h
// The 128-bit name of a module, in its binary and its text form.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <span>
#include <string>

namespace tova_fw_builder {

// The last six bytes, which must be unique within an image. Ordered as a
// little-endian 32-bit number, then a little-endian 16-bit number.
struct UuidNode {
  std::uint32_t first = 0;   // bytes 10 to 13
  std::uint16_t second = 0;  // bytes 14 and 15

  auto operator<=>(const UuidNode&) const = default;
};

class Uuid {
 public:
  static constexpr std::size_t kTextLength = 36;  // 8-4-4-4-12 digits

  // All zero, with an empty text.
  Uuid() = default;

  // Takes the bytes as they stand. The text is in lower case.
  explicit Uuid(std::span<const std::uint8_t, 16> bytes);

  // As in files (docs/file-formats.md, "Module entry").
  const std::array<std::uint8_t, 16>& bytes() const { return bytes_; }
  const UuidNode& node() const { return node_; }
  // kTextLength characters; of a parsed UUID the whole input in upper case.
  const std::string& text() const { return text_; }

 private:
  friend Uuid parse_uuid(const std::string& text);

  std::array<std::uint8_t, 16> bytes_{};
  UuidNode node_;
  std::string text_;
};

// Reads the UUID at the END of `text`, in any letter case; text ahead of it is
// accepted. Throws std::runtime_error "Wrong UUID format".
Uuid parse_uuid(const std::string& text);

}  // namespace tova_fw_builder
