// The name spaces of sections and symbols, and the passes over them.
#include "input_map/fw_image_map.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "driver/ground/files.h"
#include "driver/ground/log.h"

namespace tova_fw_builder {

namespace {

void check_size(const FwImageMap::SectionHeader& header, std::uint64_t limit) {
  if (header.size <= limit) return;
  std::ostringstream text;
  text << header.name << " size " << std::hex << header.size
       << " > max_allowed_size " << limit;
  throw std::runtime_error(text.str());
}

// The symbols of both; of a name in both, the one in `first`.
FwImageMap::SymbolMap join(const FwImageMap::SymbolMap& first,
                           const FwImageMap::SymbolMap& second) {
  FwImageMap::SymbolMap joined;
  using Entry = FwImageMap::SymbolMap::Entry;
  // Of equal names it takes the one of the first range.
  std::ranges::set_union(first.entries, second.entries,
                         std::back_inserter(joined.entries), {}, &Entry::name,
                         &Entry::name);
  for (Entry& entry : joined.entries) entry.name = joined.keep(entry.name);
  return joined;
}

}  // namespace

// The order of the steps shows when one of them fails: the tables are opened
// ahead of the symbols.
void FwImageMap::read_image_map(const std::string& memmap_path,
                                const std::string& elf_path,
                                const std::string& nm_path) {
  log_detail("Reading FW Image Map...");
  log_detail("  Memmap: ", memmap_path);
  log_detail("  ELF   : ", elf_path);
  log_detail("  NM    : ", nm_path);
  const auto table = open_input(memmap_path);
  const std::shared_ptr<std::istream> elf = open_binary_input(elf_path);
  merge_symbols(read_symbols(nm_path));
  read_section_table(*this, *table, elf);
}

void FwImageMap::add_section(std::shared_ptr<SectionHeader> header) {
  const auto [place, is_new] = sections.try_emplace(header->name, header);
  if (is_new) return;
  // The later one decides, whatever the first is: its bytes would be lost.
  if (header->load) {
    throw std::runtime_error("Duplicated section found: " + header->name);
  }
  log_info("Duplicated non-loadable section found: ", header->name);
}

void FwImageMap::add_stream_section(const std::string& name,
                                    std::shared_ptr<std::istream> stream) {
  auto header = std::make_shared<SectionHeader>();
  header->name = name;
  header->index = std::numeric_limits<std::uint32_t>::max();
  header->alignment = 0;
  stream->seekg(0, std::ios_base::end);
  header->size = static_cast<std::uint32_t>(stream->tellg());
  header->stream = std::move(stream);
  // Ahead of the ELFs: what one of them lists under that name is the duplicate.
  sections[name] = std::move(header);
}

std::shared_ptr<FwImageMap::SectionHeader> FwImageMap::find_section(
    const std::string& name) const {
  const auto place = sections.find(name);
  return place == sections.end() ? nullptr : place->second;
}

FwImageMap::Symbol FwImageMap::find_symbol(const std::string& name) const {
  for (const SymbolMap& table : symbols) {
    const auto place = std::ranges::lower_bound(table.entries, name, {},
                                                &SymbolMap::Entry::name);
    if (place != table.entries.end() && place->name == name) {
      return {true, place->type, place->address, name};
    }
  }
  return {};
}

std::string_view FwImageMap::SymbolMap::keep(std::string_view text) const {
  char* const copy = static_cast<char*>(texts->allocate(text.size(), 1));
  return {copy, text.copy(copy, text.size())};
}

// Joining all tables each time would copy what is there for each ELF; leaving
// all apart would keep a name as often as lists have it.
void FwImageMap::merge_symbols(SymbolMap&& from) {
  while (!symbols.empty() &&
         symbols.back().entries.size() <= 2 * from.entries.size()) {
    from = join(symbols.back(), from);
    symbols.pop_back();
  }
  if (!from.entries.empty()) symbols.push_back(std::move(from));
}

void FwImageMap::check_section_size(const std::string& name,
                                    std::uint64_t limit) const {
  const auto place = sections.find(name);
  if (place != sections.end()) check_size(*place->second, limit);
}

void FwImageMap::check_suffix_size(const std::string& suffix,
                                   std::uint64_t limit) const {
  for (const auto& [name, header] : sections) {
    if (name.ends_with(suffix)) check_size(*header, limit);
  }
}

void FwImageMap::warn_unreferenced() const {
  for (const auto& [name, header] : sections) {
    // Whoever bound a section still holds it, and only look-ups bind.
    if (!header->load || header.use_count() != 1) continue;
    log_warning("Unreferenced loadable section ", name);
  }
}

}  // namespace tova_fw_builder
