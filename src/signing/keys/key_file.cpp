// Key files. The format is found by its first piece of text anywhere in the
// first 100 bytes, while the reading begins at the file's first byte: a file
// with something ahead of the key is recognised and then refused.
#include "signing/keys/key_file.h"

#include <stdexcept>

#include "crypto/secret_buffer.h"
#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "signing/keys/key_format.h"

namespace tova_fw_builder {

namespace {

constexpr std::size_t kProbeLength = 100;

const KeyFormat& recognize_format(std::string_view probe) {
  for (const KeyFormat& format : key_formats()) {
    if (probe.find(format.pieces[0]) != probe.npos) return format;
  }
  // Any file may be named here, and the text is logged: what() ends it at a
  // zero byte.
  throw std::runtime_error("Key type not recognized :\r\n" +
                           std::string(probe));
}

}  // namespace

std::unique_ptr<KeyMaterial> load_key_file(const std::string& path) {
  log_info("Reading keys from: ", path);
  // Read once, as a pipe can't be read again, into memory that is wiped like
  // the key itself. What follows a key is ignored.
  const SecretBuffer bytes(key_formats().front().length());
  const std::size_t length = read_start(path, {bytes.data(), bytes.size()});
  const std::string_view file(reinterpret_cast<const char*>(bytes.data()),
                              bytes.size());
  const KeyFormat& format = recognize_format(file.substr(0, kProbeLength));
  // A file below the length of the probe is recognised, but never read.
  return key_of_format(file.substr(0, length < kProbeLength ? 0 : length),
                       format);
}

}  // namespace tova_fw_builder
