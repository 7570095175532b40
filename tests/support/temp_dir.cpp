#include "support/temp_dir.h"

#include <stdlib.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

TempDir::TempDir() : old_directory_(std::filesystem::current_path()) {
  std::string name = std::filesystem::temp_directory_path() / "tova-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp");
  path_ = std::filesystem::canonical(name);
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::current_path(old_directory_, ignored);
  std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::write(const std::string& name,
                           const std::string& bytes) const {
  const auto target = path_ / name;
  std::filesystem::create_directories(target.parent_path());
  std::ofstream(target, std::ios::binary) << bytes;
  return target.string();
}

std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}
