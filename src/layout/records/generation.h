// layout/records/generation.h
#pragma once

#include <cstdint>
#include <string_view>

namespace tova_fw_builder {

// Generations, as `binary_ver` holds them.
inline constexpr std::uint32_t kKelp15 = 0x10005;
inline constexpr std::uint32_t kKelp18 = 0x10008;
inline constexpr std::uint32_t kKelp25 = 0x20005;
inline constexpr std::uint32_t kKelp30 = 0x30000;

// Their words in definitions.
struct GenerationWord {
  std::string_view word;
  std::uint32_t binary_ver;
};
inline constexpr GenerationWord kGenerations[] = {
    {"1.5", kKelp15}, {"1.8", kKelp18}, {"2.5", kKelp25}, {"3.0", kKelp30}};

}  // namespace tova_fw_builder
