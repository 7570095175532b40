// How many steps an EncryptedPrivateKeyInfo asks for stands in the clear, in
// the parameters of its algorithm. The file's maker chose it, and OpenSSL takes
// any number.
#include "outside_keys/passphrase_cost.h"

#include <openssl/asn1t.h>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

namespace tova_fw_builder {
namespace {

constexpr std::uint64_t kMostRounds = 10'000'000;
constexpr std::uint64_t kMostScrypt = 1 << 24;

template <typename T>
using Owned = std::unique_ptr<T, void (*)(T*)>;

// Numbers that are none, or have no room, are as good as endless.
std::uint64_t number_of(const ASN1_INTEGER* integer) {
  std::uint64_t number = 0;
  return ASN1_INTEGER_get_uint64(&number, integer) == 1
             ? number
             : std::numeric_limits<std::uint64_t>::max();
}

void require_rounds(const ASN1_INTEGER* integer) {
  if (number_of(integer) <= kMostRounds) return;
  throw std::runtime_error(
      "its passphrase is to be hashed more than " +
      std::to_string(kMostRounds) +
      " times, which takes too long: encrypt it anew with fewer");
}

void require_scrypt(const SCRYPT_PARAMS& scrypt) {
  std::uint64_t product = 1;
  for (const ASN1_INTEGER* integer : {scrypt.costParameter, scrypt.blockSize,
                                      scrypt.parallelizationParameter}) {
    const std::uint64_t number = number_of(integer);
    if (number <= kMostScrypt / product) {
      product *= std::max<std::uint64_t>(number, 1);
      continue;
    }
    throw std::runtime_error(
        "its numbers for scrypt are too large, so that it takes too long: "
        "encrypt it anew with smaller ones");
  }
}

// The parameters of an algorithm in the form of `item`; null if they have
// another one.
template <typename T>
Owned<T> parameters(const X509_ALGOR& algorithm, const ASN1_ITEM* item,
                    void (*release)(T*)) {
  int type = 0;
  const void* value = nullptr;
  X509_ALGOR_get0(nullptr, &type, &value, &algorithm);
  void* unpacked =
      type == V_ASN1_SEQUENCE
          ? ASN1_item_unpack(static_cast<const ASN1_STRING*>(value), item)
          : nullptr;
  return {static_cast<T*>(unpacked), release};
}

int kind_of(const X509_ALGOR& algorithm) {
  const ASN1_OBJECT* object = nullptr;
  X509_ALGOR_get0(&object, nullptr, nullptr, &algorithm);
  return OBJ_obj2nid(object);
}

void require_short(const X509_ALGOR& algorithm) {
  if (kind_of(algorithm) != NID_pbes2) {
    const auto old = parameters<PBEPARAM>(algorithm, ASN1_ITEM_rptr(PBEPARAM),
                                          PBEPARAM_free);
    if (old) require_rounds(old->iter);
    return;
  }
  const auto both = parameters<PBE2PARAM>(algorithm, ASN1_ITEM_rptr(PBE2PARAM),
                                          PBE2PARAM_free);
  if (!both) return;
  const X509_ALGOR& derivation = *both->keyfunc;
  if (kind_of(derivation) == NID_id_pbkdf2) {
    const auto hashed = parameters<PBKDF2PARAM>(
        derivation, ASN1_ITEM_rptr(PBKDF2PARAM), PBKDF2PARAM_free);
    if (hashed) require_rounds(hashed->iter);
  } else if (kind_of(derivation) == NID_id_scrypt) {
    const auto scrypt = parameters<SCRYPT_PARAMS>(
        derivation, ASN1_ITEM_rptr(SCRYPT_PARAMS), SCRYPT_PARAMS_free);
    if (scrypt) require_scrypt(*scrypt);
  }
}

void require_short_der(const unsigned char* bytes, long length) {
  const Owned<X509_SIG> encrypted(d2i_X509_SIG(nullptr, &bytes, length),
                                  X509_SIG_free);
  if (!encrypted) return;
  const X509_ALGOR* algorithm = nullptr;
  X509_SIG_get0(encrypted.get(), &algorithm, nullptr);
  require_short(*algorithm);
}

// One block of PEM, which may hold a key in the clear.
struct Block {
  char* name = nullptr;
  char* header = nullptr;
  unsigned char* bytes = nullptr;
  long length = 0;

  ~Block() {
    OPENSSL_free(name);
    OPENSSL_free(header);
    OPENSSL_clear_free(bytes, static_cast<std::size_t>(length));
  }
};

}  // namespace

void require_short_derivation(std::span<const std::uint8_t> bytes) {
  require_short_der(bytes.data(), static_cast<long>(bytes.size()));
  const std::unique_ptr<BIO, int (*)(BIO*)> in(
      BIO_new_mem_buf(bytes.data(), static_cast<int>(bytes.size())), BIO_free);
  if (!in) throw std::bad_alloc();
  while (BIO_pending(in.get()) > 0) {
    Block block;
    // Of a damaged block, the next one may be whole.
    if (PEM_read_bio(in.get(), &block.name, &block.header, &block.bytes,
                     &block.length) == 1) {
      require_short_der(block.bytes, block.length);
    }
  }
  ERR_clear_error();
}

}  // namespace tova_fw_builder
