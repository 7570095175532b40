// companion/ground/message_text.h
// Pieces of what is said to people.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tova_fw_builder {

// Text with everything that isn't printable as \xNN, so that no terminal is
// steered by the bytes of a file. UTF-8 is printable, but for control
// characters, marks that change the direction of text, and ends of lines.
std::string printable(std::string_view text);

// The bytes of the printable UTF-8 character that `text` begins with; 0 if it
// begins with none.
std::size_t printable_length(std::string_view text);

// How many bytes the first `count` characters of a UTF-8 text take; all of a
// shorter text.
std::size_t length_of_characters(std::string_view text, std::size_t count);

// "1 section", "2 sections".
std::string counted(std::uint64_t number, std::string_view noun);

// "0x1f".
std::string hex_number(std::uint64_t number);

// "0000001f": at least eight digits.
std::string eight_digits(std::uint64_t number);

// A message of the builder's without what it quotes of a key file or a key
// list: the first bytes of a file that was named by mistake, and that may be
// all of somebody's private key.
std::string without_key_bytes(std::string_view message);

}  // namespace tova_fw_builder
