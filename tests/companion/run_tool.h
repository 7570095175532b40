// tests/companion/run_tool.h
// The companion run inside the test, with its outputs caught.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "companion/ground/json.h"
#include "companion/program.h"

namespace tova_fw_builder {

struct Outcome {
  int status = 0;
  std::string out;
  std::string err;

  // The JSON document that was printed; fails the test if it is none.
  Json json() const {
    Json document = Json::parse(out, nullptr, false);
    EXPECT_FALSE(document.is_discarded()) << out << err;
    return document;
  }
};

inline Outcome run_tool(std::vector<std::string> words) {
  words.insert(words.begin(), "tova_fw");
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  Outcome run;
  run.status =
      run_program(static_cast<int>(arguments.size()), arguments.data());
  run.out = testing::internal::GetCapturedStdout();
  run.err = testing::internal::GetCapturedStderr();
  return run;
}

}  // namespace tova_fw_builder
