#include "inspect/check/check.h"

#include <algorithm>
#include <utility>

#include "companion/ground/message_text.h"
#include "inspect/check/checks.h"
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

std::string generation_of(const ImageFiles& image, const CheckedFile& header) {
  if (header.inspected.format == Format::kManifest15) return "1.5";
  if (is_30(header)) return "3.0";
  return image.metadata.empty()
             ? "1.8 or 2.5"
             : std::string(
                   text_at(image.metadata[0]->inspected.root, "generation"));
}

std::string signature_of(const CheckedFile& manifest) {
  constexpr std::size_t kDigits = 8;
  const Field& root = manifest.inspected.root;
  if (number_at(root, "signed") == 0) return "unsigned";
  return std::string("signed ") +
         (number_at(root, "css.debug") != 0 ? "debug " : "release ") +
         std::string(text_at(root, "public_key_hash").substr(0, kDigits)) +
         "\u2026";
}

// Of several headers, that of a signed manifest; a debug signature is not to
// hide behind another one.
std::string summary_of(const ImageFiles& image) {
  if (image.headers.empty()) return "";
  const auto rank = [](const CheckedFile* file) {
    const Field& root = file->inspected.root;
    return number_at(root, "signed") +
           number_at(root, "signed") * number_at(root, "css.debug");
  };
  const CheckedFile& header =
      **std::ranges::max_element(image.headers, {}, rank);
  const bool is_15 = header.inspected.format == Format::kManifest15;
  const std::string version = image_version(header.inspected.root);
  std::string text =
      "firmware " + version + "  generation " + generation_of(image, header) +
      "  " +
      counted(is_15 ? main_length(header) : header.inspected.length, "byte");
  if (is_15) text += "  " + signature_of(header);
  if (is_30(header)) text += "  contents without hashes";
  return text;
}

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
  checked.summary = summary_of(image);
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

std::string_view result_name(CheckResult result) {
  constexpr std::string_view kNames[] = {"ok", "FAILED", "not checked"};
  return kNames[static_cast<std::size_t>(result)];
}

}  // namespace tova_fw_builder
