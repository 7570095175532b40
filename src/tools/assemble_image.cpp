// The command `asm`. An empty line doesn't end the descriptor: only the end of
// the file, or a line too long for the buffer, does.
#include "tools/assemble_image.h"

#include <fstream>
#include <sstream>

#include "driver/files.h"
#include "driver/log.h"
#include "driver/text_reader.h"

namespace tova_fw_builder {

namespace {

void append_file(const std::string& path, std::ostream& out) {
  const auto in = open_binary_input(path);
  const std::uint64_t length = file_length(*in, path);
  if (log_level() >= kLogInfo) {
    LogLine(kLogInfo).stream() << "Appending " << path << " size = " << length;
  }
  copy_bytes(*in, length, out);
}

}  // namespace

void assemble_image(const std::string& pkg_file, const std::string& out_file) {
  if (log_level() >= kLogInfo) {
    LogLine(kLogInfo).stream() << "Assemblying full image";
  }
  if (log_level() >= kLogDetail) {
    LogLine(kLogDetail).stream() << "PKG file: " << pkg_file;
    LogLine(kLogDetail).stream() << "BIN file: " << out_file;
  }
  const auto package = open_input(pkg_file);
  std::ofstream out(out_file, std::ios_base::binary);
  std::string text;
  while (package->good()) {
    read_buffered_line(*package, text);
    std::istringstream line(text);
    if (next_word(line) == "bin") append_file(next_word(line), out);
  }
  out.close();
  if (log_level() >= kLogInfo) LogLine(kLogInfo).stream() << "Finished";
}

}  // namespace tova_fw_builder
