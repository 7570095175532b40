// inspect/check/contents_plan.h
// Where the contents of the modules stand, and how long the files must be that
// have them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "inspect/check/checked_file.h"
#include "inspect/coverage.h"

namespace tova_fw_builder {

// The contents of one loadable module.
struct ModulePlace {
  const Field* module = nullptr;
  const CheckedFile* file = nullptr;  // null if it isn't at hand
  std::vector<Span> spans;            // in the file, rising
  std::uint64_t length = 0;  // in an addon's file or in the main binary of 1.5
  std::string unknown;       // why the spans aren't known; empty if they are
  bool is_addon = false;     // of 1.5
  bool is_missing = false;   // unknown for want of the file alone
  // Why a hash that differs is no proof; empty if it is one.
  std::string doubt;
  std::size_t digest = 0;  // of the contents, where the spans are known
};

// A file that has contents alone, and how long it must be.
struct BareFile {
  const CheckedFile* file = nullptr;
  std::uint64_t expected = 0;
};

// The contents that a header speaks of.
struct ContentsPlan {
  const CheckedFile* header = nullptr;
  // Of a module that stands in two files, each of them.
  std::vector<ModulePlace> modules;
  // Of 1.5:
  std::vector<BareFile> bare = {};
  std::uint64_t joined_length = 0;  // of a joined package; 0 if it isn't known
  bool has_main = false;   // the main binary or the joined package is there
  bool is_joined = false;  // they stand in a joined package
  bool is_sure = false;    // which modules are addons
};

// Of a binary of 1.8 or 2.5: the contents are in it.
ContentsPlan plan_binary(const CheckedFile& binary);

// manifest_plan.cpp. Of a manifest of 1.5: the base modules follow one another
// in the main binary, and each addon has a file of its own; a joined package
// has the addons behind the main binary. A plan for the separate files, and one
// more for each of `bare` that is a joined package. `packages` tell the names
// of the files.
std::vector<ContentsPlan> plan_manifest(
    const CheckedFile& manifest, const std::vector<const CheckedFile*>& bare,
    const std::vector<const CheckedFile*>& packages);

// How many bytes of contents the main binary of a manifest of 1.5 has.
std::uint64_t main_length(const CheckedFile& manifest);

bool is_loadable(const Field& module);

// The contents of a module by file_off, without a file.
ModulePlace place_of(const Field& module);

// The segments of a module whose contents the header tells the place of.
std::vector<const Field*> stored_segments(const Field& module);

std::uint64_t bytes_of(const Field& segment);  // its pages

}  // namespace tova_fw_builder
