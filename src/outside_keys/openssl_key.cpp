// PEM and DER through OpenSSL. Its numbers come and go in the byte order of the
// machine, which is that of a key in memory, so they are read and written in
// their places and leave no copies behind.
#include <openssl/bio.h>
#include <openssl/core_names.h>
#include <openssl/crypto.h>
#include <openssl/decoder.h>
#include <openssl/encoder.h>
#include <openssl/evp.h>
#include <openssl/params.h>

#include <algorithm>
#include <bit>
#include <climits>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "outside_keys/key_halves.h"
#include "outside_keys/manifest_key.h"
#include "outside_keys/openssl_start.h"
#include "outside_keys/outside_key.h"
#include "outside_keys/passphrase_cost.h"
#include "outside_keys/passphrase_prompt.h"

namespace tova_fw_builder {

namespace {

constexpr char kMakeAnother[] =
    ": make one with 'openssl genpkey -algorithm RSA -pkeyopt "
    "rsa_keygen_bits:2048 -aes256'";

struct Free {
  void operator()(BIO* bio) const { BIO_free(bio); }
  void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
  void operator()(EVP_PKEY_CTX* context) const { EVP_PKEY_CTX_free(context); }
  void operator()(OSSL_DECODER_CTX* decoder) const {
    OSSL_DECODER_CTX_free(decoder);
  }
  void operator()(OSSL_ENCODER_CTX* encoder) const {
    OSSL_ENCODER_CTX_free(encoder);
  }
};
template <typename T>
using Owned = std::unique_ptr<T, Free>;
using Key = Owned<EVP_PKEY>;

[[noreturn]] void refuse(const std::string& reason) {
  throw std::runtime_error(reason);
}

// A number under OpenSSL's name, ours, and its place in the key.
struct Number {
  const char* name;
  const char* label;
  std::span<std::uint8_t> place;
};

std::vector<Number> public_numbers(KeyMaterial& key) {
  return {{OSSL_PKEY_PARAM_RSA_N, "modulus", key.pub_modulus},
          {OSSL_PKEY_PARAM_RSA_E, "exponent", key.pub_exponent}};
}

std::vector<Number> private_numbers(KeyMaterial& key) {
  return {{OSSL_PKEY_PARAM_RSA_N, "modulus", key.priv_modulus},
          {OSSL_PKEY_PARAM_RSA_E, "exponent", key.priv_exponent},
          {OSSL_PKEY_PARAM_RSA_D, "private exponent", key.priv_d},
          {OSSL_PKEY_PARAM_RSA_FACTOR1, "first prime", key.priv_p},
          {OSSL_PKEY_PARAM_RSA_FACTOR2, "second prime", key.priv_q},
          {OSSL_PKEY_PARAM_RSA_EXPONENT1, "exponent for p", key.priv_a},
          {OSSL_PKEY_PARAM_RSA_EXPONENT2, "exponent for q", key.priv_b},
          {OSSL_PKEY_PARAM_RSA_COEFFICIENT1, "coefficient", key.priv_c}};
}

// OpenSSL takes and gives numbers in the byte order of the machine.
void turn_to_native(const Number& number) {
  if constexpr (std::endian::native == std::endian::big) {
    std::ranges::reverse(number.place);
  }
}

OSSL_PARAM parameter(const Number& number) {
  return OSSL_PARAM_construct_BN(number.name, number.place.data(),
                                 number.place.size());
}

void fetch(EVP_PKEY* from, const Number& number) {
  OSSL_PARAM wanted[] = {parameter(number), OSSL_PARAM_construct_end()};
  if (EVP_PKEY_get_params(from, wanted) != 1 || !OSSL_PARAM_modified(wanted)) {
    throw UnfitKey(std::string("its ") + number.label +
                   " is missing or has more than " +
                   std::to_string(number.place.size() * 8) +
                   " bits: key files have no room for it");
  }
  turn_to_native(number);
}

bool is_private(EVP_PKEY* key) {
  // A length of 0 asks for the size alone.
  OSSL_PARAM wanted[] = {
      OSSL_PARAM_construct_BN(OSSL_PKEY_PARAM_RSA_D, nullptr, 0),
      OSSL_PARAM_construct_end()};
  EVP_PKEY_get_params(key, wanted);
  return OSSL_PARAM_modified(wanted) == 1;
}

// What the first block of PEM says that it is; empty without one.
std::string_view pem_label(std::string_view text) {
  constexpr std::string_view kBegin = "-----BEGIN ";
  const std::size_t begin = text.find(kBegin);
  if (begin == text.npos) return "";
  text.remove_prefix(begin + kBegin.size());
  return text.substr(0, text.find("-----"));
}

// A key of another kind is decoded for the message alone. Of some OpenSSL
// computes the public part, which takes minutes where the numbers are large.
constexpr std::size_t kMostOfAnotherKind = 4096;

[[noreturn]] void refuse_undecoded(std::span<const std::uint8_t> bytes,
                                   const Passphrase& passphrase) {
  if (passphrase.asked) {
    if (passphrase.answered) {
      refuse(bytes.size() > kMostOfAnotherKind
                 ? "the passphrase doesn't open the key, or it is none of RSA"
                 : "the passphrase doesn't open the key");
    }
    throw LockedKey(
        "the key is encrypted, and there is no passphrase: give "
        "--passphrase-file, or run it on a terminal");
  }
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()),
                              bytes.size());
  const std::string_view label = pem_label(text);
  if (label.ends_with("CERTIFICATE REQUEST")) {
    refuse(
        "a certificate request is no key; take its key out of it with 'openssl "
        "req -pubkey -noout'");
  }
  if (text.find("-----BEGIN CERTIFICATE") != text.npos) {
    refuse(
        "a certificate is no key; take its key out of it with 'openssl x509 "
        "-pubkey -noout'");
  }
  if (label == "OPENSSH PRIVATE KEY") {
    refuse(
        "this key has a form of OpenSSH's own; 'ssh-keygen -p -m PEM -f COPY' "
        "makes PEM of a copy");
  }
  if (label.ends_with("PRIVATE KEY") || label.ends_with("PUBLIC KEY")) {
    refuse(bytes.size() > kMostOfAnotherKind
               ? "this PEM is damaged, cut off, or not of an RSA key"
               : "this PEM is damaged or cut off");
  }
  refuse("this is no key: neither a key file, nor PEM, nor DER");
}

Key decode(std::span<const std::uint8_t> bytes, Passphrase& passphrase) {
  const char* const kind = bytes.size() > kMostOfAnotherKind ? "RSA" : nullptr;
  EVP_PKEY* key = nullptr;
  const Owned<OSSL_DECODER_CTX> decoder(OSSL_DECODER_CTX_new_for_pkey(
      &key, nullptr, nullptr, kind, 0, nullptr, nullptr));
  const Owned<BIO> in(
      BIO_new_mem_buf(bytes.data(), static_cast<int>(bytes.size())));
  if (!decoder || !in) throw std::bad_alloc();
  OSSL_DECODER_CTX_set_pem_password_cb(decoder.get(), answer_passphrase,
                                       &passphrase);
  OSSL_DECODER_from_bio(decoder.get(), in.get());
  if (key == nullptr) refuse_undecoded(bytes, passphrase);
  return Key(key);
}

void require_rsa_2048(EVP_PKEY* key) {
  if (EVP_PKEY_is_a(key, "RSA") != 1) {
    const char* kind = EVP_PKEY_get0_type_name(key);
    throw UnfitKey(std::string("this is a key for ") +
                   (kind == nullptr ? "something else" : kind) +
                   "; manifests are signed with RSA" + kMakeAnother);
  }
  const int bits = EVP_PKEY_get_bits(key);
  if (bits != kManifestKeyBits) {
    throw UnfitKey("this is an RSA key of " + std::to_string(bits) +
                   " bits; manifests have room for 2048" + kMakeAnother);
  }
}

// A key of OpenSSL's with our numbers, pair or public.
Key make_key(KeyMaterial& numbers, bool public_only) {
  start_openssl();
  std::vector<OSSL_PARAM> parameters;
  const std::vector<Number> parts =
      public_only ? public_numbers(numbers) : private_numbers(numbers);
  std::ranges::for_each(parts, turn_to_native);
  std::ranges::transform(parts, std::back_inserter(parameters), parameter);
  parameters.push_back(OSSL_PARAM_construct_end());
  const Owned<EVP_PKEY_CTX> context(
      EVP_PKEY_CTX_new_from_name(nullptr, "RSA", nullptr));
  EVP_PKEY* key = nullptr;
  const bool taken =
      context && EVP_PKEY_fromdata_init(context.get()) == 1 &&
      EVP_PKEY_fromdata(context.get(), &key,
                        public_only ? EVP_PKEY_PUBLIC_KEY : EVP_PKEY_KEYPAIR,
                        parameters.data()) == 1;
  std::ranges::for_each(parts, turn_to_native);  // and back
  return Key(taken ? key : nullptr);
}

}  // namespace

bool outside_keys_are_known() { return true; }

std::unique_ptr<KeyMaterial> read_outside_key(
    std::span<const std::uint8_t> bytes, const SecretBuffer* passphrase,
    const std::string& name) {
  if (bytes.size() > INT_MAX) refuse("this is too long for a key");
  start_openssl();
  require_short_derivation(bytes);
  Passphrase answer{passphrase, name};
  const Key key = decode(bytes, answer);
  require_rsa_2048(key.get());
  auto numbers = std::make_unique<KeyMaterial>();
  for (const Number& number : public_numbers(*numbers)) {
    fetch(key.get(), number);
  }
  if (!is_private(key.get())) return numbers;
  for (const Number& number : private_numbers(*numbers)) {
    fetch(key.get(), number);
  }
  return numbers;
}

SecretBuffer pem_of_key(KeyMaterial& key, bool public_only) {
  const Key made = make_key(key, public_only);
  if (!made) refuse("OpenSSL doesn't take the numbers of this key");
  const Owned<OSSL_ENCODER_CTX> encoder(OSSL_ENCODER_CTX_new_for_pkey(
      made.get(), public_only ? EVP_PKEY_PUBLIC_KEY : EVP_PKEY_KEYPAIR, "PEM",
      public_only ? "SubjectPublicKeyInfo" : "PrivateKeyInfo", nullptr));
  unsigned char* text = nullptr;
  std::size_t length = 0;
  if (!encoder || OSSL_ENCODER_to_data(encoder.get(), &text, &length) != 1) {
    refuse("OpenSSL doesn't write this key");
  }
  SecretBuffer pem(length);
  std::copy_n(text, length, pem.data());
  OPENSSL_clear_free(text, length);
  return pem;
}

bool numbers_hold(KeyMaterial& key) {
  const bool public_only = !has_private_part(key);
  const Key made = make_key(key, public_only);
  if (!made) return false;
  const Owned<EVP_PKEY_CTX> check(
      EVP_PKEY_CTX_new_from_pkey(nullptr, made.get(), nullptr));
  if (!check) throw std::bad_alloc();
  return (public_only ? EVP_PKEY_public_check(check.get())
                      : EVP_PKEY_check(check.get())) == 1;
}

}  // namespace tova_fw_builder
