#include "inspect/check/image_files.h"

#include <utility>

#include "companion/ground/message_text.h"
#include "image/records/binary_header.h"
#include "inspect/check/beside_files.h"
#include "layout/records/out_map.h"

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

// How many bytes a signer has put in front of the binary that the metadata is
// of. In a signed one the header stands at 8192, and what the file has more
// than the metadata tells stands in front, if its page count bears that out.
std::uint64_t signer_part(const CheckedFile& metadata,
                          const CheckedFile& binary) {
  const Field& root = metadata.inspected.root;
  const std::uint64_t length = binary.inspected.length;
  const std::uint64_t told =
      number_at(root, "limit_offset") - number_at(root, "base_offset");
  const bool may_be_signed =
      number_at(binary.inspected.root, "header_offset") ==
          kSignedHeaderOffset &&
      number_at(binary.inspected.root, "header.preload_page_count") *
              kPageSize ==
          length;
  return may_be_signed && told < length && length - told <= kSignedHeaderOffset
             ? length - told
             : 0;
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
      const std::uint64_t front = signer_part(*metadata, *binary);
      const std::size_t digest =
          image.digests.add(is_18 ? kSha256 : kSha384, binary->source,
                            {{front, binary->inspected.length - front}});
      image.digest_pairs.push_back({metadata, binary, front, digest});
    }
  }
}

}  // namespace

ImageFiles sort_files(const std::vector<CheckedFile>& files,
                      const CheckOptions& options) {
  ImageFiles image(options);
  for (const CheckedFile& file : files) {
    if (is_piece(file, files)) {
      image.pieces.push_back(&file);
    } else {
      sort_file(file, image);
    }
  }
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

std::uint64_t names_end(const Field& names_length) {
  return names_length.offset + names_length.length + names_length.number;
}

std::string behind_signer_part(const DigestPair& pair) {
  if (pair.signer_part == 0) return "";
  return " behind the " + counted(pair.signer_part, "byte") + " of a signer";
}

}  // namespace tova_fw_builder
