// lint/lint.h
// What the builder will refuse, at the place where it stands, and what it will
// accept in silence though it hardly was meant.
#pragma once

#include <string>
#include <vector>

#include "companion/ground/trouble.h"
#include "layout/build_core.h"
#include "lint/findings.h"
#include "lint/source_map.h"

namespace tova_fw_builder {

struct LintOptions {
  // An empty ELF list leaves out the rules that need one. Without a list of
  // keys the store of keys is taken as given.
  BuildInputs inputs;
  std::vector<std::string> disabled;  // rules
};

struct LintReport {
  std::vector<SourceMap::File> sources;
  std::vector<Finding> findings;  // by place
  // What of ELFs and keys couldn't be read; mostly without a file, which is
  // named by the builder's text.
  std::vector<Trouble> troubles;
  std::vector<std::string> listed;  // the files that the two lists name
};

// Throws what the builder's readers throw for a header or a top file that can't
// be read. Leaves the working directory at the definition's.
LintReport lint(const LintOptions& options);

}  // namespace tova_fw_builder
