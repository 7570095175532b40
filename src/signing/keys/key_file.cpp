// Key files. The format is looked for anywhere near the start, while the
// reading begins at the file's first byte: a file with something ahead of the
// key is recognised and then refused.
#include "signing/keys/key_file.h"

#include "crypto/secret_buffer.h"
#include "driver/ground/files.h"
#include "driver/ground/log.h"

namespace tova_fw_builder {

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
