// The rules that ask what the linker produced. Each case has one module or more
// over a section table of a few lines.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "driver/ground/log.h"
#include "lint/elf_facts.h"
#include "lint/key_list_fault.h"
#include "lint/linted.h"
#include "lint/report_text.h"
#include "support/bytes.h"

namespace tova_fw_builder {
namespace {

// A case a line: the definition, behind a version and a module "m" with a text
// group that is still open; its sections behind ".t 1000 100 t"; the findings.
constexpr char kCases[] = R"(
=> =>
memory_class a 1000 1000/ => => 
section .u/ => .u 1100 80 t =>
-- refused: what binding and writing find, at the statement that is to blame
section .b/ => .b 3000 10 b => 6:9 refused
section ep .u/ => .u 1100 80 t => 6:12 refused
module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section .u/ => .u 2000 10 t => 8:1 refused
group rodata/section .r/ => .r 2100 10 r => 7:9 refused
max_data 0/ => .data 2000 10 r => 6:1 refused, elfs:2:1 section-left-out
module d n/uuid 11234567-89AB-CDEF-0123-456789ABCDEF/group rodata/section .r/ => .r 2000 10 r => 7:1 refused, 7:6 duplicate-uuid
group rodata/section .r < .s/ => .r 2000 10 r, .s 3000 11 r => 7:9 refused
group rodata/section .r < .s/ => .r 2000 10 r, .s 3000 10 r =>
-- an optional section that is there wants its replacement, too
group rodata/section o .r < .s/ => .r 2000 10 r => 7:11 refused, 7:16 section-not-found
-- of modules that are called alike, the later one
module d m/uuid 11234567-89AB-CDEF-0123-456789ABCDEF/group rodata/section .r/ => .r 2000 10 r => 6:10 name-cut, 7:1 refused, 7:6 duplicate-uuid
-- what is left out with its module may lie anywhere
module o n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .r/section .s/ => .r 2004 10 r => 10:9 section-not-found
-- an addon off the page grid: 3.0 takes it; the gaps of two may add up to a page
binary_ver 1.8/module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .r/ => .r 2000 10 r 2000 2**2 => 6:1 repeated-statement, 10:9 refused, 10:9 addon-alignment
section .u/binary_ver 1.8/module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .r/ => .u 1100 f00 t, .r 2000 10 r 2000 2**2 => 7:1 repeated-statement, 11:9 addon-alignment
binary_ver 2.5/module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .r/module d k/uuid 11234567-89AB-CDEF-0123-456789ABCDE1/group rodata/section .s/ => .r 2000 10 r 2000 2**2, .s 3000 10 r 2110 2**2 => 6:1 repeated-statement, 10:9 refused, 10:9 addon-alignment, 14:9 addon-alignment
-- an image of 2 to 4 GiB, whose digest 1.8 and 2.5 can't take
binary_ver 1.8/module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .u/ => .u 90000000 100 t => 6:1 repeated-statement, 10:12 refused, 10:12 load-gap
binary_ver 2.5/module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .u/ => .u 70000000 100 t => 6:1 repeated-statement, 10:12 load-gap
-- a memory class whose highest section reaches around the end of memory
memory_class a F0000000 FFFFFFF/module l k/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .u/ => .u FFFFF000 1001 r => 5:12 outside-classes, 6:1 refused, 10:9 class-full
-- section-not-found: not what may be absent
section .tt/ => => 2:1 refused, 6:9 section-not-found
section o .tt/ => =>
module o n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .r/section .s/ => =>
module o n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .r/section .s/ => .r 2000 10 r => 10:9 section-not-found
dyn_mem .heap/ => => 6:9 refused, 6:9 section-not-found
ignore .comment/ => => 6:8 section-not-found
group rodata/section .r < .s/ => .r 2000 10 r => 2:1 refused, 7:14 section-not-found
group rodata/section .r < public_keys_storage/ => .r 2000 10 r =>
-- section-left-out: what is allocated
=> .r 2000 10 r, .n 0 10 n, .b 3000 0 b => elfs:2:1 section-left-out
=> .b 3000 10 b => elfs:2:1 section-left-out
ignore .r/dyn_mem .b/ => .r 2000 10 r, .b 3000 10 b =>
-- built-in-not-carried
module b n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .r/group bss/section .b/ => .r 2000 10 r, .b 3000 10 b => 9:9 built-in-not-carried, 11:9 built-in-not-carried
module b n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .t/ => =>
-- stale-table: a section may end where the ELF does
group rodata/section .r/ => .r 2000 1ffc0 r =>
group rodata/section .r/ => .r 2000 1ffc1 r => elfs:2:1 stale-table
-- load-overlap, by load addresses in any order; zeroed memory takes no bytes
section .u/ => .u 2000 80 t 10FF => 6:9 load-overlap
section .u/ => .u 2000 80 t 1100 =>
section .u/ => .u 2000 80 t F81 => 5:12 load-overlap
group bss/section .b/section .c/ => .b 2000 80 b, .c 3000 80 b 2000 =>
group bss/section .b/section .r/ => .b 2000 80 b, .r 3000 80 r 2000 => 8:9 refused
group rodata/section .r/module l k/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .s/module b n/uuid 01234567-89AB-CDEF-0123-456789ABCDE1/group rodata/section .r/section .s/ => .r 2000 100 r, .s 3000 10 r 20F0 =>
-- load-overlap and load-gap, where an addon is loaded below what is written ahead of it
module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .u/ => .u 0 100 t => 6:1 load-overlap
module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .u/group rodata/section .r/ => .u 3000 100 t, .r 2000 10 r => 10:1 load-overlap
module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .u/ => .u F0000000 100 t => 9:12 load-gap
section .u/ => .u 1002100 100 t => 6:9 load-gap
section .u/ => .u 10010FF 100 t =>
module n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .u/ => .u 90000000 100 t =>
module n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .u/ => .u 0 100 t =>
module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group bss/section .b/ => .b 0 100 b =>
binary_ver 1.5/module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .u/ => .u 0 100 t => 6:1 repeated-statement
-- run-overlap
group rodata/section .r/ => .r 1000 10 r 2000 => 7:9 run-overlap
group bss/section .b/ => .b 10FF 10 b => 7:9 refused, 7:9 run-overlap
dyn_mem .heap/ => .heap 10F0 20 b => 6:9 run-overlap
dyn_mem .heap/ => .heap FF0 20 b => 6:9 run-overlap
hw_buf_ba 10FF/hw_buf_size 1/ => => 5:12 run-overlap
hw_buf_ba 1100/hw_buf_size 1/ => =>
module b n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .t/group bss/section .b/ => .b 1010 4 b => 11:9 built-in-not-carried, 11:9 run-overlap
-- outside-classes, class-full: adjoining classes are one room
memory_class a 2000 1000/ => => 5:12 outside-classes
memory_class a 0 800/ => => 5:12 outside-classes
memory_class a 0 1000/ => => 5:12 outside-classes
memory_class a 800 801/ => => 5:12 class-full
memory_class a 1000 80/memory_class b 1080 80/ => =>
memory_class a 1080 80/ => => 5:12 outside-classes
-- addon-alignment, in the generations that keep addons in the binary
module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .r/ => .r 2000 10 r 2000 2**2 => 9:9 addon-alignment
module l n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .r/ => .r 2000 10 r 2000 2**2 =>
binary_ver 1.5/module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .r/ => .r 2000 10 r 2000 2**2 => 6:1 repeated-statement
-- entry-outside-group
module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/entry 2010/section .u/ => .u 2000 10 t => 9:7 entry-outside-group
module d n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/entry 200f/section .u/ => .u 2000 10 t =>
-- export-not-found
export main/export o trace/ => =>
export trace/export o trace/ => => 7:1 repeated-statement
export mian/ => => 6:8 refused, 6:8 export-not-found
-- export-outside: whole pages of a group count
export heap/export o last/ => => 6:8 export-outside
section .b/export heap/ => .b 3000 10 b => 6:9 refused
)";

TEST(LinkedRules, FindMistakesWhereTheyStand) {
  std::istringstream rows(kCases);
  for (std::string row; std::getline(rows, row);) {
    const std::size_t first = row.find("=>");
    if (first == row.npos) {
      EXPECT_TRUE(row.empty() || row.starts_with("-- ")) << row;
      continue;
    }
    const std::size_t second = row.find("=>", first + 2);
    ASSERT_NE(row.npos, second) << row;
    LintTree tree("t=binary_ver 3.0/" + std::string(1, '@') +
                  row.substr(0, first));
    const std::string more = row.substr(first + 2, second - first - 2);
    const bool has_more = more.find_first_not_of(' ') != more.npos;
    add_elf(tree, "elf", ".t 1000 100 t" + (has_more ? "," + more : ""),
            "00001000 T main\n00002000 B heap\n00001fff T last\n");
    std::string expected = row.substr(second + 2);
    expected.erase(0, expected.find_first_not_of(' '));
    EXPECT_EQ(expected, tree.findings()) << row;
  }
}

// What a person reads: which two are meant, and what to do.
TEST(LinkedRules, SayWhatIsWrong) {
  LintTree swapped(
      "t=binary_ver 1.8/@module d n/uuid "
      "11234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .u/");
  add_elf(swapped, "elf", ".t 3000 100 t, .u 1000 100 t", "");
  EXPECT_EQ(
      "t:6:1: error: '.u' is loaded to 0x1000, but written behind '.t' (0x3000 "
      "to 0x3100): 0xffffd000 bytes of zeros come between them; the load "
      "addresses of addons have to rise from group to group and from module to "
      "module [load-overlap]\n"
      "t:5:12: note: the other section\n",
      swapped.printed());
  LintTree unaligned(
      "t=binary_ver 1.8/@module d n/uuid "
      "11234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .u/");
  unaligned.options.disabled = {"addon-alignment"};
  add_elf(unaligned, "elf", ".t 1000 100 t, .u 2000 100 t 2000 2**4", "");
  EXPECT_EQ(
      "t:9:12: error: preload size not aligned to page size; '.u' comes first "
      "in its group and is aligned to 16 bytes, so that 3840 bytes stand ahead "
      "of it: align it to 4096 [refused]\n",
      unaligned.printed());
  LintTree misspelt("t=binary_ver 1.8/@export fw_registur/");
  add_elf(misspelt, "elf", ".t 1000 100 t", "00001000 T fw_register\n");
  EXPECT_NE(std::string::npos,
            misspelt.printed().find(
                "no symbol list has 'fw_registur'; write 'export o' if it may "
                "be absent; did you mean 'fw_register'?"));
  LintTree buffer("t=binary_ver 1.8/hw_buf_size 10/hw_buf_ba 10F8/@");
  add_elf(buffer, "elf", ".t 1000 100 t", "");
  EXPECT_NE(std::string::npos,
            buffer.printed().find("t:3:1: note: the buffer"));
}

TEST(LinkedRules, AskOfTheFirstTwentyNamesAlone) {
  std::string unknown;
  for (int i = 0; i < 21; ++i) unknown += "ignore .knwon/";
  LintTree many("t=binary_ver 3.0/" + unknown + '@');
  add_elf(many, "elf", ".t 1000 100 t, .known 2000 0 b", "");
  const std::string told = many.printed();
  std::size_t questions = 0;
  for (std::size_t at = 0; (at = told.find("'.known'?", at)) != told.npos;
       ++at) {
    ++questions;
  }
  EXPECT_EQ(20u, questions);
}

TEST(LinkedRules, LostBytesAreAnErrorAndLostMemoryNone) {
  LintTree lost(
      "t=binary_ver 3.0/@module b n/uuid "
      "11234567-89AB-CDEF-0123-456789ABCDE0/group rodata/section .r/"
      "group bss/section .b/");
  add_elf(lost, "elf", ".t 1000 100 t, .r 2000 10 r, .b 3000 10 b", "");
  for (const char* text : {"error: '.r' stands", "warning: '.b' stands"}) {
    EXPECT_NE(std::string::npos, lost.printed().find(text)) << lost.printed();
  }
}

TEST(LinkedRules, SectionsOfOneNameInTwoElfs) {
  LintTree tree("t=binary_ver 3.0/@group bss/section .b/");
  add_elf(tree, "one", ".t 1000 100 t, .b 2000 10 b", "");
  add_elf(tree, "two", ".b 3000 10 b", "");
  EXPECT_EQ("elfs:5:1 section-left-out", tree.findings());
  add_elf(tree, "three", ".t 4000 10 t", "");
  const std::string folder = tree.dir.path() + "/";
  EXPECT_EQ("elfs:8:1: error: Duplicated section found: .t; " + folder +
                "one.elf and " + folder +
                "three.elf have one each [refused]\n"
                "elfs:2:1: note: the first one\n",
            tree.printed());
}

TEST(LinkedRules, WhatCannotBeReadIsTrouble) {
  LintTree tree("t=binary_ver 3.0/max_data 0 1/@");
  tree.options.inputs.elf_list_path = tree.dir.file("nothing");
  const LintReport report = tree.lint();
  EXPECT_EQ("2:12 extra-words", findings_of(report));
  ASSERT_EQ(1u, report.troubles.size());
  EXPECT_EQ("Failed to open file: " + tree.dir.file("nothing"),
            report.troubles[0].text);
}

TEST(LinkedRules, ImageAsAWhole) {
  LintTree tree("t=@");
  add_elf(tree, "elf", ".t 1000 100 t", "");
  EXPECT_EQ(
      "t:1:1: error: Unrecognized binary version; the definition has no "
      "binary_ver [refused]\n",
      tree.printed());
  LintTree none("t=binary_ver 3.0/");
  add_elf(none, "elf", "", "");
  EXPECT_EQ(
      "t:1:1: error: preload page count cannot be computed - no modules "
      "[refused]\n",
      none.printed());
}

std::string times(std::size_t count, const std::string& text) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

// 52 bytes of header, 116 a module, 44 a configuration, 8 and 12 + name + 1 a
// symbol: in 3.0 there are 32768 in all, in 1.8 8192 less. In 1.5 they stand
// behind 644 bytes, and sign keeps the page up to which all but the symbols
// reach.
TEST(LinkedRules, TablesFitTheirRoom) {
  struct {
    const char* version;
    std::size_t configurations;
    std::size_t name_length;
    bool fits;
  } cases[] = {
      {"3.0", 740, 19, true},  // 52 + 116 + 32560 + 8 + 12 + 19 + 1 = 32768
      {"3.0", 740, 20, false}, {"1.8", 554, 11, true},  // 24576
      {"1.8", 554, 12, false}, {"2.5", 554, 12, false},
      {"1.5", 74, 7, true},  // 644 + 52 + 116 + 3256 = 4068, 28 are left
      {"1.5", 74, 8, false},
  };
  for (const auto& [version, configurations, length, fits] : cases) {
    const std::string symbol(length, 's');
    LintTree tree("t=binary_ver " + std::string(version) + "/@export " +
                  symbol + "/" + times(configurations, "mod_cfg 1/"));
    add_elf(tree, "elf", ".t 1000 100 t", "00001000 T " + symbol + "\n");
    EXPECT_EQ(fits ? "" : "1:1 tables-fit", tree.findings())
        << version << ' ' << length;
  }
  LintTree tree("t=binary_ver 1.5/@" + times(168, "mod_cfg 1/"));
  add_elf(tree, "elf", ".t 1000 100 t", "");
  EXPECT_EQ("0:1 refused", tree.findings());  // 644 + 168 + 7392 >= 8192
  std::string ten = "t=binary_ver 1.5/@" + times(144, "mod_cfg 1/");
  for (int i = 1; i < 10; ++i) {
    ten += "module b n" + std::to_string(i) +
           "/uuid 01234567-89AB-CDEF-0123-45678900000" + std::to_string(i) +
           "/group text/section .t/entry 1000/";
  }
  LintTree full(ten);
  add_elf(full, "elf", ".t 1000 100 t", "");
  EXPECT_EQ("0:1 refused", full.findings());  // 644 + 52 + 1160 + 6336 = 8192
}

struct Sample {
  Sample() {
    set_log_level(kLogError - 1);
    std::filesystem::copy(TOVA_SAMPLE, dir.path(),
                          std::filesystem::copy_options::recursive);
    std::string list;
    for (const char* elf : {"base_fw", "mixer", "reverb", "meter"}) {
      for (const char* kind : {".elf", ".sections", ".symbols"}) {
        list += dir.file("linked/") + elf + kind + '\n';
      }
    }
    options.inputs.elf_list_path = dir.write("elfs", list);
    options.inputs.default_dir = dir.path();
    options.inputs.module_config_path = dir.file("src/audio_config.h");
    options.inputs.key_list_path = dir.file("keys/trusted-keys.list");
  }
  std::string findings(const std::string& generation = "1.8") {
    options.inputs.image_def_path =
        dir.file("definitions/gen_" + generation + ".def");
    return findings_of(lint(options));
  }
  void replace(const std::string& file, const std::string& from,
               const std::string& to) const {
    std::string text = read_file(dir.file(file));
    ASSERT_NE(std::string::npos, text.find(from)) << from;
    text.replace(text.find(from), from.size(), to);
    dir.write(file, text);
  }
  TempDir dir;
  LintOptions options;
};

TEST(LinkedRules, SampleHasNoFinding) {
  Sample sample;
  for (const char* generation : {"1.5", "1.8", "2.5", "3.0"}) {
    EXPECT_EQ("", sample.findings(generation)) << generation;
  }
  sample.options.inputs.key_list_path.clear();
  sample.options.inputs.module_config_path.reset();
  EXPECT_EQ("", sample.findings());
}

// Without a byte of what may be a private key, which a terminal isn't shown
// either.
TEST(LinkedRules, FaultOfTheKeyListStandsInIt) {
  Sample sample;
  const std::string list = sample.dir.file("keys/trusted-keys.list");
  const std::string good = sample.dir.file("keys/test-key-public.key");
  const std::string key = sample.dir.write("keys/other.pem", "-----BEGIN EC");
  const struct {
    std::string text;
    std::string finding;
  } cases[] = {
      {"(8:sequence x",
       ":1:1: error: Not recognized key type; this is no key list: its line 1 "
       "has to be 'debug' or 'production' and the path of a key file "
       "[refused]\n"},
      {"debug " + good + "\nproduction " + key + '\n',
       ":2:1: error: Key type not recognized; its key file " + key +
           " is none: make one with 'tova_fw key import' [refused]\n"}};
  for (const auto& c : cases) {
    sample.dir.write("keys/trusted-keys.list", c.text);
    sample.findings();
    std::ostringstream out;
    print_findings(out, lint(sample.options), "/", true, {});
    EXPECT_EQ(list.substr(1) + c.finding, out.str());
  }
  // An empty line ends the list.
  sample.dir.write("keys/trusted-keys.list", "debug " + good + "\n\nend\n");
  EXPECT_FALSE(find_key_list_fault(list, ""));
}

// A table or list of another link; the second ELF's stand in lines 5 and 6.
TEST(LinkedRules, TablesOfAnotherLink) {
  {
    Sample sample;
    sample.replace("linked/mixer.sections", "000000bc  10008000",
                   "000000b8  10008000");
    EXPECT_EQ("elfs:5:1 stale-table", sample.findings());
  }
  {
    Sample sample;
    std::filesystem::copy(sample.dir.file("linked/meter.elf"),
                          sample.dir.file("linked/mixer.elf"),
                          std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ("elfs:5:1 stale-table", sample.findings());
  }
  {
    Sample sample;
    std::string list = read_file(sample.dir.file("linked/base_fw.symbols"));
    const std::size_t place = list.find(" T fw_alloc");
    list[place - 1] = list[place - 1] == '0' ? '4' : '0';
    sample.dir.write("linked/base_fw.symbols", list);
    EXPECT_EQ("elfs:3:1 stale-table", sample.findings());
  }
  {
    // Of an addon that need not be there: its sections aren't missed.
    Sample sample;
    sample.dir.write("linked/reverb.sections", "no table\n");
    EXPECT_NE(sample.findings().find("elfs:8:1 stale-table"),
              std::string::npos);
  }
  {
    Sample sample;
    std::filesystem::resize_file(sample.dir.file("linked/mixer.elf"), 4096);
    EXPECT_EQ("elfs:5:1 stale-table", sample.findings());
  }
}

// What lies about itself is no ELF, and nothing more.
TEST(ElfFacts, DamagedOnesAreReadAsFarAsTheyGo) {
  const std::string elf =
      read_file(std::string(TOVA_SAMPLE) + "/linked/base_fw.elf");
  const TempDir dir;
  const std::map<std::string, bool> wanted = {{"fw_alloc", false}};
  const ElfFacts whole = read_elf_facts(dir.write("whole", elf), wanted);
  EXPECT_EQ(elf.size(), whole.length);
  EXPECT_EQ(1u, whole.sections.count(".text.gain"));
  EXPECT_EQ(0x10001000u, whole.sections.find(".text.gain")->second.address);
  EXPECT_EQ(1u, whole.symbols.size());
  // Every table of symbols has a null one; with it alone there is none to ask.
  EXPECT_TRUE(whole.has_symbols);
  std::string stripped = elf;
  const auto word = [&](std::size_t at) {
    return std::size_t{static_cast<unsigned char>(elf[at])} |
           std::size_t{static_cast<unsigned char>(elf[at + 1])} << 8 |
           std::size_t{static_cast<unsigned char>(elf[at + 2])} << 16;
  };
  for (std::size_t at = word(32); at + 40 <= elf.size(); at += 40) {
    if (word(at + 4) == 2) stripped.replace(at + 20, 4, {16, 0, 0, 0});
  }
  EXPECT_FALSE(
      read_elf_facts(dir.write("stripped", stripped), wanted).has_symbols);
  // Each byte of the header, each length.
  for (std::size_t i = 0; i < 64; ++i) {
    for (const char byte : {'\x00', '\x01', '\x7F', '\xFF'}) {
      std::string damaged = elf;
      damaged[i] = byte;
      read_elf_facts(dir.write("damaged", damaged), wanted);
    }
    const auto cut = read_elf_facts(
        dir.write("cut", elf.substr(0, elf.size() * i / 64)), wanted);
    EXPECT_TRUE(cut.sections.empty());
  }
}

}  // namespace
}  // namespace tova_fw_builder
