// The command `make_hex`. The output is truncated ahead of every check, so it
// exists and is empty after any failure.
#include <algorithm>
#include <array>
#include <fstream>
#include <span>

#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "driver/ground/numbers.h"
#include "tools/commands.h"
#include "tools/hex_lines.h"

namespace tova_fw_builder {

namespace {

constexpr std::size_t kWord = 4;
constexpr std::size_t kLongestLine = 16;

void write_lines(std::span<const std::uint8_t> bytes, std::size_t width,
                 std::string& text, std::ostream& out) {
  make_hex_lines(bytes, width, text);
  out << text;
}

}  // namespace

void make_hex_file(const std::string& input, const std::string& output,
                   const std::string& depth_text) {
  log_info("Creating hex file from: ", input);
  std::ofstream out = open_output(output);
  const std::int32_t depth = parse_signed(depth_text, 10);
  if (depth != 32 && depth != 64 && depth != 128) {
    // Reported, but no failure: the status stays 0. The line feed makes an
    // empty line in the log; users have come to rely on both.
    log_error("Unsupported hex file bit depth: ", depth, '\n');
    return;
  }
  const auto in = open_binary_input(input);
  const std::uint64_t words = file_length(*in, input) / kWord;
  const auto width = static_cast<std::size_t>(depth) / 8;
  std::string text;
  read_in_pieces(*in, words * kWord, [&](std::span<const std::uint8_t> bytes) {
    const std::size_t rest = bytes.size() % width;
    write_lines(bytes.first(bytes.size() - rest), width, text, out);
    // In the last piece alone: the others are whole pages.
    if (rest > 0) {
      std::array<std::uint8_t, kLongestLine> filled_up{};
      std::ranges::copy(bytes.last(rest), filled_up.begin());
      write_lines({filled_up.data(), width}, width, text, out);
    }
  });
}

}  // namespace tova_fw_builder
