#include "definitions/constants_header.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tova_fw_builder {
namespace {

using Consts = std::map<std::string, std::uint32_t>;

Consts read(const std::string& text) {
  std::istringstream in(text);
  FwOutMap map;
  read_modules_config(map, in);
  return map.consts;
}

TEST(ModulesConfig, OneLineFormAndItsNumbers) {
  const std::pair<const char*, Consts> cases[] = {
      {"#ifndef A\n# define A 1\n#Define B 1\nx #define C 1\n", {}},
      {" \t#define A 1 // 2\n#define B 2\r\n", {{"A", 1}, {"B", 2}}},
      {"#define A 0x10\n#define B 010\n#define C 10U\n#define D (16)\n",
       {{"A", 16}, {"B", 8}, {"C", 10}, {"D", 0}}},
      {"#define A -1\n#define B 4294967296\n",
       {{"A", 0xFFFFFFFF}, {"B", 0xFFFFFFFF}}},
      {"#define F(x) 3\n#define A\n#define", {{"F(x)", 3}, {"A", 0}, {"", 0}}},
      {"#define A 1\n#define A 2", {{"A", 2}}},
  };
  for (const auto& [text, consts] : cases) EXPECT_EQ(consts, read(text));
}

TEST(ModulesConfig, LongLineCountsUpTo1023CharactersAndEndsTheReading) {
  const std::string line = "#define A 12" + std::string(1011, ' ');
  ASSERT_EQ(1023u, line.size());
  EXPECT_EQ((Consts{{"A", 12}, {"B", 1}}), read(line + "\n#define B 1\n"));
  EXPECT_EQ((Consts{{"A", 12}}), read(line + "3\n#define B 1\n"));
}

}  // namespace
}  // namespace tova_fw_builder
