// The digest in a manifest of 1.8 or 2.5 against the binary. What a signer has
// put in front of the binary isn't hashed.
#include <string>
#include <string_view>

#include "inspect/check/check_functions.h"

namespace tova_fw_builder {

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

}  // namespace tova_fw_builder
