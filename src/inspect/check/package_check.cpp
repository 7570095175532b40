// The package descriptor against the header of its image. Names in a header are
// cut, and versions of modules stand in the extended manifest alone.
#include <algorithm>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "companion/ground/message_text.h"
#include "companion/ground/printable.h"
#include "driver/ground/paths.h"
#include "inspect/addon_name.h"
#include "inspect/check/beside_files.h"
#include "inspect/check/check_functions.h"

namespace tova_fw_builder {
namespace {

constexpr auto kHex = Field::Radix::kHex;

// A value of the package descriptor against that of the header.
struct Told {
  const char* name;
  std::string here;
  std::string there;
};

void check_values(const CheckedFile& package, const CheckedFile& header,
                  Report& report) {
  const Field& root = package.inspected.root;
  const Field& other = header.inspected.root;
  const auto number = [](const Field& tree, const char* path) {
    return number_text(number_at(tree, path), kHex);
  };
  const bool is_15 = header.inspected.format == Format::kManifest15;
  const Told values[] = {
      {"version", std::string(text_at(root, "version")), image_version(other)},
      {"flags", number(root, "flags"), number(other, "header.fw_img_flags")},
      {"features", number(root, "features"),
       number(other, "header.feature_mask")},
      {"manifest_type", number(root, "manifest_type"), is_15 ? "0x6" : "0x4"},
      // Of generations without a date in their header it is 0.
      {"build_date", number(root, "build_date"), number(other, "css.date")},
  };
  for (const Told& value : values) {
    if (value.here == value.there) continue;
    report.failed(package, std::string(value.name) + " is " +
                               printable(value.here) + ", and in " +
                               header.path + ' ' + value.there);
  }
}

// The UUIDs of those that have a file of their own in the descriptor.
using Listed = std::set<std::string, std::less<>>;

Listed listed_addons(const CheckedFile& package) {
  const std::vector<Field>& files =
      find(package.inspected.root, "files")->members;
  Listed listed;
  for (std::size_t i = 1; i < files.size(); ++i) {
    listed.insert(uuid_of_addon_file(text_at(files[i], "path")));
  }
  return listed;
}

// It names the modules ahead of the first addon or library. Yields how many, or
// all there are if they aren't the header's.
std::size_t check_modules(const CheckedFile& package, const Listed& listed,
                          const CheckedFile& header, Report& report) {
  constexpr std::size_t kNameLength = 8;  // in a header
  const std::vector<std::string> names =
      single_names(text_at(package.inspected.root, "modules"));
  const std::vector<Field>& modules =
      find(header.inspected.root, "modules")->members;
  for (std::size_t i = 0; i < std::min(names.size(), modules.size()); ++i) {
    const std::string_view name = text_at(modules[i], "name");
    if (names[i].substr(0, kNameLength) == name) continue;
    report.failed(package, "module " + std::to_string(i) + " is " +
                               printable(names[i]) + ", and in " + header.path +
                               ' ' + printable(name));
    return modules.size();
  }
  const auto end = std::ranges::find_if(modules, [&](const Field& module) {
    return number_at(module, "type.library") != 0 ||
           listed.contains(text_at(module, "uuid"));
  });
  const auto count = static_cast<std::size_t>(end - modules.begin());
  const bool has_missing =
      names.size() < count && is_loadable(modules[names.size()]);
  if (names.size() != count && !has_missing) {
    report.failed(package, "it names " + counted(names.size(), "module") +
                               ", and " + header.path + " has " +
                               std::to_string(count) +
                               " ahead of addons and libraries");
  }
  return names.size();
}

std::string without_line(const Field& module) {
  return printable(text_at(module, "name")) + ", " +
         std::string(text_at(module, "uuid")) + ", has no line";
}

// Each addon has a line. Whether a module behind the first addon is one, too,
// stands in no header: what starts by itself is, and in 1.5 the places tell.
// Yields whether nothing is left unknown.
bool check_complete(const CheckedFile& package, const Listed& listed,
                    const CheckedFile& header, std::size_t named,
                    const ImageFiles& image, Report& report) {
  bool is_known = true;
  const auto plan =
      std::ranges::find(image.plans, &header, &ContentsPlan::header);
  const bool is_15 = header.inspected.format == Format::kManifest15;
  const bool is_sure = is_15 && plan != image.plans.end() && plan->is_sure;
  const std::vector<Field>& modules =
      find(header.inspected.root, "modules")->members;
  for (std::size_t i = named; i < modules.size(); ++i) {
    const Field& module = modules[i];
    if (!is_loadable(module) || number_at(module, "type.library") != 0 ||
        listed.contains(text_at(module, "uuid"))) {
      continue;
    }
    const bool is_addon =
        i == named || number_at(module, "type.auto_init") != 0 ||
        (is_sure &&
         std::ranges::any_of(plan->modules, [&](const ModulePlace& place) {
           return place.module == &module && place.is_addon;
         }));
    if (is_addon) {
      report.failed(package, without_line(module) + ": the addon is missing");
    } else if (!is_sure) {
      is_known = false;
      report.not_checked(package,
                         without_line(module) +
                             ": it is missing, or it is no addon, which the "
                             "header doesn't tell behind the first addon");
    }
  }
  return is_known;
}

// The addons stand in the order of the modules.
void check_addons(const CheckedFile& package, const CheckedFile& header,
                  Report& report) {
  const std::vector<Field>& files =
      find(package.inspected.root, "files")->members;
  const std::vector<Field>& modules =
      find(header.inspected.root, "modules")->members;
  auto next = modules.begin();
  for (std::size_t i = 1; i < files.size(); ++i) {
    const std::string_view path = text_at(files[i], "path");
    const std::string uuid = uuid_of_addon_file(path);
    const auto found = std::find_if(
        next, modules.end(),
        [&](const Field& module) { return text_at(module, "uuid") == uuid; });
    if (found == modules.end()) {
      report.failed(package, printable(path) + " is of no module of " +
                                 header.path + ", or not in their order");
      return;
    }
    next = found + 1;
  }
}

// The versions behind the addons are those of the extended manifest.
void check_versions(const CheckedFile& package, const CheckedFile& extended,
                    Report& report) {
  for (const Field& file : find(package.inspected.root, "files")->members) {
    const std::string_view path = text_at(file, "path");
    const std::string uuid = uuid_of_addon_file(path);
    for (const Field& module :
         find(extended.inspected.root, "modules")->members) {
      if (uuid.empty() || text_at(module, "uuid") != uuid ||
          text_at(module, "version") == text_at(file, "version")) {
        continue;
      }
      report.failed(package, printable(path) + " has version " +
                                 printable(text_at(file, "version")) +
                                 ", and in " + extended.path + ' ' +
                                 std::string(text_at(module, "version")));
    }
  }
}

bool is_at_hand(const CheckedFile& package, std::string_view path,
                const ImageFiles& image) {
  namespace fs = std::filesystem;
  const std::string name = base_name(path);
  for (const auto* files : {&image.bare, &image.binaries}) {
    if (std::ranges::any_of(*files, [&](const CheckedFile* file) {
          return base_name(file->path) == name;
        })) {
      return true;
    }
  }
  std::error_code error;
  fs::path beside = native_path(package.path);
  beside.replace_filename(native_path(name));
  return fs::is_regular_file(beside, error) ||
         fs::is_regular_file(native_path(std::string(path)), error);
}

// The paths are those of the build: a file counts as there if it was given, or
// lies beside the descriptor. Of 1.8 and later only the main binary exists.
void check_listed(const CheckedFile& package, const ImageFiles& image,
                  Report& report) {
  const std::vector<Field>& files =
      find(package.inspected.root, "files")->members;
  const bool has_addons =
      number_at(package.inspected.root, "manifest_type") == 6;
  std::vector<std::string_view> missing;
  const std::size_t count =
      has_addons ? files.size() : std::min<std::size_t>(files.size(), 1);
  for (std::size_t i = 0; i < count; ++i) {
    const std::string_view path = text_at(files[i], "path");
    if (!is_at_hand(package, path, image)) missing.push_back(path);
  }
  if (missing.empty()) return;
  // Of 1.5, a joined package may be there instead.
  if (missing.size() == count &&
      std::ranges::any_of(image.plans, &ContentsPlan::is_joined)) {
    report.not_due(package,
                   "none of its files is at hand; joined they are there");
    return;
  }
  if (missing.size() == count && image.binaries.empty()) {
    report.not_checked(package,
                       "none of its files is at hand: give them, or "
                       "keep them beside the descriptor");
    return;
  }
  for (const std::string_view path : missing) {
    report.failed(package, printable(path) + " is not there");
  }
}

}  // namespace

void check_package(const ImageFiles& image, Report& report) {
  for (const CheckedFile* package : image.packages) {
    const std::size_t before = report.failures();
    const Listed listed = listed_addons(*package);
    bool is_known = !image.headers.empty();
    for (const CheckedFile* header : image.headers) {
      check_values(*package, *header, report);
      const std::size_t named =
          check_modules(*package, listed, *header, report);
      is_known &=
          check_complete(*package, listed, *header, named, image, report);
      check_addons(*package, *header, report);
    }
    for (const CheckedFile* extended : image.extended) {
      check_versions(*package, *extended, report);
    }
    check_listed(*package, image, report);
    if (report.failures() == before && is_known) {
      report.ok(*package,
                "version, flags, features, date, modules and addons are those "
                "of the image");
    }
  }
}

}  // namespace tova_fw_builder
