// The builder's texts name no line, and show the start of what is no key file,
// which may be somebody's private key: so each line is tried alone.
#include "lint/key_list_fault.h"

#include <exception>
#include <sstream>

#include "companion/ground/input_file.h"
#include "companion/ground/list_cures.h"
#include "driver/ground/files.h"
#include "driver/ground/line_fields.h"
#include "driver/ground/line_reader.h"
#include "driver/ground/paths.h"
#include "signing/keys/key_list.h"

namespace tova_fw_builder {
namespace {

std::string reason_of(const std::exception& error, const std::string& key,
                      std::string_view relative, bool is_cut) {
  const std::string text = error.what();
  std::string reason = "its key file " + key;
  if (text.starts_with("Failed to open file")) {
    reason += " can't be opened";
    if (is_cut) {
      reason += kCutPathCure;
    } else if (native_path(key).is_relative()) {
      reason += relative;
    }
  } else if (text.starts_with("Key type not recognized")) {
    reason += " is none: make one with 'tova_fw key import'";
  } else {
    reason += " is damaged or cut off";
  }
  return reason;
}

}  // namespace

std::optional<KeyListFault> find_key_list_fault(const std::string& list,
                                                std::string_view relative) {
  const auto text = open_input(list);
  LineReader lines(*text);
  std::string_view line;
  for (std::uint32_t number = 1; lines.next(line) && !line.empty(); ++number) {
    LineFields words(line);
    const std::string_view kind = words.word();
    const std::string key(words.word());
    if ((kind != "debug" && kind != "production") || key.empty()) {
      return KeyListFault{
          number, "this is no key list: its line " + std::to_string(number) +
                      " has to be 'debug' or 'production' and the "
                      "path of a key file"};
    }
    if (is_pipe(key)) continue;  // what it had is gone
    try {
      std::istringstream alone{std::string(line)};
      KeyList{alone};
    } catch (const std::exception& error) {
      return KeyListFault{
          number, reason_of(error, key, relative, !words.word().empty())};
    }
  }
  return std::nullopt;
}

}  // namespace tova_fw_builder
