#include "inspect/compare/causes.h"

#include <utility>

#include "inspect/text.h"

namespace tova_fw_builder {
namespace {

std::string file_of(const Change& change) {
  return change.file + '\n' + change.scope + '\n';
}

std::string likeness(const Change& change) {
  return Causes::folder_of(change) + '\n' +
         std::string(format_name(change.format)) + '\n' + change.path + '\n' +
         value_text(change.old_value) + '\n' + value_text(change.new_value);
}

std::string folder_in(const Field& path) {
  return path.text.substr(0, path.text.find_last_of("/\\") + 1);
}

std::string way(const Change& change) {
  return file_of(change) + folder_in(change.old_value) + '\n' +
         folder_in(change.new_value);
}

}  // namespace

Causes::Causes(const std::vector<Change>& changes,
               const std::vector<std::string>& file_names)
    : all(changes), files(file_names) {
  for (const Change& change : changes) add(change);
}

bool Causes::has(const Change& change, std::string_view pattern) const {
  if (pattern.starts_with('/')) {
    return places_.contains(folder_of(change) + '\n' +
                            std::string(pattern.substr(1)));
  }
  std::string place = file_of(change);
  auto key = change.keys.begin();
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == '=' && key != change.keys.end()) {
      place += *key++;
    } else {
      place += pattern[i];
    }
  }
  return places_.contains(place);
}

const Change* Causes::at(const Change& change, const std::string& path) const {
  const auto found = by_path_.find(file_of(change) + path);
  return found == by_path_.end() ? nullptr : found->second;
}

const Change* Causes::first_like(const Change& change) const {
  return first_like_.at(likeness(change));
}

const Change* Causes::first_on_way(const Change& change) const {
  return first_on_way_.at(way(change));
}

std::string Causes::folder_of(const Change& change) {
  return change.file.substr(0, change.file.rfind('/') + 1);
}

void Causes::add(const Change& change) {
  by_path_.emplace(file_of(change) + change.path, &change);
  first_like_.emplace(likeness(change), &change);
  first_on_way_.emplace(way(change), &change);
  // The path with the first keys alone, from all of them down to none.
  const std::string file = file_of(change);
  for (std::size_t kept = 0; kept <= change.keys.size(); ++kept) {
    std::string place = file;
    std::size_t seen = 0;
    for (const char c : change.pattern) {
      if (c == ']' && seen < kept) place += change.keys[seen];
      if (c == ']') ++seen;
      place += c;
    }
    places_.insert(std::move(place));
  }
  const std::string folder = folder_of(change) + '\n';
  const std::string format(format_name(change.format));
  places_.insert(folder + change.pattern);
  places_.insert(folder + format + ':');
  places_.insert(folder + format + ':' + change.pattern);
}

}  // namespace tova_fw_builder
