// The logger. A line is built in memory and written with one call, so a line
// of many parts costs one flush.
#include "driver/ground/log.h"

#include <iostream>

namespace tova_fw_builder {

namespace {

int current_level = kLogInfo;

const char* prefix_of(int level) {
  // In the order of the levels.
  constexpr const char* kPrefixes[] = {"Error: ", "Warning: ", "", ""};
  return level >= 0 && level <= kLogDetail ? kPrefixes[level] : "Unknown";
}

}  // namespace

int log_level() { return current_level; }

void set_log_level(int level) { current_level = level; }

LogLine::LogLine(int level) { text_ << prefix_of(level); }

LogLine::~LogLine() {
  text_.put('\n');
  // Flushed, so that the last line stands in the log whatever comes next.
  std::cout << text_.str() << std::flush;
}

}  // namespace tova_fw_builder
