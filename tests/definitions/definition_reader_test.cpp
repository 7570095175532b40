#include "definitions/definition_reader.h"

#include <gtest/gtest.h>

#include <sstream>

#include "definitions/image_layout.h"
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

TEST(DefinitionReader, Flattens) {
  const std::pair<std::string, std::string> cases[] = {
      // The normal form: one blank behind each word.
      {"top=", ""},
      {"top=\n \t \n", " \n \n"},
      {"top=\ta  b\t\tc", "a b c \n"},
      {"top=a\r\nb\r\n", "a \nb \n"},
      {"top=# x\n  #y\na # z\n", "a # z \n"},
      {"top=Include x\nDEFINE a b\nx include define\n",
       "Include x \nDEFINE a b \nx include define \n"},
      {std::string("top=a\0b c\n\0\n", 12), std::string("a\0b c \n\0 \n", 10)},
      // White space behind the last word doubles it, and so does a carriage
      // return that no line feed follows, or the first one of two.
      {"top=a \n", "a a \n"},
      {"top=a b\t\nc", "a b b \nc \n"},
      {"top=a\r", "a a \n"},
      {"top=a\r\r\n", "a a \n"},
      // Defines replace whole words but never the key, from their line on. A
      // value isn't looked up again, not even where the word comes twice.
      {"top=k X\ndefine X Y more\ndefine E\ndefine Y $(X)\nX X aX X X\nk E X\n",
       "k X \nX Y aX Y Y \nk  Y \n"},
      {"top=define X Y\ndefine Y $(X)\nX \nk Y \n", "X Y \nk $(X) $(X) \n"},
      {"top=define A 1\ndefine A 1\n", "Define name conflict : A"},
      {"top=define\ndefine\n", "Define name conflict : "},
      {"top=include a\nk X\n|a=define X 1\nk\n", "k \nk 1 \n"},
      // Macros in include names; the longest name counts.
      {"top=define A b\ndefine C (d\ninclude x$(A).def\ninclude $(C)\n"
       "include )$(\ninclude\n|xb.def=one|(d=two|)$(=three|include=four",
       "one \ntwo \nthree \nfour \n"},
      {"top=define A 1\ndefine B 1\ninclude $(A)$(B)\n",
       "Not recognized define : A)$(B"},
      {"top=include $()\n", "Not recognized define : "},
      // Files nest four deep.
      {"top=include a\nt\n|a=include b\na\n|b=include c\nb\n|c=include d\nc\n"
       "|d=d",
       "d \nc \nb \na \nt \n"},
      {"top=include a\n|a=include b\n|b=include c\n|c=include d\n"
       "|d=include e\n",
       "Max inclusion"},
      {"top=include top\n", "Max inclusion"},
      // An included file without text loses the rest of its includer's text;
      // what that had so far goes on. A blank line is text.
      {"top=k\ninclude none\nk\n|none=", "[failed]k \n"},
      {"top=k\ninclude none\nk\n|none=# x\n", "[failed]k \n"},
      {"top=k\ninclude none\nk\n|none=define X 1\n", "[failed]k \n"},
      {"top=k\ninclude none\nk\n|none=\n", "k \n \nk \n"},
      {"top=t\ninclude a\nt\n|a=a\ninclude none\na\n|none=", "t \na \nt \n"},
      {"top=t\ninclude a\nt\n|a=include none\na\n|none=", "[failed]t \n"},
      // The lines that are lost still act.
      {"top=include none\ndefine X\ndefine X\n|none=",
       "Define name conflict : X"},
      {"top=include none\ninclude x\n|none=",
       "Failed to open image defs file : x"},
      {"top=include none\ninclude a\n|none=|a=k\n", "[failed]"},
  };
  for (const auto& [files, outcome] : cases) {
    EXPECT_EQ(outcome, Tree(files).flatten()) << files;
  }
}

// A small tree can stand for any amount of text or of files; neither may take
// the tool down. Large values in moderation are fine.
TEST(DefinitionReader, BoundsWhatATreeExpandsTo) {
  const std::string refused = "Definition files expand to too much text";
  std::string uses = "k";
  for (int i = 0; i < 30; ++i) uses += " X";
  const std::string value = "top=define X " + std::string(30000, 'x') + "\n";
  EXPECT_EQ(30u * 30001 + 3, Tree(value + uses).flatten().size());
  EXPECT_EQ(refused, Tree(value + uses + uses).flatten());

  Tree nested("top=|d=");
  for (const std::string file : {"top", "a", "b", "c"}) {
    const char included = file == "top" ? 'a' : static_cast<char>(file[0] + 1);
    std::string text;
    for (int i = 0; i < 30; ++i)
      text += std::string("include ") + included + '\n';
    nested.dir.write(file, text);
  }
  EXPECT_EQ(refused, nested.flatten());
  EXPECT_EQ("[failed]", Tree("top=include /dev/zero\n").flatten());
}

TEST(DefinitionReader, EachRunHasItsOwnDefines) {
  Tree tree("top=define X 1\nk X\n");
  EXPECT_EQ("k 1 \n", tree.flatten());
  EXPECT_EQ("k 1 \n", tree.flatten());
}

TEST(DefinitionReader, TopTextThatFailedYieldsNoStatement) {
  Tree tree("top=binary_name A\ninclude none\n|none=");
  read_image_layout(tree.map, read_image_defs(tree.map, "top"));
  EXPECT_EQ("", tree.map.binary_name);
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
  EXPECT_EQ(found + root + "/sub/top\n" + found + "a\n" +
                "Image not found in : b\n" + found + root + "/default/b\n" +
                found + "d\n" + found + "a\n" + "Image not found in : in/c\n" +
                found + root + "/default/in/c\n" + found + "a\n",
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
  EXPECT_STREQ("12: [foo] text", CfgFileError(12, "foo", "text").what());
  EXPECT_STREQ("7: [] text", CfgFileError(7, "", "text").what());
  EXPECT_STREQ("18446744073709551615: text",
               CfgFileError(~std::uint64_t{0}, std::nullopt, "text").what());
}

}  // namespace
}  // namespace tova_fw_builder
