// memory_map/address_coverage.h
#pragma once

#include <cstdint>
#include <vector>

namespace tova_fw_builder {

// Addresses from `begin` to below `end`. 64 bits, since a section may reach
// beyond the last address there is.
struct AddressSpan {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

constexpr AddressSpan span_of(std::uint64_t address, std::uint64_t size) {
  return {address, address + size};
}

// The addresses that at least one of some spans covers.
class AddressCoverage {
 public:
  explicit AddressCoverage(std::vector<AddressSpan> spans);

  // How many of the addresses of `span` are covered.
  std::uint64_t count(AddressSpan span) const;

  // What of `span` isn't covered, in order.
  std::vector<AddressSpan> uncovered(AddressSpan span) const;

 private:
  struct Stretch {
    AddressSpan span;
    std::uint64_t covered_before;
  };
  std::uint64_t count_below(std::uint64_t address) const;

  std::vector<Stretch> stretches_;  // in order, none touches another
};

}  // namespace tova_fw_builder
