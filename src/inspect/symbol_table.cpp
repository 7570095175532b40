// The symbol table. Its count has symbols without a record in it, and the names
// stand behind the records that there are, so where these end has to be found:
// each record carries the place of its name, and the names follow one another.
#include <algorithm>

#include "companion/ground/printable.h"
#include "image/records/binary_header.h"
#include "inspect/binary_tables.h"
#include "inspect/record_fields.h"

namespace tova_fw_builder {
namespace {

constexpr auto kBytes = Field::Shown::kBytes;
constexpr std::uint64_t kNumber = sizeof(Le32);
constexpr std::uint64_t kRecord = sizeof(SymbolRecord);

constexpr Column kSymbolColumns[] = {
    {"name", "name"},
    {"address", "address"},
    {"module", "module", true},
    {"segment", "segment", true},
};

// The table's bytes, as far as they are taken apart, and its places in them.
struct Table {
  std::uint64_t offset;    // in the file
  WipedBytes bytes;        // from there on
  std::uint64_t count;     // of exported symbols
  std::uint64_t records;   // that there are
  std::uint64_t names;     // place of the names' length
  std::uint64_t name_end;  // of the last name

  std::uint32_t word(std::uint64_t at) const {
    Le32 value;
    std::copy_n(bytes.data() + at, kNumber, reinterpret_cast<char*>(&value));
    return value;
  }
  std::uint64_t record_at(std::uint64_t i) const {
    return kNumber + i * kRecord;
  }
  // Of a record's name, counted from the first name.
  std::uint64_t name_place(std::uint64_t i) const {
    return word(record_at(i) + 4) - (count * kRecord + 2 * kNumber);
  }
  // The place of the zero behind a name.
  std::size_t end_of_name(std::uint64_t at) const {
    return view_of(bytes).find('\0', at);
  }
  bool has(std::uint64_t at, std::uint64_t length) const {
    return at <= bytes.size() && length <= bytes.size() - at;
  }
};

// How many records in a row carry rising places of names, from the first on.
std::uint64_t rising_records(const Table& table) {
  std::uint64_t i = 0;
  for (std::uint64_t last = 0; i < table.count; ++i) {
    if (!table.has(table.record_at(i), kRecord)) break;
    const std::uint64_t place = table.name_place(i);
    const bool fits = i == 0 ? place == 0 : place > last;
    if (table.bytes[table.record_at(i)] != 1 || !fits ||
        place >= table.bytes.size()) {
      break;
    }
    last = place;
  }
  return i;
}

// Whether exactly so many names of the right places follow so many records.
bool names_follow(const Table& table, std::uint64_t records) {
  const std::uint64_t length_at = table.record_at(records);
  if (!table.has(length_at, kNumber)) return false;
  const std::uint64_t length = table.word(length_at);
  if (!table.has(length_at + kNumber, length)) return false;
  std::uint64_t place = 0;
  for (std::uint64_t i = 0; i < records; ++i) {
    if (table.name_place(i) != place) return false;
    const std::uint64_t end = table.end_of_name(length_at + kNumber + place);
    if (end == std::string_view::npos) return false;
    place = end + 1 - length_at - kNumber;
  }
  return place == length;
}

// Finds where the records end. Two rising rows are tried: the length of the
// names may look like one more record. Of a damaged table, all that is counted.
void find_names(Table& table) {
  const std::uint64_t rising = rising_records(table);
  table.records =
      std::min(table.count, (table.bytes.size() - kNumber) / kRecord);
  for (std::uint64_t records = rising + 1; records-- > 0;) {
    if (records + 1 < rising) break;
    if (names_follow(table, records)) {
      table.records = records;
      break;
    }
  }
  table.names = table.record_at(table.records);
  table.name_end = table.names;
  if (table.has(table.names, kNumber)) {
    const std::uint64_t room = table.bytes.size() - table.names - kNumber;
    table.name_end +=
        kNumber + std::min<std::uint64_t>(table.word(table.names), room);
  }
}

// The name of a record with its zero, or an empty field.
Field decode_name(const Table& table, std::uint64_t i) {
  const std::uint64_t at =
      table.names + kNumber +
      std::min<std::uint64_t>(table.name_place(i), table.bytes.size());
  Field field = text_field("name", "");
  if (at >= table.name_end) {
    field.kind = Field::Kind::kNothing;
    return field;
  }
  const std::uint64_t end =
      std::min<std::uint64_t>(table.end_of_name(at), table.name_end);
  field.text = view_of(table.bytes).substr(at, end - at);
  return placed(std::move(field), table.offset + at,
                std::min(end + 1, table.name_end) - at);
}

Field byte_field(std::string_view name,
                 const RecordFields<SymbolRecord>& record,
                 const std::uint8_t& member) {
  return placed(number_field(name, member), record.place(member), 1);
}

Field decode_symbol(const ByteSource& source, const Table& table,
                    std::uint64_t i, Inspected& out) {
  const RecordFields<SymbolRecord> record(source,
                                          table.offset + table.record_at(i));
  const Field* owner =
      find(out.root, "modules[" + std::to_string(record->module) + ']');
  constexpr const char* kSegments[] = {"text", "rodata", "bss"};
  const bool in_segment = record->segment < std::size(kSegments);

  Field symbol = object_field("");
  symbol.add(decode_name(table, i));
  symbol.add(shown(byte_field("kind", record, record->kind), kBytes));
  symbol.add(noted(byte_field("module", record, record->module),
                   owner == nullptr ? "" : printable(text_at(*owner, "name"))));
  symbol.add(noted(record.number("segment", record->segment),
                   in_segment ? kSegments[record->segment] : ""));
  symbol.add(shown(record.number("name_offset", record->name_offset), kBytes));
  symbol.add(record.number("address", record->address, Field::Radix::kHex));
  if (record->kind != 1 || owner == nullptr || !in_segment ||
      symbol.members[0].kind == Field::Kind::kNothing) {
    add_problem(out, record.offset(),
                "a symbol's record points at no module, segment or name");
  }
  return symbol;
}

}  // namespace

std::uint64_t decode_symbol_table(const ByteSource& source,
                                  std::uint64_t offset, std::uint64_t limit,
                                  Inspected& out) {
  Field& symbols = out.root.add(list_field("symbols"));
  symbols.columns = kSymbolColumns;
  Table table{offset, source.bytes(offset, limit - std::min(offset, limit)),
              0,      0,
              0,      0};
  if (!table.has(0, kNumber)) {
    add_problem(out, out.length, "the file ends ahead of the symbol table");
    return std::min(offset, out.length);
  }
  table.count = table.word(0);
  find_names(table);
  if (!names_follow(table, table.records)) {
    add_problem(out, offset, "the symbol table is damaged or cut off");
  }
  Field list = list_field("symbols");
  for (std::uint64_t i = 0; i < table.records; ++i) {
    list.add(decode_symbol(source, table, i, out));
  }
  find(out.root, "symbols")->members = std::move(list.members);

  const std::uint64_t missing = table.count - table.records;
  Field& sizes = out.root.add(object_field("symbol_table", kBytes));
  sizes.add(placed(
      noted(number_field("count", table.count),
            missing == 0 ? "" : std::to_string(missing) + " without a record"),
      offset, kNumber));
  if (table.has(table.names, kNumber)) {
    sizes.add(placed(number_field("names_length", table.word(table.names)),
                     offset + table.names, kNumber));
  }
  return offset + table.name_end;
}

}  // namespace tova_fw_builder
