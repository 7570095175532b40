// Whether files that each are whole are of one image at all: of one generation,
// and of what an image has once, no two that differ.
#include <algorithm>
#include <optional>
#include <string>

#include "image/records/css_part.h"
#include "inspect/check/check_functions.h"
#include "inspect/compare/byte_difference.h"

namespace tova_fw_builder {
namespace {

using Files = std::vector<const CheckedFile*>;

constexpr std::string_view k18Or25 = "1.8 or 2.5";

std::string_view generation_of(const CheckedFile& file) {
  return file.inspected.format == Format::kManifest15
             ? "1.5"
             : text_at(file.inspected.root, "generation");
}

bool may_be_one(std::string_view a, std::string_view b) {
  if (a == b) return true;
  const auto is_18_or_25 = [](std::string_view generation) {
    return generation == "1.8" || generation == "2.5";
  };
  return (a == k18Or25 && is_18_or_25(b)) || (b == k18Or25 && is_18_or_25(a));
}

void check_generations(const ImageFiles& image, Report& report) {
  Files told;
  for (const Files* files : {&image.headers, &image.metadata}) {
    told.insert(told.end(), files->begin(), files->end());
  }
  for (std::size_t i = 1; i < told.size(); ++i) {
    // A binary of "1.8 or 2.5" may stand between the manifests of both.
    for (std::size_t j = 0; j < i; ++j) {
      const std::string_view here = generation_of(*told[i]);
      const std::string_view there = generation_of(*told[j]);
      if (may_be_one(here, there)) continue;
      report.failed(*told[i], "generation " + std::string(here) + ", and " +
                                  told[j]->path + " is of generation " +
                                  std::string(there) +
                                  ": these are of two generations");
      break;
    }
  }
}

// Where the first two bytes stand that differ, in the second file.
std::optional<std::uint64_t> first_difference(const CheckedFile& a, Span in_a,
                                              const CheckedFile& b, Span in_b) {
  const ByteDifference difference =
      compare_bytes(a.source, in_a, b.source, in_b);
  if (difference.is_equal()) return std::nullopt;
  if (difference.bytes != 0) return in_b.offset + difference.first;
  return in_b.offset + std::min(difference.old_length, difference.new_length);
}

// What the manifests of one build have in common: all but signature and key,
// the mark of a debug signature and the date.
std::optional<std::uint64_t> first_difference_of_manifests(
    const CheckedFile& a, const CheckedFile& b) {
  const auto css_of = [](const CheckedFile& file) {
    auto css = record_at<CssHeader>(file.source, 0);
    css.module_id = 0;
    css.date = 0;
    return std::string(reinterpret_cast<const char*>(&css), sizeof(css));
  };
  const std::string css_a = css_of(a);
  const std::string css_b = css_of(b);
  if (css_a != css_b) {
    return static_cast<std::uint64_t>(std::ranges::mismatch(css_a, css_b).in1 -
                                      css_a.begin());
  }
  const std::uint64_t size = number_at(a.inspected.root, "css.size") * 4;
  const Span part{sizeof(CssPart),
                  size - std::min(size, std::uint64_t{sizeof(CssPart)})};
  return first_difference(a, part, b, part);
}

// What stands from the header on: a signer may have put its own part in front.
std::optional<std::uint64_t> first_difference_of_binaries(
    const CheckedFile& a, const CheckedFile& b) {
  const auto part = [](const CheckedFile& file) {
    return Span{number_at(file.inspected.root, "header_offset"),
                file.inspected.length};
  };
  return first_difference(a, part(a), b, part(b));
}

std::optional<std::uint64_t> first_difference_of_files(const CheckedFile& a,
                                                       const CheckedFile& b) {
  return first_difference(a, {0, a.inspected.length}, b,
                          {0, b.inspected.length});
}

// Each file against the first one of its generation.
void check_alike(const Files& files,
                 std::optional<std::uint64_t> (*difference)(
                     const CheckedFile& a, const CheckedFile& b),
                 const std::string& what, Report& report) {
  for (std::size_t i = 1; i < files.size(); ++i) {
    if (generation_of(*files[i]) != generation_of(*files[0])) continue;
    const auto at = difference(*files[0], *files[i]);
    if (!at) continue;
    report.failed(*files[i], "from " + number_text(*at, Field::Radix::kHex) +
                                 " on it isn't that of " + files[0]->path +
                                 ": these are " + what + " of two builds");
  }
}

}  // namespace

void check_one_image(const ImageFiles& image, Report& report) {
  check_generations(image, report);
  check_alike(image.manifests, first_difference_of_manifests, "manifests",
              report);
  check_alike(image.binaries, first_difference_of_binaries, "binaries", report);
  check_alike(image.metadata, first_difference_of_files, "manifests", report);
  check_alike(image.extended, first_difference_of_files, "extended manifests",
              report);
}

}  // namespace tova_fw_builder
