#include "address_lookup/owner_forms.h"

#include <array>
#include <cstdio>
#include <string>

#include "companion/ground/message_text.h"

namespace tova_fw_builder {
namespace {

std::string address_text(std::uint32_t address) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "0x%08x",
                static_cast<unsigned>(address));
  return text.data();
}

// "NAME+0x4c"; of a file "NAME@0x4c".
std::string offset_text(const NamedOffset& place, char between) {
  if (place.name.empty()) return "-";
  return printable(place.name) + between + hex_number(place.offset);
}

void add(Json& json, const char* name, const char* offset_name,
         const NamedOffset& place) {
  if (place.name.empty()) return;
  json[name] = place.name;
  json[offset_name] = place.offset;
}

}  // namespace

void print_owners(std::ostream& out, const AddressLookup& lookup,
                  std::uint32_t address,
                  const std::vector<AddressOwner>& owners) {
  if (owners.empty()) {
    out << address_text(address) << "  belongs to nothing\n";
  }
  for (const AddressOwner& owner : owners) {
    out << address_text(address) << "  "
        << (owner.module.empty() ? "-" : printable(owner.module)) << "  "
        << offset_text(
               owner.section.name.empty() ? owner.segment : owner.section, '+');
    if (lookup.knows_elfs()) out << "  " << offset_text(owner.symbol, '+');
    if (lookup.knows_files()) out << "  " << offset_text(owner.file, '@');
    out << '\n';
  }
}

Json owners_json(std::uint32_t address,
                 const std::vector<AddressOwner>& owners) {
  Json list = Json::array();
  for (const AddressOwner& owner : owners) {
    Json json = Json::object();
    if (!owner.module.empty()) json["module"] = owner.module;
    add(json, "segment", "segment_offset", owner.segment);
    add(json, "section", "section_offset", owner.section);
    if (!owner.elf.empty()) json["elf"] = owner.elf;
    add(json, "symbol", "symbol_offset", owner.symbol);
    add(json, "file", "file_offset", owner.file);
    list.push_back(std::move(json));
  }
  return {{"address", address}, {"owners", std::move(list)}};
}

}  // namespace tova_fw_builder
