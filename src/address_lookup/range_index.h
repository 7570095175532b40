// address_lookup/range_index.h
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tova_fw_builder {

// Addresses from `begin` to ahead of `end`.
struct AddressRange {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;

  bool has(std::uint64_t address) const {
    return begin <= address && address < end;
  }
  bool has(const AddressRange& other) const {
    return begin <= other.begin && other.end <= end;
  }
};

// Ranges that may overlap, by their numbers. What it takes to find those of an
// address grows with how many they are, and hardly with how many there are.
class RangeIndex {
 public:
  RangeIndex() = default;
  explicit RangeIndex(const std::vector<AddressRange>& ranges);

  // The numbers of those that have the address, by their starts.
  std::vector<std::uint32_t> at(std::uint64_t address) const;

 private:
  struct Entry {
    AddressRange range;
    std::uint32_t number;
    std::uint64_t furthest;  // end of this one and all below it
  };

  static std::uint64_t note_furthest(std::span<Entry> span);
  static void find(std::span<const Entry> span, std::uint64_t address,
                   std::vector<std::uint32_t>& numbers);

  std::vector<Entry> entries_;
};

}  // namespace tova_fw_builder
