// companion/ground/message_text.h
// Counts and numbers in what is said to people.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tova_fw_builder {

// "1 section", "2 sections".
std::string counted(std::uint64_t number, std::string_view noun);

// "0x1f".
std::string hex_number(std::uint64_t number);

// "0000001f": at least eight digits.
std::string eight_digits(std::uint64_t number);

}  // namespace tova_fw_builder
