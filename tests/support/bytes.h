// tests/support/bytes.h
// Bytes as texts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The bytes of pairs of hex digits. Blanks, and all from a '#' to the end of
// its line, are for the reader.
std::string bytes_of(std::string_view hex);

// Two small hex digits for each byte.
std::string hex_of(std::string_view bytes);

// `length` bytes that count upwards from `first`.
std::string counting(std::size_t length, int first = 1);

std::string le32(std::uint32_t value);

// `text` cut or filled with zero bytes to `length`.
std::string filled(std::string text, std::size_t length);
