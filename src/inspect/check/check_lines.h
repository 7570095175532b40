// inspect/check/check_lines.h
// The lines that come out of the checks.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "inspect/check/checked_file.h"

namespace tova_fw_builder {

enum class CheckResult { kOk, kFailed, kNotChecked };

// "ok", "FAILED", "not checked".
std::string_view result_name(CheckResult result);

struct CheckLine {
  std::string_view id;
  CheckResult result = CheckResult::kNotChecked;
  std::string file;  // its path; empty if none is at hand
  std::string text;  // what was found; of what isn't checked, the cure
  // Not checked, though the image has what the check is for: something wasn't
  // given. No gap is what nobody asked for and what the format doesn't have.
  bool is_gap = false;
};

// The lines of one check.
class Report {
 public:
  Report(std::string_view id, std::vector<CheckLine>& lines)
      : id_(id), lines_(lines) {}

  void ok(const CheckedFile& file, std::string text) {
    add(CheckResult::kOk, file.path, std::move(text));
  }
  void failed(const CheckedFile& file, std::string text) {
    ++failures_;
    add(CheckResult::kFailed, file.path, std::move(text));
  }
  void failed(std::string text) {
    ++failures_;
    add(CheckResult::kFailed, "", std::move(text));
  }
  // What could be checked if something more was given, or can't be known.
  void not_checked(const CheckedFile& file, std::string text) {
    add(CheckResult::kNotChecked, file.path, std::move(text), true);
  }
  void not_checked(std::string text) {
    add(CheckResult::kNotChecked, "", std::move(text), true);
  }
  // What nobody asked for, or what the format or the image doesn't have.
  void not_due(const CheckedFile& file, std::string text) {
    add(CheckResult::kNotChecked, file.path, std::move(text));
  }
  void not_due(std::string text) {
    add(CheckResult::kNotChecked, "", std::move(text));
  }

  // How many have failed so far: a file is ok if none came behind a mark.
  std::size_t failures() const { return failures_; }

 private:
  // Two manifests of one image say the same of its contents: once is enough.
  void add(CheckResult result, std::string file, std::string text,
           bool is_gap = false);

  std::string_view id_;
  std::vector<CheckLine>& lines_;
  std::size_t failures_ = 0;
};

}  // namespace tova_fw_builder
