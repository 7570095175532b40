// The command `attach`. A signature that doesn't verify is tried in the ways in
// which it is most often wrong, so that the message can say what to change.
#include "companion/attach_command.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "companion/command_line/command_node.h"
#include "companion/ground/byte_text.h"
#include "companion/ground/input_file.h"
#include "companion/ground/naming.h"
#include "companion/ground/output_file.h"
#include "companion/key_input.h"
#include "companion/manifest_input.h"
#include "outside_keys/manifest_key.h"
#include "signing/commands.h"
#include "signing/signature_padding.h"

namespace tova_fw_builder {
namespace {

struct Options {
  std::string manifest;
  std::string key;
  std::string passphrase_file;
  std::string signature;
  std::string output;
  bool debug = false;
};

// More than any text form of 256 bytes takes.
constexpr std::size_t kMostSignatureText = 4096;

std::string read_signature_text(const std::string& path) {
  std::vector<std::uint8_t> bytes(kMostSignatureText);
  bytes.resize(read_head(path, bytes));
  return {bytes.begin(), bytes.end()};
}

// A file of 256 bytes is the signature itself, whatever they are.
RsaBlock signature_of(const std::string& text) {
  std::vector<std::uint8_t> bytes(text.begin(), text.end());
  if (text.size() != RsaBlock{}.size()) {
    if (const auto hexadecimal = from_hexadecimal(text)) {
      bytes = *hexadecimal;
    } else if (const auto base64 = from_base64(text)) {
      bytes = *base64;
    }
  }
  RsaBlock block;
  if (bytes.size() != block.size()) {
    const bool cut = text.size() == kMostSignatureText;
    throw std::runtime_error(
        "a signature has 256 bytes, raw, in hexadecimal or in base64; this "
        "has " +
        (cut ? "more" : std::to_string(bytes.size())));
  }
  std::reverse_copy(bytes.begin(), bytes.end(), block.begin());
  return block;
}

RsaBlock reversed(RsaBlock block) {
  std::reverse(block.begin(), block.end());
  return block;
}

// Puts the signature into the manifest and looks if it verifies there.
bool attach_and_verify(ImageManifest& manifest, const RsaBlock& signature,
                       const KeyMaterial& key) {
  attach_signature(manifest, signature, key);
  try {
    verify_manifest(manifest);
    return true;
  } catch (const std::runtime_error&) {
    return false;
  }
}

bool is_below_modulus(const RsaBlock& signature, const KeyMaterial& key) {
  return std::lexicographical_compare(signature.rbegin(), signature.rend(),
                                      key.pub_modulus.rbegin(),
                                      key.pub_modulus.rend());
}

std::string why_refused(const std::vector<std::uint8_t>& file,
                        const RsaBlock& signature, const KeyMaterial& key,
                        bool debug) {
  const auto fits = [&](const RsaBlock& block, bool kind) {
    return attach_and_verify(*manifest_to_sign(file, kind), block, key);
  };
  if (fits(reversed(signature), debug)) {
    return "its bytes stand in the wrong order: the most significant one has "
           "to come first";
  }
  if (fits(signature, !debug)) {
    return std::string("it is this manifest's, but for --") +
           (debug ? "release" : "debug");
  }
  if (!is_below_modulus(signature, key)) {
    return "it isn't below the modulus, so it is not by this key";
  }
  const RsaBlock opened =
      RsaPublicKey(key.pub_modulus.data(), key.pub_exponent.data())
          .encrypt(signature.data());
  if (has_signature_padding(opened)) {
    return "it is by this key, but of something else than this manifest";
  }
  return "it is not by this key, or not RSASSA-PKCS1-v1_5 with SHA-256";
}

void attach(const Options& options) {
  require_no_input(options.output,
                   {options.manifest, options.key, options.passphrase_file,
                    options.signature});
  const auto file = naming(options.manifest, [&] {
    auto bytes = read_manifest_bytes(options.manifest);
    manifest_to_sign(bytes, options.debug);
    note_debug_mark(options.manifest, bytes, options.debug);
    return bytes;
  });
  const auto key = load_key(options.key, options.passphrase_file);
  naming(options.key, [&] { require_manifest_key(*key); });
  const auto manifest = manifest_to_sign(file, options.debug);
  naming(options.signature, [&] {
    const RsaBlock signature =
        signature_of(read_signature_text(options.signature));
    if (!attach_and_verify(*manifest, signature, *key)) {
      throw std::runtime_error(
          "the signature doesn't verify: " +
          why_refused(file, signature, *key, options.debug));
    }
  });
  std::ostringstream signed_bytes;
  manifest->write_raw(signed_bytes);
  naming(options.output,
         [&] { write_output(options.output, signed_bytes.str()); });
}

}  // namespace

void add_attach_command(CommandNode program, Status&) {
  const CommandNode command = program.add_command(
      "attach", "Put a signature that was made outside into a manifest");
  const auto options = std::make_shared<Options>();
  command.add_option("MANIFEST", options->manifest, "Manifest of a 1.5 image")
      .required();
  add_kind_of_signature(command, options->debug);
  command
      .add_option("--key", options->key,
                  "The signer's public key: key file, PEM or DER")
      .called("KEY")
      .required();
  command
      .add_option("--passphrase-file", options->passphrase_file,
                  "Where KEY is an encrypted private one: its passphrase is "
                  "the first line of FILE")
      .called("FILE");
  command
      .add_option("--signature", options->signature,
                  "256 bytes, most significant first: raw, hexadecimal, also "
                  "with colons, or base64 of either alphabet")
      .called("FILE")
      .required();
  command
      .add_option("-o,--output", options->output,
                  "The signed manifest; - prints it")
      .called("SIGNED")
      .required();
  command.footer(
      "Nothing is written unless the signature verifies. The file is the one\n"
      "that tova_fw_builder sign makes with the same key.\n"
      "Example:\n"
      "  tova_fw attach firmware.man --release --key release-public.pem \\\n"
      "    --signature firmware.sig -o firmware.man.signed");
  command.run([options] { attach(*options); });
}

}  // namespace tova_fw_builder
