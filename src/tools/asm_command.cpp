// The command `asm`. An empty line doesn't end the descriptor: only the end of
// the file, or a line too long for the buffer, does.
#include <fstream>

#include "driver/ground/files.h"
#include "driver/ground/line_fields.h"
#include "driver/ground/line_reader.h"
#include "driver/ground/log.h"
#include "tools/commands.h"

namespace tova_fw_builder {

namespace {

void append_file(const std::string& path, std::ostream& out) {
  const auto in = open_binary_input(path);
  // Fixed ahead of the copy: a package that lists its own output would never
  // end.
  const std::uint64_t length = file_length(*in, path);
  log_info("Appending ", path, " size = ", length);
  copy_bytes(*in, length, out);
}

}  // namespace

void assemble_image(const std::string& pkg_file, const std::string& out_file) {
  log_info("Assemblying full image");
  log_detail("PKG file: ", pkg_file);
  log_detail("BIN file: ", out_file);
  const auto package = open_input(pkg_file);
  // Behind the descriptor: without one an older output stays whole.
  std::ofstream out = open_output(out_file);
  append_files(*package, out);
  out.close();
  log_info("Finished");
}

void append_files(std::istream& package, std::ostream& out) {
  LineReader lines(package);
  std::string_view line;
  while (lines.next(line)) {
    LineFields words(line);
    if (words.word() == "bin") append_file(std::string(words.word()), out);
  }
}

}  // namespace tova_fw_builder
