#include "driver/command_line.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "driver/ground/log.h"
#include "support/captured_log.h"

namespace tova_fw_builder {
namespace {

std::vector<std::string> seen;

constexpr Command kFake[] = {
    {"one", 1,
     [](std::span<const std::string> p) { seen.assign(p.begin(), p.end()); }},
    {"bad", 0,
     [](std::span<const std::string>) { throw std::out_of_range("why"); }},
};

struct Outcome {
  int status;
  std::string text;
  int level;
};

Outcome run(const std::vector<std::string>& arguments) {
  CapturedLog log;
  const int status = run_command_line(arguments, kFake);
  return {status, log.text(), log_level()};
}

const std::string kUsageStart =
    "usage: tova_fw_builder [-v] command <params>\n";

bool is_usage(const std::string& text) { return text.starts_with(kUsageStart); }

TEST(CommandLine, StatusesAndWhatIsPrinted) {
  EXPECT_EQ(-2, run({}).status);
  EXPECT_TRUE(is_usage(run({}).text));
  EXPECT_EQ(-3, run({"-v"}).status);
  EXPECT_TRUE(is_usage(run({"-v"}).text));

  const std::vector<std::string> unknown_words = {"ONE", "on", "one ", "",
                                                  "-v"};
  for (const auto& word : unknown_words) {
    const std::string line = "Error: Invalid command " + word + "\n";
    const Outcome result = run({"-v", word});
    EXPECT_EQ(-3, result.status);
    EXPECT_TRUE(result.text.starts_with(line + kUsageStart)) << result.text;
  }
  EXPECT_EQ(-1, run({"one"}).status);
  EXPECT_TRUE(run({"one"}).text.starts_with(
      "Error: Insufficient number of args\n" + kUsageStart));
  EXPECT_EQ(-5, run({"bad"}).status);
  EXPECT_EQ("Error: why\n", run({"bad"}).text);
}

TEST(CommandLine, OnlyTheFirstWordCanBeTheSwitch) {
  Outcome result = run({"one", "-v", "x"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(2, result.level);
  EXPECT_EQ((std::vector<std::string>{"-v", "x"}), seen);
  result = run({"-v", "one", "y"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(3, result.level);
  EXPECT_EQ((std::vector<std::string>{"y"}), seen);
}

}  // namespace
}  // namespace tova_fw_builder
