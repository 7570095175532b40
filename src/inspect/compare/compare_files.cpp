#include "inspect/compare/compare_files.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <system_error>
#include <tuple>
#include <utility>

#include "driver/ground/paths.h"
#include "inspect/byte_source.h"
#include "inspect/compare/byte_difference.h"
#include "inspect/compare/compare_lines.h"
#include "inspect/compare/compare_trees.h"
#include "inspect/compare/echoes.h"
#include "inspect/compare/ignored_dates.h"
#include "inspect/format.h"
#include "inspect/inspect.h"
#include "inspect/recognise.h"

namespace tova_fw_builder {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kMostStructure = 1024 * 1024;

Change change_at(std::string path, Format format) {
  Change change;
  change.format = format;
  change.pattern = path;
  change.path = std::move(path);
  return change;
}

// A structure that was found inside a file.
struct Embedded {
  std::string key;  // its format, with a number from the second on
  Format format;
  Span span;
};

std::vector<Embedded> embedded_in(const Inspected& inspected) {
  std::vector<Embedded> result;
  std::map<std::string_view, int> seen;
  for (const Field& entry : find(inspected.root, "embedded")->members) {
    const std::string_view name = text_at(entry, "format");
    const int number = ++seen[name];
    result.push_back(
        {std::string(name) + (number > 1 ? ' ' + std::to_string(number) : ""),
         *format_named(name),
         {number_at(entry, "offset"), number_at(entry, "length")}});
  }
  return result;
}

Side side_of(const ByteSource& source, Format format) {
  return {source, inspect(source, format)};
}

// What differs in the structures that both files have.
void compare_embedded(const ByteSource& old_file, const Embedded& old_part,
                      const ByteSource& new_file, const Embedded& new_part,
                      std::vector<Change>& changes) {
  const ByteSource old_source = ByteSource::of(
      old_file.bytes(old_part.span.offset, old_part.span.length));
  const ByteSource new_source = ByteSource::of(
      new_file.bytes(new_part.span.offset, new_part.span.length));
  for (Change& change : compare_trees(side_of(old_source, old_part.format),
                                      side_of(new_source, new_part.format))) {
    change.scope = "embedded[" + old_part.key + "].";
    change.old_offset += old_part.span.offset;
    change.new_offset += new_part.span.offset;
    changes.push_back(std::move(change));
  }
}

// A structure that one file alone has.
Change lonely(const Embedded& part, bool is_old) {
  Change change = change_at("embedded[" + part.key + ']', Format::kEmbedded);
  change.pattern = "embedded[]";
  change.keys = {part.key};
  Field& value = is_old ? change.old_value : change.new_value;
  value = object_field("");
  value.add(number_field("offset", part.span.offset, Field::Radix::kHex));
  value.add(number_field("length", part.span.length));
  return change;
}

std::vector<Embedded>::const_iterator find_part(
    const std::vector<Embedded>& parts, const std::string& key) {
  return std::find_if(parts.begin(), parts.end(),
                      [&](const Embedded& part) { return part.key == key; });
}

// Compares what stands at equal places, but for the spans that are told.
void compare_contents(const ByteSource& old_source,
                      const ByteSource& new_source, const Coverage& told,
                      std::vector<Change>& changes) {
  ByteDifference sum;
  sum.old_length = old_source.size();
  sum.new_length = new_source.size();
  for (const Span gap : told.gaps()) {
    const ByteDifference part = compare_bytes(old_source, gap, new_source, gap);
    if (sum.bytes == 0) sum.first = gap.offset + part.first;
    sum.bytes += part.bytes;
    sum.pages += part.pages;
  }
  if (sum.is_equal()) return;
  Change change = change_at("contents", Format::kEmbedded);
  change.bytes = sum;
  changes.push_back(std::move(change));
}

// Files without a format of their own: the structures in them, and the rest.
std::vector<Change> compare_formless(const ByteSource& old_source,
                                     const ByteSource& new_source) {
  std::vector<Change> changes;
  const std::uint64_t length = std::max(old_source.size(), new_source.size());
  compare_contents(old_source, new_source, Coverage(length), changes);
  if (changes.empty()) return changes;  // equal, and nobody has to search
  const auto old_parts = embedded_in(inspect(old_source, Format::kEmbedded));
  const auto new_parts = embedded_in(inspect(new_source, Format::kEmbedded));
  if (old_parts.empty() && new_parts.empty()) {
    const auto lines = compare_lines(old_source, new_source);
    return lines.empty() ? changes : lines;
  }

  std::vector<Change> result;
  Coverage told(length);
  for (const Embedded& old_part : old_parts) {
    const auto new_part = find_part(new_parts, old_part.key);
    if (new_part == new_parts.end()) result.push_back(lonely(old_part, true));
    if (new_part == new_parts.end() ||
        std::max(old_part.span.length, new_part->span.length) >
            kMostStructure) {
      continue;
    }
    compare_embedded(old_source, old_part, new_source, *new_part, result);
    if (old_part.span.offset == new_part->span.offset &&
        old_part.span.length == new_part->span.length) {
      told.take(old_part.span);
    }
  }
  for (const Embedded& new_part : new_parts) {
    if (find_part(old_parts, new_part.key) == old_parts.end()) {
      result.push_back(lonely(new_part, false));
    }
  }
  compare_contents(old_source, new_source, told, result);
  return result;
}

std::vector<Change> compare_pair(const std::string& old_path,
                                 const std::string& new_path) {
  const ByteSource old_source = ByteSource::open(old_path);
  const ByteSource new_source = ByteSource::open(new_path);
  const Format old_format = safe_format(old_source);
  const Format new_format = safe_format(new_source);
  std::vector<Change> changes;
  if (old_format != new_format) {
    changes.push_back(change_at("format", old_format));
    changes[0].old_value =
        text_field("format", std::string(format_name(old_format)));
    changes[0].new_value =
        text_field("format", std::string(format_name(new_format)));
    return changes;
  }
  if (old_format == Format::kEmbedded) {
    return compare_formless(old_source, new_source);
  }
  changes = compare_trees(side_of(old_source, old_format),
                          side_of(new_source, new_format));
  if (old_source.size() != new_source.size()) {
    changes.push_back(change_at("length", old_format));
    changes.back().old_value = number_field("length", old_source.size());
    changes.back().new_value = number_field("length", new_source.size());
  }
  return changes;
}

Trouble unreadable(const fs::path& path, const std::error_code& error) {
  return {path_text(path), "cannot be read: " + error.message()};
}

// Adds the files in a folder and below it, by their names from `top` on. A
// folder that can't be read, or a link that leads nowhere, keeps no other file
// from being compared.
void add_files(const fs::path& folder, const fs::path& top,
               std::vector<std::string>& names,
               std::vector<Trouble>& troubles) {
  std::error_code error;
  fs::directory_iterator at(folder, error);
  for (; !error && at != fs::directory_iterator(); at.increment(error)) {
    const fs::path& path = at->path();
    std::error_code own;
    const fs::file_status status = fs::status(path, own);
    if (!fs::status_known(status) || !fs::exists(status)) {
      troubles.push_back(unreadable(path, own));
    } else if (fs::is_directory(status) && !fs::is_symlink(path)) {
      add_files(path, top, names, troubles);
    } else if (fs::is_regular_file(status)) {
      names.push_back(path_text(path.lexically_relative(top)));
      if constexpr (fs::path::preferred_separator != '/') {
        std::ranges::replace(names.back(), '\\', '/');
      }
    }
  }
  if (error) troubles.push_back(unreadable(folder, error));
}

std::vector<std::string> files_in(const fs::path& folder,
                                  std::vector<Trouble>& troubles) {
  std::vector<std::string> names;
  add_files(folder, folder, names, troubles);
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> without(const std::vector<std::string>& names,
                                 const std::vector<std::string>& others) {
  std::vector<std::string> result;
  std::set_difference(names.begin(), names.end(), others.begin(), others.end(),
                      std::back_inserter(result));
  return result;
}

// What is told of one file of a folder. The most telling ones come first: those
// of a format ahead of bare bytes, which mostly say the same once more.
struct FileChanges {
  std::string folder;
  bool is_formless;
  std::string name;
  std::vector<Change> changes;
};

FileChanges compare_file(const std::string& name, const fs::path& old_folder,
                         const fs::path& new_folder) {
  FileChanges file{name.substr(0, name.rfind('/') + 1), false, name, {}};
  file.changes = compare_pair(path_text(old_folder / native_path(name)),
                              path_text(new_folder / native_path(name)));
  for (Change& change : file.changes) {
    change.file = name;
    file.is_formless |=
        change.format == Format::kEmbedded || !change.scope.empty();
  }
  return file;
}

Comparison compare_folders(const fs::path& old_folder,
                           const fs::path& new_folder) {
  Comparison result;
  const auto old_names = files_in(old_folder, result.troubles);
  const auto new_names = files_in(new_folder, result.troubles);
  result.only_old = without(old_names, new_names);
  result.only_new = without(new_names, old_names);
  std::vector<FileChanges> files;
  for (const std::string& name : without(old_names, result.only_old)) {
    try {
      files.push_back(compare_file(name, old_folder, new_folder));
    } catch (const std::exception& error) {
      result.troubles.push_back(trouble_of(error));
    }
  }
  std::stable_sort(files.begin(), files.end(),
                   [](const FileChanges& a, const FileChanges& b) {
                     return std::tie(a.folder, a.is_formless) <
                            std::tie(b.folder, b.is_formless);
                   });
  for (FileChanges& file : files) {
    std::move(file.changes.begin(), file.changes.end(),
              std::back_inserter(result.changes));
  }
  result.files = old_names;
  result.files.insert(result.files.end(), result.only_new.begin(),
                      result.only_new.end());
  return result;
}

}  // namespace

Comparison compare_paths(const std::string& old_path,
                         const std::string& new_path, bool ignore_dates) {
  for (const std::string& path : {old_path, new_path}) {
    std::error_code error;
    if (fs::exists(native_path(path), error)) continue;
    if (!error)
      error = std::make_error_code(std::errc::no_such_file_or_directory);
    throw FileError(unreadable(path, error));
  }
  const bool is_folder = fs::is_directory(native_path(old_path));
  if (is_folder != fs::is_directory(native_path(new_path))) {
    throw std::runtime_error(
        "one of the two is a folder and the other is not: compare two files or "
        "two folders");
  }
  Comparison result;
  if (is_folder) {
    result = compare_folders(native_path(old_path), native_path(new_path));
  } else {
    result.changes = compare_pair(old_path, new_path);
  }
  if (ignore_dates) {
    leave_out_dates(result.changes, result.files);
  } else {
    mark_echoes(result.changes, result.files);
  }
  std::stable_partition(
      result.changes.begin(), result.changes.end(),
      [](const Change& change) { return change.echo.empty(); });
  return result;
}

}  // namespace tova_fw_builder
