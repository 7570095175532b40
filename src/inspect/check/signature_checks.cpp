#include <algorithm>
#include <exception>
#include <iterator>
#include <string>

#include "companion/ground/byte_text.h"
#include "companion/ground/message_text.h"
#include "image/image.h"
#include "image/kelp15.h"
#include "image/records/binary_header.h"
#include "inspect/check/check_functions.h"
#include "inspect/check/sample_key.h"
#include "signing/commands.h"
#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {
namespace {

constexpr const char* kSignedOutside =
    "generations 1.8, 2.5 and 3.0 are signed by another tool, and checked by "
    "it";

bool is_signed(const CheckedFile& manifest) {
  return number_at(manifest.inspected.root, "signed") != 0;
}

bool is_debug(const CheckedFile& manifest) {
  return number_at(manifest.inspected.root, "css.debug") != 0;
}

std::vector<const CheckedFile*> signed_manifests(const ImageFiles& image) {
  std::vector<const CheckedFile*> found;
  std::ranges::copy_if(
      image.manifests, std::back_inserter(found),
      [](const CheckedFile* file) { return is_signed(*file); });
  return found;
}

PublicKeyHash hash_in(const CheckedFile& manifest) {
  PublicKeyHash hash{};
  const auto bytes =
      from_hexadecimal(text_at(manifest.inspected.root, "public_key_hash"));
  if (bytes && bytes->size() == hash.size()) {
    std::ranges::copy(*bytes, hash.begin());
  }
  return hash;
}

// Why the signature proves nothing; empty if it holds.
std::string fault_of(const CheckedFile& manifest) {
  // With this exponent a signature is the block itself, which anyone can write.
  if (text_at(manifest.inspected.root, "exponent") == "00000001") {
    return "the exponent is 1, so that anyone can make this signature";
  }
  const WipedBytes bytes = manifest.source.bytes(0, kMaxManifestLength + 1);
  try {
    const auto read = read_kelp15_manifest(
        {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    verify_manifest(*read);
    return "";
  } catch (const std::exception& error) {
    return std::string("it doesn't verify: ") + error.what();
  }
}

// By the hash, which covers the exponent, too: with the modulus alone, the same
// key with the exponent 1 would count as trusted, and anyone can sign with it.
bool is_trusted(const PublicKeyHash& hash, const CheckOptions& options) {
  return std::ranges::find(options.trusted, hash) != options.trusted.end();
}

void report_none_signed(const ImageFiles& image, bool is_failure,
                        Report& report) {
  const std::string text =
      image.manifests.empty() && !image.binaries.empty() ? kSignedOutside
      : image.manifests.empty()
          ? "no manifest of generation 1.5 is among the files: give it"
          : "no manifest is signed: give the signed one";
  if (is_failure) {
    report.failed(text);
  } else {
    report.not_due(text);
  }
}

}  // namespace

// The signature covers what header_len and size make it cover, and these two
// are the manifest's own.
void check_signed_part(const ImageFiles& image, Report& report) {
  constexpr std::uint64_t kPartLength = CssHeader::kPartLength;
  for (const CheckedFile* manifest : image.manifests) {
    const Field& root = manifest->inspected.root;
    const std::uint64_t length = number_at(root, "css.header_len");
    const std::uint64_t size = number_at(root, "css.size") * 4;
    const std::uint64_t entries =
        sizeof(CssPart) + sizeof(TovaFwBinaryHeader) +
        number_at(root, "header.num_mods") * sizeof(ModuleEntry);
    if (length != kPartLength) {
      report.failed(*manifest, "header_len is " + std::to_string(length) +
                                   ", not 161: a signature leaves out what "
                                   "matters");
    } else if (size < entries) {
      report.failed(*manifest, "size is " + counted(size, "byte") +
                                   ", and the module entries end at " +
                                   std::to_string(entries));
    } else {
      report.ok(*manifest, "a signature covers all but itself and the key");
    }
  }
}

void check_signature(const ImageFiles& image, Report& report) {
  for (const CheckedFile* manifest : signed_manifests(image)) {
    const std::string fault = fault_of(*manifest);
    if (fault.empty()) {
      report.ok(*manifest, "made with the key " +
                               std::string(text_at(manifest->inspected.root,
                                                   "public_key_hash")));
    } else {
      report.failed(*manifest, fault);
    }
  }
  if (signed_manifests(image).empty()) {
    const bool must = image.options.release && !image.manifests.empty();
    report_none_signed(image, must, report);
  }
}

void check_key_trusted(const ImageFiles& image, Report& report) {
  const CheckOptions& options = image.options;
  const auto manifests = signed_manifests(image);
  if (manifests.empty()) {
    report_none_signed(image, !options.trusted.empty(), report);
  }
  for (const CheckedFile* manifest : manifests) {
    const PublicKeyHash hash = hash_in(*manifest);
    const std::string text(
        text_at(manifest->inspected.root, "public_key_hash"));
    if (options.trusted.empty()) {
      report.not_due(*manifest, "tell whom you trust: --trust " + text +
                                    " if this is your key");
    } else if (!fault_of(*manifest).empty()) {
      report.failed(*manifest, "the signature doesn't hold");
    } else if (is_sample_key(hash) || !is_trusted(hash, options)) {
      report.failed(*manifest, "signed with " + text +
                                   ", which is none of the trusted keys");
    } else {
      report.ok(*manifest, text);
    }
  }
}

void check_debug_signature(const ImageFiles& image, Report& report) {
  const auto manifests = signed_manifests(image);
  if (manifests.empty()) report_none_signed(image, false, report);
  for (const CheckedFile* manifest : manifests) {
    if (!is_debug(*manifest)) {
      report.ok(*manifest, "signed for release");
    } else if (image.options.release) {
      report.failed(*manifest, "signed for debug: sign it for release");
    } else {
      report.not_due(*manifest, "signed for debug, which --release refuses");
    }
  }
}

// Everyone has the sample's key. Signing with it is fine as long as nobody asks
// for trust.
void check_sample_key(const ImageFiles& image, Report& report) {
  const CheckOptions& options = image.options;
  const bool asks = options.release || !options.trusted.empty();
  if (std::ranges::any_of(options.trusted, is_sample_key)) {
    report.failed("--trust names the key of the sample, which everyone has");
  }
  if (asks && options.key_store && holds_sample_key(*options.key_store)) {
    report.failed(
        "the key list has the key of the sample, with which everyone can sign "
        "what an image with this store takes");
  }
  const auto manifests = signed_manifests(image);
  if (manifests.empty()) report_none_signed(image, false, report);
  for (const CheckedFile* manifest : manifests) {
    if (!is_sample_key(hash_in(*manifest))) {
      report.ok(*manifest, "signed with another key than the sample's");
    } else if (asks) {
      report.failed(*manifest,
                    "signed with the key of the sample, which everyone has: "
                    "sign with a key of your own");
    } else {
      report.not_due(*manifest,
                     "signed with the key of the sample, which everyone "
                     "has: --trust and --release refuse it");
    }
  }
}

}  // namespace tova_fw_builder
