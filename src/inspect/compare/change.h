// inspect/compare/change.h
// One difference between two files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "inspect/field.h"
#include "inspect/format.h"

namespace tova_fw_builder {

// How two runs of bytes differ.
struct ByteDifference {
  std::uint64_t old_length = 0;
  std::uint64_t new_length = 0;
  std::uint64_t bytes = 0;  // that differ in what both have
  std::uint64_t pages = 0;  // with such bytes, counted from the run's start
  std::uint64_t first = 0;  // of these bytes, from the run's start

  bool is_equal() const { return bytes == 0 && old_length == new_length; }
};

struct Change {
  std::string file;                   // its name in a folder, else empty
  Format format = Format::kEmbedded;  // of the structure
  std::string scope;                  // "embedded[manifest-1.5]." or empty
  std::string path;                   // below it: "modules[mixer].hash"
  std::string pattern;                // the path without keys: "modules[].hash"
  std::vector<std::string> keys = {};  // these: "mixer"
  std::string uuid = {};               // of the module that it is in
  // The values; of kind kNothing where one side has none. What was added or
  // removed as a whole is an object of the fields that its table shows.
  Field old_value = {};
  Field new_value = {};
  // Bytes without a value to show: contents, padding, private numbers.
  std::optional<ByteDifference> bytes = {};
  std::uint64_t old_offset = 0;  // of these bytes in the file
  std::uint64_t new_offset = 0;
  std::optional<std::uint64_t> address = {};  // where they run
  // The value follows from how segments and modules moved; see moves.h.
  bool is_moved = false;
  std::string_view echo = {};  // why it is one, empty for a cause
};

}  // namespace tova_fw_builder
