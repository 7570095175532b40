// tests/support/captured_log.h
#pragma once

#include <sstream>
#include <streambuf>
#include <string>

// Collects what the tool logs during its life, at the given level, and puts
// the standard output and the level back when it ends.
class CapturedLog {
 public:
  explicit CapturedLog(int level = 2);
  ~CapturedLog();
  std::string text() const { return buffer_.str(); }

 private:
  std::ostringstream buffer_;
  std::streambuf* old_buffer_;
  int old_level_;
};
