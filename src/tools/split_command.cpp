// The command `split`. It works on pairs of words, one for each bank; a pair
// cut short by the end of the input is filled up with zero.
#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <span>
#include <vector>

#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "tools/commands.h"
#include "tools/hex_lines.h"

namespace tova_fw_builder {

namespace {

constexpr std::size_t kWord = 8;
constexpr std::size_t kPair = 2 * kWord;

struct Bank {
  std::ofstream hex;
  std::ofstream bin = {};
  std::vector<std::uint8_t> words = {};
  std::string text = {};
};

void write_bank(Bank& bank) {
  make_hex_lines(bank.words, kWord, bank.text);
  bank.hex << bank.text;
  write_bytes(bank.bin, bank.words);
}

void deal(std::span<const std::uint8_t> bytes, Bank& a, Bank& b) {
  const std::size_t pairs = (bytes.size() + kPair - 1) / kPair;
  a.words.resize(pairs * kWord);
  b.words.resize(pairs * kWord);
  const std::size_t whole = bytes.size() / kPair;
  for (std::size_t i = 0; i < whole; ++i) {
    const std::uint8_t* pair = &bytes[i * kPair];
    std::memcpy(&a.words[i * kWord], pair, kWord);
    std::memcpy(&b.words[i * kWord], pair + kWord, kWord);
  }
  // In the last piece alone: the others are whole pages.
  if (whole < pairs) {
    std::array<std::uint8_t, kPair> filled_up{};
    std::ranges::copy(bytes.subspan(whole * kPair), filled_up.begin());
    std::memcpy(&a.words[whole * kWord], filled_up.data(), kWord);
    std::memcpy(&b.words[whole * kWord], &filled_up[kWord], kWord);
  }
  write_bank(a);
  write_bank(b);
}

}  // namespace

void split_binary(const std::string& input, const std::string& name_a,
                  const std::string& name_b) {
  // The spelling stays: build systems look for this line.
  log_info("Spliting binary file: ", input);
  // Ahead of the input: no output of an earlier run outlives a failure. In this
  // order, which shows where the system opens no more files.
  Bank a{open_output(name_a + ".hex")};
  Bank b{open_output(name_b + ".hex")};
  a.bin = open_output(name_a + ".bin");
  b.bin = open_output(name_b + ".bin");
  const auto in = open_binary_input(input);
  const std::uint64_t length = file_length(*in, input);
  const std::uint64_t words = length / kWord;
  // An odd count leaves a word of the second bank to the bytes behind the last
  // whole one; an even count drops them.
  const std::uint64_t used = std::min(length, (words + words % 2) * kWord);
  read_in_pieces(*in, used, [&](std::span<const std::uint8_t> bytes) {
    deal(bytes, a, b);
  });
}

}  // namespace tova_fw_builder
