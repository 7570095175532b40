// Checks of the modules that a header lists, and of their contents.
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "companion/ground/message_text.h"
#include "companion/ground/printable.h"
#include "inspect/check/check_functions.h"

namespace tova_fw_builder {
namespace {

std::string name_of(const Field& module) {
  const std::string name = printable(text_at(module, "name"));
  return name.empty() ? "a module without a name" : name;
}

// What of the contents could be compared.
struct Hashed {
  bool all = true;
  std::uint64_t modules = 0;
  std::uint64_t bytes = 0;
};

// UUID and hash of the modules whose contents were hashed by some plan, such as
// that of a joined package.
using Compared = std::set<std::pair<std::string_view, std::string_view>>;

std::pair<std::string_view, std::string_view> key_of(const Field& module) {
  return {text_at(module, "uuid"), text_at(module, "hash")};
}

Compared compared_modules(const ImageFiles& image) {
  Compared compared;
  for (const ContentsPlan& plan : image.plans) {
    for (const ModulePlace& place : plan.modules) {
      if (place.unknown.empty()) compared.insert(key_of(*place.module));
    }
  }
  return compared;
}

// A release gate must not pass on a manifest alone.
void report_missing(const ImageFiles& image, const Compared& compared,
                    const ContentsPlan& plan, const ModulePlace& place,
                    Report& report) {
  const std::string text = name_of(*place.module) + ": " + place.unknown;
  if (compared.contains(key_of(*place.module))) {
    report.not_due(*plan.header, text);
  } else if (image.options.release) {
    report.failed(*plan.header, text + "; --release asks for all contents");
  } else {
    report.not_checked(*plan.header, text);
  }
}

void check_place(const ImageFiles& image, const ContentsPlan& plan,
                 const ModulePlace& place, Hashed& hashed, Report& report) {
  const CheckedFile& file = place.file ? *place.file : *plan.header;
  const std::string name = name_of(*place.module);
  if (!place.unknown.empty()) {
    report.not_checked(file, name + ": " + place.unknown);
    return;
  }
  const std::uint64_t end = place.spans.empty() ? 0
                                                : place.spans.back().offset +
                                                      place.spans.back().length;
  const bool is_same =
      image.digests.text(place.digest) == text_at(*place.module, "hash");
  hashed.all = hashed.all && is_same && end <= file.inspected.length;
  if (end > file.inspected.length) {
    report.failed(file, name + ": the file ends ahead of its contents");
  } else if (is_same) {
    ++hashed.modules;
    for (const Span& span : place.spans) hashed.bytes += span.length;
  } else if (place.doubt.empty()) {
    report.failed(file, name + ": the contents are not those that were hashed");
  } else if (image.options.release &&
             file.inspected.format == Format::kEmbedded) {
    report.failed(
        file, name + ": " + place.doubt + "; --release asks for all hashes");
  } else {
    report.not_checked(file, name + ": " + place.doubt);
  }
}

void check_built_in(const CheckedFile& header, Report& report) {
  for (const Field& module : find(header.inspected.root, "modules")->members) {
    const std::string_view hash = text_at(module, "hash");
    if (number_at(module, "type.value") % 16 == 0 &&
        hash.find_first_not_of('0') != hash.npos) {
      report.failed(header, name_of(module) + ": a built-in module has a hash");
    }
  }
}

}  // namespace

void check_uuids(const ImageFiles& image, Report& report) {
  for (const CheckedFile* header : image.headers) {
    const std::size_t before = report.failures();
    const std::vector<Field>& modules =
        find(header->inspected.root, "modules")->members;
    std::map<std::string_view, const Field*> seen;
    for (const Field& module : modules) {
      const std::string_view uuid = text_at(module, "uuid");
      if (uuid.find_first_not_of("0-") == uuid.npos) {
        report.failed(*header, name_of(module) + " has no UUID");
      } else if (const auto [first, is_new] = seen.emplace(uuid, &module);
                 !is_new) {
        report.failed(*header, name_of(module) + " has the UUID of " +
                                   name_of(*first->second) + ", " +
                                   std::string(uuid));
      }
    }
    if (report.failures() == before) {
      report.ok(*header, counted(modules.size(), "module"));
    }
  }
}

void check_module_hash(const ImageFiles& image, Report& report) {
  for (const CheckedFile* binary : image.binaries) {
    if (is_30(*binary)) {
      report.not_due(*binary, "the modules of 3.0 have no hashes");
    }
  }
  for (const CheckedFile* header : image.headers) {
    if (header->inspected.format != Format::kBinary || !is_30(*header)) {
      check_built_in(*header, report);
    }
  }
  const Compared compared = compared_modules(image);
  for (const ContentsPlan& plan : image.plans) {
    std::map<const CheckedFile*, Hashed> files;
    for (const ModulePlace& place : plan.modules) {
      if (place.is_missing) {
        report_missing(image, compared, plan, place, report);
        continue;
      }
      const CheckedFile* file = place.file ? place.file : plan.header;
      check_place(image, plan, place, files[file], report);
    }
    for (const auto& [file, hashed] : files) {
      if (!hashed.all || hashed.modules == 0) continue;
      report.ok(*file, counted(hashed.modules, "module") + ", " +
                           counted(hashed.bytes, "byte"));
    }
  }
}

}  // namespace tova_fw_builder
