// lint/key_list_fault.h
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tova_fw_builder {

struct KeyListFault {
  std::uint32_t line;  // from 1
  std::string text;    // the reason and a cure
};

// The first line that keeps the builder's reader from taking a key list; none
// if it takes all of them now. A key that is a pipe counts as taken. Relative
// paths in the list count from the working directory, which `relative` tells
// behind one that can't be opened. Nothing of a line is in the text that
// doesn't begin like one of a key list, and nothing of a key file.
//
// Throws std::runtime_error "Failed to open file: " and the path of the list.
std::optional<KeyListFault> find_key_list_fault(const std::string& list,
                                                std::string_view relative);

}  // namespace tova_fw_builder
