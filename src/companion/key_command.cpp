// The command `key`: what a key is, and its conversion to and from the forms of
// other programs.
#include "companion/key_command.h"

#include <iostream>
#include <stdexcept>
#include <vector>

#include "companion/command_line/command_node.h"
#include "companion/ground/byte_text.h"
#include "companion/ground/json.h"
#include "companion/ground/naming.h"
#include "companion/ground/output_file.h"
#include "companion/ground/printable.h"
#include "companion/ground/trouble.h"
#include "companion/key_input.h"
#include "inspect/check/sample_key.h"
#include "outside_keys/any_key.h"
#include "outside_keys/key_halves.h"
#include "outside_keys/key_text.h"
#include "outside_keys/manifest_key.h"
#include "outside_keys/outside_key.h"
#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {
namespace {

constexpr char kHalvesDiffer[] =
    "its public and its private half don't belong together";

struct KeyFacts {
  std::string path;
  bool is_unfit = false;  // nothing but the path and the problem is known
  bool pair = false;
  bool halves_match = false;  // of a pair
  int bits = 0;
  std::uint32_t exponent = 0;
  std::vector<std::uint8_t> modulus = {};  // most significant byte first
  PublicKeyHash hash = {};
  std::string problem = {};  // why no manifest can be signed with it
};

KeyFacts facts_of(const std::string& path, const KeyMaterial& key) {
  KeyFacts facts = {
      .path = path,
      .pair = has_private_part(key),
      .halves_match = halves_belong_together(key),
      .bits = modulus_bits(key),
      .exponent = exponent_of(key),
      .modulus = {key.pub_modulus.rbegin(), key.pub_modulus.rend()},
      .hash = digest_public_key(key),
      .problem = {},
  };
  try {
    require_manifest_key(key);
  } catch (const std::runtime_error& error) {
    facts.problem = error.what();
  }
  if (facts.pair && !facts.halves_match) {
    facts.problem = kHalvesDiffer;
  }
  return facts;
}

KeyFacts facts_of_file(const std::string& path,
                       const std::string& passphrase_file) {
  const auto passphrase = passphrase_in(passphrase_file);
  return naming(path, [&]() -> KeyFacts {
    try {
      return facts_of(path,
                      *load_any_key(path, passphrase ? &*passphrase : nullptr));
    } catch (const UnfitKey& error) {
      return {.path = path, .is_unfit = true, .problem = error.what()};
    }
  });
}

void print_numbers(const KeyFacts& facts) {
  std::cout << "  bits      " << facts.bits << "\n  exponent  "
            << facts.exponent << "\n  hash      " << hexadecimal(facts.hash)
            << "\n  halves    ";
  if (facts.pair) {
    std::cout << (facts.halves_match ? "belong together"
                                     : "DON'T belong together");
  } else {
    std::cout << "the public one alone";
  }
  std::cout << '\n';
}

void print_text(const KeyFacts& facts) {
  std::cout << printable(facts.path) << ": "
            << (facts.is_unfit ? "unfit key"
                : facts.pair   ? "key pair"
                               : "public key")
            << '\n';
  if (!facts.is_unfit) print_numbers(facts);
  if (is_sample_key(facts.hash)) {
    std::cout
        << "  This is the key of the sample: everyone has it. Never trust "
           "it.\n";
  }
  if (!facts.problem.empty()) {
    std::cout << "  No manifest can be signed with it: " << facts.problem
              << '\n';
  }
}

Json json_of(const KeyFacts& facts) {
  Json key = {
      {"path", facts.path},       {"format", "unfit-key"},
      {"bits", nullptr},          {"exponent", nullptr},
      {"modulus", nullptr},       {"public_key_hash", nullptr},
      {"halves_match", nullptr},  {"sample_key", is_sample_key(facts.hash)},
      {"problems", Json::array()}};
  if (!facts.is_unfit) {
    key["format"] = facts.pair ? "key-pair" : "public-key";
    key["bits"] = facts.bits;
    key["exponent"] = facts.exponent;
    key["modulus"] = hexadecimal(facts.modulus);
    key["public_key_hash"] = hexadecimal(facts.hash);
  }
  if (facts.pair) key["halves_match"] = facts.halves_match;
  if (!facts.problem.empty()) {
    key["problems"].push_back({{"offset", 0}, {"text", facts.problem}});
  }
  return key;
}

struct ShowOptions {
  std::vector<std::string> keys;
  std::string passphrase_file;
  bool json = false;
};

Status show_keys(const ShowOptions& options) {
  Status status = Status::kYes;
  Troubles troubles;
  Json files = Json::array();
  for (const std::string& path : options.keys) {
    try {
      const KeyFacts facts = facts_of_file(path, options.passphrase_file);
      if (!facts.problem.empty()) status = worse_of(status, Status::kNo);
      if (options.json) {
        files.push_back(json_of(facts));
      } else {
        print_text(facts);
      }
    } catch (const std::runtime_error& error) {
      troubles.add(trouble_of(error));
    }
  }
  if (options.json) {
    std::cout << json_text({{"schema", 1},
                            {"files", std::move(files)},
                            {"troubles", troubles_json(troubles)}});
  }
  return troubles.any() ? Status::kTrouble : status;
}

struct ConvertOptions {
  std::string from;
  std::string to;
  std::string passphrase_file;
  bool public_only = false;
};

// The key that is asked for, whole: a converted key must work.
std::unique_ptr<KeyMaterial> load_whole_key(const ConvertOptions& options) {
  auto key = load_key(options.from, options.passphrase_file);
  naming(options.from, [&] {
    require_manifest_key(*key);
    if (!has_private_part(*key)) {
      if (!options.public_only) {
        throw std::runtime_error(
            "it holds a public key alone; take that with --public");
      }
    } else if (!halves_belong_together(*key)) {
      throw std::runtime_error(kHalvesDiffer);
    }
    if (!numbers_hold(*key)) {
      throw std::runtime_error(
          "its numbers are not those of an RSA key of two primes");
    }
  });
  return key;
}

using MakeText = SecretBuffer (*)(KeyMaterial& key, bool public_only);

void convert(const ConvertOptions& options, MakeText make_text) {
  require_no_input(options.to, {options.from, options.passphrase_file});
  const auto key = load_whole_key(options);
  const SecretBuffer text = make_text(*key, options.public_only);
  naming(options.to, [&] {
    write_output(options.to,
                 {reinterpret_cast<char*>(text.data()), text.size()},
                 options.public_only ? OutputFile::Rights::kUsual
                                     : OutputFile::Rights::kPrivate);
  });
}

constexpr char kPassphraseHelp[] =
    "Take the passphrase from the first line of FILE";

void add_show(CommandNode key, Status& status) {
  const CommandNode show = key.add_command(
      "show",
      "Bits, exponent, hash as loaders know it, and whether the halves "
      "belong together");
  const auto options = std::make_shared<ShowOptions>();
  show.add_option("KEY", options->keys, "Key file, PEM or DER").required();
  show.add_option("--passphrase-file", options->passphrase_file,
                  kPassphraseHelp)
      .called("FILE");
  show.add_flag("--json", options->json, "Print one JSON document");
  show.footer(
      "Status 1: no manifest can be signed with a key.\n"
      "Example:\n  tova_fw key show release.pem");
  show.run([options, &status] { status = show_keys(*options); });
}

void add_conversion(CommandNode command, const char* from, MakeText make_text) {
  const auto options = std::make_shared<ConvertOptions>();
  command.add_option("KEY", options->from, from).required();
  command
      .add_option("-o,--output", options->to,
                  "The file to write; - prints it, but no private key on a "
                  "terminal")
      .called("FILE")
      .required();
  command.add_flag("--public", options->public_only, "The public half alone");
  command
      .add_option("--passphrase-file", options->passphrase_file,
                  kPassphraseHelp)
      .called("FILE");
  command.run([options, make_text] { convert(*options, make_text); });
}

}  // namespace

void add_key_command(CommandNode program, Status& status) {
  const CommandNode key =
      program.add_command("key", "Show keys, and convert them to and from PEM");
  add_show(key, status);
  if (!outside_keys_are_known()) {
    key.footer(
        "This tova_fw was built without OpenSSL: import, export, PEM "
        "and DER are left out.");
    return;
  }
  const CommandNode import =
      key.add_command("import", "Make a key file of a PEM or DER key");
  add_conversion(import, "PEM or DER, also encrypted, or a key file",
                 text_of_key);
  import.footer(
      "Only RSA keys of 2048 bits are taken, with the exponent 65537 or an "
      "odd\n"
      "one of one byte. Private key files get mode 0600.\n"
      "Example:\n  tova_fw key import release.pem -o release.key");
  const CommandNode export_command =
      key.add_command("export", "Make a PEM key of a key in any form");
  add_conversion(export_command, "Key file, PEM or DER", pem_of_key);
  export_command.footer(
      "The PEM is not encrypted, whatever the key was; private ones get mode "
      "0600.\n"
      "Example:\n  tova_fw key export release.key --public -o release.pem");
}

}  // namespace tova_fw_builder
