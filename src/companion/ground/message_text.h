// companion/ground/message_text.h
// Pieces of what is said to people.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tova_fw_builder {

// Text with everything that isn't printable as \xNN, so that no terminal is
// steered by the bytes of a file; UTF-8 is printable.
std::string printable(std::string_view text);

// "1 section", "2 sections".
std::string counted(std::uint64_t number, std::string_view noun);

// "0x1f".
std::string hex_number(std::uint64_t number);

}  // namespace tova_fw_builder
