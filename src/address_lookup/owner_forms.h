// address_lookup/owner_forms.h
// The owners of an address as text and as JSON.
#pragma once

#include <ostream>
#include <vector>

#include "address_lookup/address_lookup.h"
#include "companion/ground/json.h"

namespace tova_fw_builder {

// A line for each owner, or one that says that there is none: address, module,
// section or else segment, and, where the lookup knows them, symbol and place
// in the file. "-" stands for what isn't known or doesn't exist.
void print_owners(std::ostream& out, const AddressLookup& lookup,
                  std::uint32_t address,
                  const std::vector<AddressOwner>& owners);

// {address, owners}; an owner has no member for what isn't known.
Json owners_json(std::uint32_t address,
                 const std::vector<AddressOwner>& owners);

}  // namespace tova_fw_builder
