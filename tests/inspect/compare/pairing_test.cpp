#include "inspect/compare/pairing.h"

#include <gtest/gtest.h>

namespace tova_fw_builder {
namespace {

const std::string kNoUuid = "00000000-0000-0000-0000-000000000000";

// A list whose members are told as "NAME UUID"; '-' for none of it.
Field list_of(std::string_view name, const char* first, const char* second,
              const std::vector<std::pair<std::string, std::string>>& members) {
  Field list = list_field(name);
  for (const auto& [a, b] : members) {
    Field& member = list.add(object_field(""));
    if (a != "-") member.add(text_field(first, a));
    if (b != "-") member.add(text_field(second, b));
  }
  return list;
}

// "KEY:OLD_INDEX>NEW_INDEX" for each pair, with '*' where it moved.
std::string pairs_text(const Field& old_list, const Field& new_list) {
  const auto index = [](const Field* member, const Field& list) {
    return member == nullptr ? std::string("-")
                             : std::to_string(member - list.members.data());
  };
  std::string text;
  for (const MemberPair& pair : pair_members(old_list, new_list)) {
    text += pair.key + ':' + index(pair.old_member, old_list) + '>' +
            index(pair.new_member, new_list) + (pair.is_moved ? "* " : " ");
  }
  return text;
}

using Members = std::vector<std::pair<std::string, std::string>>;

TEST(Pairing, ModulesByUuidThenByName) {
  const struct {
    Members olds;
    Members news;
    const char* pairs;
  } cases[] = {
      {{{"a", "1"}, {"b", "2"}}, {{"a", "1"}, {"b", "2"}}, "a:0>0 b:1>1 "},
      // Renamed: the UUID tells. Another UUID: the name does.
      {{{"a", "1"}}, {{"z", "1"}}, "a:0>0 "},
      {{{"a", "1"}}, {{"a", "9"}}, "a:0>0 "},
      // Names that were exchanged are no other modules.
      {{{"a", "1"}, {"b", "2"}}, {{"b", "1"}, {"a", "2"}}, "a:0>0 b:1>1 "},
      {{{"a", "1"}, {"b", "2"}}, {{"b", "2"}}, "a:0>- b:1>0 "},
      {{{"b", "2"}},
       {{"a", "1"}, {"b", "2"}, {"c", "3"}},
       "b:0>1 a:->0 c:->2 "},
      // A UUID that stands twice, or none, doesn't tell.
      {{{"a", "1"}, {"b", "1"}}, {{"b", "1"}, {"a", "1"}}, "a:0>1* b:1>0 "},
      {{{"a", kNoUuid}, {"b", kNoUuid}},
       {{"b", kNoUuid}, {"c", kNoUuid}},
       "a:0>- b:1>0 c:->1 "},
      // Two of one name are known by their UUIDs, and without any by place.
      {{{"a", "1"}, {"a", "2"}}, {{"a", "2"}, {"a", "1"}}, "a:0>1* 2:1>0 "},
      {{{"a", "1"}, {"a", "1"}}, {{"a", "1"}, {"a", "1"}}, "a:0>0 1:1>1 "},
      {{{"", kNoUuid}, {"", "-"}}, {{"", kNoUuid}}, "0:0>0 1:1>- "},
      // One UUID twice and no names, as in an extended manifest.
      {{{"-", "1"}, {"-", "1"}}, {{"-", "1"}, {"-", "1"}}, "1:0>0 1+:1>1 "},
      // A key never looks like another one's index.
      {{{"1", "x"}, {"", "-"}}, {{"1", "x"}, {"", "-"}}, "1:0>0 1+:1>1 "},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.pairs, pairs_text(list_of("modules", "name", "uuid", c.olds),
                                  list_of("modules", "name", "uuid", c.news)));
  }
}

// The fewest are told to have moved.
TEST(Pairing, MovedMembers) {
  const auto list = [](const std::string& names) {
    Members members;
    for (const char c : names) members.push_back({std::string(1, c), "-"});
    return list_of("symbols", "name", "none", members);
  };
  const struct {
    const char* olds;
    const char* news;
    const char* pairs;
  } cases[] = {
      {"abcd", "abcd", "a:0>0 b:1>1 c:2>2 d:3>3 "},
      {"abcd", "dabc", "a:0>1 b:1>2 c:2>3 d:3>0* "},
      {"abcd", "bcda", "a:0>3* b:1>0 c:2>1 d:3>2 "},
      {"abcd", "axcyd", "a:0>0 b:1>- c:2>2 d:3>4 x:->1 y:->3 "},
      {"abc", "cba", "a:0>2* b:1>1* c:2>0 "},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.pairs, pairs_text(list(c.olds), list(c.news))) << c.news;
  }
}

TEST(Pairing, FilesSegmentsAndTheRest) {
  const auto files = [](const Members& members) {
    return list_of("files", "path", "name", members);
  };
  EXPECT_EQ("a.bin:0>1* b.bin:1>0 ",
            pairs_text(files({{"/old/a.bin", "-"}, {"c:\\old\\b.bin", "-"}}),
                       files({{"/new/b.bin", "-"}, {"a.bin", "-"}})));
  // Segments stand in slots; the type is a name for the slot.
  const auto segments = [](const Members& members) {
    return list_of("segments", "type", "name", members);
  };
  EXPECT_EQ(
      "text:0>0 bss:1>1 2:2>2 ",
      pairs_text(segments({{"text", "-"}, {"unused", "-"}, {"unused", "-"}}),
                 segments({{"text", "-"}, {"bss", "-"}, {"unused", "-"}})));
  EXPECT_EQ("text:0>0 1:1>1 ",
            pairs_text(segments({{"text", "-"}, {"text", "-"}}),
                       segments({{"bss", "-"}, {"text", "-"}})));
  EXPECT_EQ("0:0>0 1:1>- ",
            pairs_text(list_of("pins", "x", "y", {{"1", "2"}, {"3", "4"}}),
                       list_of("pins", "x", "y", {{"3", "4"}})));
}

}  // namespace
}  // namespace tova_fw_builder
