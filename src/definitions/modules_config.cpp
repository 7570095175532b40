// The `#define` scanner. The loop tests the stream behind each line, so a last
// line without a line feed, and the head of a line that is too long, count.
#include "definitions/modules_config.h"

#include <iomanip>
#include <sstream>

#include "driver/files.h"
#include "driver/log.h"
#include "driver/numbers.h"
#include "driver/text_reader.h"

namespace tova_fw_builder {

namespace {

void read_config_line(FwOutMap& map, const std::string& line) {
  std::istringstream words(line);
  if (next_word(words) != "#define") return;
  const std::string name = next_word(words);
  const std::uint32_t value = any_base_or_zero(next_word(words));
  map.consts[name] = value;
  if (log_level() >= kLogDetail) {
    LogLine(kLogDetail).stream() << std::left << std::setw(30) << name << ' '
                                 << std::right << std::setw(8) << value;
  }
}

}  // namespace

void read_modules_config(FwOutMap& map, const std::string& path) {
  if (log_level() >= kLogDetail) {
    LogLine(kLogDetail).stream() << "Reading FW Modules Configuration...";
  }
  const auto in = open_input(path);
  std::string line;
  do {
    read_buffered_line(*in, line);
    read_config_line(map, line);
  } while (in->good());
  if (log_level() >= kLogDetail) LogLine(kLogDetail).stream();
}

}  // namespace tova_fw_builder
