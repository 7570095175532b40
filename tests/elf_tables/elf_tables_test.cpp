// The two texts of small ELFs. What is expected is what objdump -h and nm of
// GNU binutils 2.40 print for the same bytes, but for words that the builder
// passes over; end_to_end/tables_test.sh asks them for ELFs of linkers.
#include "elf_tables/elf_tables.h"

#include <gtest/gtest.h>

#include <sstream>

#include "small_elf.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// Types and flags of sections as the ELF's format has them.
enum : std::uint32_t { kProgbits = 1, kStrtab = 3, kRela = 4, kNobits = 8 };
enum : std::uint64_t { kWrite = 1, kAlloc = 2, kExec = 4, kTls = 0x400 };

ElfTables tables_of(const TempDir& dir, const std::string& bytes) {
  return ElfTables(dir.write("small.elf", bytes));
}

// The lines of the table behind its heading, with single blanks.
std::vector<std::string> section_lines(const SmallElf& elf) {
  const TempDir dir;
  std::stringstream text;
  tables_of(dir, elf.bytes()).write_sections(text);
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(text, line)) {
    std::istringstream words(line);
    std::string squeezed, word;
    while (words >> word) squeezed += (squeezed.empty() ? "" : " ") + word;
    lines.push_back(squeezed);
  }
  EXPECT_EQ("Idx Name Size VMA LMA File off Algn", lines.at(1));
  lines.erase(lines.begin(), lines.begin() + 2);
  return lines;
}

std::string symbol_text(const SmallElf& elf) {
  const TempDir dir;
  std::ostringstream text;
  tables_of(dir, elf.bytes()).write_symbols(text);
  return text.str();
}

using Lines = std::vector<std::string>;

TEST(ElfTables, SectionsAndFlagsInAllFormsOfElf) {
  SmallElf elf;
  elf.sections = {
      {".text", kProgbits, kAlloc | kExec, 0x1000, 0x200, 0x44, 4096},
      {".rodata", kProgbits, kAlloc, 0x2000, 0x300, 0x8, 1},
      {".data", kProgbits, kAlloc | kWrite, 0x3000, 0x400, 0, 0},
      {".bss", kNobits, kAlloc | kWrite, 0xFFFF0000, 0x9000, 0x10000, 64},
      {".comment", kProgbits, 0, 0, 0x500, 0x12, 1},
      {".odd", kNobits, kWrite, 0, 0x500, 1, 3},
      {"", 0, kAlloc, 7, 7, 0x10000000, 1},  // no section at all
      {".noload", kNobits, kAlloc | kExec, 0x4000, 0x500, 0x20, 8},
  };
  const Lines expected = {
      "0 .text 00000044 00001000 00001000 00000200 2**12",
      "CONTENTS, ALLOC, LOAD, READONLY, CODE",
      "1 .rodata 00000008 00002000 00002000 00000300 2**0",
      "CONTENTS, ALLOC, LOAD, READONLY, DATA",
      "2 .data 00000000 00003000 00003000 00000400 2**0",
      "CONTENTS, ALLOC, LOAD, DATA",
      "3 .bss 00010000 ffff0000 ffff0000 00009000 2**6",
      "ALLOC",
      "4 .comment 00000012 00000000 00000000 00000500 2**0",
      "CONTENTS, READONLY",
      "5 .odd 00000001 00000000 00000000 00000500 2**2",
      "",
      "6 .noload 00000020 00004000 00004000 00000500 2**3",
      "ALLOC, READONLY, CODE",
  };
  for (const bool wide : {false, true}) {
    for (const bool big : {false, true}) {
      elf.wide = wide;
      elf.big = big;
      EXPECT_EQ(expected, section_lines(elf)) << wide << big;
    }
  }
}

TEST(ElfTables, WhatIsNoSectionToTheBuilder) {
  SmallElf elf;
  elf.type = 1;
  elf.sections = {
      {".text", kProgbits, kAlloc | kExec, 0, 0x200, 4},
      {".rela.text", kRela, 0, 0, 0x204, 0, 4, 6, 1},
      {".rela.dyn", kRela, kAlloc, 0, 0x204, 0, 4, 0, 0},
      {".shndx", 18, 0, 0, 0x204, 0, 1, 6},
      {".own_strings", kStrtab, kAlloc, 0, 0x204, 2, 1},
      // .symtab is 6
  };
  Lines names;
  for (const std::string& line : section_lines(elf)) {
    if (line.find('.') != line.npos) names.push_back(line.substr(2, 12));
  }
  EXPECT_EQ((Lines{".text 000000", ".rela.dyn 00", ".own_strings"}), names);
  // Also loaded ones of an object, but not those for no section, or for
  // relocations.
  elf.sections[1].flags = kAlloc;
  EXPECT_EQ(std::string::npos, section_lines(elf).at(2).find(".rela.text"));
  for (const std::uint32_t target : {0U, 2U, 99U}) {
    elf.sections[1].info = target;
    EXPECT_EQ("1 .rela.text 0", section_lines(elf).at(2).substr(0, 14));
  }
  elf.sections[1].info = 1;
  // In a program, relocations that are loaded are for its loader.
  elf.type = 2;
  EXPECT_EQ("1 .rela.text 00000000 00000000 00000000 00000204 2**2",
            section_lines(elf).at(2));
}

TEST(ElfTables, SymbolTableThatASharedObjectCarries) {
  SmallElf elf;
  elf.sections = {{".symtab", 2, kAlloc, 0x300, 0x300, 0, 4, 3}};
  elf.type = 3;
  EXPECT_EQ("0 .symtab 00000000 00000300 00000300 00000300 2**2",
            section_lines(elf).at(0));
  elf.type = 2;
  EXPECT_EQ(Lines{}, section_lines(elf));
}

// The load address alone, in the third column of numbers.
Lines load_addresses(const SmallElf& elf) {
  Lines addresses;
  const Lines lines = section_lines(elf);
  for (std::size_t i = 0; i < lines.size(); i += 2) {
    std::istringstream words(lines[i]);
    std::string word;
    for (int column = 0; column < 5; ++column) words >> word;
    addresses.push_back(word);
  }
  addresses.resize(elf.sections.size());
  return addresses;
}

TEST(ElfTables, LoadAddressesFollowTheSegments) {
  SmallElf elf;
  elf.sections = {
      {".vectors", kProgbits, kAlloc, 0x20000010, 0x210, 0x20},
      {".data", kProgbits, kAlloc | kWrite, 0x20000030, 0x230, 0x10},
      {".bss", kNobits, kAlloc | kWrite, 0x20000040, 0x240, 0x80},
      {".heap", kNobits, kAlloc | kWrite, 0x200000C0, 0x240, 0x1000},
      {".debug", kProgbits, 0, 0x20000010, 0x210, 0x20},
      {".tdata", kProgbits, kAlloc | kTls, 0x20000020, 0x220, 8},
      {".end", kProgbits, kAlloc, 0x200000C0, 0x240, 0},
  };
  elf.segments = {
      {6, 0x200, 0x20000000, 0x1, 0x40, 0xC0},  // no PT_LOAD
      {1, 0x200, 0x20000000, 0x08000000, 0x40, 0xC0},
      {7, 0x220, 0x20000020, 0x09000000, 8, 8},
      {1, 0x200, 0x20000000, 0x0A000000, 0x2000, 0x2000},
  };
  const Lines expected = {"08000010", "08000030", "08000040", "0a0000c0",
                          "20000010", "09000000", "08000040"};
  EXPECT_EQ(expected, load_addresses(elf));

  // Reached one byte beyond: the later segment has it, or none.
  elf.segments[1].memsz = 0xBF;
  EXPECT_EQ("0a000040", load_addresses(elf)[2]);
  elf.segments[1].filesz = 0x3F;
  EXPECT_EQ("0a000030", load_addresses(elf)[1]);
  elf.segments.pop_back();
  EXPECT_EQ("20000030", load_addresses(elf)[1]);
}

TEST(ElfTables, LoadAddressesThatNobodySet) {
  SmallElf elf;
  elf.sections = {{".text", kProgbits, kAlloc, 0x1000, 0x200, 0x10},
                  {".data", kProgbits, kAlloc, 0x2000, 0x300, 0x10}};
  elf.segments = {{1, 0x200, 0x1000, 0, 0x10, 0x10},
                  {1, 0x300, 0x2000, 0, 0x10, 0x10}};
  EXPECT_EQ((Lines{"00001000", "00002000"}), load_addresses(elf));
  elf.segments[1].memsz = 0;  // of one segment alone zero may be meant
  EXPECT_EQ((Lines{"00000000", "00002000"}), load_addresses(elf));
  elf.segments[1].memsz = 0x10;
  elf.segments.push_back({4, 0, 0, 1, 0, 0});
  EXPECT_EQ((Lines{"00000000", "00000000"}), load_addresses(elf));
}

TEST(ElfTables, SectionNames) {
  SmallElf elf;
  elf.sections = {{".a b", kProgbits, 0, 0, 0x200, 1},
                  {".\x01\x7F\n", kProgbits, 0, 0, 0x200, 1},
                  {std::string(60, 'x'), kProgbits, 0, 0, 0x200, 1},
                  {std::string(2000, 'y'), kProgbits, 0, 0, 0x200, 1}};
  const Lines lines = section_lines(elf);
  EXPECT_EQ("0 .a b 00000001", lines.at(0).substr(0, 15));
  EXPECT_EQ("1 .^A^\xBF^J 00000001", lines.at(2).substr(0, 18));
  EXPECT_EQ("2 " + std::string(60, 'x') + " 0", lines.at(4).substr(0, 64));
  // As much as the builder takes of a line.
  EXPECT_EQ("3 " + std::string(1023, 'y') + " 0", lines.at(6).substr(0, 1027));
}

SmallElf elf_with_symbols() {
  SmallElf elf;
  elf.sections = {{".text", kProgbits, kAlloc | kExec, 0x1000, 0x200, 0x100},
                  {".rodata", kProgbits, kAlloc, 0x2000, 0x300, 4},
                  {".bss", kNobits, kAlloc | kWrite, 0x3000, 0x300, 4}};
  return elf;
}

TEST(ElfTables, SymbolsByTheirOrderAndKind) {
  SmallElf elf = elf_with_symbols();
  const std::string endless(2000, 'n');
  elf.symbols = {
      {endless, 0x1000, 0, 0x12, 1},      {"z_first", 0x1004, 0, 0x02, 1},
      {"section", 0x1000, 0, 0x03, 1},    {"file.c", 0, 0, 0x04, 0xFFF1},
      {"twice", 0x1010, 0, 0x02, 1},      {"twice", 0x1020, 0, 0x02, 1},
      {"konst", 0x2000, 0, 0x11, 2},      {"zeroed", 0x3000, 0, 0x11, 3},
      {"undefined", 0, 0, 0x10, 0},       {"weak", 0x1030, 0, 0x22, 1},
      {"weak_data", 0x2000, 0, 0x21, 2},  {"block", 4, 0x30, 0x11, 0xFFF2},
      {"fixed", 0x1234, 0, 0x10, 0xFFF1}, {"odd", 0x1041, 0, 0x12, 1},
      {"no.such", 0x55, 0, 0x10, 99},     {"remark", 2, 0, 0x00, 4},
  };
  elf.sections.push_back({".comment", kProgbits, 0, 0, 0x300, 4});
  elf.sections.push_back({".strings", kStrtab, 0, 0, 0x300, 4});
  const std::string expected =
      "00001000 T " + endless.substr(0, 1023) +
      "\n00001004 t z_first\n00001010 t twice\n00001020 t twice\n"
      "00002000 R konst\n00003000 B zeroed\n00001030 W weak\n"
      "00002000 V weak_data\n00000030 C block\n00001234 A fixed\n"
      "00001041 T odd\n00000055 A no.such\n00000002 n remark\n";
  for (const bool big : {false, true}) {
    elf.big = big;
    EXPECT_EQ(expected, symbol_text(elf));
  }
}

TEST(ElfTables, SymbolsOfProcessors) {
  enum : std::uint16_t { kMips = 8, kArm = 40, kAArch64 = 183, kRiscV = 243 };
  SmallElf elf = elf_with_symbols();
  const auto names_on = [&elf](std::uint16_t machine) {
    elf.machine = machine;
    std::istringstream lines(symbol_text(elf));
    std::string names, address, letter, name;
    while (lines >> address >> letter >> name) names += name + ' ';
    return names;
  };
  for (const char* name :
       {"$d", "$t.1", "$q", "$dx", "$xrv", ".L1", "..x", "_.L_", "f"})
    elf.symbols.push_back({name, 0x1000, 0, 0, 1});
  EXPECT_EQ("$d $t.1 $q $dx $xrv .L1 ..x _.L_ f ", names_on(94));
  EXPECT_EQ("$dx $xrv .L1 ..x _.L_ f ", names_on(kArm));
  EXPECT_EQ("$t.1 $q $dx $xrv .L1 ..x _.L_ f ", names_on(kAArch64));
  EXPECT_EQ("$t.1 $q f ", names_on(kRiscV));
  EXPECT_EQ("$d $t.1 $q $dx $xrv f ", names_on(kMips));

  // Functions in short instructions, and addresses with a sign.
  elf.symbols = {{"f", 0x80000101, 0, 0x12, 1}, {"v", 0x80000101, 0, 0x11, 1}};
  elf.machine = kArm;
  elf.symbols[0].info = 0x1A;  // resolved at run time
  EXPECT_EQ("80000100 i f\n80000101 T v\n", symbol_text(elf));
  elf.symbols[0].info = 0x12;
  EXPECT_EQ("80000100 T f\n80000101 T v\n", symbol_text(elf));
  elf.machine = kMips;
  EXPECT_EQ("ffffffff80000100 T f\nffffffff80000101 T v\n", symbol_text(elf));
  elf.wide = true;
  EXPECT_EQ("80000100 T f\n80000101 T v\n", symbol_text(elf));
}

TEST(ElfTables, SectionNumbersOfMoreThan16Bits) {
  const TempDir dir;
  SmallElf elf = elf_with_symbols();
  elf.symbols = {{"f", 0x1000, 0, 0x12, 0xFFFF},
                 {"g", 0x2000, 0, 0x12, 0xFFFF}};
  elf.sections.push_back({".numbers", 18, 0, 0, 0x300, 12, 4, 5});
  std::string bytes = elf.bytes();
  bytes.replace(0x300, 12, std::string("\0\0\0\0\1\0\0\0\2\0\0\0", 12));
  std::ostringstream text;
  tables_of(dir, bytes).write_symbols(text);
  EXPECT_EQ("00001000 T f\n00002000 R g\n", text.str());
}

TEST(ElfTables, SymbolsOfAnObjectCountFromTheirSection) {
  SmallElf elf = elf_with_symbols();
  elf.symbols = {{"f", 0x10, 0, 0x12, 1}};
  elf.type = 1;
  EXPECT_EQ("00001010 T f\n", symbol_text(elf));
  elf.sections[0].address = 0;
  EXPECT_EQ("00000010 T f\n", symbol_text(elf));
}

TEST(ElfTables, RefusesWhatIsNoWholeElf) {
  const TempDir dir;
  const auto refusal = [&dir](const std::string& bytes) {
    return message_of([&] {
      const ElfTables tables = tables_of(dir, bytes);
      std::ostringstream text;
      tables.write_sections(text);
      tables.write_symbols(text);
    });
  };
  SmallElf elf = elf_with_symbols();
  elf.sections.resize(1);
  elf.symbols = {{"f", 0x1000, 0, 0x12, 1}};
  const std::string whole = elf.bytes();
  EXPECT_EQ("no exception", refusal(whole));
  EXPECT_EQ("it is no ELF", refusal("hello"));
  EXPECT_EQ("it is an archive and no linked ELF", refusal("!<arch>\n"));
  EXPECT_EQ(
      "it is cut off or damaged: its table of sections lies beyond its end",
      refusal(whole.substr(0, whole.size() - 1)));
  EXPECT_EQ("cannot be read: No such file or directory",
            message_of([&] { ElfTables(dir.file("none")); }));
  EXPECT_EQ("cannot be read: it is a folder: name its ELFs",
            message_of([&] { ElfTables(dir.path()); }));
  elf.sections[0].offset = whole.size() - 3;
  elf.sections[0].size = 4;
  EXPECT_EQ("it is cut off or damaged: section 1 reaches beyond its end",
            refusal(elf.bytes()));
  elf.sections[0].size = 0x10000;
  EXPECT_EQ("it is cut off or damaged: section 1 reaches beyond its end",
            refusal(elf.bytes()));
  elf.type = 4;
  EXPECT_EQ("it is a core dump, which has no sections", refusal(elf.bytes()));
  // No sections at all, and no place of their table.
  std::string bare = whole.substr(0, 0x100);
  bare.replace(32, 4, std::string(4, '\0'))
      .replace(48, 4, std::string(4, '\0'));
  EXPECT_EQ("no exception", refusal(bare));
  // The count of sections is the size of the first one.
  std::string many = whole;
  many.replace(48, 2, std::string(2, '\0'));
  many.replace(many.size() - 5 * 40 + 20, 4, "\xFF\xFF\xFF\x7F");
  EXPECT_EQ("it has 2147483647 sections, more than any linker makes",
            refusal(many));
  std::string nameless = whole;
  nameless.replace(nameless.size() - 4 * 40, 4, "\xFF\xFF\xFF\x7F");
  EXPECT_EQ("a name can't be read: offset out of range", refusal(nameless));
}

}  // namespace
}  // namespace tova_fw_builder
