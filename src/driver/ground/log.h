// driver/ground/log.h
// The logger: everything that the tool says goes line by line to the standard
// output, errors included, so that the order of lines is the order of events.
#pragma once

#include <ostream>
#include <sstream>

namespace tova_fw_builder {

inline constexpr int kLogError = 0;    // prefix "Error: "
inline constexpr int kLogWarning = 1;  // prefix "Warning: "
inline constexpr int kLogInfo = 2;     // no prefix; the last level shown by
                                       // default
inline constexpr int kLogDetail = 3;   // no prefix; shown with -v

// The process-wide verbosity: lines of higher levels are not made.
int log_level();
void set_log_level(int level);

// One line of the log, collected in a stream of its own, so that number bases
// never leak into another. When it ends, prefix, text and a newline are written
// and flushed. A failing standard output loses this line and all later ones
// without a word.
class LogLine {
 public:
  explicit LogLine(int level);
  ~LogLine();
  LogLine(const LogLine&) = delete;
  LogLine& operator=(const LogLine&) = delete;

  std::ostream& stream() { return text_; }

 private:
  std::ostringstream text_;
};

// Log one line of `parts`, manipulators included; nothing is formatted if the
// level is hidden. A place that prepares a lot tests log_level() and makes a
// LogLine of its own.
void log_line(int level, const auto&... parts) {
  if (log_level() >= level) (LogLine(level).stream() << ... << parts);
}
void log_error(const auto&... parts) { log_line(kLogError, parts...); }
void log_warning(const auto&... parts) { log_line(kLogWarning, parts...); }
void log_info(const auto&... parts) { log_line(kLogInfo, parts...); }
void log_detail(const auto&... parts) { log_line(kLogDetail, parts...); }

}  // namespace tova_fw_builder
