// inspect/inspected.h
// What was found in a file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "inspect/field.h"
#include "inspect/format.h"

namespace tova_fw_builder {

// What is wrong at a place of a file.
struct Problem {
  std::uint64_t offset = 0;
  std::string text;
};

struct Inspected {
  Format format = Format::kEmbedded;
  std::uint64_t length = 0;  // of the file
  std::string title;         // what the file is, in a few words
  Field root;  // an object; its members are docs/file-formats.md's
  std::vector<Problem> problems;  // by offset; empty when all is well
};

// Adds a problem; behind a thousand of them one says that there are more.
void add_problem(Inspected& inspected, std::uint64_t offset, std::string text);

}  // namespace tova_fw_builder
