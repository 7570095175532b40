#include "elf_tables/table_files.h"

#include <gtest/gtest.h>

#include "elf_tables/small_elf.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

using Texts = std::vector<std::string>;

TEST(TableFiles, Names) {
  const TempDir dir;
  const auto names = [&dir](const Texts& elfs, const Texts& given) {
    Texts found;
    for (const TableFiles& files :
         name_table_files(elfs, given, dir.path(), dir.file("list"))) {
      found.push_back(files.sections.substr(dir.path().size()));
    }
    return found;
  };
  EXPECT_EQ((Texts{"/a.sections", "/a-2.sections", "/b.x.sections",
                   "/a-2-2.sections", "/a-3.sections"}),
            names({"/1/a.elf", "/2/a.out", "/b.x.elf", "/a-2", "/a"}, {}));
  EXPECT_EQ((Texts{"/base.sections", "/a.sections", "/base-2.sections"}),
            names({"/x/a.elf", "/a.elf", "/base"}, {"base"}));
}

TEST(TableFiles, Refusals) {
  const TempDir dir;
  const std::string elf = dir.write("fw.sections", "an ELF");
  const auto refusal = [&dir](const Texts& elfs, const Texts& names,
                              const std::string& list) {
    return message_of([&] { name_table_files(elfs, names, dir.path(), list); });
  };
  const std::string list = dir.file("list");
  EXPECT_EQ("no exception", refusal({elf}, {"other"}, list));
  EXPECT_EQ(elf + ": is an input of this command: name another output",
            refusal({elf}, {}, list));
  EXPECT_EQ(elf + ": is an input of this command: name another output",
            refusal({elf}, {"other"}, elf));
  EXPECT_EQ(dir.file("a.symbols") + ": the list has the name of a table",
            refusal({"/a"}, {}, dir.file("a.symbols")));
  for (const std::string spelled : {"./a.symbols", "none/../a.symbols"}) {
    EXPECT_EQ(dir.file(spelled) + ": the list has the name of a table",
              refusal({"/a"}, {}, dir.file(spelled)));
  }
  EXPECT_EQ("two ELFs can't have the name a",
            refusal({"/x", "/y"}, {"a", "a"}, list));
  EXPECT_EQ("there are more names than ELFs",
            refusal({"/x"}, {"a", "b"}, list));
  for (const char* name : {"", "..", "a/b"}) {
    EXPECT_EQ("no name for tables: '" + std::string(name) + "'",
              refusal({"/x"}, {name}, list));
  }
  for (const Texts& blank : {Texts{"/a b", "x"}, Texts{"/a", "x\ty"}}) {
    EXPECT_NE(std::string::npos, refusal({blank[0]}, {blank[1]}, list)
                                     .find("an ELF list can't hold the blank"));
  }
}

TEST(TableFiles, ListAndRefusedElf) {
  EXPECT_EQ("/e\n/s\n/n\n/f\n/t\n/o\n",
            elf_list_text({{"/e", "/s", "/n"}, {"/f", "/t", "/o"}}));
  const TempDir dir;
  const TableFiles files = {dir.write("x", "no ELF"), dir.write("s", "old"),
                            dir.file("n")};
  EXPECT_EQ("it is no ELF", message_of([&] { write_table_files(files); }));
  EXPECT_EQ("old", read_file(files.sections));
  EXPECT_EQ("", read_file(files.symbols));
}

TEST(TableFiles, TroubleIsThatOfTheOutput) {
  const TempDir dir;
  SmallElf elf;
  elf.sections = {{".text"}};
  const TableFiles files = {dir.write("elf", elf.bytes()), dir.file("s"),
                            dir.file("no/folder")};
  EXPECT_EQ(0u, message_of([&] {
                  write_table_files(files);
                }).find(files.symbols + ": cannot be written"));
}

}  // namespace
}  // namespace tova_fw_builder
