// companion/ground/printable.h
// Which bytes of a file are shown as they are.
#pragma once

#include <cstddef>
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

// How many characters a UTF-8 text has.
std::size_t count_characters(std::string_view text);

// Of UTF-8, whether it is a byte of a character but not its first.
bool is_continuation(char c);

}  // namespace tova_fw_builder
