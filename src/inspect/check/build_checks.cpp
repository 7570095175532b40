// Checks over files of one build: each says of the other what it must be.
#include <string>

#include "companion/ground/message_text.h"
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

std::string behind_signer_part(const DigestPair& pair) {
  if (pair.signer_part == 0) return "";
  return " behind the " + counted(pair.signer_part, "byte") + " of a signer";
}

}  // namespace

void check_image_digest(const ImageFiles& image, Report& report) {
  for (const DigestPair& pair : image.digest_pairs) {
    const std::string_view told =
        text_at(pair.metadata->inspected.root, "digest");
    const std::string& digest = image.digests.text(pair.digest);
    const bool is_256 = digest.size() == 64;
    if (digest == told) {
      report.ok(*pair.metadata, (is_256 ? "SHA-256 of " : "SHA-384 of ") +
                                    pair.binary->path +
                                    behind_signer_part(pair));
    } else {
      report.failed(*pair.metadata, "the digest is not that of " +
                                        pair.binary->path +
                                        behind_signer_part(pair));
    }
  }
  if (!image.digest_pairs.empty() || !image.options.release) return;
  for (const CheckedFile* metadata : image.metadata) {
    report.failed(*metadata,
                  "--release asks for the contents: give the binary, too");
  }
  for (const CheckedFile* binary : image.binaries) {
    if (is_30(*binary)) continue;
    report.failed(*binary,
                  "--release asks for the digest of the whole binary: "
                  "give the manifest of 1.8 or 2.5, too");
  }
}

void check_image_length(const ImageFiles& image, Report& report) {
  for (const DigestPair& pair : image.digest_pairs) {
    const Field& root = pair.metadata->inspected.root;
    const std::uint64_t base = number_at(root, "base_offset");
    const std::uint64_t limit = number_at(root, "limit_offset");
    const std::uint64_t length =
        pair.binary->inspected.length - pair.signer_part;
    if (base + length == limit) {
      report.ok(*pair.metadata,
                counted(length, "byte") + behind_signer_part(pair));
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

}  // namespace tova_fw_builder
