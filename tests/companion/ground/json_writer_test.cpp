#include "companion/ground/json_writer.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tova_fw_builder {
namespace {

void write_sample(JsonWriter& json) {
  json.open('{');
  json.value("a\u009B", {{"x", {1, "\n]"}}, {"y", Json::array()}});
  json.open("none", '[');
  json.close();
  json.open("rows", '[');
  json.value("\xFF");
  json.open('{');
  json.members({{"b", true}, {"c", {{"d", nullptr}}}});
  json.close();
  json.open('{');
  json.close();
  json.close();
  json.value("end", 1);
  json.close();
}

// In pieces it is what json_text makes of the whole.
TEST(JsonWriter, PrintsTheDocumentInPieces) {
  Json whole;
  whole["a\u009B"] = {{"x", {1, "\n]"}}, {"y", Json::array()}};
  whole["none"] = Json::array();
  whole["rows"] = {
      "\xFF", {{"b", true}, {"c", {{"d", nullptr}}}}, Json::object()};
  whole["end"] = 1;
  std::ostringstream lines;
  JsonWriter in_lines(lines);
  write_sample(in_lines);
  EXPECT_EQ(json_text(whole), lines.str());
  std::ostringstream line;
  JsonWriter in_a_line(line, json_line);
  write_sample(in_a_line);
  EXPECT_EQ(json_line(whole), line.str());
}

}  // namespace
}  // namespace tova_fw_builder
