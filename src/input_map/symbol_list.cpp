// The symbol list. The one thing to know: a field ends where the next can
// begin, so "10000000T" and "1000 Tname" are read, and "abc" is an address.
//
// A list has up to millions of names, in any order. Filling a tree of strings
// takes seconds, nearly all of them spent waiting for memory; so does sorting
// an array by its names, each comparison of which fetches two of them. Here
// eight characters of each name are fetched into the array and sorted there,
// then the next eight among those that are equal so far.
#include <algorithm>
#include <span>
#include <string_view>

#include "driver/ground/files.h"
#include "driver/ground/line_fields.h"
#include "driver/ground/line_reader.h"
#include "driver/ground/log.h"
#include "input_map/fw_image_map.h"

namespace tova_fw_builder {

namespace {

constexpr std::size_t kChunk = 8;

struct ListedSymbol {
  FwImageMap::SymbolMap::Entry entry;
  std::size_t line = 0;
  std::uint64_t chunk = 0;  // kChunk characters of the name
};

// No plain function: the sort would call it instead of taking it in.
constexpr auto kComesBefore = [](const ListedSymbol& a, const ListedSymbol& b) {
  return a.chunk != b.chunk ? a.chunk < b.chunk : a.line < b.line;
};

// Orders like the characters; zero behind the end, since no name has a NUL.
std::uint64_t chunk_at(std::string_view name, std::size_t start) {
  std::uint64_t chunk = 0;
  for (std::size_t i = start; i < start + kChunk; ++i) {
    chunk <<= 8;
    if (i < name.size()) chunk |= static_cast<unsigned char>(name[i]);
  }
  return chunk;
}

// Sorts by name, and by line among equals. The names are equal up to `start`.
void sort_from(std::span<ListedSymbol> listed, std::size_t start) {
  for (ListedSymbol& symbol : listed) {
    symbol.chunk = chunk_at(symbol.entry.name, start);
  }
  // Lists are in order already as a rule.
  if (!std::ranges::is_sorted(listed, kComesBefore)) {
    std::ranges::sort(listed, kComesBefore);
  }
  while (!listed.empty()) {
    const ListedSymbol& first = listed.front();
    std::size_t equal = 1;
    while (equal < listed.size() && listed[equal].chunk == first.chunk) ++equal;
    const bool has_ended = first.entry.name.size() < start + kChunk;
    if (equal > 1 && !has_ended) sort_from(listed.first(equal), start + kChunk);
    listed = listed.subspan(equal);
  }
}

}  // namespace

void for_each_symbol(std::istream& in, const TakeSymbol& take) {
  LineReader lines(in);
  std::string_view line;
  while (lines.next(line)) {
    LineFields fields(line);
    const std::uint32_t address = fields.number(16);
    const char type = fields.character();
    const std::string_view name = fields.word();
    // A field that failed fails all behind it.
    if (!fields.failed()) take({name, address, type});
  }
}

FwImageMap::SymbolMap read_symbols(std::istream& in) {
  FwImageMap::SymbolMap symbols;
  std::vector<ListedSymbol> listed;
  for_each_symbol(in, [&](const FwImageMap::SymbolMap::Entry& read) {
    listed.push_back({read, listed.size()});
    listed.back().entry.name = symbols.keep(read.name);
  });
  sort_from(listed, 0);
  symbols.entries.reserve(listed.size());
  for (const ListedSymbol& symbol : listed) {
    auto& entries = symbols.entries;
    const bool again =
        !entries.empty() && entries.back().name == symbol.entry.name;
    if (again) entries.pop_back();  // the last line of a name counts
    entries.push_back(symbol.entry);
  }
  return symbols;
}

FwImageMap::SymbolMap read_symbols(const std::string& path) {
  FwImageMap::SymbolMap symbols = read_symbols(*open_input(path));
  log_info("Loaded ", symbols.entries.size(), " symbols from file: ", path);
  return symbols;
}

}  // namespace tova_fw_builder
