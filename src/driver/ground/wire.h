// driver/ground/wire.h
// Little-endian numbers as they stand in files: made of bytes, alignment 1,
// right on any host. Records of them have no padding and are written with one
// call.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <type_traits>

namespace tova_fw_builder {

template <std::unsigned_integral T>
class LittleEndian {
 public:
  constexpr LittleEndian() = default;
  constexpr LittleEndian(T value) {  // NOLINT: converts both ways, on purpose
    for (auto& byte : bytes_) {
      byte = static_cast<std::uint8_t>(value & 0xFF);
      value = static_cast<T>(value >> 8);
    }
  }
  constexpr operator T() const {  // NOLINT
    T value = 0;
    for (std::size_t i = sizeof(T); i-- > 0;) {
      value = static_cast<T>(value << 8 | bytes_[i]);
    }
    return value;
  }

 private:
  std::array<std::uint8_t, sizeof(T)> bytes_{};
};

using Le16 = LittleEndian<std::uint16_t>;
using Le32 = LittleEndian<std::uint32_t>;
static_assert(sizeof(Le16) == 2 && alignof(Le16) == 1);
static_assert(sizeof(Le32) == 4 && alignof(Le32) == 1);

// Writes a record's bytes as they stand in memory. Only for records made of
// Le16, Le32 and bytes, whose size is asserted beside them.
template <typename Record>
requires std::is_trivially_copyable_v<Record> &&
    (alignof(Record) == 1) void write_record(std::ostream& out,
                                             const Record& record) {
  out.write(reinterpret_cast<const char*>(&record), sizeof(Record));
}

}  // namespace tova_fw_builder
