// lint/allowances.h
// What the remarks "# lint: allow RULE..." of a definition silence.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "lint/findings.h"
#include "lint/source_map.h"

namespace tova_fw_builder {

class Allowances {
 public:
  explicit Allowances(const SourceMap& source);

  // Whether one of the comment lines right above a finding's line, up to 200,
  // allows its rule there. What the builder refuses is never allowed.
  bool allow(const Finding& finding) const;

 private:
  struct Remark {
    std::uint32_t line;
    std::uint32_t ends;  // the first line behind it that is no comment
  };
  // By file and rule, in the order of the lines.
  std::map<std::pair<std::uint32_t, std::string_view>, std::vector<Remark>>
      remarks_;
};

}  // namespace tova_fw_builder
