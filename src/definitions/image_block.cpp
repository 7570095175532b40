// The top-level statements. Numbers that go through the signed conversion
// can't exceed 7FFFFFFF, and -1 stands for all ones.
#include "definitions/image_block.h"

#include <algorithm>
#include <utility>

#include "definitions/inner_blocks.h"
#include "driver/ground/log.h"

namespace tova_fw_builder {

namespace {

struct ImageBlock {
  FwOutMap& map;
  StatementLines& lines;
};

void read_binary_name(ImageBlock& block, Statement& statement) {
  const auto name = statement.next_operand();
  // `binary_name` alone keeps an earlier name.
  if (!name.empty()) block.map.binary_name = name;
}

void read_binary_ver(ImageBlock& block, Statement& statement) {
  const auto* const found = std::ranges::find(
      kGenerations, statement.next_word(), &GenerationWord::word);
  if (found == std::end(kGenerations)) {
    throw CfgFileError(block.lines.number(), "binary_ver",
                       "Unknown binary version");
  }
  block.map.binary_ver = found->binary_ver;
}

template <std::uint32_t FwOutMap::*Field>
void read_signed(ImageBlock& block, Statement& statement) {
  block.map.*Field = static_cast<std::uint32_t>(statement.next_signed(16));
}

void read_hw_buf_ba(ImageBlock& block, Statement& statement) {
  block.map.hw_buf_ba = statement.next_unsigned(16);
}

// The sign is carried into the upper half: -1 means no limit.
void read_max_data(ImageBlock& block, Statement& statement) {
  block.map.max_data =
      static_cast<std::uint64_t>(std::int64_t{statement.next_signed(16)});
}

void read_dyn_mem(ImageBlock& block, Statement& statement) {
  auto section = std::make_unique<FwOutMap::Section>();
  section->name = statement.next_word();
  block.map.dyn_mem.push_back(std::move(section));
}

void read_ignore(ImageBlock& block, Statement& statement) {
  block.map.ignore.emplace_back(statement.next_word());
}

void read_memory_class(ImageBlock& block, Statement& statement) {
  FwOutMap::MemoryClass memory;
  memory.name = statement.next_word();
  memory.base = statement.next_unsigned(16);
  memory.size = statement.next_unsigned(16);
  // May wrap: a class that reaches to the end of the 4 GiB counts nothing.
  memory.end = memory.base + memory.size;
  block.map.memory_classes.push_back(std::move(memory));
}

void read_module_statement(ImageBlock& block, Statement& statement) {
  auto module = open_module(statement);
  read_module(block.map, block.lines, *module);
  block.map.modules.push_back(std::move(module));
}

constexpr StatementRow<ImageBlock> kImageStatements[] = {
    {"binary_name", read_binary_name},
    {"binary_ver", read_binary_ver},
    {"load_offset", read_signed<&FwOutMap::load_offset>},
    {"hw_buf_ba", read_hw_buf_ba},
    {"hw_buf_size", read_signed<&FwOutMap::hw_buf_size>},
    {"max_data", read_max_data},
    {"dyn_mem", read_dyn_mem},
    {"ignore", read_ignore},
    {"memory_class", read_memory_class},
    {"module", read_module_statement},
};

}  // namespace

void read_image_layout(FwOutMap& map, std::unique_ptr<std::iostream> stream,
                       std::vector<BlockStep>* steps) {
  log_detail("Reading FW Image Layout (ROM mode ", map.rom_mode ? "On" : "Off",
             ")...");
  StatementLines lines(*stream, steps);
  ImageBlock block{map, lines};
  read_block(lines, [&block](Statement& statement) {
    if (carry_out(kImageStatements, block, statement)) return true;
    throw CfgFileError(block.lines.number(), statement.word(),
                       "Unknown parameter");
  });
}

std::vector<std::string_view> statement_keys(BlockKind block) {
  if (block == BlockKind::kModule) return module_keys();
  if (block == BlockKind::kGroup) return group_keys();
  if (block == BlockKind::kPin) return pin_keys();
  return keys_of(kImageStatements);
}

}  // namespace tova_fw_builder
