#include "inspect/field.h"

#include <gtest/gtest.h>

#include "companion/ground/message_text.h"
#include "inspect/coverage.h"
#include "inspect/dates.h"

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

// A file's bytes mustn't steer the terminal; names in UTF-8 stay readable.
TEST(Field, NothingSteersTheTerminal) {
  const struct {
    const char* text;
    const char* printed;
  } cases[] = {
      {"a b~", "a b~"},
      {"\x1b[2J\x7f\n", "\\x1b[2J\\x7f\\x0a"},
      {"Gr\xc3\xb6\xc3\x9f"
       "e",
       "Gr\xc3\xb6\xc3\x9f"
       "e"},
      {"\xf0\x9f\x94\x8a", "\xf0\x9f\x94\x8a"},
      {"\xc2\x9b"
       "2J",
       "\\xc2\\x9b"
       "2J"},                                        // the C1 form of ESC [
      {"\xc3", "\\xc3"},                             // cut off
      {"\xc0\xaf", "\\xc0\\xaf"},                    // overlong
      {"\xe0\x80\xaf", "\\xe0\\x80\\xaf"},           //
      {"\xed\xa0\x80", "\\xed\\xa0\\x80"},           // a surrogate
      {"\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},  // beyond U+10FFFF
      {"\xf0\x80\x80\x80", "\\xf0\\x80\\x80\\x80"},  // overlong
      // U+202E turns what follows, U+2028 ends a line; their neighbours don't.
      {"a\u202Eb", "a\\xe2\\x80\\xaeb"},
      {"\u2028\u2029", "\\xe2\\x80\\xa8\\xe2\\x80\\xa9"},
      {"\u2066\u2069", "\\xe2\\x81\\xa6\\xe2\\x81\\xa9"},
      {"\u200E\u200F", "\\xe2\\x80\\x8e\\xe2\\x80\\x8f"},
      {"\u061C", "\\xd8\\x9c"},
      {"\u2027\u202F\u2065\u206A\u200D\u2010\u061B",
       "\u2027\u202F\u2065\u206A\u200D\u2010\u061B"},
  };
  for (const auto& c : cases) EXPECT_EQ(c.printed, printable(c.text));
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
