// The reader of key lists takes paths from the working directory alone: a
// second try is made in the folder of the list.
#include "companion/key_list_input.h"

#include <exception>
#include <filesystem>
#include <sstream>
#include <string_view>

#include "companion/ground/input_file.h"
#include "companion/ground/naming.h"
#include "driver/ground/files.h"
#include "driver/ground/line_fields.h"
#include "driver/ground/line_reader.h"
#include "driver/ground/paths.h"
#include "signing/keys/key_list.h"

namespace tova_fw_builder {
namespace {

namespace fs = std::filesystem;

// The builder's text for what is no key file shows the file's first bytes,
// which may be somebody's private key.
std::string reason_of(const std::exception& error, const std::string& key) {
  const std::string text = error.what();
  const bool is_relative = native_path(key).is_relative();
  return "its key file " + key +
         (text.starts_with("Failed to open file")
              ? is_relative ? " can't be opened, neither from here nor from "
                              "the list; tova_fw_builder counts it from the "
                              "definition's folder"
                            : " can't be opened"
          : text.starts_with("Key type not recognized")
              ? " is none: make one with 'tova_fw key import'"
              : " is damaged or cut off");
}

// Why the first line that isn't taken is refused. Nothing of a line is shown
// that doesn't begin like one of a key list.
std::string why_refused(const std::string& list) {
  const auto text = open_input(list);
  LineReader lines(*text);
  std::string_view line;
  for (int number = 1; lines.next(line) && !line.empty(); ++number) {
    LineFields words(line);
    const std::string_view kind = words.word();
    const std::string key(words.word());
    if ((kind != "debug" && kind != "production") || key.empty()) {
      return "this is no key list: its line " + std::to_string(number) +
             " has to be 'debug' or 'production' and the path of a key file";
    }
    try {
      std::istringstream alone{std::string(line)};
      KeyList{alone};
    } catch (const std::exception& error) {
      return reason_of(error, key);
    }
  }
  return "it was changed while it was read";
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
      throw FileError({list, why_refused(path_text(path))});
    }
  }
}

}  // namespace tova_fw_builder
