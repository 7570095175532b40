// The command `to-sign`. Signers differ in how much of the work they do: some
// hash the message themselves, some take a digest, and some pad and sign what
// they are given, which then has to name the digest's algorithm, too.
#include "companion/to_sign_command.h"

#include <span>
#include <string>
#include <vector>

#include "companion/command_line/command_node.h"
#include "companion/ground/byte_text.h"
#include "companion/ground/naming.h"
#include "companion/ground/output_file.h"
#include "companion/manifest_input.h"
#include "signing/signature_padding.h"

namespace tova_fw_builder {
namespace {

struct Options {
  std::string manifest;
  std::string form = "message";
  std::string output = "-";
  bool debug = false;
  bool hexadecimal = false;
  bool base64 = false;
};

std::vector<std::uint8_t> bytes_to_sign(ImageManifest& manifest,
                                        const std::string& form) {
  if (form == "message") {
    std::vector<std::uint8_t> message;
    for (const auto part : manifest.signed_parts()) {
      message.insert(message.end(), part.begin(), part.end());
    }
    return message;
  }
  // The block to sign begins with the DigestInfo, last byte first, and that
  // ends with the digest.
  const RsaBlock block = block_to_sign(manifest);
  const std::size_t length = form == "digest" ? kDigestBytes : kDigestInfoBytes;
  return {block.rend() - static_cast<std::ptrdiff_t>(length), block.rend()};
}

std::string text_of(const std::vector<std::uint8_t>& bytes,
                    const Options& options) {
  if (options.hexadecimal) return hexadecimal(bytes) + '\n';
  if (options.base64) return base64(bytes) + '\n';
  return {bytes.begin(), bytes.end()};
}

void write_bytes_to_sign(const Options& options) {
  require_no_input(options.output, {options.manifest});
  const std::string text = naming(options.manifest, [&] {
    const auto file = read_manifest_bytes(options.manifest);
    const auto manifest = manifest_to_sign(file, options.debug);
    note_debug_mark(options.manifest, file, options.debug);
    return text_of(bytes_to_sign(*manifest, options.form), options);
  });
  naming(options.output, [&] { write_output(options.output, text); });
}

}  // namespace

void add_to_sign_command(CommandNode program, Status&) {
  const CommandNode command =
      program.add_command("to-sign", "Write what a signer outside has to sign");
  const auto options = std::make_shared<Options>();
  command.add_option("MANIFEST", options->manifest, "Manifest of a 1.5 image")
      .required();
  add_kind_of_signature(command, options->debug);
  command
      .add_option("--as", options->form,
                  "message: for signers that hash it themselves\n"
                  "digest: 32 bytes of SHA-256\n"
                  "digest-info: the digest and its algorithm in DER, "
                  "for a raw RSA mechanism")
      .with_default()
      .one_of({"message", "digest", "digest-info"});
  command
      .add_option("-o,--output", options->output,
                  "The file to write; else, or with -, the standard output")
      .called("FILE");
  const Option hexadecimal = command.add_flag("--hex", options->hexadecimal,
                                              "Write hexadecimal digits");
  command.add_flag("--base64", options->base64, "Write base64")
      .excludes(hexadecimal);
  command.footer(
      "The signature has to be RSASSA-PKCS1-v1_5 with SHA-256. Put it into "
      "the\n"
      "manifest with tova_fw attach.\n"
      "Example:\n"
      "  tova_fw to-sign firmware.man --release |\n"
      "    openssl dgst -sha256 -sign release.pem -out firmware.sig");
  command.run([options] { write_bytes_to_sign(*options); });
}

}  // namespace tova_fw_builder
