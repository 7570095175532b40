// outside_keys/outside_key.h
// RSA keys as PEM and DER. In a build without OpenSSL's libcrypto all but
// outside_keys_are_known throw std::runtime_error "this tova_fw was built
// without OpenSSL, and knows no PEM and no DER".
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>

#include "crypto/secret_buffer.h"
#include "signing/keys/key_material.h"

namespace tova_fw_builder {

// A whole key with which no manifest can be signed: one of another kind or
// length, or with a number that has no room in a key file.
class UnfitKey : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// An encrypted key, and nowhere to take a passphrase from.
class LockedKey : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

bool outside_keys_are_known();

// Reads an RSA key of 2048 bits: PEM or DER of PKCS#1, PKCS#8 or
// SubjectPublicKeyInfo. A private key fills both parts of the result, a public
// one the public part alone; the numbers are not compared.
//
// An encrypted key is opened with `passphrase`. If that is null, it is asked
// for on the terminal, with `name` in the prompt. Of a passphrase, 1023 bytes
// count.
//
// Throws UnfitKey, LockedKey, or std::runtime_error with the reason: no key, a
// damaged one, a certificate, a wrong passphrase, more work to decrypt than
// anyone would wait for.
std::unique_ptr<KeyMaterial> read_outside_key(
    std::span<const std::uint8_t> bytes, const SecretBuffer* passphrase,
    const std::string& name);

// The key as PEM: PKCS#8, or SubjectPublicKeyInfo of the public part.
SecretBuffer pem_of_key(KeyMaterial& key, bool public_only);

// Whether the numbers are those of an RSA key: of the private part, if there
// is one, that primes, modulus, exponents and coefficient belong together,
// else that the modulus can be one.
bool numbers_hold(KeyMaterial& key);

}  // namespace tova_fw_builder
