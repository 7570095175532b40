// The table of exported symbols. It closes with the names, while each record
// tells where its name will stand.
#include <optional>
#include <string>

#include "driver/ground/log.h"
#include "driver/ground/wire.h"
#include "image/binary_header.h"

namespace tova_fw_builder {

namespace {

constexpr std::uint32_t kNumberSize = 4;  // of the count and strings length

// Wraps at 32 bits: a segment that reaches up to 4 GiB holds no symbol.
bool contains(const SegmentRecord& segment, std::uint32_t address) {
  // A slot not in use has no pages, so it holds nothing.
  const std::uint32_t end = segment.vma + segment.pages() * kPageSize;
  return segment.vma <= address && address < end;
}

// The record of a symbol but for its name.
std::optional<SymbolRecord> place_symbol(std::uint32_t address,
                                         std::span<const ModuleEntry> entries) {
  for (std::size_t module = 0; module < entries.size(); ++module) {
    const auto& segments = entries[module].segments;
    for (std::size_t slot = 0; slot < segments.size(); ++slot) {
      if (contains(segments[slot], address)) {
        SymbolRecord record;
        // The field has the low 8 bits of the index.
        record.module = static_cast<std::uint8_t>(module);
        record.segment = static_cast<std::uint16_t>(slot);
        record.address = address;
        return record;
      }
    }
  }
  return std::nullopt;
}

}  // namespace

void write_symbol_table(std::ostream& stream,
                        std::span<const FwImageMap::Symbol> symbols,
                        std::span<const ModuleEntry> entries) {
  // A skipped symbol stays in the count and in the base of the name offsets:
  // readers in the field expect that.
  const auto count = static_cast<std::uint32_t>(symbols.size());
  const std::uint32_t names_base =
      count * std::uint32_t{sizeof(SymbolRecord)} + 2 * kNumberSize;
  write_record(stream, Le32(count));
  std::string names;
  for (const FwImageMap::Symbol& symbol : symbols) {
    auto record = place_symbol(symbol.address, entries);
    if (!record) {
      log_warning("Cannot match symbol << ", symbol.name,
                  " to segment, skipping");
      continue;
    }
    record->name_offset = static_cast<std::uint32_t>(names.size()) + names_base;
    write_record(stream, *record);
    names += symbol.name;
    names += '\0';
  }
  write_record(stream, Le32(static_cast<std::uint32_t>(names.size())));
  stream << names;
  log_info("Exported ", count, " symbols");
}

}  // namespace tova_fw_builder
