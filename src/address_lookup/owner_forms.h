// address_lookup/owner_forms.h
// The owners of an address as text and as JSON.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "address_lookup/address_lookup.h"

namespace tova_fw_builder {

// A line for each owner, or one that says that there is none: address, module,
// section or else segment, and, where the lookup knows them, symbol and place
// in the file. "-" stands for what isn't known or doesn't exist.
void print_owners(std::ostream& out, const AddressLookup& lookup,
                  std::uint32_t address,
                  const std::vector<AddressOwner>& owners);

// {address, owners} as an entry of a list in the document, from its first brace
// to its last; an owner has no member for what isn't known. Written as text,
// since a log may have millions of addresses.
std::string owners_json(std::uint32_t address,
                        const std::vector<AddressOwner>& owners);

}  // namespace tova_fw_builder
