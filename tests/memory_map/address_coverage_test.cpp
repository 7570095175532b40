#include "memory_map/address_coverage.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace tova_fw_builder {
namespace {

std::string text_of(const std::vector<AddressSpan>& spans) {
  std::ostringstream text;
  for (const AddressSpan& span : spans)
    text << span.begin << '-' << span.end << ' ';
  return text.str();
}

TEST(AddressCoverage, EachAddressCountsOnce) {
  // Covered: 10 to 30, out of two that overlap and one inside; 40 to 60, out of
  // two that touch; 70. Nothing at 80.
  const AddressCoverage coverage(
      {{40, 50}, {10, 20}, {12, 14}, {15, 30}, {50, 60}, {80, 80}, {70, 71}});
  const struct {
    AddressSpan span;
    std::uint64_t covered;
    const char* uncovered;
  } kCases[] = {
      {{0, 100}, 41, "0-10 30-40 60-70 71-100 "},
      {{10, 30}, 20, ""},
      {{0, 10}, 0, "0-10 "},
      {{9, 11}, 1, "9-10 "},
      {{29, 41}, 2, "30-40 "},
      {{30, 40}, 0, "30-40 "},
      {{45, 55}, 10, ""},
      {{60, 71}, 1, "60-70 "},
      {{71, 90}, 0, "71-90 "},
      {{20, 20}, 0, ""},
      {{35, 35}, 0, ""},
      {{50, 40}, 0, ""},
      {{51, 50}, 0, ""},
  };
  for (const auto& item : kCases) {
    const std::string span = text_of({item.span});
    EXPECT_EQ(item.covered, coverage.count(item.span)) << span;
    EXPECT_EQ(item.uncovered, text_of(coverage.uncovered(item.span))) << span;
  }
}

TEST(AddressCoverage, ReachesBeyondTheLastAddress) {
  const AddressCoverage coverage({span_of(0xFFFFFFF0, 0x20)});
  EXPECT_EQ(0x10u, coverage.count({0, 0x100000000}));
  EXPECT_EQ(0x20u, coverage.count({0, 0x100000010}));
  EXPECT_EQ(0u, AddressCoverage({}).count({0, 0x100000010}));
  EXPECT_EQ("5-9 ", text_of(AddressCoverage({}).uncovered({5, 9})));
}

}  // namespace
}  // namespace tova_fw_builder
