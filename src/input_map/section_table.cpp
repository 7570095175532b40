// The section table. Each section stands on two lines, so the scanner is a
// small machine; its state is the map's `parse_state`. Easily misread: the end
// of the text counts as one more line, which can complete a section whose flag
// line is missing.
#include <algorithm>
#include <cmath>
#include <iomanip>
#include <stdexcept>
#include <string>
#include <utility>

#include "driver/ground/line_fields.h"
#include "driver/ground/line_reader.h"
#include "driver/ground/log.h"
#include "input_map/fw_image_map.h"

namespace tova_fw_builder {

namespace {

using Header = FwImageMap::SectionHeader;

enum State : std::uint32_t { kBeforeTable = 0, kEntryLine = 1, kFlagLine = 2 };

struct FlagWord {
  std::string_view word;
  std::string_view shown;  // in the log's row
  bool Header::*flag;
};

// In the order of the log's row.
constexpr FlagWord kFlagWords[] = {
    {"CONTENTS", "contents ", &Header::contents},
    {"ALLOC", "alloc ", &Header::alloc},
    {"LOAD", "load ", &Header::load},
    {"READONLY", "readonly ", &Header::readonly},
    {"CODE", "code ", &Header::code},
    {"DATA", "data ", &Header::data},
};

void log_table_head() {
  log_detail(std::left, std::setw(40), "NAME",
             "      VMA       LMA      SIZE  FILE OFF  FLAGS");
  log_detail(std::string(40, '-'),
             " --------  --------  --------  --------  ----------------");
}

void log_row(const Header& header) {
  if (log_level() < kLogDetail) return;
  LogLine line(kLogDetail);
  std::ostream& out = line.stream();
  out << std::left << std::setw(40) << header.name << ' ' << std::right
      << std::hex;
  for (const auto number :
       {header.vma, header.lma, header.size, header.file_offset}) {
    out << std::setw(8) << number << "  ";
  }
  for (const FlagWord& flag : kFlagWords) {
    if (header.*flag.flag) out << flag.shown;
  }
}

// Yields null for a line that is no entry.
std::shared_ptr<Header> read_entry(std::string_view line) {
  LineFields fields(line);
  const std::uint32_t index = fields.number(10);
  const std::string_view name = fields.word();
  // A number that failed leaves no name either.
  if (name.empty()) return nullptr;
  auto header = std::make_shared<Header>();
  header->name = name;
  header->index = index;
  header->size = fields.number(16);
  header->vma = fields.number(16);
  header->lma = fields.number(16);
  header->file_offset = fields.number(16);
  // After a column that is no number no word is left, and this one refuses the
  // line.
  header->alignment = parse_alignment(fields.word());
  return header;
}

void read_flags(Header& header, std::string_view line) {
  LineFields fields(line);
  for (auto word = fields.word(); !word.empty(); word = fields.word()) {
    if (word.back() == ',') word.remove_suffix(1);
    for (const FlagWord& flag : kFlagWords) {
      if (word == flag.word) header.*flag.flag = true;
    }
  }
}

}  // namespace

void read_section_table(FwImageMap& map, std::istream& table,
                        const std::shared_ptr<std::istream>& elf) {
  log_table_head();
  LineReader lines(table);
  std::shared_ptr<Header> header;
  std::string_view line;
  // Each table has a head of its own.
  map.parse_state = kBeforeTable;
  while (lines.next(line)) {
    switch (map.parse_state) {
      case kBeforeTable:
        if (LineFields(line).word() == "Idx") map.parse_state = kEntryLine;
        break;
      case kEntryLine:
        header = read_entry(line);
        if (header != nullptr) map.parse_state = kFlagLine;
        break;
      default:
        read_flags(*header, line);
        header->stream = elf;
        log_row(*header);
        map.add_section(std::exchange(header, nullptr));
        map.parse_state = kEntryLine;
    }
  }
  log_detail();
}

std::uint32_t parse_alignment(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789";
  constexpr double kTwoTo63 = 9223372036854775808.0;
  std::uint32_t numbers[2];
  for (std::uint32_t& number : numbers) {
    text.remove_prefix(std::min(text.find_first_of(kDigits), text.size()));
    if (text.empty()) {
      // The spelling stays: users search for it.
      throw std::runtime_error("Not recognizeg alignment specified");
    }
    const auto end = std::min(text.find_first_not_of(kDigits), text.size());
    number = LineFields(text.substr(0, end)).number(10);
    text.remove_prefix(end);
  }
  // Not in integers: rounding and limits are then those that images were made
  // with.
  const double power = std::pow(numbers[0], numbers[1]);
  // A plain cast of a larger number is undefined.
  if (power >= kTwoTo63) return 0;
  return static_cast<std::uint32_t>(static_cast<std::uint64_t>(power));
}

}  // namespace tova_fw_builder
