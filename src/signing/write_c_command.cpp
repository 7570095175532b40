// The command `write_c`. The array's length is the file's at the start of the
// run, as it stands in the text ahead of the bytes.
#include <fstream>
#include <span>

#include "driver/ground/c_array.h"
#include "driver/ground/files.h"
#include "signing/commands.h"

namespace tova_fw_builder {

void write_c_command(const std::string& bin_file,
                     const std::string& out_c_file) {
  const auto in = open_binary_input(bin_file);
  std::ofstream out = open_output(out_c_file);
  const std::uint64_t length = file_length(*in, bin_file);
  write_c_array_head(out, "rawData", length);
  std::uint64_t done = 0;
  read_in_pieces(*in, length, [&](std::span<const std::uint8_t> bytes) {
    write_c_array_bytes(out, bytes, done, length);
    done += bytes.size();
  });
  write_c_array_tail(out);
  out << '\n';
}

}  // namespace tova_fw_builder
