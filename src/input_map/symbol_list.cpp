// The symbol list. The one thing to know: a field ends where the next can
// begin, so "10000000T" and "1000 Tname" are read, and "abc" is an address.
#include "input_map/symbol_list.h"

#include <string_view>

#include "driver/files.h"
#include "driver/log.h"
#include "input_map/buffered_lines.h"
#include "input_map/line_fields.h"

namespace tova_fw_builder {

FwImageMap::SymbolMap read_symbols(const std::string& path) {
  const auto in = open_input(path);
  BufferedLines lines(*in);
  FwImageMap::SymbolMap symbols;
  std::string_view line;
  while (lines.next(line)) {
    LineFields fields(line);
    const std::uint32_t address = fields.number(16);
    const char type = fields.character();
    const std::string_view name = fields.word();
    if (fields.failed()) continue;
    // Lists are sorted by name as a rule, so that the end is the right place.
    symbols.insert_or_assign(
        symbols.end(), std::string(name),
        FwImageMap::Symbol{true, type, address, std::string(name)});
  }
  if (log_level() >= kLogInfo) {
    LogLine(kLogInfo).stream()
        << "Loaded " << symbols.size() << " symbols from file: " << path;
  }
  return symbols;
}

}  // namespace tova_fw_builder
