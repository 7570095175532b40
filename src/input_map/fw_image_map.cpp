// The name spaces of sections and symbols, and the passes over them.
#include "input_map/fw_image_map.h"

#include <algorithm>
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
