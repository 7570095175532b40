// address_lookup/address_words.h
// Addresses in command lines and in logs.
#pragma once

#include <cstdint>
#include <functional>
#include <istream>
#include <optional>
#include <string_view>

namespace tova_fw_builder {

// A hexadecimal number of up to 32 bits, with or without 0x; nothing for any
// other text.
std::optional<std::uint32_t> parse_address(std::string_view text);

// Hands on the addresses in a text, such as the log of a crash: words with 0x,
// words of just eight digits, and the only word of a line. A word is what
// letters, digits and '_' stand together in; one that is no address of 32 bits
// is passed over. Of a line of more than 4096 characters the rest counts as
// another one. What `in` is tied to is flushed ahead of each wait for more.
void find_addresses(std::istream& in,
                    const std::function<void(std::uint32_t)>& take);

}  // namespace tova_fw_builder
