#include "inspect/field.h"

#include <gtest/gtest.h>

#include "inspect/coverage.h"
#include "inspect/date_text.h"

namespace tova_fw_builder {
namespace {

TEST(Field, PathsLeadToFields) {
  Field root = object_field("");
  Field& list = root.add(list_field("modules"));
  list.add(object_field("")).add(number_field("vma", 7));
  list.add(object_field("")).add(text_field("name", "x"));
  const struct {
    const char* path;
    bool found;
  } cases[] = {
      {"", true},
      {"modules", true},
      {"modules[0].vma", true},
      {"modules[1].name", true},
      {"modules[1].vma", false},
      {"modules[2]", false},
      {"modules[0", false},
      {"modules[]", false},
      {"modules[-1]", false},
      {"modules[99999999999999999999999]", false},
      {"modules.", false},
      {"modules[0]vma", false},
      {"modules[0].vma.x", false},
      {"[0]", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.found, find(root, c.path) != nullptr) << c.path;
  }
  EXPECT_EQ(7u, number_at(root, "modules[0].vma"));
  EXPECT_EQ(9u, number_at(root, "modules[1].name", 9));
}

TEST(Field, DatesOfTheCalendarAlone) {
  EXPECT_EQ("29 February 2024", date_text(0x20240229));
  EXPECT_EQ("1 January 2027", date_text(0x20270101));
  for (const std::uint32_t none :
       {0x20230229u, 0x20241301u, 0x20240100u, 0x2024010Au, 0x00000000u}) {
    EXPECT_EQ("", date_text(none)) << std::hex << none;
  }
}

std::string text_of(const std::vector<Span>& spans) {
  std::string text;
  for (const Span span : spans) {
    text +=
        std::to_string(span.offset) + '+' + std::to_string(span.length) + ' ';
  }
  return text;
}

TEST(Coverage, EachByteIsTakenOnce) {
  Coverage coverage(100);
  const struct {
    Span span;
    const char* taken;
  } steps[] = {
      {{10, 10}, "10+10 "},    {{20, 5}, "20+5 "}, {{40, 10}, "40+10 "},
      {{5, 40}, "5+5 25+15 "}, {{12, 3}, ""},      {{90, 50}, "90+10 "},
      {{100, 1}, ""},          {{60, 0}, ""},      {{95, ~0ull}, ""},
      {{50, 1}, "50+1 "},
  };
  for (const auto& step : steps) {
    EXPECT_EQ(step.taken, text_of(coverage.take(step.span)));
  }
  EXPECT_EQ("0+5 51+39 ", text_of(coverage.gaps()));
}

}  // namespace
}  // namespace tova_fw_builder
