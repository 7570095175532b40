#include "companion/ground/trouble.h"

#include <iostream>
#include <utility>

#include "companion/ground/printable.h"

namespace tova_fw_builder {
namespace {

// What stands for a file's name in a text: an empty one has to be seen.
std::string shown_name(const std::string& file) {
  return file.empty() ? "''" : file;
}

}  // namespace

FileError::FileError(Trouble trouble)
    : std::runtime_error(shown_name(trouble.file) + ": " + trouble.text),
      trouble_(std::move(trouble)) {}

Trouble trouble_of(const std::exception& error) {
  const auto* named = dynamic_cast<const FileError*>(&error);
  if (named == nullptr) return {"", error.what()};
  return {shown_name(named->trouble().file), named->trouble().text};
}

void report_trouble(std::string_view file, std::string_view text) {
  std::string line = "tova_fw: ";
  if (!file.empty()) line.append(file).append(": ");
  line.append(text);
  std::cout.flush();
  std::cerr << printable(line) << std::endl;
}

void Troubles::add(Trouble trouble) {
  report_trouble(trouble.file, trouble.text);
  list_.push_back(std::move(trouble));
}

void Troubles::add(const std::string& file, const std::string& text) {
  add(Trouble{shown_name(file), text});
}

std::string without_key_bytes(std::string_view message) {
  for (const std::string_view quoting :
       {"Key type not recognized", "Not recognized key type"}) {
    if (message.starts_with(quoting)) return std::string(quoting);
  }
  return std::string(message);
}

}  // namespace tova_fw_builder
