// What the builder refuses, lint refuses, and nothing else: on the sample's
// definitions with thousands of mistakes put in. The builder's side is the two
// readers alone, as the build core calls them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <sstream>

#include "definitions/constants_header.h"
#include "definitions/image_block.h"
#include "definitions/includes_and_defines.h"
#include "lint/linted.h"
#include "lint/rules.h"

namespace tova_fw_builder {
namespace {

constexpr const char* kWords[] = {
    "section", "group", "module",   "pin",       "entry",   "o",          "ep",
    "<",       "text",  "bss",      "0x1b",      "1",       "+1",         "#",
    "uuid",    "name",  "",         "include",   "define",  "type",       "zz",
    "LL",      "b",     "FFFFFFFF", "100000000", "mod_cfg", "sched_caps", " "};

// Replaces, doubles, drops or breaks a word somewhere.
std::string mutated(const std::string& text, std::mt19937& random) {
  std::string result = text;
  const auto below = [&](std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
  };
  for (std::size_t i = 0, count = 1 + below(3); i < count; ++i) {
    const std::size_t start = below(result.size());
    const std::size_t end =
        std::min(result.find_first_of(" \n", start), result.size());
    switch (below(5)) {
      case 0:
        result.replace(start, end - start, kWords[below(std::size(kWords))]);
        break;
      case 1:
        result.erase(start, end - start);
        break;
      case 2:
        result.insert(start, 1, "\n \t#<0a"[below(7)]);
        break;
      case 3:
        result.insert(end, kWords[below(std::size(kWords))]);
        result.insert(end, 1, ' ');
        break;
      default:
        result.erase(start, 1);
    }
    if (result.empty()) return "\n";
  }
  return result;
}

// The line of the flattened text in which the builder stopped, or its message.
std::string builder_message(const BuildInputs& inputs) {
  FwOutMap map;
  map.default_dir = inputs.default_dir;
  return message_of([&] {
    read_modules_config(map, *inputs.module_config_path);
    auto text = read_image_defs(map, inputs.image_def_path);
    // An include has lost all of it: no generation is known.
    if (!text->good()) throw std::runtime_error("Unrecognized binary version");
    read_image_layout(map, std::move(text));
  });
}

TEST(Agreement, OnMutatedDefinitions) {
  TempDir dir;
  std::filesystem::copy(TOVA_SAMPLE "/definitions", dir.path());
  const std::string files[] = {"audio_firmware.def", "base_modules.def",
                               "addon_modules.def", "evaluation_board.def",
                               "gen_1.8.def"};
  LintOptions options;
  options.inputs.image_def_path = dir.file("gen_1.8.def");
  options.inputs.default_dir = dir.path();
  options.inputs.module_config_path = TOVA_SAMPLE "/src/audio_config.h";
  std::mt19937 random(20);
  int refused = 0;
  for (int i = 0; i < 600; ++i) {
    const std::string& name = files[i % 5];
    const std::string right = read_file(TOVA_SAMPLE "/definitions/" + name);
    const std::string wrong = mutated(right, random);
    dir.write(name, wrong);
    const std::string message = builder_message(options.inputs);
    const LintReport report = lint(options);
    const auto found =
        std::ranges::find(report.findings, kRefused, &Finding::rule);
    ASSERT_EQ(message != "no exception", found != report.findings.end())
        << message << '\n'
        << wrong;
    if (found != report.findings.end()) {
      ++refused;
      // The same message, but for the number of the flattened line.
      const std::size_t number = message.find(": [");
      const std::string text =
          number < 8 ? message.substr(number + 2) : message;
      EXPECT_TRUE(found->text.starts_with(text)) << message << '\n'
                                                 << found->text;
    }
    for (const Finding& finding : report.findings) {
      EXPECT_TRUE(finding.level == Level::kWarning ||
                  finding.rule == kRefused || finding.rule == "duplicate-uuid")
          << finding.text;
    }
    dir.write(name, right);
  }
  // Enough of both, or nothing was shown.
  EXPECT_GT(refused, 150);
  EXPECT_LT(refused, 450);
}

}  // namespace
}  // namespace tova_fw_builder
