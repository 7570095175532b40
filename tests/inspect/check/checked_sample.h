// tests/inspect/check/checked_sample.h
// A check of files in memory, and what came out as text.
#pragma once

#include <string>
#include <string_view>

#include "inspect/check/check.h"
#include "inspect/check/image_samples.h"

namespace tova_fw_builder {

// What is unknown is told by its text alone: the files go.
Checked check(const ImageSample& image, const CheckOptions& options = {},
              bool in_folder = false);

// The ids of those that failed, in order, with a blank behind each.
std::string failed(const Checked& checked);

// The ids of those that were left unchecked, likewise.
std::string gaps(const Checked& checked);

// All lines of one check: "ok FILE: TEXT".
std::string lines_of(const Checked& checked, std::string_view id);

}  // namespace tova_fw_builder
