// The reader of key lists takes paths from the working directory alone: a
// second try is made in the folder of the list.
#include "companion/key_list_input.h"

#include <exception>
#include <filesystem>

#include "companion/ground/input_file.h"
#include "companion/ground/list_cures.h"
#include "companion/ground/naming.h"
#include "driver/ground/paths.h"
#include "lint/key_list_fault.h"
#include "signing/keys/key_list.h"

namespace tova_fw_builder {
namespace {

namespace fs = std::filesystem;

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
  } catch (const std::exception&) {
    std::uint8_t first = 0;
    naming(list, [&] { read_head(list, {&first, 1}); });
    const fs::path path = fs::absolute(native_path(list));
    if (!fs::is_regular_file(path)) {
      throw FileError({list,
                       "a line of it isn't taken: give a file, not a pipe, to "
                       "hear which"});
    }
    const WorkingDirectory beside(path.parent_path());
    try {
      return KeyList(path_text(path)).stream->str();
    } catch (const std::exception&) {
      const auto fault = find_key_list_fault(path_text(path), kNeitherPlace);
      throw FileError(
          {list, fault ? fault->text : "it was changed while it was read"});
    }
  }
}

}  // namespace tova_fw_builder
