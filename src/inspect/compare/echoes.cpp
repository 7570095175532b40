#include "inspect/compare/echoes.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <set>
#include <string>
#include <string_view>

#include "inspect/addon_name.h"
#include "inspect/compare/causes.h"
#include "inspect/compare/folder_parts.h"

namespace tova_fw_builder {
namespace {

using Condition = bool (*)(const Change& change, const Causes& causes);

bool has_moved(const Change& change, const Causes&) { return change.is_moved; }

bool is_zeros(const Change& change, const Causes&) {
  return change.bytes && change.bytes->bytes == 0;
}

// The page count of bss, which the base firmware's stack size is.
bool is_bss_length(const Change& change, const Causes& causes) {
  const Change* length =
      causes.at(change, "modules[" + change.keys[0] + "].segments[bss].len");
  return length != nullptr &&
         length->old_value.number == change.old_value.number &&
         length->new_value.number == change.new_value.number;
}

// A file of a package that went the same way as the one ahead of it.
bool moved_along(const Change& change, const Causes& causes) {
  return causes.first_on_way(change) != &change;
}

// Anywhere in its name: a file may have been renamed since it was built.
bool holds_uuid(const std::string& file, const std::string& uuid) {
  const auto found = std::search(
      file.begin(), file.end(), uuid.begin(), uuid.end(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == b;
      });
  return found != file.end() && !uuid.empty();
}

// Contents without a header, as generation 1.5 has: the file that has the
// module's UUID in its name, or if there is none, the one with the rest.
bool contents_changed_beside(const Change& change, const Causes& causes) {
  const std::string folder = Causes::folder_of(change);
  const bool has_own = std::any_of(
      causes.files.begin(), causes.files.end(), [&](const std::string& file) {
        return file.starts_with(folder) && holds_uuid(file, change.uuid);
      });
  return std::any_of(
      causes.all.begin(), causes.all.end(), [&](const Change& other) {
        if (other.format != Format::kEmbedded || other.path != "contents" ||
            Causes::folder_of(other) != folder) {
          return false;
        }
        if (has_own) return holds_uuid(other.file, change.uuid);
        const bool is_beside =
            !change.scope.empty() || other.file.ends_with(".bin");
        return is_beside && uuid_of_addon_file(other.file).empty();
      });
}

// Two folders were compared, and this is the place of a file in what tells of
// such places: package descriptor, dependency file, ELF list.
bool is_folder(const Change& change, const Causes& causes) {
  const bool holds_paths =
      change.pattern == "files[].path" ||
      (change.pattern == "lines[]" &&
       (change.file.ends_with(".d") || change.file.ends_with(".elfs")));
  return holds_paths && !causes.files.empty() &&
         differ_in_folders(change.old_value.text, change.new_value.text);
}

// Another file ahead of this one, such as the manifest before it was signed.
bool told_before(const Change& change, const Causes& causes) {
  return !change.bytes && causes.first_like(change)->file != change.file;
}

// A change at `pattern` is an echo if one of the causes is there, and the
// condition holds. The cause "*" is any that isn't itself one for such a rule.
struct Rule {
  std::string_view pattern;
  std::array<std::string_view, 7> causes;
  Condition condition;
  std::string_view reason;
};

constexpr std::string_view kAlways = "";  // in place of a cause

constexpr Rule kRules[] = {
    // What stands in a place that others were moved from.
    {"modules[].segments[].vma",
     {kAlways},
     has_moved,
     "moved by what grew, shrank or moved ahead of it"},
    {"modules[].segments[].file_off",
     {kAlways},
     has_moved,
     "moved by what grew, shrank or moved ahead of it"},
    {"modules[].ep",
     {kAlways},
     has_moved,
     "moved with its segment, or inside of contents that changed"},
    {"symbols[].address",
     {kAlways},
     has_moved,
     "moved with its segment, or inside of contents that changed"},
    {"symbols[].module",
     {kAlways},
     has_moved,
     "the same module, at another index"},

    // What is computed over other bytes.
    {"modules[].hash",
     {"modules[=].segments[].contents", "modules[=].segments[text].len",
      "modules[=].segments[rodata].len", "contents"},
     nullptr,
     "the hash of contents that changed"},
    {"modules[].hash",
     {kAlways},
     contents_changed_beside,
     "the hash of contents that changed"},
    {"digest",
     {"limit_offset", "/binary:"},
     nullptr,
     "the hash of a binary that changed"},
    {"signature", {"*"}, nullptr, "signs what changed"},
    {"signature", {"signed", "public_key_hash"}, nullptr, "of another key"},
    {"modulus", {"signed", "public_key_hash"}, nullptr, "of another key"},
    {"exponent", {"signed", "public_key_hash"}, nullptr, "of another key"},

    // What counts others.
    {"header.num_mods", {"modules[]"}, nullptr, "counts the modules"},
    {"header.preload_page_count",
     {"modules[]", "modules[].segments[].len", "modules[].segments[].file_off",
      "modules[].segments[].vma", "css.size", "header_offset"},
     nullptr,
     "counts the pages of the image"},
    {"css.size",
     {"modules[]", "modules[].configurations[]"},
     nullptr,
     "the length of the tables"},
    {"limit_offset", {"/binary:length"}, nullptr, "the length of the binary"},
    {"modules[].cfg_off",
     {"modules[]", "modules[].position", "modules[].configurations[]"},
     nullptr,
     "counts the configurations ahead"},
    {"modules[].cfg_cnt",
     {"modules[=].configurations[]"},
     nullptr,
     "counts the configurations"},
    {"modules[].inst_stack_size", {kAlways}, is_bss_length, "the pages of bss"},
    {"symbol_table.count", {"symbols[]"}, nullptr, "counts the symbols"},
    {"symbol_table.names_length",
     {"symbols[]"},
     nullptr,
     "the length of the names"},
    {"symbols[].name_offset",
     {"symbols[]", "symbol_table.count", "symbols[].position"},
     nullptr,
     "the place of the name"},
    {"heading.length",
     {"modules[]", "modules[].capabilities[]", "modules[].pins[]"},
     nullptr,
     "the length of the file"},
    {"heading.modules", {"modules[]"}, nullptr, "counts the modules"},
    {"modules[].length",
     {"modules[=].capabilities[]", "modules[=].pins[]"},
     nullptr,
     "the length of the records"},
    {"modules[].counts.sched_caps",
     {"modules[=].capabilities[]"},
     nullptr,
     "counts the capabilities"},
    {"modules[].counts.pins",
     {"modules[=].pins[]"},
     nullptr,
     "counts the pins"},
    {"padding[]", {"*"}, is_zeros, "zeros between what moved"},
    {"length", {"*"}, nullptr, "the length of the file"},
    {"length", {"padding[]"}, nullptr, "the length of the file"},

    // What says the same once more.
    {"modules[].type.value",
     {"modules[=].type.loadable", "modules[=].type.auto_init",
      "modules[=].type.domain_ll", "modules[=].type.domain_dp",
      "modules[=].type.library", "modules[=].type.domain_rtos",
      "modules[=].type.core_type"},
     nullptr,
     "the number of what changed in it"},
    {"modules[].segments[].flags_value",
     {"modules[=].segments[=].flags"},
     nullptr,
     "the number of the flags"},
    {"css.module_id", {"css.debug"}, nullptr, "the number of css.debug"},
    {"version",
     {"/header.major_ver", "/header.minor_ver", "/header.hotfix_ver",
      "/header.build_ver"},
     nullptr,
     "the version in the header"},
    {"flags", {"/header.fw_img_flags"}, nullptr, "the flags in the header"},
    {"features", {"/header.feature_mask"}, nullptr, "the mask in the header"},
    {"modules", {"/modules[]"}, nullptr, "the modules of the image"},
    {"build_date", {"/css.date"}, nullptr, "the date of the manifest"},
    {"comments[]", {"*"}, nullptr, "when the builder itself was made"},
    {"", {kAlways}, is_folder, kFolderEcho},
    {"files[].path", {kAlways}, moved_along, "moved as the file ahead did"},
    {"", {kAlways}, told_before, "another file of the folder tells the same"},
};

bool is_for(const Rule& rule, const Change& change, const Causes& causes) {
  return (rule.pattern.empty() || rule.pattern == change.pattern) &&
         (rule.condition == nullptr || rule.condition(change, causes));
}

// Whether a change may be no more than the follower of any other.
bool follows_any(const Change& change, const Causes& causes) {
  return std::any_of(
      std::begin(kRules), std::end(kRules), [&](const Rule& rule) {
        return rule.causes[0] == "*" && is_for(rule, change, causes);
      });
}

// The files with changes that are more than that.
std::set<std::string> files_with_causes(const Causes& causes) {
  std::set<std::string> files;
  for (const Change& change : causes.all) {
    if (!follows_any(change, causes))
      files.insert(change.file + '\n' + change.scope);
  }
  return files;
}

}  // namespace

void mark_echoes(std::vector<Change>& changes,
                 const std::vector<std::string>& files) {
  const Causes causes(changes, files);
  const std::set<std::string> with_causes = files_with_causes(causes);
  for (Change& change : changes) {
    change.echo = {};
    for (const Rule& rule : kRules) {
      if (!is_for(rule, change, causes)) continue;
      const bool is_echo =
          rule.causes[0] == "*"
              ? with_causes.contains(change.file + '\n' + change.scope)
              : rule.causes[0] == kAlways ||
                    std::any_of(rule.causes.begin(), rule.causes.end(),
                                [&](std::string_view cause) {
                                  return !cause.empty() &&
                                         causes.has(change, cause);
                                });
      if (is_echo) {
        change.echo = rule.reason;
        break;
      }
    }
  }
}

}  // namespace tova_fw_builder
