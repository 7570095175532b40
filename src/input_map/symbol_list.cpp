// The symbol list. The one thing to know: a field ends where the next can
// begin, so "10000000T" and "1000 Tname" are read, and "abc" is an address.
//
// A list has up to millions of names, in any order. Put into the map one by
// one, each would search its place among nodes scattered in memory; sorting
// small records first and filling the map from left to right takes a third of
// the time.
#include "input_map/symbol_list.h"

#include <algorithm>
#include <memory_resource>
#include <string_view>
#include <vector>

#include "driver/files.h"
#include "driver/log.h"
#include "input_map/buffered_lines.h"
#include "input_map/line_fields.h"

namespace tova_fw_builder {

namespace {

struct ListedSymbol {
  std::string_view name;
  std::uint32_t address;
  char type;
};

using Arena = std::pmr::monotonic_buffer_resource;

std::string_view copy_into(Arena& arena, std::string_view text) {
  char* const copy = static_cast<char*>(arena.allocate(text.size(), 1));
  return {copy, text.copy(copy, text.size())};
}

// The symbols in the order of their lines, with names in `arena`.
std::vector<ListedSymbol> read_lines(std::istream& in, Arena& arena) {
  BufferedLines lines(in);
  std::vector<ListedSymbol> listed;
  std::string_view line;
  while (lines.next(line)) {
    LineFields fields(line);
    const std::uint32_t address = fields.number(16);
    const char type = fields.character();
    const std::string_view name = fields.word();
    if (!fields.failed()) {
      listed.push_back({copy_into(arena, name), address, type});
    }
  }
  return listed;
}

}  // namespace

FwImageMap::SymbolMap read_symbols(const std::string& path) {
  const auto in = open_input(path);
  Arena arena;
  std::vector<ListedSymbol> listed = read_lines(*in, arena);
  std::stable_sort(listed.begin(), listed.end(),
                   [](const ListedSymbol& a, const ListedSymbol& b) {
                     return a.name < b.name;
                   });
  FwImageMap::SymbolMap symbols;
  for (const auto& [name, address, type] : listed) {
    const std::string text(name);
    symbols.insert_or_assign(symbols.end(), text,
                             FwImageMap::Symbol{true, type, address, text});
  }
  if (log_level() >= kLogInfo) {
    LogLine(kLogInfo).stream()
        << "Loaded " << symbols.size() << " symbols from file: " << path;
  }
  return symbols;
}

}  // namespace tova_fw_builder
