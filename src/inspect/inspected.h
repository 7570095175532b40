// inspect/inspected.h
// What was found in a file.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "inspect/field.h"

namespace tova_fw_builder {

enum class Format {
  kBinary,             // of 1.8, 2.5 and 3.0
  kManifest15,         // unsigned or signed
  kMetadata,           // the manifest of 1.8 and 2.5
  kExtendedManifest,   //
  kPackageDescriptor,  //
  kKeyPair,            //
  kPublicKey,          //
  kEmbedded,           // anything else: what is found inside
};

// "binary", "manifest-1.5" and so on, in the order of the enumeration.
std::span<const std::string_view> format_names();
std::string_view format_name(Format format);
std::optional<Format> format_named(std::string_view name);

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

// Whether the file may be one of a build: false for one in which nothing was
// found, unless it is empty or has whole pages, as the contents of 1.5 have.
bool is_known(const Inspected& inspected);

// Adds a problem; behind a thousand of them no more are kept.
void add_problem(Inspected& inspected, std::uint64_t offset, std::string text);

}  // namespace tova_fw_builder
