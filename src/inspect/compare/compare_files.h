// inspect/compare/compare_files.h
// Two files, or two folders of them, and what differs.
#pragma once

#include <string>
#include <vector>

#include "companion/ground/trouble.h"
#include "inspect/compare/change.h"

namespace tova_fw_builder {

struct Comparison {
  // First what is no echo; by file, in the order of its tree.
  std::vector<Change> changes;
  std::vector<std::string> only_old;  // files of folders, by name
  std::vector<std::string> only_new;
  std::vector<std::string> files;  // all of both folders
  std::vector<Trouble> troubles;   // with what couldn't be compared

  bool is_equal() const {
    return changes.empty() && only_old.empty() && only_new.empty() &&
           troubles.empty();
  }
};

// Compares two files, or the files of two folders and of the folders in these
// that have the same name. Two files of different formats have one change,
// `format`. Throws FileError if one of the two can't be read, and
// std::runtime_error if one is a folder and the other isn't; of folders, what
// can't be read is among the troubles.
Comparison compare_paths(const std::string& old_path,
                         const std::string& new_path, bool ignore_dates);

}  // namespace tova_fw_builder
