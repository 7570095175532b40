#include <algorithm>
#include <filesystem>
#include <string>

#include "inspect/check/checks.h"

namespace tova_fw_builder {
namespace {

constexpr auto kHex = Field::Radix::kHex;

void check_order(const CheckedFile& extended, const CheckedFile& header,
                 Report& report) {
  const std::vector<Field>& here =
      find(extended.inspected.root, "modules")->members;
  const std::vector<Field>& there =
      find(header.inspected.root, "modules")->members;
  if (here.size() != there.size()) {
    report.failed(extended, counted(here.size(), "module") + ", and " +
                                header.path + " has " +
                                std::to_string(there.size()));
    return;
  }
  for (std::size_t i = 0; i < here.size(); ++i) {
    if (text_at(here[i], "uuid") == text_at(there[i], "uuid")) continue;
    report.failed(extended, "module " + std::to_string(i) + " is " +
                                std::string(text_at(here[i], "uuid")) +
                                ", and in " + header.path + ' ' +
                                std::string(text_at(there[i], "uuid")));
    return;
  }
  report.ok(extended,
            "the " + counted(here.size(), "module") + " of " + header.path);
}

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
  const Told values[] = {
      {"version", std::string(text_at(root, "version")), image_version(other)},
      {"flags", number(root, "flags"), number(other, "header.fw_img_flags")},
      {"features", number(root, "features"),
       number(other, "header.feature_mask")},
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

// The UUID in NAME_UUID.bin, in lower case; empty if it has none.
std::string uuid_in(std::string_view path) {
  constexpr std::size_t kLength = 36;
  constexpr std::string_view kEnd = ".bin";
  if (!path.ends_with(kEnd) || path.size() <= kLength + kEnd.size()) return "";
  path.remove_suffix(kEnd.size());
  if (path[path.size() - kLength - 1] != '_') return "";
  std::string uuid(path.substr(path.size() - kLength));
  std::ranges::transform(uuid, uuid.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return uuid;
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
    const std::string uuid = uuid_in(path);
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
  return fs::is_regular_file(fs::path(package.path).replace_filename(name),
                             error) ||
         fs::is_regular_file(fs::path(std::string(path)), error);
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
  if (missing.size() == count) {
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

void check_image_digest(const ImageFiles& image, Report& report) {
  for (const DigestPair& pair : image.digest_pairs) {
    const std::string_view told =
        text_at(pair.metadata->inspected.root, "digest");
    const std::string& digest = image.digests.text(pair.digest);
    const bool is_256 = digest.size() == 64;
    if (digest == told) {
      report.ok(*pair.metadata,
                (is_256 ? "SHA-256 of " : "SHA-384 of ") + pair.binary->path);
    } else {
      report.failed(*pair.metadata,
                    "the digest is not that of " + pair.binary->path);
    }
  }
}

void check_image_length(const ImageFiles& image, Report& report) {
  for (const DigestPair& pair : image.digest_pairs) {
    const Field& root = pair.metadata->inspected.root;
    const std::uint64_t base = number_at(root, "base_offset");
    const std::uint64_t limit = number_at(root, "limit_offset");
    const std::uint64_t length = pair.binary->inspected.length;
    if (base + length == limit) {
      report.ok(*pair.metadata, counted(length, "byte"));
    } else {
      report.failed(*pair.metadata, "limit_offset is " +
                                        number_text(limit, kHex) + ", and " +
                                        pair.binary->path + " ends at " +
                                        number_text(base + length, kHex));
    }
  }
}

void check_extended_manifest(const ImageFiles& image, Report& report) {
  for (const CheckedFile* extended : image.extended) {
    for (const CheckedFile* header : image.headers) {
      check_order(*extended, *header, report);
    }
  }
}

void check_package(const ImageFiles& image, Report& report) {
  for (const CheckedFile* package : image.packages) {
    const std::size_t before = report.failures();
    for (const CheckedFile* header : image.headers) {
      check_values(*package, *header, report);
      check_addons(*package, *header, report);
    }
    check_listed(*package, image, report);
    if (report.failures() == before && !image.headers.empty()) {
      report.ok(*package,
                "version, flags, features, date and addons are those of the "
                "image");
    }
  }
}

}  // namespace tova_fw_builder
