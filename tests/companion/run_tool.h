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

inline Outcome run_tool(const std::vector<std::string>& words) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  Outcome run;
  run.status = run_program(words);
  run.out = testing::internal::GetCapturedStdout();
  run.err = testing::internal::GetCapturedStderr();
  return run;
}

}  // namespace tova_fw_builder
