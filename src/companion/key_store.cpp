#include "companion/key_store.h"

#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string_view>

#include "companion/ground/input_file.h"
#include "companion/ground/naming.h"
#include "driver/ground/native_path.h"
#include "signing/keys/key_list.h"

namespace tova_fw_builder {
namespace {

namespace fs = std::filesystem;

// The builder's text for what is no key file shows the file's first bytes,
// which may be somebody's private key.
std::string reason_of(const std::exception& error) {
  const std::string_view text = error.what();
  return text.starts_with("Key type not recognized") ? "it is no key file"
                                                     : std::string(text);
}

// Works in another directory as long as it lives.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const fs::path& path) : old_(fs::current_path()) {
    fs::current_path(path);
  }
  ~WorkingDirectory() {
    std::error_code ignored;
    fs::current_path(old_, ignored);
  }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  fs::path old_;
};

}  // namespace

std::string key_store_of(const std::string& list) {
  try {
    return KeyList(list).stream->str();
  } catch (const std::exception& error) {
    std::uint8_t first = 0;
    naming(list, [&] { read_head(list, {&first, 1}); });
    const fs::path path = fs::absolute(native_path(list));
    if (!fs::is_regular_file(path)) {
      throw FileError({list, reason_of(error)});
    }
    try {
      const WorkingDirectory beside(path.parent_path());
      return KeyList(path_text(path)).stream->str();
    } catch (const std::exception& other) {
      throw FileError({list, reason_of(other)});
    }
  }
}

}  // namespace tova_fw_builder
