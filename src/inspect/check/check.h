// inspect/check/check.h
// Whether the files of one image belong together, are whole, and who signed
// them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inspect/check/check_lines.h"
#include "inspect/check/checked_file.h"

namespace tova_fw_builder {

struct Checked {
  // By the order of the checks; each has at least one.
  std::vector<CheckLine> lines;
  // Files in which nothing is known though they have to be of the image.
  std::vector<UnknownFile> unknown;
  bool has_known = false;  // there is a file with a form of its own
  // The image in a few words, for one line of a log; empty without a header.
  std::string summary;
};

// Takes a file apart as far as the checks need it: tables, and padding, but not
// contents.
CheckedFile checked_file(std::string path, ByteSource source);

// Adds it to the others. Of many files the first ones alone stay open.
void add_file(CheckedFile file, std::vector<CheckedFile>& files);

// Makes all checks that the files allow. Each byte of contents is read once.
Checked check_image(const std::vector<CheckedFile>& files,
                    const CheckOptions& options);

bool holds(const Checked& checked);

// The ids of such lines, each once, in the order of the checks.
std::vector<std::string_view> ids_of(const Checked& checked,
                                     bool (*is_it)(const CheckLine& line));

}  // namespace tova_fw_builder
