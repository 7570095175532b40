// Pin blocks. A list without numbers converts its own key: most keys fail as
// numbers, but `channel_cfg` alone sets the bits of its "c".
#include "definitions/inner_blocks.h"

namespace tova_fw_builder {

namespace {

struct PinBlock {
  FwOutMap::Pin& pin;
  const StatementLines& lines;
};

// The end is tested before each word is read, so the blank behind the last
// number has that number ORed in twice.
std::uint32_t next_bits(Statement& statement) {
  std::uint32_t bits = 0;
  while (!statement.at_end()) {
    bits |= static_cast<std::uint32_t>(statement.next_signed(16));
  }
  return bits;
}

void read_stream_type(PinBlock& block, Statement& statement) {
  const auto value = static_cast<std::uint32_t>(statement.next_signed(16));
  // Catches negative numbers, too, as they are unsigned by now.
  if (value > 0xFF) {
    throw CfgFileError(block.lines.number(), statement.word(),
                       "Not recognized stream type");
  }
  block.pin.stream_type = value;
}

template <Le32 FwOutMap::Pin::*Field>
void add_bits(PinBlock& block, Statement& statement) {
  Le32& field = block.pin.*Field;
  field = field | next_bits(statement);
}

// Only the low 16 bits of each number count.
void add_sample_sizes(PinBlock& block, Statement& statement) {
  Le16& field = block.pin.sample_sizes;
  field = static_cast<std::uint16_t>(field | next_bits(statement));
}

constexpr StatementRow<PinBlock> kPinStatements[] = {
    {"stream_type", read_stream_type},
    {"sample_rates", add_bits<&FwOutMap::Pin::sample_rates>},
    {"sample_sizes", add_sample_sizes},
    {"sample_containers", add_bits<&FwOutMap::Pin::sample_containers>},
    {"channel_cfg", add_bits<&FwOutMap::Pin::channel_cfg>},
};

}  // namespace

FwOutMap::Pin open_pin(Statement& statement) {
  FwOutMap::Pin pin;
  pin.pin_flag = static_cast<std::uint16_t>(statement.next_signed(16) & 1);
  return pin;
}

void read_pin(StatementLines& lines, FwOutMap::Pin& pin) {
  PinBlock block{pin, lines};
  read_block(lines, [&block](Statement& statement) {
    return carry_out(kPinStatements, block, statement);
  });
}

std::vector<std::string_view> pin_keys() { return keys_of(kPinStatements); }

}  // namespace tova_fw_builder
