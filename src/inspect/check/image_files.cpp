#include "inspect/check/image_files.h"

#include <algorithm>
#include <utility>

namespace tova_fw_builder {
namespace {

void sort_file(const CheckedFile& file, ImageFiles& image) {
  switch (file.inspected.format) {
    case Format::kManifest15:
      image.manifests.push_back(&file);
      image.headers.push_back(&file);
      break;
    case Format::kBinary:
      image.binaries.push_back(&file);
      image.headers.push_back(&file);
      break;
    case Format::kMetadata:
      image.metadata.push_back(&file);
      break;
    case Format::kExtendedManifest:
      image.extended.push_back(&file);
      break;
    case Format::kPackageDescriptor:
      image.packages.push_back(&file);
      break;
    case Format::kEmbedded:
      image.bare.push_back(&file);
      break;
    default:
      image.others.push_back(&file);
  }
}

void plan_digests(ImageFiles& image) {
  using enum Digests::Kind;
  for (ContentsPlan& plan : image.plans) {
    for (ModulePlace& place : plan.modules) {
      if (!place.unknown.empty()) continue;
      place.digest =
          image.digests.add(kSha256, place.file->source, place.spans);
    }
  }
  for (const CheckedFile* metadata : image.metadata) {
    const bool is_18 = text_at(metadata->inspected.root, "generation") == "1.8";
    for (const CheckedFile* binary : image.binaries) {
      if (is_30(*binary)) continue;
      const std::size_t digest =
          image.digests.add(is_18 ? kSha256 : kSha384, binary->source,
                            {{0, binary->inspected.length}});
      image.digest_pairs.push_back({metadata, binary, digest});
    }
  }
}

}  // namespace

ImageFiles sort_files(const std::vector<CheckedFile>& files,
                      const CheckOptions& options) {
  ImageFiles image{options, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}};
  for (const CheckedFile& file : files) sort_file(file, image);
  for (const CheckedFile* binary : image.binaries) {
    if (!is_30(*binary)) image.plans.push_back(plan_binary(*binary));
  }
  for (const CheckedFile* manifest : image.manifests) {
    for (ContentsPlan& plan :
         plan_manifest(*manifest, image.bare, image.packages)) {
      image.plans.push_back(std::move(plan));
    }
  }
  plan_digests(image);
  return image;
}

bool is_30(const CheckedFile& binary) {
  return text_at(binary.inspected.root, "generation") == "3.0";
}

std::string image_version(const Field& root) {
  std::string version;
  for (const char* part : {"major", "minor", "hotfix", "build"}) {
    if (!version.empty()) version += '.';
    version +=
        std::to_string(number_at(root, "header." + std::string(part) + "_ver"));
  }
  return version;
}

void Report::add(CheckResult result, std::string file, std::string text,
                 bool is_gap) {
  const bool is_told = std::ranges::any_of(lines_, [&](const CheckLine& line) {
    return line.id == id_ && line.result == result && line.file == file &&
           line.text == text;
  });
  if (!is_told) {
    lines_.push_back({id_, result, std::move(file), std::move(text), is_gap});
  }
}

}  // namespace tova_fw_builder
