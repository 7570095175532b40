// The forms of a tree: text, JSON and the list of bytes.
#include <gtest/gtest.h>

#include <sstream>

#include "inspect/bytes.h"
#include "inspect/inspect.h"
#include "inspect/json.h"
#include "inspect/sample_files.h"
#include "inspect/text.h"

namespace tova_fw_builder {
namespace {

constexpr Column kColumns[] = {
    {"name", "name"}, {"size", "size"}, {"kind", "kind", true}};

// A tree with a field of every kind, 40 bytes long.
Inspected small_tree() {
  Inspected out;
  out.length = 40;
  out.root = object_field("");
  Field& root = out.root;
  Field contents = shown(text_field("contents", ""), Field::Shown::kBytes);
  contents.kind = Field::Kind::kContents;
  root.add(placed(std::move(contents), 0, 30));  // it gets what others leave
  root.add(noted(placed(number_field("date", 0x20, Field::Radix::kHex), 0, 4),
                 "a note"));
  root.add(shown(placed(bool_field("deep", true), 4, 1), Field::Shown::kLong));
  root.add(placed(names_field("flags", "a b"), 5, 1));
  root.add(placed(names_field("no_flags", ""), 6, 1));
  Field nothing = number_field("cut", 7);
  nothing.kind = Field::Kind::kNothing;
  root.add(placed(std::move(nothing), 7, 1));
  Field secret = placed(text_field("d", ""), 8, 4);
  secret.kind = Field::Kind::kPrivate;
  root.add(shown(std::move(secret), Field::Shown::kBytes));
  Field reserved = placed(text_field("reserved", ""), 12, 4);
  reserved.kind = Field::Kind::kReserved;
  root.add(shown(reserved, Field::Shown::kBytes));
  reserved.text = "0001";
  reserved.name = "odd";
  root.add(placed(shown(std::move(reserved), Field::Shown::kBytes), 16, 2));
  Field& list = root.add(list_field("modules"));
  list.columns = kColumns;
  for (const std::uint64_t size : {7u, 1234u}) {
    Field& member = list.add(object_field(""));
    member.add(placed(text_field("name", size == 7 ? "\xC3\xA4" : "b\n"),
                      18 + size % 2, 1));
    member.add(number_field("size", size));
    member.add(noted(number_field("kind", size), size == 7 ? "seven" : ""));
  }
  list.members[0].add(
      shown(placed(number_field("hidden", 1), 19, 0), Field::Shown::kBytes));
  root.add(list_field("none"));
  Field padding = placed(text_field("padding", ""), 30, 10);
  padding.kind = Field::Kind::kPadding;
  root.add(shown(std::move(padding), Field::Shown::kBytes));
  out.problems = {{18, "a problem\x1b"}};
  return out;
}

std::string text_of(const Inspected& inspected, bool is_long) {
  std::ostringstream out;
  print_fields(out, inspected.root, is_long, {});
  print_problems(out, inspected, {});
  return out.str();
}

TEST(Forms, Text) {
  const std::string table =
      "\n  modules\n"
      "    name   size  kind\n"
      "    \xC3\xA4         7  seven\n"
      "    b\\x0a  1234  1234\n";
  EXPECT_EQ(std::string("\n"
                        "  date      0x20  a note\n"
                        "  flags     a b\n"
                        "  no_flags  -\n"
                        "  cut       -\n") +
                table +
                "\n  none      none\n"
                "\n  problems\n    at 0x12: a problem\\x1b\n",
            text_of(small_tree(), false));
  EXPECT_EQ(
      "\n"
      "  date      0x20  a note\n"
      "  deep      yes\n"
      "  flags     a b\n"
      "  no_flags  -\n"
      "  cut       -\n"
      "\n"
      "  modules[0]\n"
      "    name  \xC3\xA4\n"
      "    size  7\n"
      "    kind  7  seven\n"
      "  modules[1]\n"
      "    name  b\\x0a\n"
      "    size  1234\n"
      "    kind  1234\n"
      "\n"
      "  none      none\n"
      "\n  problems\n    at 0x12: a problem\\x1b\n",
      text_of(small_tree(), true));
}

// Long hexadecimal numbers and paths are broken between characters, words
// aren't.
TEST(Forms, LongTexts) {
  Inspected inspected;
  inspected.root = object_field("");
  inspected.root.add(text_field("n", std::string(100, 'a')));
  inspected.root.add(text_field("path", std::string(63, '/') + "\u00E4\u00F6"));
  inspected.root.add(text_field("words", std::string(70, 'a') + " b"));
  EXPECT_EQ("\n  n      " + std::string(64, 'a') + "\n         " +
                std::string(36, 'a') + "\n  path   " + std::string(63, '/') +
                "\u00E4\n         \u00F6\n  words  " + std::string(70, 'a') +
                " b\n",
            text_of(inspected, false));
}

TEST(Forms, Json) {
  const Inspected inspected = small_tree();
  std::ostringstream out;
  out << "{\n";
  print_member(out, inspected.root.members[0], 2);
  for (std::size_t i = 1; i < inspected.root.members.size(); ++i) {
    out << ",\n";
    print_member(out, inspected.root.members[i], 2);
  }
  out << ",\n";
  print_problems_member(out, inspected, 2);
  out << ",\n";
  print_ranges_member(out, inspected, 2);
  out << "\n}";
  Json expected = Json::parse(R"json({
    "contents": null, "date": 32, "deep": true, "flags": ["a", "b"],
    "no_flags": [], "cut": null, "d": "(private)", "reserved": null,
    "odd": "0001",
    "modules": [{"name": "\u00e4", "size": 7, "kind": 7},
                {"name": "b\n", "size": 1234, "kind": 1234}],
    "none": [], "padding": null,
    "problems": [{"offset": 18, "text": "a problem\u001b"}]})json");
  expected["ranges"] = Json::parse(R"json([
    {"offset": 0, "length": 4, "path": "date", "value": 32},
    {"offset": 4, "length": 1, "path": "deep", "value": true},
    {"offset": 5, "length": 1, "path": "flags", "value": ["a", "b"]},
    {"offset": 6, "length": 1, "path": "no_flags", "value": []},
    {"offset": 7, "length": 1, "path": "cut", "value": null},
    {"offset": 8, "length": 4, "path": "d", "value": "(private)"},
    {"offset": 12, "length": 4, "path": "reserved", "value": null},
    {"offset": 16, "length": 2, "path": "odd", "value": "0001"},
    {"offset": 18, "length": 1, "path": "modules[1].name", "value": "b\n"},
    {"offset": 19, "length": 1, "path": "modules[0].name", "value": "\u00e4"},
    {"offset": 20, "length": 10, "path": "contents", "value": null},
    {"offset": 30, "length": 10, "path": "padding", "value": null}])json");
  EXPECT_EQ(expected, Json::parse(out.str()));
  // What the list of bytes alone shows is no member of an object.
  EXPECT_EQ(std::vector<std::string>({"date", "deep", "flags", "no_flags",
                                      "cut", "modules", "none"}),
            [&] {
              std::vector<std::string> names;
              const Json all = field_json(inspected.root);
              for (const auto& item : all.items()) names.push_back(item.key());
              return names;
            }());
}

TEST(Forms, Bytes) {
  std::ostringstream out;
  print_byte_ranges(out, small_tree());
  EXPECT_EQ(
      "         0x0         4  date             0x20  a note\n"
      "         0x4         1  deep             yes\n"
      "         0x5         1  flags            a b\n"
      "         0x6         1  no_flags         -\n"
      "         0x7         1  cut              -\n"
      "         0x8         4  d                (private)\n"
      "         0xc         4  reserved         (reserved)\n"
      "        0x10         2  odd              0001\n"
      "        0x12         1  modules[1].name  b\\x0a\n"
      "        0x13         1  modules[0].name  \xC3\xA4\n"
      "        0x14        10  contents         (contents)\n"
      "        0x1e        10  padding          (padding)\n",
      out.str());
}

TEST(Text, ColumnsAreAsWideAsTheirCharacters) {
  static constexpr Column kTwoColumns[] = {{"name", "name"}, {"n", "n"}};
  Field root = object_field("");
  Field& list = root.add(list_field("l"));
  list.columns = kTwoColumns;
  Field& row = list.add(object_field(""));
  row.add(text_field("name", "\u00E4\u00E4\u00E4\u00E4\u00E4"));
  row.add(number_field("n", 7));
  std::ostringstream out;
  print_fields(out, root, false, {});
  EXPECT_EQ("\n  l\n    name   n\n    \u00E4\u00E4\u00E4\u00E4\u00E4  7\n",
            out.str());
}

}  // namespace
}  // namespace tova_fw_builder
