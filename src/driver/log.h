// driver/log.h
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

// The process-wide verbosity. A line of level L is made only if
// log_level() >= L; each log statement tests that before it formats anything:
//
//   if (log_level() >= kLogInfo) LogLine(kLogInfo).stream() << "Finished";
int log_level();
void set_log_level(int level);

// One line of the log. It collects text in a stream of its own, so that number
// bases and fill characters never leak into another line, and writes prefix,
// text and one newline to the standard output, flushed, when it ends. The text
// may hold newlines of its own. A failing standard output loses the text
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

}  // namespace tova_fw_builder
