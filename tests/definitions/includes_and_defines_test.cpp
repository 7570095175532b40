#include "definitions/includes_and_defines.h"

#include <gtest/gtest.h>

#include <sstream>

#include "definitions/block_reader.h"
#include "definitions/image_block.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// A folder of definition files, from a text "name=text|name=text".
struct Tree {
  explicit Tree(const std::string& files) {
    std::istringstream in(files);
    for (std::string name, text; std::getline(in, name, '=');) {
      if (!std::getline(in, text, '|')) text.clear();
      dir.write(name, text);
    }
    std::filesystem::current_path(dir.path());
    map.default_dir = dir.path() + "/default";
  }

  // The text, with "[failed]" ahead of it if the stream is, or the message.
  std::string flatten(const std::string& name = "top") {
    std::string text;
    const std::string message = message_of([&] {
      const auto stream = read_image_defs(map, name);
      if (!stream->good()) text = "[failed]";
      stream->clear();
      text.append(std::istreambuf_iterator<char>(*stream), {});
    });
    return message == "no exception" ? text : message;
  }

  TempDir dir;
  FwOutMap map;
};

// A case a line: the tree; "=>"; its text or message. "/" is a line feed, "~" a
// tab, "^" a carriage return, "_" a blank.
constexpr char kCases[] = R"(
-- The normal form: one blank behind each word.
top= =>
top=/ ~ / =>  / /
top=~a  b~~c => a b c /
top=a^/b^/ => a /b /
top=# x/  #y/a # z/ => a # z /
top=Include x/DEFINE a b/x include define/ => Include x /DEFINE a b /x include define /
-- White space behind the last word doubles it, and so does a carriage return
-- that no line feed follows, or the first one of two.
top=a / => a a /
top=a b~/c => a b b /c /
top=a^ => a a /
top=a^^/ => a a /
-- Defines replace whole words but never the key, from their line on. A value
-- isn't looked up again, not even where the word comes twice.
top=k X/define X Y more/define Y Z/X X aX X/ => k X /X Y aX Y /
top=define E/k E X/ => k  X /
top=define X Y/define Y $(X)/X /k Y / => X Y /k $(X) $(X) /
top=define A 1/define A 1/ => Define name conflict : A
top=define/define/ => Define name conflict :_
top=include a/k X/|a=define X 1/k/ => k /k 1 /
-- Macros in include names; the longest name counts.
top=define A b/define C (d/include x$(A)y/include $(C)|xby=one|(d=two => one /two /
top=include )$(/include/|)$(=three|include=four => three /four /
top=define A 1/define B 1/include $(A)$(B)/ => Not recognized define : A)$(B
-- Files nest four deep.
top=include a/t|a=include b/a|b=include c/b|c=include d/c|d=d => d /c /b /a /t /
top=include a|a=include b|b=include c|c=include d|d=include e => Max inclusion
top=include top => Max inclusion
-- An included file without text loses the rest of its includer's text; what
-- that had so far goes on. A blank line is text.
top=k/include none/k/|none= => [failed]k /
top=k/include none/k/|none=define X 1/ => [failed]k /
top=k/include none/k/|none=/ => k / /k /
top=t/include a/t/|a=a/include none/a/|none= => t /a /t /
top=t/include a/t/|a=include none/a/|none= => [failed]t /
-- The lines that are lost still act.
top=include none/define X/define X/|none= => Define name conflict : X
top=include none/include x/|none= => Failed to open image defs file : x
)";

TEST(DefinitionReader, Flattens) {
  const std::map<char, char> shown = {
      {'/', '\n'}, {'~', '\t'}, {'^', '\r'}, {'_', ' '}};
  std::istringstream rows(kCases);
  for (std::string row; std::getline(rows, row);) {
    for (char& c : row) c = shown.contains(c) ? shown.at(c) : c;
    const std::size_t arrow = row.find(" =>");
    if (arrow == row.npos) {
      EXPECT_TRUE(row.empty() || row.starts_with("-- ")) << row;
      continue;
    }
    EXPECT_EQ(row.substr(std::min(arrow + 4, row.size())),
              Tree(row.substr(0, arrow)).flatten());
  }
}

std::string thirty_times(const std::string& text) {
  std::string all;
  for (int i = 0; i < 30; ++i) all += text;
  return all;
}

// A small tree can stand for any amount of text or of files; neither may take
// the tool down. Large values in moderation are fine.
TEST(DefinitionReader, BoundsWhatATreeExpandsTo) {
  const std::string refused = "Definition files expand to too much text";
  const std::string uses = "\nk" + thirty_times(" X");
  const std::string top = "top=define X " + std::string(30000, 'x') + uses;
  EXPECT_EQ(30u * 30001 + 3, Tree(top).flatten().size());
  EXPECT_EQ(refused, Tree(top + uses).flatten());
  EXPECT_EQ(refused, Tree("top=" + thirty_times("include a\n") +
                          "|a=" + thirty_times("include b\n") +
                          "|b=" + thirty_times("include c\n") + "|c=")
                         .flatten());
  EXPECT_EQ(refused, Tree("top=" + thirty_times("include a\n") + "|a=#" +
                          std::string(100000, 'x'))
                         .flatten());
  EXPECT_EQ("[failed]", Tree("top=include /dev/zero\n").flatten());
}

TEST(DefinitionReader, TopTextThatFailedYieldsNoStatement) {
  Tree tree("top=define X A\nbinary_name X\ninclude none\n|none=#");
  for (int run = 0; run < 2; ++run) {  // each has defines of its own
    read_image_layout(tree.map, read_image_defs(tree.map, "top"));
    EXPECT_EQ("", tree.map.binary_name);
  }
}

TEST(DefinitionLookup, FollowsTheIncludingFileThenTheDefaultFolder) {
  Tree tree(
      "sub/top=include a\ninclude b\ninclude a\ninclude in/c\n|sub/a=near\n|"
      "default/a=far\n|default/b=include d\n|default/d=beside b\n|"
      "default/in/c=include a\n|default/in/a=in\n");
  const std::string root = tree.dir.path();
  CapturedLog log(3);
  EXPECT_EQ("near \nbeside b \nnear \nin \n", tree.flatten(root + "/sub/top"));
  EXPECT_EQ((std::vector<std::string>{root + "/sub/top", root + "/sub/a",
                                      root + "/default/b", root + "/default/d",
                                      root + "/sub/a", root + "/default/in/c",
                                      root + "/default/in/a"}),
            tree.map.files_read);
  EXPECT_EQ(std::vector<std::string>{root}, tree.map.dir_stack);
  EXPECT_EQ(root + "/sub", std::filesystem::current_path());
  const std::string found = "Image def file found : ";
  const std::string not_found = "Image not found in : ";
  EXPECT_EQ(found + root + "/sub/top\n" + found + "a\n" + not_found + "b\n" +
                found + root + "/default/b\n" + found + "d\n" + found + "a\n" +
                not_found + "in/c\n" + found + root + "/default/in/c\n" +
                found + "a\n",
            log.text());
}

TEST(DefinitionLookup, RelativeNameWithFolderIsFoundButNotResolved) {
  Tree tree("top=include sub/a\n|sub/a=k\n");
  EXPECT_EQ("filesystem error: canonical: No such file or directory [sub/a]",
            tree.flatten());
  // The folder is entered before the name is resolved.
  EXPECT_EQ(tree.dir.path() + "/sub", std::filesystem::current_path());
}

TEST(DefinitionLookup, FoldersAndMissingFilesAreNamedAsGiven) {
  Tree tree("top=include folder\n|folder/x=|empty=define E\ninclude $(E)\n");
  tree.map.default_dir += "/";
  CapturedLog log(3);
  EXPECT_EQ("Failed to open image defs file : folder", tree.flatten());
  EXPECT_EQ(
      "Image def file found : top\nImage not found in : folder\n"
      "Image not found in : " +
          tree.dir.path() + "/default//folder\n",
      log.text());
  EXPECT_EQ("Failed to open image defs file : ", tree.flatten("empty"));
}

TEST(CfgFileError, ParameterMayBeAbsent) {
  EXPECT_STREQ("7: [] text", CfgFileError(7, "", "text").what());
  EXPECT_STREQ("7: text", CfgFileError(7, std::nullopt, "text").what());
}

}  // namespace
}  // namespace tova_fw_builder
