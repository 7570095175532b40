// Sections by run addresses: classes, what lies outside of them, overlaps.
#include <gtest/gtest.h>

#include <sstream>

#include "memory_map/measured.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// "used/size+hw_buf: sections" of each class.
std::string classes_of(const MemoryMap& map) {
  std::ostringstream text;
  for (const auto& area : map.classes) {
    text << area.name << ' ' << area.used << '/' << area.size << '+'
         << area.hw_buf << ':';
    for (const auto i : area.sections) text << ' ' << map.sections[i].name;
    text << '\n';
  }
  return text.str();
}

std::string outside_of(const MemoryMap& map) {
  std::ostringstream text;
  for (const auto& row : map.outside_classes) {
    text << map.sections[row.section].name << ' ' << row.bytes << ' ';
  }
  return text.str();
}

std::string overlaps_of(const MemoryMap& map) {
  std::ostringstream text;
  for (const auto& row : map.overlaps) {
    text << section_at(map, row.first).name << '+'
         << section_at(map, row.second).name << ' ' << std::hex << row.address
         << ' ' << std::dec << row.size << '\n';
  }
  return text.str();
}

// a: 1000 to 1100. b: 1080 to 1180. c: 1fc0 to 2040. p: nothing, at 1800.
const Elf kElf = {
    "a 100 1000 1000 text;b 100 1080 2000 text;c 80 1fc0 3000 text;"
    "p 0 1800 4000 text;"};
const std::string kModule = text_module("M", {"a", "b", "c", "p"});

TEST(Classes, CountAddressesOfTheirOwn) {
  const struct {
    const char* classes;
    const char* expected;
  } kCases[] = {
      // 256 + 128 behind the overlap + 64 of c.
      {"memory_class m 1000 1000\n", "m 448/4096+0: a b p c\n"},
      // From inside a to inside b.
      {"memory_class m 1090 20\n", "m 32/32+0: a b\n"},
      {"memory_class m 1100 20\n", "m 32/32+0: b\n"},
      {"memory_class m 1800 1\n", "m 0/1+0: p\n"},
      {"memory_class m 1801 10\n", "m 0/16+0:\n"},
      {"memory_class m 17ff 1\n", "m 0/1+0:\n"},
      // The last byte of c, and the first one behind it.
      {"memory_class m 203f 1\nmemory_class n 2040 1\n",
       "m 1/1+0: c\nn 0/1+0:\n"},
      // One over the other, and one of no size.
      {"memory_class m 1000 2000\nmemory_class n 2000 100\n"
       "memory_class o 1000 0\n",
       "m 512/8192+0: a b p c\nn 64/256+0: c\no 0/0+0:\n"},
  };
  for (const auto& item : kCases) {
    EXPECT_EQ(item.expected,
              classes_of(measure(item.classes + kModule, {kElf})))
        << item.classes;
  }
}

TEST(Classes, TellTheHardwareBufferApart) {
  // From 10c0 to 1200: free of sections from 1180 on, 32 bytes of it in m.
  const MemoryMap map =
      measure("memory_class m 1000 1a0\nmemory_class n 3000 100\n" + kModule,
              {kElf}, "binary_ver 1.8\nhw_buf_ba 10c0\nhw_buf_size 140\n");
  EXPECT_EQ("m 384/416+32: a b\nn 0/256+0:\n", classes_of(map));
  EXPECT_EQ(32u, map.classes[0].free());
  EXPECT_EQ("a+b 1080 128\na+hw_buf 10c0 64\nb+hw_buf 10c0 192\n",
            overlaps_of(map));
}

TEST(Classes, NameWhatLiesOutside) {
  EXPECT_EQ("a 240 b 112 c 64 ",
            outside_of(measure("memory_class m 10f0 f10\n" + kModule, {kElf})));
  EXPECT_EQ("a 256 b 256 c 128 ", outside_of(measure(kModule, {kElf})));
  // Together the classes hold what neither does.
  EXPECT_EQ("", outside_of(measure("memory_class m 1000 1000\n"
                                   "memory_class n 2000 1000\n" +
                                       kModule,
                                   {kElf})));
}

// `count` sections of one module, `distance` bytes from one to the next.
MemoryMap measure_many(int count, int distance, const std::string& classes) {
  Elf elf;
  std::vector<std::string> names;
  for (int i = 0; i < count; ++i) {
    std::ostringstream name, line;
    name << 's' << i;
    names.push_back(name.str());
    line << names.back() << std::hex << " 10 " << distance * i << ' ' << 16 * i
         << " text;";
    elf.sections += line.str();
  }
  return measure(classes + text_module("M", names), {elf});
}

TEST(Classes, ListsAreLimited) {
  // 2001 classes of 2000 sections each: 4,002,000 rows.
  std::string classes;
  for (int i = 0; i < 2001; ++i) classes += "memory_class c 0 10000000\n";
  EXPECT_EQ(
      "the memory classes overlap too much: more than 4000000 times a "
      "section lies in one of them",
      message_of([&] { measure_many(2000, 16, classes); }));
}

TEST(Overlaps, EachPairOnce) {
  // a holds b and c whole, which touch; d begins where all of them end, and e,
  // of no size, shares nothing.
  const MemoryMap map =
      measure(text_module("M", {"a", "b", "c", "d", "e"}),
              {{"a 40 1000 1000 text;b 10 1010 2000 text;c 20 1020 3000 text;"
                "d 10 1040 4000 text;e 0 1015 5000 text;"}});
  EXPECT_EQ("a+b 1010 16\na+c 1020 32\n", overlaps_of(map));
  EXPECT_FALSE(map.has_more_overlaps);
}

TEST(Overlaps, AreCut) {
  // 142 sections at one place: 142 * 141 / 2 = 10,011 pairs.
  for (const int count : {141, 142}) {
    const MemoryMap map = measure_many(count, 0, "");
    EXPECT_EQ(count == 141 ? 9870u : 10000u, map.overlaps.size());
    EXPECT_EQ(count == 142, map.has_more_overlaps);
  }
}

TEST(Sections, BelongToTheModuleThatNamesThem) {
  // b is in the loadable module and, built in, in PART; h in no module, d in
  // one and in a dyn_mem statement, too. The store of keys has no address.
  const MemoryMap map = measure(
      "dyn_mem h\ndyn_mem d\ndyn_mem public_keys_storage\nmodule b PART\n"
      "uuid 5A3C0001-7B1E-4C52-9D40-000000000002\ngroup text\n"
      "section ep b\n" +
          text_module("BASE", {"a", "b", "d"}),
      {{"a 10 1000 1000 text;b 10 2000 2000 text;d 10 3000 3000 text;"
        "h 10 500 500 bss;"}});
  std::ostringstream text;
  for (const auto& section : map.sections) {
    text << section.name << '=' << section.owner << ' ';
  }
  EXPECT_EQ("h=dyn_mem a=BASE b=PART d=BASE ", text.str());
}

}  // namespace
}  // namespace tova_fw_builder
