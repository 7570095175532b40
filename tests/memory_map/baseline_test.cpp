#include "memory_map/baseline.h"

#include <gtest/gtest.h>

#include <sstream>

#include "memory_map/measured.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

std::string text_of(const std::vector<SizeChange>& changes) {
  std::ostringstream text;
  for (const SizeChange& row : changes) {
    text << row.name << ' ' << row.section << '/' << row.owner << ' '
         << row.before << "->" << row.after << '\n';
  }
  return text.str();
}

MapSizes read_text(const std::string& json) {
  std::istringstream in(json);
  return read_sizes(in);
}

// What map --json would tell of a map, read again.
MapSizes written_and_read(const MemoryMap& map) {
  return read_text(json_of(map));
}

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST(Baseline, RefusesWhatIsNoMap) {
  const std::string kHead = R"({"schema":1,"image":{},"symbols_total":0)";
  const std::string kSymbol =
      R"({"name":"s","module":"m","section":"a","address":0,"size":1})";
  const struct {
    std::string text;
    bool is_map;
  } kCases[] = {
      {kHead + "}", true},
      {kHead + R"(,"unknown":[{"name":{}}],"modules":[]})", true},
      {kHead + R"(,"symbols":[)" + kSymbol + "]}", true},
      // As deep as nobody wants to follow, and as a copy would have to.
      {R"({"a":)" + std::string(100'000, '[') + std::string(100'000, ']') +
           R"(,"schema":1,"image":{},"symbols_total":0})",
       false},
      // What no map has is dropped as it comes: else each row searches it all.
      {R"({"schema":1,"image":{},"symbols_total":0,"text":[)" +
           repeated("{},", 50'000) + R"({}],"symbols":[)" +
           repeated("[],", 50'000) + repeated(kSymbol + ",", 50'000) + kSymbol +
           "]}",
       true},
      {R"({"schema":1,"image":[1,{"a":2}],"symbols_total":0,"symbols":[1]})",
       true},
      {kHead + R"(,"symbols":[{"name":"s","module":null,"section":"a",)"
               R"("size":68719476736}]})",
       true},
      {"", false},
      {"{", false},
      {"[]", false},
      {"1", false},
      {"null", false},
      {kHead, false},
      {kHead + "}}", false},
      {R"({"schema":1,"symbols_total":0})", false},
      {R"({"image":{},"symbols_total":0})", false},
      {R"({"schema":1,"image":{}})", false},
      {R"({"schema":2,"image":{},"symbols_total":0})", false},
      {R"({"schema":"1","image":{},"symbols_total":0})", false},
      {R"({"schema":1,"image":{},"symbols_total":1.5})", false},
      {R"({"schema":1,"image":{},"symbols_total":-1})", false},
      {kHead + R"(,"modules":[{"name":"m"}]})", false},
      {kHead + R"(,"modules":[{"name":1}]})", false},
      {kHead + R"(,"classes":[{"name":"c"}]})", false},
      {kHead + R"(,"classes":[{"used":1}]})", false},
      {kHead + R"(,"classes":[{"name":"c","used":1,"sections":[{}]}]})", false},
      {kHead + R"(,"left_out":[{"section":"x"}]})", false},
      {kHead + R"(,"outside_classes":[{"name":"x","size":1}]})", false},
      {kHead + R"(,"symbols":[{"name":"s","section":"a","size":1}]})", false},
      {kHead + R"(,"symbols":[{"name":"s","module":"m","section":"a",)"
               R"("size":68719476737}]})",
       false},
  };
  for (const auto& item : kCases) {
    EXPECT_EQ(item.is_map ? "no exception"
                          : "is no memory map (tova_fw map --json makes one)",
              message_of([&] { read_text(item.text); }))
        << item.text;
  }
}

TEST(Baseline, SaysTheSameAsTheMap) {
  // A section in two classes, one in none, one of two ELFs' name, one left out.
  const MemoryMap map =
      measure("memory_class m 1000 1000\nmemory_class n 1000 2000\n" +
                  text_module("M", {"a", "b", "c"}),
              {{"a 100 1000 1000 text;b 20 2000 2000 text;c 8 9000 3000 text;"
                "x 10 7000 7000 bss;",
                "00001000 T one\n00001004 T two\n00007000 B lost\n"},
               {"x 30 8000 8000 bss;", "00008000 B lost\n"}});
  const MapSizes read = written_and_read(map);
  const MapSizes own = sizes_of(map);
  EXPECT_EQ(own.classes, read.classes);
  EXPECT_EQ(own.modules, read.modules);
  ASSERT_EQ(own.parts.size(), read.parts.size());
  for (const auto& [part, size] : own.parts) {
    const auto& other = read.parts.at(part);
    EXPECT_EQ(size.bytes, other.bytes) << part.section << ' ' << part.symbol;
    EXPECT_EQ(size.owner, other.owner) << part.section << ' ' << part.symbol;
  }
  EXPECT_EQ(256u, own.classes.at("m"));
  EXPECT_EQ(288u, own.classes.at("n"));
  EXPECT_EQ(256u, own.parts.at({"a", ""}).bytes);
  EXPECT_EQ(252u, own.parts.at({"a", "two"}).bytes);
  EXPECT_EQ(64u, own.parts.at({"x", ""}).bytes);
  EXPECT_EQ(64u, own.parts.at({"x", "lost"}).bytes);
  EXPECT_EQ("", own.parts.at({"x", ""}).owner);
  EXPECT_EQ(0u, own.unlisted_below);
}

TEST(Baseline, WhatGrewMostComesFirst) {
  MapSizes before, after;
  before.classes = {{"c", 100}, {"same", 5}, {"gone", 7}};
  after.classes = {{"c", 103}, {"same", 5}, {"new", 3}};
  before.modules = {{"m", 9}};
  // a has 40 bytes without a symbol, then 60; b shrinks more than all grow.
  before.parts = {{{"a", ""}, {"m", 100}},  {{"a", "f"}, {"m", 50}},
                  {{"a", "g"}, {"m", 10}},  {{"b", ""}, {"m", 500}},
                  {{"b", "h"}, {"m", 500}}, {{"d", ""}, {"m", 8}}};
  after.parts = {{{"a", ""}, {"n", 140}}, {{"a", "f"}, {"n", 50}},
                 {{"a", "i"}, {"n", 30}}, {{"b", ""}, {"m", 1}},
                 {{"b", "h"}, {"m", 1}},  {{"e", ""}, {"m", 20}}};
  const MapChanges changes = compare_sizes(before, after);
  EXPECT_EQ("c / 100->103\nnew / 0->3\ngone / 7->0\n",
            text_of(changes.classes));
  EXPECT_EQ("m / 9->0\n", text_of(changes.modules));
  EXPECT_EQ(
      "i a/n 0->30\na /n 40->60\ne /m 0->20\n"
      "h b/m 500->1\ng a/m 10->0\nd /m 8->0\n",
      text_of(changes.parts));
}

TEST(Baseline, MoreSymbolsThanTheirSectionHasBytes) {
  // As a baseline may say that anyone wrote.
  MapSizes before, after;
  before.parts = {{{"a", ""}, {"m", 10}}, {{"a", "f"}, {"m", 50}}};
  after.parts = {{{"a", ""}, {"m", 10}}};
  EXPECT_EQ("a /m 0->10\nf a/m 50->0\n",
            text_of(compare_sizes(before, after).parts));
}

TEST(Baseline, SymbolsThatMayBeMissingAreNotCompared) {
  // The list was cut behind g: whether f of 9 bytes was there, nobody knows.
  const MapSizes before =
      read_text(R"({"schema":1,"image":{},"symbols_total":3,"symbols":[)"
                R"({"name":"h","module":"m","section":"a","size":20},)"
                R"({"name":"g","module":"m","section":"a","size":9}]})");
  EXPECT_EQ(9u, before.unlisted_below);
  MapSizes after;
  after.parts = {
      {{"a", "f"}, {"m", 9}}, {{"a", "e"}, {"m", 10}}, {{"a", "h"}, {"m", 19}}};
  EXPECT_EQ("e a/m 0->10\nh a/m 20->19\n",
            text_of(compare_sizes(before, after).parts));
  EXPECT_EQ("h a/m 19->20\ne a/m 10->0\n",
            text_of(compare_sizes(after, before).parts));
}

TEST(Baseline, TheListOfSymbolsIsCut) {
  MemoryMap map;
  map.sections = {{"a", "m", 0, 0x1000000}};
  for (std::uint32_t i = 0; i <= kMaxListedSymbols; ++i) {
    map.symbols.push_back({"s", 0, false, i, 300'000 - i});
  }
  EXPECT_EQ(300'000 - kMaxListedSymbols + 1, sizes_of(map).unlisted_below);
  EXPECT_EQ(300'000 - kMaxListedSymbols + 1,
            written_and_read(map).unlisted_below);
  EXPECT_EQ(kMaxListedSymbols, Json::parse(json_of(map))["symbols"].size());
  map.symbols.pop_back();
  EXPECT_EQ(0u, sizes_of(map).unlisted_below);
}

}  // namespace
}  // namespace tova_fw_builder
