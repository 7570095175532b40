// memory_map/coverage.h
#pragma once

#include <cstdint>
#include <vector>

namespace tova_fw_builder {

// Addresses from `begin` to below `end`. 64 bits, since a section may reach
// beyond the last address there is.
struct Span {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

constexpr Span span_of(std::uint64_t address, std::uint64_t size) {
  return {address, address + size};
}

// The addresses that at least one of some spans covers.
class Coverage {
 public:
  explicit Coverage(std::vector<Span> spans);

  // How many of the addresses of `span` are covered.
  std::uint64_t count(Span span) const;

  // What of `span` isn't covered, in order.
  std::vector<Span> uncovered(Span span) const;

 private:
  struct Stretch {
    Span span;
    std::uint64_t covered_before;
  };
  std::uint64_t count_below(std::uint64_t address) const;

  std::vector<Stretch> stretches_;  // in order, none touches another
};

}  // namespace tova_fw_builder
