// Shows under valgrind's memcheck that setting a private key and operating with
// it take no branch and read no address that depends on the private exponent:
// its bytes are marked undefined, and memcheck reports every branch and address
// that hangs on undefined bits. With the argument "leaky" the exponent goes
// through the public operation instead, and memcheck must object.
#include <valgrind/memcheck.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "crypto/internal/big_num_context.h"
#include "crypto/internal/modular_power.h"
#include "crypto/rsa_sample.h"
#include "crypto/zels_bignum.h"
#include "crypto/zels_rsa.h"

using namespace tova_fw_builder;

namespace {

constexpr std::int32_t kBits = 2048;
constexpr std::size_t kDigits = kBits / 64;

std::vector<Digit> digits(const std::string& hex) {
  std::vector<Digit> result(kDigits + 1);
  const auto bytes = little_endian(hex, kBits / 8);
  std::memcpy(result.data(), bytes.data(), bytes.size());
  return result;
}

std::string block_to_sign() {
  return "0001" + std::string(404, 'f') +
         "003031300d060960864801650304020105000420" + kSampleDigest;
}

bool is_signature(const Digit* result) {
  VALGRIND_MAKE_MEM_DEFINED(result, kBits / 8);
  return std::memcmp(result, digits(kSampleSignature).data(), kBits / 8) == 0;
}

// The power alone, in each variant.
bool check_power(std::int32_t limb, bool leaky) {
  const auto modulus = digits(kSampleModulus);
  const auto base = digits(block_to_sign());
  auto d = digits(kSamplePrivateExponent);
  const std::int32_t bits = bit_size(d.data(), kDigits);
  std::vector<Digit> storage(montgomery_storage(kBits));
  const Montgomery n =
      prepare_montgomery(modulus.data(), kBits, limb, storage.data());
  std::vector<Digit> work(secret_power_work(n, bits));
  std::vector<Digit> result(kDigits);
  VALGRIND_MAKE_MEM_UNDEFINED(d.data(), kBits / 8);
  (leaky ? public_power : secret_power)(n, result.data(), base.data(), d.data(),
                                        bits, work.data());
  return is_signature(result.data());
}

// The whole operation, from the bytes of the key to the result. The top digit
// of d stays known, since the size of d is no secret.
bool check_decrypt() {
  const auto big_num = [](const std::string& hex) {
    return MakeBigNum(kBits / 8, little_endian(hex, kBits / 8).data());
  };
  const SecretBuffer n = big_num(kSampleModulus);
  auto d_bytes = little_endian(kSamplePrivateExponent, kBits / 8);
  VALGRIND_MAKE_MEM_UNDEFINED(d_bytes.data(), kBits / 8 - sizeof(Digit));
  const SecretBuffer d = MakeBigNum(kBits / 8, d_bytes.data());
  const SecretBuffer input = big_num(block_to_sign());
  const SecretBuffer output = MakeBigNum(kBits / 8, nullptr);
  std::int32_t size = 0;
  zelsRSA_GetSizePrivateKey(kBits, kBits, &size);
  const SecretBuffer key(static_cast<std::size_t>(size));
  zelsRSA_InitPrivateKey(kBits, kBits, key.data(), size);
  zelsRSA_SetPrivateKey(n.data(), d.data(), key.data());
  zelsRSA_GetBufferSizePrivateKey(&size, key.data());
  const SecretBuffer work(static_cast<std::size_t>(size));
  zelsRSADecrypt(input.data(), output.data(), key.data(), work.data());
  return is_signature(context_in<BigNum>(output.data())->digits);
}

}  // namespace

int main(int argc, char** argv) {
  const bool leaky = argc > 1 && std::strcmp(argv[1], "leaky") == 0;
  bool right = check_power(kPortableLimb, leaky);
  if (choose_limb(kBits) == kVectorLimb) {
    right = check_power(kVectorLimb, leaky) && right;
  }
  right = check_decrypt() && right;
  std::puts(right ? "right" : "wrong");
  return right ? 0 : 1;
}
