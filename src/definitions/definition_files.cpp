// The look-up of definition files (docs/definition-language.md, "include"), and
// the working directory, which follows the file that is being read.
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "definitions/includes_and_defines.h"
#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "driver/ground/paths.h"

namespace tova_fw_builder {

namespace {

std::string canonical_path(const std::string& name) {
  std::error_code error;
  const auto path = std::filesystem::canonical(native_path(name), error);
  // Each library words its own exception in its own way.
  if (error) {
    throw std::runtime_error("filesystem error: canonical: " + error.message() +
                             " [" + name + "]");
  }
  return path_text(path);
}

}  // namespace

std::shared_ptr<std::ifstream> open_image_defs(FwOutMap& map,
                                               const std::string& name) {
  auto in = find_image_def(map, name);
  if (!in->is_open()) {
    // Glued: an absolute name, too, is looked for below that directory.
    in = find_image_def(map, join_path(map.default_dir, name));
  }
  if (!in->is_open()) {
    throw std::runtime_error("Failed to open image defs file : " + name);
  }
  return in;
}

std::shared_ptr<std::ifstream> find_image_def(FwOutMap& map,
                                              const std::string& name) {
  std::shared_ptr<std::ifstream> in = try_open_input(name);
  if (!in->is_open()) {
    log_detail("Image not found in : ", name);
    return in;
  }
  log_detail("Image def file found : ", name);
  map.dir_stack.push_back(current_directory());
  // Without a directory part this fails, which leaves the directory as it is.
  std::error_code ignored;
  std::filesystem::current_path(native_path(directory_of(name)), ignored);
  // Only now, from the new directory: relative names with a directory part are
  // refused on purpose, and definition trees have come to name such files from
  // the default directory.
  map.files_read.push_back(canonical_path(name));
  return in;
}

}  // namespace tova_fw_builder
