// inspect/compare/causes.h
// Of all changes between two trees or folders, what the rules of echoes ask
// for.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "inspect/compare/change.h"

namespace tova_fw_builder {

// Looks at changes and names of files that others own.
class Causes {
 public:
  Causes(const std::vector<Change>& changes,
         const std::vector<std::string>& file_names);

  // Whether something changed at a place of the same file; "[=]" in `pattern`
  // stands for the keys of `change`, "[]" for any. With a '/' in front, at one
  // of any file in the same folder; "/binary:PATTERN" of a binary.
  bool has(const Change& change, std::string_view pattern) const;

  // The change at that path of the same file; nullptr if there is none.
  const Change* at(const Change& change, const std::string& path) const;

  // The first change in the folder with that path, and the values of that
  // change, in a file of its format: maybe the change itself.
  const Change* first_like(const Change& change) const;

  // The first file of a package that went the same way.
  const Change* first_on_way(const Change& change) const;

  // The folder of the change's file, with a separator behind it; empty for
  // none.
  static std::string folder_of(const Change& change);

  const std::vector<Change>& all;
  const std::vector<std::string>& files;

 private:
  void add(const Change& change);

  std::set<std::string> places_;
  std::map<std::string, const Change*> by_path_;
  std::map<std::string, const Change*> first_like_;
  std::map<std::string, const Change*> first_on_way_;
};

}  // namespace tova_fw_builder
