#include "address_lookup/owner_forms.h"

#include <string>
#include <string_view>

#include "companion/ground/json.h"
#include "companion/ground/message_text.h"
#include "companion/ground/printable.h"

namespace tova_fw_builder {
namespace {

std::string address_text(std::uint32_t address) {
  return "0x" + eight_digits(address);
}

// "NAME+0x4c"; of a file "NAME@0x4c".
void add_place(std::string& line, const NamedOffset& place, char between) {
  line += "  ";
  if (place.name.empty()) {
    line += '-';
    return;
  }
  line += printable(place.name);
  line += between;
  line += hex_number(place.offset);
}

void add_member(std::string& json, std::string_view name,
                std::string_view value) {
  json += json.back() == '{' ? "\n" : ",\n";
  json.append("          \"").append(name).append("\": ").append(value);
}

void add_place(std::string& json, std::string_view name,
               const NamedOffset& place) {
  if (place.name.empty()) return;
  add_member(json, name, json_string(place.name));
  add_member(json, std::string(name) += "_offset",
             std::to_string(place.offset));
}

}  // namespace

void print_owners(std::ostream& out, const AddressLookup& lookup,
                  std::uint32_t address,
                  const std::vector<AddressOwner>& owners) {
  const std::string start = address_text(address) + "  ";
  if (owners.empty()) out << start + "belongs to nothing\n";
  for (const AddressOwner& owner : owners) {
    std::string line = start;
    line += owner.module.empty() ? "-" : printable(owner.module);
    add_place(line, owner.section.name.empty() ? owner.segment : owner.section,
              '+');
    if (lookup.knows_elfs()) add_place(line, owner.symbol, '+');
    if (lookup.knows_files()) add_place(line, owner.file, '@');
    out << line + '\n';
  }
}

std::string owners_json(std::uint32_t address,
                        const std::vector<AddressOwner>& owners) {
  std::string json = "{\n      \"address\": " + std::to_string(address) +
                     ",\n      \"owners\": [";
  for (const AddressOwner& owner : owners) {
    json += json.back() == '[' ? "\n        {" : ",\n        {";
    if (!owner.module.empty()) {
      add_member(json, "module", json_string(owner.module));
    }
    add_place(json, "segment", owner.segment);
    add_place(json, "section", owner.section);
    if (!owner.elf.empty()) add_member(json, "elf", json_string(owner.elf));
    add_place(json, "symbol", owner.symbol);
    add_place(json, "file", owner.file);
    json += "\n        }";
  }
  return json += owners.empty() ? "]\n    }" : "\n      ]\n    }";
}

}  // namespace tova_fw_builder
