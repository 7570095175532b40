#include "memory_map/map_page.h"

#include <gtest/gtest.h>

#include <sstream>

#include "memory_map/json_for_page.h"
#include "memory_map/measured.h"

namespace tova_fw_builder {
namespace {

std::string page_of(const MemoryMap& map, const MapChanges* changes = nullptr) {
  std::ostringstream page;
  print_map_page(page, {map, {}, changes, "old.json"});
  return page.str();
}

// The data of a page, as a browser finds them.
std::string data_of(const std::string& page) {
  const std::string kBegin = R"(<script id="map" type="application/json">)";
  const std::size_t begin = page.find(kBegin) + kBegin.size();
  return page.substr(begin, page.find("</script>", begin) - begin);
}

TEST(MapPage, NamesCannotLeaveTheirPlace) {
  const std::string kHostile =
      "</script><!--&\xE2\x80\xA8\xE2\x80\xA9\xFF\x01\"\\@script@";
  MemoryMap map;
  map.image.name = kHostile;
  const std::string page = page_of(map);
  const std::string data = data_of(page);
  for (const char c : data) {
    EXPECT_TRUE(c >= 32 && c < 127 && c != '<' && c != '>' && c != '&') << c;
  }
  // U+FFFD stands for the byte that no UTF-8 begins with; all else is there.
  EXPECT_EQ(
      "</script><!--&\xE2\x80\xA8\xE2\x80\xA9\xEF\xBF\xBD\x01\"\\@script@",
      Json::parse(data)["image"]["name"]);
}

TEST(MapPage, IsWholeAndFetchesNothing) {
  const std::string page = page_of(MemoryMap());
  EXPECT_TRUE(page.starts_with("<!DOCTYPE html>\n"));
  EXPECT_TRUE(page.ends_with("</html>\n"));
  for (const char* text :
       {"@style@", "@script@", "@data@", "http:", "https:", "src=", "url(",
        "@import", "import ", "fetch", "innerHTML"}) {
    EXPECT_EQ(std::string::npos, page.find(text)) << text;
  }
  EXPECT_NE(std::string::npos, page.find("default-src 'none'"));
}

TEST(MapPage, LongListsAreCut) {
  // A row of a symbol has 87 bytes besides its name; 424 in the name and the
  // comma make 512: 768 of them are 384 KiB.
  const std::string name(424, 'n');
  for (const std::size_t count :
       {std::size_t{768}, std::size_t{769}, kMaxListedSymbols + 1}) {
    MemoryMap map;
    map.has_more_overlaps = true;
    map.sections = {{"abcdefgh", "modules", 0, 1000}};
    map.symbols.assign(count, {name, 0, false, 1000000000, 1000000});
    const Json data = Json::parse(data_of(page_of(map)));
    ASSERT_EQ(511u, json_for_page(data["symbols"][0]).size());
    EXPECT_EQ(std::min<std::size_t>(count, 768), data["symbols"].size());
    EXPECT_EQ(count, data["rows"]["symbols"]);
    EXPECT_EQ(0, data["rows"]["overlaps"]);
    EXPECT_EQ(true, data["overlaps_cut"]);
    EXPECT_FALSE(data["rows"].contains("changes"));
  }
  MapChanges changes;
  changes.parts.assign(9000, {name, "", "", 1, 2});
  const Json data = Json::parse(data_of(page_of(MemoryMap(), &changes)));
  EXPECT_EQ(9000, data["rows"]["changes"]);
  EXPECT_LT(data["baseline"]["changes"].size(), 1100u);
}

TEST(MapJson, TellsEachFieldOnce) {
  // Besides the sums, which others hold: what stands under which name.
  const MemoryMap map =
      measure("binary_name DEMO\nmemory_class m 1000 1000\n" +
                  text_module("M", {"a", "b"}),
              {{"a 10 1000 8000 text;b 10 1008 9000 text;x 4 5000 5000 bss;",
                "00001004 T s\n00005000 B l\n"}},
              "binary_ver 1.8\nhw_buf_ba 1ff0\nhw_buf_size 20\n");
  MapChanges changes;
  changes.classes = {{"m", "", "", 1, 3}};
  changes.parts = {{"s", "a", "M", 3, 1}, {"b", "", "", 0, 2}};
  Json json =
      Json::parse(json_of(map, {{"m", "1K", 16, 24}}, &changes, "old.json"));
  json["modules"][0].erase("uuid");
  const char* const kExpected = R"({"schema":1,
    "image":{"name":"DEMO","generation":"1.8","version":null,"pages":2},
    "hw_buf":{"address":8176,"size":32},
    "classes":[{"name":"m","base":4096,"size":4096,"used":24,"free":4072,
      "hw_buf":16,"sections":[
      {"name":"a","module":"M","address":4096,"size":16},
      {"name":"b","module":"M","address":4104,"size":16}]}],
    "modules":[{"name":"M","built_in":false,"text":32,"rodata":0,"bss":0,
      "gaps":4080,"padding":4080,"pages":2,"packed_pages":1}],
    "groups":[{"module":"M","kind":"text","address":32768,"pages":2,"unused":[
      {"address":32784,"size":4080},{"address":36880,"size":4080}]}],
    "left_out":[{"section":"x","elf":"0.elf","address":20480,"size":4}],
    "outside_classes":[],
    "overlaps":[{"address":4104,"size":8,"sections":[
      {"name":"a","module":"M","address":4096,"size":16},
      {"name":"b","module":"M","address":4104,"size":16}]}],
    "overlaps_cut":false,
    "symbols":[
      {"name":"s","module":"M","section":"a","address":4100,"size":12},
      {"name":"l","module":null,"section":"x","address":20480,"size":4}],
    "symbols_total":2,
    "budgets":[{"class":"m","limit":16,"used":24,"over":8}],
    "baseline":{"path":"old.json",
      "classes":[{"name":"m","old":1,"new":3,"change":2}],"modules":[],
      "changes":[
      {"name":"s","section":"a","module":"M","old":3,"new":1,"change":-2},
      {"name":"b","section":null,"module":null,"old":0,"new":2,"change":2}]}})";
  EXPECT_EQ(json_text(Json::parse(kExpected)), json_text(json));
}

}  // namespace
}  // namespace tova_fw_builder
