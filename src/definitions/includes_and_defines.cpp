// Flattening of definition files. The state of the text stream carries meaning:
// once it has failed it takes no more text, but all lines still act.
#include "definitions/includes_and_defines.h"

#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "definitions/statement.h"
#include "driver/ground/paths.h"

namespace tova_fw_builder {

namespace {

// Defines and repeated includes can make a small file stand for any amount of
// text. Beyond some free text, what is read and made may be this much longer
// than all files that were read, each counted once. An include counts as some
// text too, so that empty files can't be read for ever; its own line makes up
// for that.
constexpr std::uint64_t kFreeText = 1 << 20;
constexpr std::uint64_t kMaxExpansion = 16;
constexpr std::uint64_t kIncludeCost = 160;

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
  DefinitionReader(FwOutMap& map, ReadingNotes& notes)
      : map_(map), notes_(notes) {}

  std::unique_ptr<std::iostream> read_file(const std::string& name);

 private:
  void flatten(Statement line, std::ostream& out);
  void include(Statement line, std::ostream& out);
  void define(Statement line);
  std::string expand_macro(std::string_view word) const;
  void charge(std::uint64_t length);

  FwOutMap& map_;
  ReadingNotes& notes_;
  std::map<std::string, std::string, std::less<>> define_table_;
  std::uint32_t include_depth_ = 0;

  std::set<std::string> files_counted_;
  std::uint64_t length_read_ = 0;
  std::uint64_t length_charged_ = 0;
};

std::unique_ptr<std::iostream> DefinitionReader::read_file(
    const std::string& name) {
  auto out = std::make_unique<std::stringstream>();
  const auto in = open_image_defs(map_, name);
  const bool counts = files_counted_.insert(map_.files_read.back()).second;
  notes_.enter_file(map_.files_read.back());
  std::string line;
  while (read_line(*in, line)) {
    notes_.enter_line(line);
    if (counts) length_read_ += line.size() + 1;
    charge(line.size() + 1);
    flatten(Statement(line), *out);
  }
  return out;
}

void DefinitionReader::flatten(Statement line, std::ostream& out) {
  if (line.word().starts_with('#')) return;
  if (line.word() == "include") return include(line, out);
  if (line.word() == "define") return define(line);
  notes_.add_line(!out.fail());
  notes_.add_word(line.word(), false);
  charge(line.word().size() + 1);
  // The key: no define can stand for it.
  out << line.word() << ' ';
  // The end is tested before the word is read, and the read isn't tested:
  // white space behind the last word makes that word come twice.
  while (!line.at_end()) {
    const auto word = line.next_word();
    const auto found = define_table_.find(word);
    const bool is_replaced = found != define_table_.end();
    const auto text = is_replaced ? found->second : word;
    notes_.add_word(word, is_replaced);
    charge(text.size() + 1);
    out << text << ' ';
  }
  out << '\n';
}

void DefinitionReader::include(Statement line, std::ostream& out) {
  if (++include_depth_ >= kMaxIncludeDepth) {
    throw std::runtime_error("Max inclusion");
  }
  charge(kIncludeCost);
  const bool had_failed = out.fail();
  const auto included = read_file(expand_macro(line.next_word()));
  // Fails `out` if there is no text, also if `included` failed before it had
  // any. What it had goes on even if it failed.
  out << included->rdbuf();
  notes_.leave_file(had_failed ? ReadingNotes::Fate::kLost
                    : !out     ? ReadingNotes::Fate::kEmpty
                               : ReadingNotes::Fate::kTaken);
  std::error_code ignored;
  // A directory that is gone by now isn't told; the included file's stays.
  std::filesystem::current_path(native_path(map_.dir_stack.back()), ignored);
  map_.dir_stack.pop_back();
  --include_depth_;
}

void DefinitionReader::define(Statement line) {
  const std::string name(line.next_operand());
  const std::string value(line.next_operand());
  // The same value again is a conflict too.
  if (!define_table_.emplace(name, value).second) {
    throw std::runtime_error("Define name conflict : " + name);
  }
  notes_.add_define(name, value);
}

// Replaces "$(NAME)". The name runs from the first "$(" to the LAST ")", so a
// word holds one macro at the most.
std::string DefinitionReader::expand_macro(std::string_view word) const {
  const std::size_t open = word.find("$(");
  const std::size_t close = word.rfind(')');
  if (open == word.npos || close == word.npos || close < open) {
    return std::string(word);
  }
  const std::string name(word.substr(open + 2, close - open - 2));
  const auto found = define_table_.find(name);
  if (found == define_table_.end()) {
    throw std::runtime_error("Not recognized define : " + name);
  }
  notes_.use_define(name);
  std::string text(word.substr(0, open));
  return text.append(found->second).append(word.substr(close + 1));
}

void DefinitionReader::charge(std::uint64_t length) {
  length_charged_ += length;
  // Charged ahead of each write, so that the text can't fill the memory first.
  if (length_charged_ > kFreeText + kMaxExpansion * length_read_) {
    throw std::runtime_error("Definition files expand to too much text");
  }
}

}  // namespace

std::unique_ptr<std::iostream> read_image_defs(FwOutMap& map,
                                               const std::string& path) {
  ReadingNotes none;
  return read_image_defs(map, path, none);
}

std::unique_ptr<std::iostream> read_image_defs(FwOutMap& map,
                                               const std::string& path,
                                               ReadingNotes& notes) {
  auto text = DefinitionReader(map, notes).read_file(path);
  notes.leave_file(ReadingNotes::Fate::kTaken);
  return text;
}

}  // namespace tova_fw_builder
