#include "companion/ground/printable.h"

#include <gtest/gtest.h>

#include "companion/ground/json.h"

namespace tova_fw_builder {
namespace {

// A file's bytes mustn't steer the terminal; names in UTF-8 stay readable.
TEST(Printable, NothingSteersTheTerminal) {
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

// A document holds the same, whatever a terminal would make of it.
TEST(JsonText, EscapesWhatSteersATerminal) {
  const Json document = {{"a\n", "\x7F\u009B\u202E\u00E4\xFF"}};
  const std::string text = json_text(document);
  EXPECT_EQ("{\n  \"a\\n\": \"\\u007f\\u009b\\u202e\u00E4\uFFFD\"\n}\n", text);
  EXPECT_EQ("\u009B", Json::parse(json_string("\u009B")).get<std::string>());
}

}  // namespace
}  // namespace tova_fw_builder
