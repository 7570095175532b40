// lint/linted.h
// Definitions for tests, each written in a line.
#pragma once

#include <string>

#include "lint/lint.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {

// A folder with the files of a text "name=text|name=text", in which "/" is a
// line feed, "~" a tab, "^" a carriage return and ";" a blank. "@" is a module
// of four lines that has all that it needs, and an open group.
struct LintTree {
  explicit LintTree(const std::string& files);

  LintReport lint() const;

  // "LINE:COLUMN RULE" of each finding, with the file's name ahead of it if it
  // isn't that of the first file, parted by ", ".
  std::string findings() const;

  // The text of all findings as it is printed.
  std::string printed(bool shows_lines = false) const;

  TempDir dir;
  LintOptions options;
};

// Adds an ELF that is none, with its table and list, to the tree's ELF list. A
// section is "NAME ADDRESS SIZE FLAGS [LOAD ADDRESS [ALIGNMENT]]", parted by
// ", "; t is code, r constants, b zeroed memory, c neither, n what isn't
// allocated.
void add_elf(LintTree& tree, const std::string& name,
             const std::string& sections, const std::string& symbols);

std::string findings_of(const LintReport& report);

}  // namespace tova_fw_builder
