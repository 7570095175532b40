#include "inspect/check/check.h"

#include <algorithm>
#include <utility>

#include "inspect/check/check_functions.h"
#include "inspect/check/image_summary.h"
#include "inspect/check/unknown_files.h"
#include "inspect/inspect.h"
#include "inspect/recognise.h"

namespace tova_fw_builder {
namespace {

bool always(const ImageFiles&) { return true; }
bool never(const ImageFiles&) { return false; }

// Whether there is or has to be a manifest of 1.8 or 2.5.
bool has_metadata(const ImageFiles& image) {
  return !image.metadata.empty() ||
         !std::ranges::all_of(image.binaries, [](const CheckedFile* binary) {
           return is_30(*binary);
         });
}

// The extended manifest of 3.0 is empty.
bool has_extended(const ImageFiles& image) {
  return !image.manifests.empty() || has_metadata(image);
}

struct Check {
  std::string_view id;
  void (*run)(const ImageFiles& image, Report& report);
  const char* needs;  // what to give if nothing could be checked
  // Whether the image has then what the check is for.
  bool (*is_due)(const ImageFiles& image);
};

constexpr Check kChecks[] = {
    {"structure", check_structure, "no file with a header is given", always},
    {"length", check_length, "no file tells a length: give the manifest, too",
     always},
    {"signed-part", check_signed_part, "give the manifest of generation 1.5",
     never},
    {"pages", check_pages, "give the binary, or the manifest of 1.5", always},
    {"segments-apart", check_segments_apart,
     "give the binary, or the manifest of 1.5", always},
    {"symbol-names", check_symbol_names,
     "give the binary, or the manifest of 1.5", always},
    {"symbols-kept", check_symbols_kept, "give the manifest of generation 1.5",
     never},
    {"uuids", check_uuids, "give the binary, or the manifest of 1.5", always},
    {"module-hash", check_module_hash,
     "give the binary, and of generation 1.5 the manifest, too", always},
    {"image-digest", check_image_digest,
     "give binary and manifest of generation 1.8 or 2.5", has_metadata},
    {"image-length", check_image_length,
     "give binary and manifest of generation 1.8 or 2.5", has_metadata},
    {"extended-manifest", check_extended_manifest,
     "give the extended manifest, and the binary or the manifest of 1.5",
     has_extended},
    {"package", check_package,
     "give the package descriptor, and the binary or the manifest of 1.5",
     always},
    {"signature", check_signature, "give the signed manifest", never},
    {"key-trusted", check_key_trusted, "give the signed manifest", never},
    {"debug-signature", check_debug_signature, "give the signed manifest",
     never},
    {"sample-key", check_sample_key, "give the signed manifest", never},
    {"key-store", check_key_store, "give --key-list", never},
};

}  // namespace

CheckedFile checked_file(std::string path, ByteSource source) {
  Inspected inspected;
  inspected.length = source.size();
  // A search in what has no form would read all of it.
  if (const Format format = recognise(source); format != Format::kEmbedded) {
    inspected = inspect(source, format, Depth::kWhole);
  }
  return {std::move(path), std::move(source), std::move(inspected), false};
}

void add_file(CheckedFile file, std::vector<CheckedFile>& files) {
  constexpr std::size_t kMostOpen = 32;
  if (files.size() >= kMostOpen) file.source.close();
  files.push_back(std::move(file));
}

Checked check_image(const std::vector<CheckedFile>& files,
                    const CheckOptions& options) {
  ImageFiles image = sort_files(files, options);
  image.unknown = unknown_files(files, image);
  find_key_stores(image);
  image.digests.read();
  for (KeyStoreSearch& search : image.searches) search.finish();
  Checked checked;
  for (const Check& check : kChecks) {
    const std::size_t before = checked.lines.size();
    Report report(check.id, checked.lines);
    check.run(image, report);
    if (checked.lines.size() != before) continue;
    if (check.is_due(image)) {
      report.not_checked(check.needs);
    } else {
      report.not_due(check.needs);
    }
  }
  for (UnknownFile& file : image.unknown) {
    if (file.kind == UnknownFile::Kind::kTrouble) {
      checked.unknown.push_back(std::move(file));
    }
  }
  checked.has_known = std::ranges::any_of(files, [](const CheckedFile& file) {
    return file.inspected.format != Format::kEmbedded;
  });
  checked.summary = image_summary(image);
  return checked;
}

bool holds(const Checked& checked) {
  return std::ranges::none_of(checked.lines, [](const CheckLine& line) {
    return line.result == CheckResult::kFailed;
  });
}

std::vector<std::string_view> ids_of(const Checked& checked,
                                     bool (*is_it)(const CheckLine& line)) {
  std::vector<std::string_view> ids;
  for (const CheckLine& line : checked.lines) {
    if (is_it(line) && std::ranges::find(ids, line.id) == ids.end()) {
      ids.push_back(line.id);
    }
  }
  return ids;
}

}  // namespace tova_fw_builder
