// The `#define` scanner. The loop tests the stream behind each line, so a last
// line without a line feed, and the head of a line that is too long, count.
#include "definitions/constants_header.h"

#include <iomanip>

#include "driver/ground/files.h"
#include "driver/ground/line_fields.h"
#include "driver/ground/line_reader.h"
#include "driver/ground/log.h"
#include "driver/ground/numbers.h"

namespace tova_fw_builder {

namespace {

void read_config_line(FwOutMap& map, std::string_view line) {
  LineFields words(line);
  if (words.word() != "#define") return;
  const std::string name(words.word());
  const std::uint32_t value = any_base_or_zero(words.word());
  // Unlike a define, a constant may be set again.
  map.consts[name] = value;
  log_detail(std::left, std::setw(30), name, ' ', std::right, std::setw(8),
             value);
}

}  // namespace

void read_modules_config(FwOutMap& map, const std::string& path) {
  log_detail("Reading FW Modules Configuration...");
  read_modules_config(map, *open_input(path));
}

void read_modules_config(FwOutMap& map, std::istream& in) {
  LineReader lines(in);
  std::string_view line;
  while (lines.next(line)) read_config_line(map, line);
  log_detail();
}

}  // namespace tova_fw_builder
