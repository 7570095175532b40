// Flattening of definition files. The states of the standard streams carry
// meaning here: a line is asked for its end BEFORE each word is read, and the
// read isn't tested, so white space behind the last word makes it come twice.
#include "definitions/definition_reader.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <system_error>

#include "definitions/definition_lookup.h"
#include "driver/text_reader.h"

namespace tova_fw_builder {

namespace {

constexpr std::uint32_t kMaxIncludeDepth = 5;

// Reads a line without its line end, which is a line feed with or without a
// carriage return. A carriage return at the end of the file is white space.
bool read_line(std::istream& in, std::string& line) {
  if (!std::getline(in, line)) return false;
  if (!in.eof() && line.ends_with('\r')) line.pop_back();
  return true;
}

// One run over a tree of files.
class DefinitionReader {
 public:
  explicit DefinitionReader(FwOutMap& map) : map_(map) {}

  std::unique_ptr<std::iostream> read_file(const std::string& name);

 private:
  void read_line_words(std::istream& line, std::ostream& out);
  void include(std::istream& line, std::string word, std::ostream& out);
  void define(std::istream& line);
  std::string expand_macro(const std::string& word) const;

  FwOutMap& map_;
  std::map<std::string, std::string> define_table_;
  std::uint32_t include_depth_ = 0;
};

std::unique_ptr<std::iostream> DefinitionReader::read_file(
    const std::string& name) {
  auto out = std::make_unique<std::stringstream>();
  const auto in = open_image_defs(map_, name);
  std::string text;
  while (read_line(*in, text)) {
    std::istringstream line(text);
    read_line_words(line, *out);
  }
  return out;
}

void DefinitionReader::read_line_words(std::istream& line, std::ostream& out) {
  std::string word = next_word(line);
  if (word.starts_with('#')) return;
  if (word == "include") return include(line, word, out);
  if (word == "define") return define(line);
  out << word << ' ';
  while (!line.eof()) {
    next_word_or_keep(line, word);
    const auto found = define_table_.find(word);
    out << (found == define_table_.end() ? word : found->second) << ' ';
  }
  out << '\n';
}

void DefinitionReader::include(std::istream& line, std::string word,
                               std::ostream& out) {
  if (++include_depth_ >= kMaxIncludeDepth) {
    throw std::runtime_error("Max inclusion");
  }
  next_word_or_keep(line, word);
  const auto included = read_file(expand_macro(word));
  // Fails `out` if there is no text, also if `included` failed before it had
  // any. What it had goes on even if it failed.
  out << included->rdbuf();
  std::error_code ignored;
  std::filesystem::current_path(map_.dir_stack.back(), ignored);
  map_.dir_stack.pop_back();
  --include_depth_;
}

void DefinitionReader::define(std::istream& line) {
  const std::string name = next_word(line);
  const std::string value = next_word(line);
  if (!define_table_.emplace(name, value).second) {
    throw std::runtime_error("Define name conflict : " + name);
  }
}

// Replaces "$(NAME)". The name runs from the first "$(" to the LAST ")", so a
// word holds one macro at the most.
std::string DefinitionReader::expand_macro(const std::string& word) const {
  const std::size_t open = word.find("$(");
  const std::size_t close = word.rfind(')');
  if (open == std::string::npos || close == std::string::npos ||
      close < open + 2) {
    return word;
  }
  const std::string name = word.substr(open + 2, close - open - 2);
  const auto found = define_table_.find(name);
  if (found == define_table_.end()) {
    throw std::runtime_error("Not recognized define : " + name);
  }
  return word.substr(0, open) + found->second + word.substr(close + 1);
}

}  // namespace

CfgFileError::CfgFileError(std::uint64_t line,
                           const std::optional<std::string>& parameter,
                           const std::string& message)
    : std::runtime_error(std::to_string(line) + ": " +
                         (parameter ? "[" + *parameter + "] " : "") + message) {
}

std::unique_ptr<std::iostream> read_image_defs(FwOutMap& map,
                                               const std::string& path) {
  return DefinitionReader(map).read_file(path);
}

}  // namespace tova_fw_builder
