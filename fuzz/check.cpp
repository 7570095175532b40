// All checks on the files of one image. Each file has its length in two bytes
// in front; the last one takes the rest.
#include "inspect/check/check.h"

#include <cstdlib>
#include <utility>

#include "harness.h"

using namespace tova_fw_builder;

void fuzz_one(const std::string& input) {
  constexpr const char* kNames[] = {
      "firmware.man", "firmware.bin", "firmware.pkg", "firmware.man.ext",
      "firmware_5a3c0004-7b1e-4c52-9d40-1f2e3d4c5b04.bin"};
  std::vector<CheckedFile> files;
  std::size_t at = 0;
  for (const char* name : kNames) {
    if (input.size() - at < 2) break;
    const std::size_t length = static_cast<unsigned char>(input[at]) +
                               256 * static_cast<unsigned char>(input[at + 1]);
    std::string bytes = input.substr(at + 2, length);
    at += 2 + bytes.size();
    // An even modulus takes many times as long, and no key has it.
    if (bytes.size() > 128) bytes[128] |= 1;
    files.push_back(checked_file(name, ByteSource::of(std::move(bytes))));
  }
  CheckOptions options;
  options.release = true;
  options.trusted.emplace_back();
  options.key_store = std::string("\1\0\0\0\1\0\0\0", 8);
  std::size_t bytes = 0;
  for (const CheckLine& line : check_image(files, options).lines) {
    bytes += line.id.size() + line.file.size() + line.text.size();
  }
  if (bytes == 0) std::abort();  // each check has a line
}
