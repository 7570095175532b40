// Tables whose lengths have to be found: symbols, configurations, and the lines
// of a package descriptor. Put together by hand after docs/file-formats.md.
#include <gtest/gtest.h>

#include <algorithm>

#include "inspect/binary_tables.h"
#include "inspect/inspect.h"
#include "inspect/sample_files.h"
#include "inspect/text.h"

namespace tova_fw_builder {
namespace {

struct Record {
  unsigned module;
  unsigned segment;
  std::uint32_t name_offset;
};

// A table that says `count`, these records and these names, ahead of `behind`.
std::string symbol_table(std::uint32_t count,
                         const std::vector<Record>& records,
                         const std::string& names,
                         const std::string& behind = "") {
  Bytes bytes;
  bytes.u32(count);
  for (const Record& record : records) {
    bytes.u8(1).u8(record.module).u16(record.segment);
    bytes.u32(record.name_offset).u32(0x1000);
  }
  bytes.u32(static_cast<std::uint32_t>(names.size())).text(names);
  return bytes.text(behind);
}

std::string text(const char* literal, std::size_t length) {
  return {literal, length};
}

// "NAME@MODULE.SEGMENT" for each, and the table's end.
std::string symbols_of(const std::string& bytes) {
  Inspected out;
  out.length = bytes.size();
  out.root = object_field("");
  Field& modules = out.root.add(list_field("modules"));
  for (int i = 0; i < 2; ++i) {
    modules.add(object_field("")).add(text_field("name", "m"));
  }
  const ByteSource source = ByteSource::of(bytes);
  const std::uint64_t end = decode_symbol_table(source, 0, bytes.size(), out);
  std::string result;
  for (const Field& symbol : find(out.root, "symbols")->members) {
    result += value_text(*find(symbol, "name")) + '@' +
              std::to_string(number_at(symbol, "module")) + '.' +
              std::to_string(number_at(symbol, "segment")) + ' ';
  }
  result += "end " + std::to_string(end);
  return result + (out.problems.empty() ? "" : ", " + out.problems[0].text);
}

TEST(SymbolTable, RecordsAndNames) {
  const std::string damaged = ", the symbol table is damaged or cut off";
  const std::string zeros(200, '\0');
  const struct {
    std::string bytes;
    std::string symbols;
  } cases[] = {
      {symbol_table(0, {}, ""), "end 8"},
      {symbol_table(0, {}, "", zeros), "end 8"},
      {symbol_table(1, {{0, 0, 20}}, text("a\0", 2)), "a@0.0 end 22"},
      {symbol_table(2, {{0, 1, 32}, {1, 2, 34}}, text("a\0bc\0", 5), zeros),
       "a@0.1 bc@1.2 end 37"},
      // The second of three has no record: offsets count it all the same.
      {symbol_table(3, {{0, 0, 44}, {1, 0, 46}}, text("a\0b\0", 4), zeros),
       "a@0.0 b@1.0 end 36"},
      {symbol_table(2, {}, "", zeros), "end 8"},
      // The length of the names looks like one more record: 01 01 00 00.
      {symbol_table(2, {{0, 0, 32}}, std::string(256, 'x') + '\0', zeros),
       std::string(256, 'x') + "@0.0 end 277"},
      // The names go on like a third one: 01, and a place that is larger yet.
      {symbol_table(3, {{0, 0, 44}},
                    "xxxxxxxx\1" + std::string(247, 'y') + '\0', zeros),
       "xxxxxxxx\\x01" + std::string(247, 'y') + "@0.0 end 277"},
      // Names that don't follow one another, or lack their zero.
      {symbol_table(2, {{0, 0, 32}, {0, 0, 35}}, text("a\0b\0", 4)),
       "a@0.0 @0.0 end 36" + damaged},
      {symbol_table(1, {{0, 0, 20}}, "ab"), "ab@0.0 end 22" + damaged},
      {symbol_table(1, {{0, 0, 21}}, text("a\0", 2)), "@0.0 end 22" + damaged},
      {symbol_table(1, {{0, 0, 22}}, text("a\0", 2)), "-@0.0 end 22" + damaged},
      {symbol_table(1, {{0, 0, 20}}, text("a\0", 2)).substr(0, 21),
       "a@0.0 end 21" + damaged},
      {symbol_table(0xFFFFFFFF, {{0, 0, 20}}, text("a\0", 2)),
       "-@0.0 end 22" + damaged},
      // A record that points at no module, no segment, or is of another kind.
      {symbol_table(1, {{2, 0, 20}}, text("a\0", 2)),
       "a@2.0 end 22, a symbol's record points at no module, segment or name"},
      {symbol_table(1, {{0, 3, 20}}, text("a\0", 2)),
       "a@0.3 end 22, a symbol's record points at no module, segment or name"},
      {text("\1\0\0\0\2", 5) +
           symbol_table(1, {{0, 0, 20}}, text("a\0", 2)).substr(5),
       "a@0.0 end 22, a symbol's record points at no module, segment or name"},
      {"abc", "end 0, the file ends ahead of the symbol table"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.symbols, symbols_of(c.bytes)) << &c - cases;
  }
}

// Two lines of one kind, none, and what only looks like one.
TEST(PackageDescriptor, Lines) {
  const struct {
    const char* line;  // in place of "ver 1.2.3.4"
    const char* path;
    const char* value;
    const char* problem;  // the first
  } cases[] = {
      {"ver 1.2.3.4", "version", "1.2.3.4", ""},
      {"ver", "version", "-", "a line that no package descriptor has"},
      {"ver ", "version", "", ""},
      {"ver 1 \x1b", "version", "1 \\x1b", ""},
      {"ver 1\nver 2", "version", "1", "a line that no package descriptor has"},
      {"vers 1", "version", "-", "a line that no package descriptor has"},
      {"ver 1\nflg 0x", "flags", "-", "the line of flags has no number"},
      {"ver 1\nflg 0xfg", "flags", "-", "the line of flags has no number"},
      {"ver 1\nflg 123456789", "flags", "-", "the line of flags has no number"},
      {"ver 1\nflg ffffffff", "flags", "0xffffffff",
       "a line that no package descriptor has"},
      {"ver 1\nbin x", "files[0].name", "-", "a file has no name"},
      {"ver 1\nbin x", "files[0].path", "x", "a file has no name"},
      {"ver 1\nbin x 'a' ver. 1' ver. 2", "files[0].name", "a' ver. 1", ""},
      {"ver 1\nbin x 'a' ver. 1' ver. 2", "files[0].version", "2", ""},
      {"ver 1\nbin x 'a ver. 1'", "files[0].version", "-", ""},
      {"ver 1\nbin x ''", "files[0].name", "", ""},
  };
  for (const auto& c : cases) {
    std::string bytes = package_descriptor();
    bytes.replace(bytes.find("ver 1.2"), 11, c.line);
    const Inspected inspected =
        inspect(ByteSource::of(bytes), Format::kPackageDescriptor);
    const Field* field = find(inspected.root, c.path);
    ASSERT_NE(nullptr, field) << c.line;
    EXPECT_EQ(c.value, value_text(*field)) << c.line;
    EXPECT_EQ(c.problem,
              inspected.problems.empty() ? "" : inspected.problems[0].text)
        << c.line;
  }
}

// asm reads no further than the first 1023 bytes of a line that is longer.
TEST(PackageDescriptor, LinesThatAsmHasNoRoomFor) {
  const std::string cure =
      "; shorten the names of modules or the path of the output folder, and "
      "build again";
  const std::string behind =
      " bytes, and asm reads no further than the first 1023: ";
  const std::string name(1010, 'n');  // bin x '...' is 8 more
  const std::string path(1020, 'p');
  const struct {
    std::string lines;  // behind cfg
    std::string problem;
  } cases[] = {
      {"bin x '" + name + "12345'\nbin y 'a'\n", ""},
      {"bin x '" + name + "123456'\nbin y 'a'\nbin z 'b'\n",
       "this line has 1024" + behind +
           "the package would lack what follows, 2 files" + cure},
      // The first one counts.
      {"bin x '" + name + "123456'\nbin y '" + name + "1234567'\nbin z 'b'\n",
       "this line has 1024" + behind +
           "the package would lack what follows, 2 files" + cure},
      // Nothing is lost behind the last file.
      {"bin y 'a'\nbin x '" + name + "123456'\n#\n", ""},
      {"bin y 'a'\nbin x '" + name + "123456'", ""},
      // The path ends with the buffer, and one byte behind it.
      {"bin " + path.substr(1) + " 'a'\n", ""},
      {"bin " + path + " 'a'\n",
       "this line has 1028" + behind + "its path is cut" + cure},
      {"bin " + path + " 'a'\nbin y 'a'\n",
       "this line has 1028" + behind +
           "its path is cut, and the package would lack what follows, 1 file" +
           cure},
      {"#" + path + "123\nbin y 'a'\n",
       "this line has 1024" + behind +
           "the package would lack what follows, 1 file" + cure},
  };
  for (const auto& c : cases) {
    std::string bytes = package_descriptor();
    bytes.replace(bytes.find("bin "), bytes.npos, c.lines);
    const Inspected inspected = inspect(ByteSource::of(bytes));
    EXPECT_EQ(c.problem,
              inspected.problems.empty() ? "" : inspected.problems[0].text);
    EXPECT_LE(inspected.problems.size(), 1u);
  }
}

// Configurations beyond the file, and tables that others' counts moved.
TEST(BinaryTables, CountsThatAreTooLarge) {
  const struct {
    std::size_t place;  // in the tables
    const char* bytes;
    const char* problem;
    std::size_t modules;
    std::size_t configurations;  // of the last module
  } cases[] = {
      {36, "\x01", "", 1, 0},
      {37, "\x01", "only 2 of 258 module entries can be shown", 2, 1},
      {52 + 116 + 70, "\x02", "", 2, 2},
      // Of 44 bytes each, from 284 on to the file's end.
      {52 + 116 + 71, "\x7F", "only 1110 of 32513 configurations can be shown",
       2, 1110},
      {52 + 70, "\x01",
       "cfg_off is 0, and the module's configurations stand "
       "at 1",
       2, 1},
      {52 + 116, "x", "the mark $TME of a module entry is missing", 2, 1},
      {52, "x", "the mark $TME of a module entry is missing", 2, 1},
  };
  for (const auto& c : cases) {
    std::string tables = header_tables(8, 32768);
    tables.replace(c.place, 1, c.bytes);
    const std::string bytes = Bytes().text(tables).fill_to(49152);
    const Inspected inspected = inspect(ByteSource::of(bytes), Format::kBinary);
    const std::vector<Field>& modules =
        find(inspected.root, "modules")->members;
    ASSERT_EQ(c.modules, modules.size()) << c.place;
    EXPECT_EQ(c.configurations,
              find(modules.back(), "configurations")->members.size());
    const std::string problem = c.problem;
    const bool told =
        std::any_of(inspected.problems.begin(), inspected.problems.end(),
                    [&](const Problem& p) { return p.text == problem; });
    EXPECT_EQ(!problem.empty(), told) << c.place;
  }
}

// A quick look tests a megabyte of padding in all, a whole one every byte.
TEST(Inspect, PaddingIsTestedAsFarAsAsked) {
  constexpr std::uint32_t kMiB = 1024 * 1024;
  // Behind the contents, which a gap of two megabytes stands ahead of.
  const std::string bytes = Bytes()
                                .fill(64)
                                .text(header_tables(8, 2 * kMiB))
                                .fill_to(2 * kMiB + 8192)
                                .text("x");
  const ByteSource source = ByteSource::of(bytes);
  const auto told = [&source](Depth depth) {
    const auto problems = inspect(source, Format::kBinary, depth).problems;
    return std::ranges::any_of(problems, [](const Problem& problem) {
      return problem.text == "padding is not zero";
    });
  };
  EXPECT_FALSE(told(Depth::kTables));
  EXPECT_TRUE(told(Depth::kWhole));
}

}  // namespace
}  // namespace tova_fw_builder
