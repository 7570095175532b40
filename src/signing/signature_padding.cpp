// The frame of a signature. Everything in it stands in the opposite order to
// that of the standards: the tool's numbers begin with their least byte. It is
// not parsed: it must be the one frame, byte for byte, which leaves no room for
// forged ones.
#include "signing/signature_padding.h"

#include <algorithm>

namespace tova_fw_builder {

namespace {

constexpr RsaBlock make_template() {
  // DER: the digest algorithm SHA-256, and a string of 32 bytes.
  constexpr std::uint8_t kDigestInfo[] = {
      0x20, 0x04, 0x00, 0x05, 0x01, 0x02, 0x04, 0x03, 0x65, 0x01,
      0x48, 0x86, 0x60, 0x09, 0x06, 0x0d, 0x30, 0x31, 0x30};
  RsaBlock block{};
  auto* at = std::copy(std::begin(kDigestInfo), std::end(kDigestInfo),
                       block.begin() + kDigestBytes);
  *at++ = 0x00;
  std::fill(at, block.end() - 2, std::uint8_t{0xff});
  // The last byte stays 0, so that the number is below any full modulus.
  block[254] = 0x01;
  return block;
}

}  // namespace

constexpr RsaBlock signature_template = make_template();

bool has_signature_padding(const RsaBlock& block) {
  return std::equal(block.begin() + kDigestBytes, block.end(),
                    signature_template.begin() + kDigestBytes);
}

RsaBlock block_to_sign(ImageManifest& manifest) {
  RsaBlock block = signature_template;
  manifest.compute_hash(block.data());
  return block;
}

}  // namespace tova_fw_builder
